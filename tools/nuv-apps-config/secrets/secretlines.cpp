// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/secretlines.h"

#include "examples/launcher/values/passwords.h"
#include "tools/nuv-apps-config/secrets/decodedtext.h"
#include "tools/nuv-apps-config/secrets/secretnames.h"

#include <algorithm>
#include <cstring>

namespace {

// A file without line breaks is taken in pieces.
const int LongestLine = 65536;
const int LongestName = 12;

// Whether the letters may be the rest of the name, after a mistake in it: "Certific/ate".
bool isRestOfName(const QString &letters)
{
    return QString(QLatin1String("certificate")).endsWith(letters, Qt::CaseInsensitive);
}

int endOfLetters(const QString &text, int begin)
{
    int end = begin;
    while (end < text.size() && text.at(end).isLetter())
        ++end;
    return end;
}

// A colon, a brace or another mark between the key and what belongs to it, with anything in between that
// may be a mistake. The name of a file goes on with letters: "certificate.pem".
bool endsKey(const QString &text, int end)
{
    QString letters;
    do {
        end = endOfLetters(text, end);
        for (; end < text.size() && !text.at(end).isLetter(); ++end) {
            if (QString(QLatin1String(":=;,{\"'")).contains(text.at(end)))
                return true;
        }
        letters = text.mid(end, endOfLetters(text, end) - end);
    } while (!letters.isEmpty() && isRestOfName(letters));
    return letters.isEmpty();
}

bool isValue(const LineWord &word)
{
    return word.type != LineWord::Mark;
}

bool hasSign(const LineWord &word)
{
    return word.text.contains(QLatin1Char('@'));
}

// The beginning of a password of digits looks like a port where a quote cuts it off.
bool hasPort(const LineWord &word)
{
    const int slashes = word.text.indexOf(QLatin1String("//"));
    return slashes >= 0 && word.text.indexOf(QLatin1Char(':'), slashes) >= 0;
}

// Whether user and host may be in it, which another word goes on with.
bool isAddress(const LineWord &word)
{
    return word.text.contains(QLatin1String("//")) || word.text.contains(QLatin1String(":/"));
}

// Where a quote is missing, more than a value is between two of them.
bool holdsMore(const LineWord &word)
{
    return word.text.contains(QLatin1String("/*"))
        || std::any_of(word.text.begin(), word.text.end(),
                       [](QChar c) { return QString(QLatin1String(",{}[]")).contains(c); });
}

// No word has an index below 0, which is a very large one.
bool isMarkAt(const std::vector<LineWord> &words, size_t index, char mark)
{
    return index < words.size() && words[index].isMark(mark);
}

// A piece of one may be the value of another piece.
bool isWholeAddress(const std::vector<LineWord> &words, size_t i)
{
    return (i >= 2 && SecretNames::isKnown(words[i - 2].text)) || isAddress(words[i]);
}

// A string among members, which a quote too many made of the rest of a value.
bool isLone(const std::vector<LineWord> &words, size_t i)
{
    return isMarkAt(words, i - 1, ',') && !isMarkAt(words, i + 1, ':')
        && std::any_of(words.begin(), words.end(), [](const LineWord &w) { return w.isMark(':'); })
        && std::none_of(words.begin(), words.end(),
                        [](const LineWord &w) { return w.isMark('['); });
}

bool isSoundWord(const std::vector<LineWord> &words, size_t i)
{
    const LineWord &word = words[i];
    const bool isMember = isMarkAt(words, i - 1, ':');
    const bool isDoubled = i > 0 && isValue(word) && isValue(words[i - 1]);
    switch (word.type) {
    case LineWord::Text:
        return !isDoubled && !isLone(words, i)
            && (!hasSign(word) || (isMember && isWholeAddress(words, i)));
    case LineWord::Bare:
        return !isDoubled && (word.isNumber() || SecretNames::isKnown(word.text));
    case LineWord::Mark:
        return !word.isMark('=') && !word.isMark(';')
            && !(word.isMark(':') && (isMember || isMarkAt(words, i - 2, ':')));
    case LineWord::OpenText:
        break;
    }
    return false;
}

// Whether each value is where it may be, and an address is that of a key.
bool isSound(const std::vector<LineWord> &words)
{
    for (size_t i = 0; i < words.size(); ++i) {
        if (!isSoundWord(words, i))
            return false;
    }
    return true;
}

// A misspelt key is shown where a value follows it. None of them has an @.
bool isMeantKey(const std::vector<LineWord> &words, size_t index)
{
    const bool isFollowed =
        index + 1 < words.size() && (words[index + 1].isMark(':') || words[index + 1].isMark('='));
    return isFollowed && !hasSign(words[index]) && SecretNames::isMeant(words[index].text);
}

} // namespace

void SecretLines::find()
{
    for (int begin = 0; begin < m_bytes.size();) {
        const Line line = lineAt(begin);
        if (!line.isBlank)
            findInLine(line);
        begin = line.end + 1;
    }
}

SecretLines::Line SecretLines::lineAt(int begin) const
{
    const void *const newLine = std::memchr(m_bytes.constData() + begin, '\n',
                                            size_t(qMin(LongestLine + 1, m_bytes.size() - begin)));
    int end =
        newLine ? int(static_cast<const char *>(newLine) - m_bytes.constData()) : m_bytes.size();
    if (end - begin > LongestLine)
        end = begin + qMax(LongestLine / 2, m_bytes.mid(begin, LongestLine).lastIndexOf(','));
    const QByteArray text = m_bytes.mid(begin, end - begin).trimmed();
    const bool isComment = text.startsWith("//") || text.startsWith('#') || text.startsWith("/*")
        || text.startsWith('*') || text.startsWith("<!--");
    return Line { begin, end, text.isEmpty(), isComment };
}

void SecretLines::findInLine(const Line &line)
{
    const DecodedText decoded(m_bytes, line.begin, line.end);
    const std::vector<LineWord> words = LineWord::wordsOf(m_bytes, line.begin, line.end);
    const QString text = m_tail + decoded.text();
    const QByteArray raw = m_bytes.mid(line.begin, line.end - line.begin);
    const bool hasName = SecretNames::endOfSecretName(text) >= 0
        || SecretNames::endOfSecretName(QString::fromLatin1(raw))
            >= 0; // an escape in it takes four letters
    m_tail = hasName ? QString() : decoded.text().right(LongestName);
    const bool isInside = isInCertificate(line, decoded, words, text);
    const bool isAfter = follows(line, hasName);
    m_followsName = hasName || (isInside && !isSound(words));
    const bool isBinary = decoded.text().contains(QChar(0));
    if (hasName || isInside || isAfter || isBinary || hasPassword(words, decoded)) {
        addWords(m_comment);
        addWords(words);
        m_comment.clear();
    } else if (line.isComment) {
        m_comment.insert(m_comment.end(), words.begin(), words.end());
    } else {
        m_comment.clear();
    }
    addPasswords(words);
}

// A certificate goes on to the brace that ends it, or to the second one where none begins it.
bool SecretLines::isInCertificate(const Line &line, const DecodedText &decoded,
                                  const std::vector<LineWord> &words, const QString &text)
{
    const bool wasInside = m_isInCertificate;
    const int end = SecretNames::endOfCertificateName(text);
    const int tail = text.size() - decoded.text().size();
    int from = line.begin;
    if (end >= 0 && endsKey(text, end)) {
        if (!m_isInCertificate) {
            m_depth = m_strayBraces = 0;
            m_isEmpty = true;
        }
        from = m_isInCertificate ? line.begin : decoded.offset(qMax(0, end - tail));
        m_isInCertificate = true;
    }
    const bool isInside = wasInside || m_isInCertificate;
    leaveCertificate(from, words);
    return isInside;
}

// A brace between two quotes ends nothing: it is a part of a key or of a secret.
void SecretLines::leaveCertificate(int begin, const std::vector<LineWord> &words)
{
    for (const LineWord &word : words) {
        for (int at = qMax(begin, word.begin); at < word.end && m_isInCertificate; ++at) {
            if (m_bytes.at(at) == '{')
                ++m_depth;
            else if (m_bytes.at(at) == '}' && word.type != LineWord::Text)
                closeBrace();
            else if (m_bytes.at(at) == ':' && m_depth > 0)
                m_isEmpty = false;
        }
    }
}

// A brace that ends a certificate without members may be one too many.
void SecretLines::closeBrace()
{
    if (m_depth > 1 || (m_depth == 1 && !m_isEmpty)) {
        m_isInCertificate = --m_depth > 0;
    } else {
        m_depth = 0;
        m_isInCertificate = ++m_strayBraces < 2;
    }
}

// Whether the value of a secret's key may go on in the line.
bool SecretLines::follows(const Line &line, bool hasName)
{
    const bool result = m_followsName || m_brackets > 0 || m_isOpenText;
    const QByteArray text = m_bytes.mid(line.begin, line.end - line.begin);
    const bool hasOddQuotes = text.count('"') % 2 == 1;
    const int opened = text.count('[') + text.count('{') - text.count(']') - text.count('}');
    m_isOpenText = hasName ? hasOddQuotes : m_isOpenText && !text.contains('"');
    m_brackets = hasName || m_brackets > 0 ? qMax(0, m_brackets + opened) : 0;
    return result;
}

// Whether a password is in the line that is in no well-made text.
bool SecretLines::hasPassword(const std::vector<LineWord> &words, const DecodedText &decoded) const
{
    if (isSound(words))
        return false;
    if (decoded.text().contains(QLatin1Char('@')))
        return true;
    int at = decoded.text().indexOf(QLatin1String("HttpProxy"));
    const bool isProxy = at >= 0;
    if (at < 0)
        at = decoded.text().indexOf(QLatin1String("://"));
    if (at < 0)
        return false;
    QString rest = decoded.text().mid(isProxy ? at + 9 : at + 1);
    while (!rest.isEmpty()
           && QString(QLatin1String("\" \t:=;,}]")).contains(rest.at(rest.size() - 1)))
        rest.chop(1);
    while (isProxy && !rest.isEmpty()
           && QString(QLatin1String("\" \t:=;,[{'")).contains(rest.at(0)))
        rest.remove(0, 1);
    return !Passwords::find(rest, Passwords::Proxy).empty();
}

void SecretLines::addWords(const std::vector<LineWord> &words)
{
    const bool hasSigns = std::any_of(words.begin(), words.end(), hasSign);
    for (size_t i = 0; i < words.size(); ++i) {
        const LineWord &word = words[i];
        const bool isShort = word.type == LineWord::Bare && word.end - word.begin <= 2
            && std::none_of(word.text.begin(), word.text.end(),
                            [](QChar c) { return c.isLetterOrNumber(); });
        if (word.type == LineWord::Mark || isShort || SecretNames::isKnown(word.text)
            || isMeantKey(words, i))
            continue;
        const bool isSpared = i >= 2 && LineWord::isMember(words, i - 2)
            && !SecretNames::isSecret(words[i - 2].text) && !SecretNames::isSecret(word.text)
            && !hasSign(word) && !hasPort(word) && !(hasSigns && isAddress(word))
            && !holdsMore(word) && SecretNames::isRead(words[i - 2].text)
            && !SecretNames::isProxy(words[i - 2].text);
        if (!isSpared)
            m_ranges.add(word.begin, word.end);
    }
}

void SecretLines::addPasswords(const std::vector<LineWord> &words)
{
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i].type == LineWord::Text || words[i].type == LineWord::OpenText)
            addPassword(words[i], i >= 2 ? words[i - 2].text : QString());
    }
}

void SecretLines::addPassword(const LineWord &word, const QString &key)
{
    const int closing = word.type == LineWord::Text ? 1 : 0;
    const DecodedText decoded(m_bytes, word.begin + 1, word.end - closing);
    const Passwords::Kind kind = SecretNames::isProxy(key) ? Passwords::Proxy : Passwords::AnyText;
    for (const Passwords::Piece &piece : Passwords::find(decoded.text(), kind))
        m_ranges.add(decoded.offset(piece.begin), decoded.offset(piece.end));
}
