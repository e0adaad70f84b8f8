// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/secrets.h"

#include "examples/launcher/values/passwords.h"
#include "tools/nuv-apps-config/secrets/decodedtext.h"
#include "tools/nuv-apps-config/secrets/secretlines.h"
#include "tools/nuv-apps-config/secrets/secretnames.h"
#include "tools/nuv-apps-config/secrets/secretnodes.h"

#include <QStringList>

#include <algorithm>

namespace {

// Fewer characters tell little, and are in too many words that are no secret.
const int PieceSize = 5;

QString inLowerCase(const QString &text)
{
    QString lower = text;
    for (QChar &c : lower)
        c = c.toLower();
    return lower;
}

bool hasLetterOrNumber(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

// A word of the program's own sentences.
bool isPlainWord(const QString &word)
{
    return std::all_of(word.begin(), word.end(), [](QChar c) {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
            || QString(QLatin1String(",.:;")).contains(c);
    });
}

bool quotesOnlyKnown(const QString &text)
{
    const QStringList pieces = text.split(QLatin1Char('"'));
    for (int i = 1; i < pieces.size(); i += 2) {
        if (!SecretNames::isKnown(pieces.at(i)))
            return false;
    }
    return true;
}

QString replaced(const QString &text, const std::vector<bool> &masked)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        if (!masked[size_t(i)])
            result += text.at(i);
        else if (i == 0 || !masked[size_t(i) - 1])
            result += Secrets::mask();
    }
    return result;
}

QString maskedAddress(const QString &path, const QString &text)
{
    const QStringList keys = path.split(QLatin1Char('/'));
    const bool isProxy = std::any_of(keys.begin(), keys.end(), SecretNames::isProxy);
    return Passwords::maskedAddress(text, isProxy ? Passwords::Proxy : Passwords::AnyText);
}

// Whether the value under that path is secret as a whole: one with the key of a secret in it, or in a
// certificate one of an unknown key or a remark.
bool isSecretPath(const QString &path)
{
    bool isInCertificate = false;
    for (const QString &key : path.split(QLatin1Char('/'))) {
        if (SecretNames::isSecret(key) || (isInCertificate && !SecretNames::isRead(key)))
            return true;
        isInCertificate = isInCertificate || SecretNames::isCertificate(key);
    }
    return false;
}

Ranges findSecrets(const QByteArray &bytes, const Document &document, bool hasSyntaxErrors)
{
    Ranges ranges;
    SecretNodes(bytes, document, ranges).find();
    if (hasSyntaxErrors) {
        SecretLines(bytes, ranges).find();
        // The lines of a private key say nothing of what they are.
        for (const Passwords::Piece &key : Passwords::findPrivateKeys(QString::fromLatin1(bytes)))
            ranges.add(key.begin, key.end);
    }
    ranges.settle();
    return ranges;
}

} // namespace

bool Secrets::areIn(int offset, int length) const
{
    return !m_ranges.overlapping(offset, offset + qMax(1, length)).empty();
}

QString Secrets::mask()
{
    return Passwords::mask();
}

Secrets::Secrets(const QByteArray &bytes, const Document &document, bool hasSyntaxErrors)
    : m_ranges(findSecrets(bytes, document, hasSyntaxErrors))
{
    for (const Range &range : m_ranges.all()) {
        const bool isQuoted = range.end - range.begin > 1 && bytes.at(range.begin) == '"';
        const int begin = isQuoted ? range.begin + 1 : range.begin;
        const int end = isQuoted && bytes.at(range.end - 1) == '"' ? range.end - 1 : range.end;
        const QByteArray raw = bytes.mid(begin, end - begin);
        addPieces(QString::fromLatin1(raw));
        addPieces(QString::fromUtf8(raw));
        addPieces(DecodedText(bytes, begin, end).text());
    }
}

void Secrets::addPieces(const QString &text)
{
    const QString lower = inLowerCase(text);
    for (int i = 0; i + PieceSize <= lower.size(); ++i)
        m_pieces.insert(lower.mid(i, PieceSize));
}

// Which characters of the text are those of a secret.
std::vector<bool> Secrets::repeated(const QString &text) const
{
    std::vector<bool> masked(size_t(text.size()), false);
    if (m_pieces.isEmpty())
        return masked;
    const QString lower = inLowerCase(text);
    for (int i = 0; i + PieceSize <= lower.size(); ++i) {
        if (m_pieces.contains(lower.mid(i, PieceSize)))
            std::fill_n(masked.begin() + i, PieceSize, true);
    }
    return masked;
}

// Before the first quote and after the last one are the program's own words; between them only where
// all that is quoted is known. A remark of the user's about a pass phrase may have the same words.
void Secrets::keepOwnWords(const QString &text, std::vector<bool> &masked) const
{
    const int firstQuote = text.indexOf(QLatin1Char('"'));
    const int lastQuote = text.lastIndexOf(QLatin1Char('"'));
    const bool isAllKnown = quotesOnlyKnown(text);
    for (int begin = 0; begin < text.size();) {
        const int blank = text.indexOf(QLatin1Char(' '), begin);
        const int end = blank < 0 ? text.size() : blank + 1;
        const bool isOutside = isAllKnown || end <= firstQuote || begin > lastQuote;
        if (isOutside && isPlainWord(text.mid(begin, end - begin).trimmed()))
            std::fill(masked.begin() + begin, masked.begin() + end, false);
        if (begin > 1 && !masked[size_t(begin)] && !masked[size_t(begin) - 2])
            masked[size_t(begin) - 1] = false; // the blank between two words that stay
        begin = end;
    }
}

void Secrets::judgeQuoted(const QString &text, bool isAboutSecret, std::vector<bool> &masked) const
{
    const QChar quote = QLatin1Char('"');
    int begin = text.indexOf(quote) + 1;
    for (int end = text.indexOf(quote, begin); begin > 0 && end >= 0;
         end = text.indexOf(quote, begin)) {
        const QString piece = text.mid(begin, end - begin);
        if (SecretNames::isKnown(piece))
            std::fill(masked.begin() + begin - 1, masked.begin() + end + 1, false);
        else if (isAboutSecret && hasLetterOrNumber(piece) && !SecretNames::isMeant(piece))
            std::fill(masked.begin() + begin, masked.begin() + end, true);
        begin = end + 1;
    }
}

QString Secrets::sentence(const QString &text, int offset, int length) const
{
    std::vector<bool> masked = repeated(text);
    judgeQuoted(text, areIn(offset, length), masked);
    keepOwnWords(text, masked);
    return Passwords::maskedText(replaced(text, masked));
}

QString Secrets::text(const QString &text) const
{
    return SecretNames::isKnown(text) ? text
                                      : Passwords::maskedText(replaced(text, repeated(text)));
}

QString Secrets::path(const QString &path) const
{
    QStringList keys = path.split(QLatin1Char('/'));
    for (QString &key : keys)
        key = text(key);
    const QString joined = keys.join(QLatin1Char('/')); // a secret may hold the slash
    return Passwords::maskedText(replaced(joined, repeated(joined)));
}

QVariant Secrets::value(const QString &path, const QVariant &value) const
{
    const QVariant result = shown(path, value);
    const QString key = path.section(QLatin1Char('/'), -1);
    return SecretNames::isRead(key) || result.userType() != QMetaType::QString
        ? result
        : text(result.toString());
}

QVariant Secrets::shown(const QString &path, const QVariant &value)
{
    if (!value.isValid())
        return value;
    if (isSecretPath(path))
        return mask();
    if (value.userType() != QMetaType::QString)
        return value;
    return maskedAddress(path, value.toString());
}
