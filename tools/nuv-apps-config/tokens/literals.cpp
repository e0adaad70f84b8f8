// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tokens/literals.h"

#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/tokens/numbers.h"
#include "tools/nuv-apps-config/text/utf8.h"

#include <cstring>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte)
{
    return isDigit(byte) || ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'f');
}

const char *skipDigits(const char *p, const char *end)
{
    while (p != end && isDigit(*p))
        ++p;
    return p;
}

// Whether JSON knows such a number, but for the zeros in front.
bool isNumber(const char *p, const char *end)
{
    if (p != end && *p == '-')
        ++p;
    const char *digits = p;
    p = skipDigits(p, end);
    if (p == digits)
        return false;
    if (p != end && *p == '.') {
        digits = ++p;
        p = skipDigits(p, end);
        if (p == digits)
            return false;
    }
    if (p != end && (*p | 0x20) == 'e') {
        ++p;
        if (p != end && (*p == '+' || *p == '-'))
            ++p;
        digits = p;
        p = skipDigits(p, end);
        if (p == digits)
            return false;
    }
    return p == end;
}

bool hasLeadingZero(const char *p, const char *end)
{
    if (*p == '-')
        ++p;
    return end - p > 1 && p[0] == '0' && isDigit(p[1]);
}

QString numberText(const QVariant &value)
{
    if (value.userType() == QMetaType::Double)
        return QString::number(value.toDouble(), 'g', 15);
    return value.toString();
}

Edit change(int offset, int removed, const QByteArray &inserted)
{
    Edit edit;
    edit.offset = offset;
    edit.removed = removed;
    edit.inserted = inserted;
    return edit;
}

// Without the quotes around it.
QByteArray escaped(const QString &characters)
{
    const QByteArray quoted = Edits::quoted(characters);
    return quoted.mid(1, quoted.size() - 2);
}

class TextCheck
{
public:
    TextCheck(const SourceText &source, int end, Findings &findings)
        : m_source(source), m_bytes(source.bytes().constData()), m_end(end), m_findings(findings)
    {
    }

    void run(int begin)
    {
        for (int i = begin; i < m_end;) {
            const unsigned char byte = static_cast<unsigned char>(m_bytes[i]);
            if (byte == '\\')
                i = escape(i);
            else if (byte >= 0x80)
                i = nonAscii(i);
            else if (byte < 0x20)
                i = control(i);
            else
                ++i;
        }
    }

private:
    int escape(int i);
    int unicodeEscape(int i);
    int nonAscii(int i);
    int control(int i);

    const SourceText &m_source;
    const char *m_bytes;
    int m_end; ///< of the text, without its quote
    Findings &m_findings;
};

int TextCheck::escape(int i)
{
    const char letter = m_bytes[i + 1];
    if (letter == 'u')
        return unicodeEscape(i);
    if (!std::strchr("\"\\/bfnrt", letter))
        m_findings
            .add("unescaped-backslash", i, 2,
                 text("the backslash is dropped, and what follows it stays"),
                 text("write two backslashes for one"))
            .edit = change(i, 0, "\\");
    return i + 2;
}

int TextCheck::unicodeEscape(int i)
{
    if (i + 6 >= m_source.size()) {
        m_findings
            .add("short-unicode-escape", i, 2,
                 text("\\u too near the end of the file: the u is read as the letter u"),
                 text("write two backslashes for one"))
            .edit = change(i, 0, "\\");
        return i + 2;
    }
    for (int digit = i + 2; digit < i + 6; ++digit) {
        if (isHexDigit(m_bytes[digit]))
            continue;
        m_findings
            .add("bad-unicode-escape", i, 6,
                 text("\\u takes the four bytes after it, and they are not hexadecimal digits"),
                 text("write two backslashes for one"))
            .edit = change(i, 0, "\\");
        break;
    }
    return i + 6;
}

// One finding for all that follow each other.
int TextCheck::nonAscii(int i)
{
    const int begin = i;
    const char *const first = m_bytes + begin;
    while (i < m_end && static_cast<unsigned char>(m_bytes[i]) >= 0x80)
        ++i;
    const int size = i - begin;
    if (!Utf8::isValid(first, size)) {
        m_findings
            .add("non-ascii-text", begin, size, text("a character outside ASCII"),
                 text("the library reads it as Latin-1; write \\u and four digits"))
            .edit = change(begin, size, escaped(QString::fromLatin1(first, size)));
        return i;
    }
    m_findings
        .add("non-ascii-text", begin, size,
             QString(QLatin1String("%1 in UTF-8 arrives as %2 wrong characters"))
                 .arg(Utf8::count(first, size) == 1
                          ? text("a character")
                          : QString(QLatin1String("%1 characters")).arg(Utf8::count(first, size)))
                 .arg(size),
             text("the library reads each byte as one Latin-1 character; write \\u and four "
                  "digits"))
        .edit = change(begin, size, escaped(QString::fromUtf8(first, size)));
    return i;
}

int TextCheck::control(int i)
{
    const QByteArray escape = escaped(QString(QLatin1Char(m_bytes[i])));
    m_findings
        .add("raw-control-character", i, 1,
             m_bytes[i] == '\n' ? text("a line break inside a string becomes part of it")
                                : text("a control character inside a string becomes part of it"),
             text("write ") + QString::fromLatin1(escape))
        .edit = change(i, 1, escape);
    return i + 1;
}

} // namespace

bool Literals::isPlainNumber(const char *begin, const char *end)
{
    return isNumber(begin, end);
}

void Literals::checkText(const SourceText &source, int begin, int end, Findings &findings)
{
    TextCheck(source, end - 1, findings).run(begin + 1);
}

void Literals::checkNumber(const SourceText &source, int begin, int end, const QVariant &value,
                           Findings &findings)
{
    const char *const first = source.bytes().constData() + begin;
    const char *const last = source.bytes().constData() + end;
    const QByteArray written = QByteArray::fromRawData(first, end - begin);
    if (!isNumber(first, last)) {
        const QByteArray meant = Numbers::meant(written);
        findings
            .add("odd-number", begin, end - begin,
                 (meant.isEmpty()
                      ? text("this is not a number; the library reads ")
                      : text("JSON does not write a number like this; the library reads "))
                     + numberText(value),
                 meant.isEmpty()
                     ? text("one number belongs here; put it in quotes if a string is meant")
                     : text("write ") + QString::fromLatin1(meant))
            .edit = Edit { begin, end - begin, meant.isEmpty() ? '"' + written + '"' : meant };
    } else if (hasLeadingZero(first, last)) {
        const QByteArray plain = Numbers::meant(written);
        findings
            .add("leading-zero", begin, end - begin,
                 text("a number that begins with 0; the library reads ") + numberText(value),
                 text("write ") + QString::fromLatin1(plain))
            .edit = Edit { begin, end - begin, plain };
    } else if (value.userType() == QMetaType::Double
               && !std::memchr(first, '.', size_t(last - first))
               && !std::memchr(first, 'e', size_t(last - first))
               && !std::memchr(first, 'E', size_t(last - first))) {
        findings.add("lost-digits", begin, end - begin,
                     text("more digits than an integer can have; the library reads ")
                         + numberText(value));
    }
}
