#include "tools/nuv-apps-config/secrets.h"

#include "tools/nuv-apps-config/document.h"
#include "tools/nuv-apps-config/spelling.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

// What the names of secrets consist of, with nothing or one of "-_ " between the two.
const char Head[] = "pass";
const char *const tails[] = { "phrase", "word", "wd", "code" };

bool startsWith(const QByteArray &bytes, int at, const char *lowerCase)
{
    const int size = int(std::strlen(lowerCase));
    if (at + size > bytes.size())
        return false;
    for (int i = 0; i < size; ++i) {
        if ((bytes.at(at + i) | 0x20) != lowerCase[i])
            return false;
    }
    return true;
}

// Behind the name that begins at `at`; -1 when there is none.
int endOfName(const QByteArray &bytes, int at)
{
    if (!startsWith(bytes, at, Head))
        return -1;
    at += int(sizeof Head) - 1;
    if (at < bytes.size() && std::strchr("-_ ", bytes.at(at)))
        ++at;
    for (const char *tail : tails) {
        if (startsWith(bytes, at, tail))
            return at + int(std::strlen(tail));
    }
    return -1;
}

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

int skipBlanks(const QByteArray &bytes, int at)
{
    while (at < bytes.size() && isBlank(bytes.at(at)))
        ++at;
    return at;
}

// Behind the quotes, of whichever kind, that may end a name.
int skipQuotes(const QByteArray &bytes, int at)
{
    while (at < bytes.size()) {
        const unsigned char byte = static_cast<unsigned char>(bytes.at(at));
        if (byte != '"' && byte != '\'' && byte != '`' && byte != '\\' && byte < 0x80)
            break;
        ++at;
    }
    return at;
}

// Where the value of the name that ends at `at` begins; -1 when the name is no key.
int beginOfValue(const QByteArray &bytes, int at)
{
    at = skipBlanks(bytes, skipQuotes(bytes, at));
    if (at == bytes.size())
        return -1;
    const char byte = bytes.at(at);
    if (byte == ':' || byte == '=')
        return skipBlanks(bytes, at + 1);
    return byte == '"' || byte == '\'' ? at : -1;
}

int endOfLine(const QByteArray &bytes, int at)
{
    const int end = bytes.indexOf('\n', at);
    return end < 0 ? bytes.size() : end;
}

int endOfText(const QByteArray &bytes, int at)
{
    for (++at; at < bytes.size() && bytes.at(at) != '"'; ++at) {
        if (bytes.at(at) == '\\')
            ++at;
    }
    return qMin(at + 1, bytes.size());
}

int endOfValue(const QByteArray &bytes, int at)
{
    if (at >= bytes.size())
        return bytes.size();
    const char byte = bytes.at(at);
    if (byte == '"')
        return endOfText(bytes, at);
    if (byte == '[' || byte == '{') {
        const int end = bytes.indexOf(byte == '[' ? ']' : '}', at);
        return end < 0 ? bytes.size() : end + 1;
    }
    return endOfLine(bytes, at);
}

QString lettersOf(const QString &key)
{
    QString letters;
    for (const QChar c : key) {
        if (c.isLetterOrNumber())
            letters += c.toLower();
    }
    return letters;
}

} // namespace

QString Secrets::mask()
{
    return QLatin1String("********");
}

bool Secrets::isSecretKey(const QString &key)
{
    const QString letters = lettersOf(key);
    for (const char *tail : tails) {
        if (letters.contains(QLatin1String(Head) + QLatin1String(tail)))
            return true;
    }
    return Spelling::distance(letters, QLatin1String("passphrase"), 2) <= 2;
}

bool Secrets::isSecretPath(const QString &path)
{
    const QStringList pieces = path.split(QLatin1Char('/'));
    return std::any_of(pieces.begin(), pieces.end(), isSecretKey);
}

QString Secrets::withoutPassword(const QString &text)
{
    const int at = text.lastIndexOf(QLatin1Char('@'));
    if (at < 0)
        return text;
    const int slashes = text.indexOf(QLatin1String("//"));
    const int begin = slashes >= 0 && slashes < at ? slashes + 2 : 0;
    const int colon = text.indexOf(QLatin1Char(':'), begin);
    if (colon < 0 || colon > at)
        return text;
    return text.left(colon + 1) + mask() + text.mid(at);
}

QVariant Secrets::shown(const QString &path, const QVariant &value)
{
    if (!value.isValid())
        return value;
    if (isSecretPath(path))
        return mask();
    if (value.userType() == QMetaType::QString)
        return withoutPassword(value.toString());
    return value;
}

SecretRanges::SecretRanges(const QByteArray &bytes, const Document &document)
{
    findPassPhrases(bytes);
    findPasswords(bytes);
    findInTree(document);
    merge();
}

bool SecretRanges::covers(int offset) const
{
    const auto it = std::upper_bound(m_ranges.begin(), m_ranges.end(), offset,
                                     [](int at, const Range &range) { return at < range.end; });
    return it != m_ranges.end() && it->begin <= offset;
}

void SecretRanges::findPassPhrases(const QByteArray &bytes)
{
    for (int i = 0; i < bytes.size(); ++i) {
        if ((bytes.at(i) | 0x20) != 'p')
            continue;
        const int nameEnd = endOfName(bytes, i);
        const int begin = nameEnd < 0 ? -1 : beginOfValue(bytes, nameEnd);
        if (begin >= 0)
            m_ranges.push_back({ begin, endOfValue(bytes, begin) });
    }
}

// The password of an address stands between the first colon behind "//", or behind the quote, and the
// last @ of the text.
void SecretRanges::findPasswords(const QByteArray &bytes)
{
    const int longestAddress = 4096;
    const auto endsText = [](char byte) { return byte == '"' || byte == '\n'; };
    for (int at = bytes.indexOf('@'); at >= 0; at = bytes.indexOf('@', at + 1)) {
        int begin = at;
        while (begin > 0 && at - begin < longestAddress && !endsText(bytes.at(begin - 1)))
            --begin;
        const QByteArray address = QByteArray::fromRawData(bytes.constData() + begin, at - begin);
        const int slashes = address.indexOf("//");
        const int colon = address.indexOf(':', slashes < 0 ? 0 : slashes);
        if (colon >= 0)
            m_ranges.push_back({ begin + colon + 1, at });
    }
}

void SecretRanges::findInTree(const Document &document)
{
    for (const Node &node : document.nodes) {
        for (const Node::Child &child : node.children) {
            const Node &value = document.at(child);
            if (!child.key.isEmpty() && value.length() > 0 && Secrets::isSecretKey(child.key))
                m_ranges.push_back({ value.begin, value.end });
        }
    }
}

void SecretRanges::merge()
{
    std::sort(m_ranges.begin(), m_ranges.end(),
              [](const Range &a, const Range &b) { return a.begin < b.begin; });
    std::vector<Range> merged;
    for (const Range &range : m_ranges) {
        if (!merged.empty() && range.begin <= merged.back().end)
            merged.back().end = qMax(merged.back().end, range.end);
        else
            merged.push_back(range);
    }
    m_ranges.swap(merged);
}
