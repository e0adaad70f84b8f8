// SPDX-License-Identifier: MIT
#include "json/jsonlexer.h"

#include "global/qtcompat.h"

#include <cfloat>
#include <cstring>

namespace {

inline bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

inline bool isLowerCaseLetter(char byte)
{
    return byte >= 'a' && byte <= 'z';
}

inline bool isFloatingPart(char byte)
{
    return byte == '.' || byte == 'e' || byte == 'E';
}

inline bool isNumberPart(char byte)
{
    return isDigit(byte) || byte == '-' || byte == '+' || isFloatingPart(byte);
}

// The letter b counts as a blank on purpose, because files rely on it.
inline bool isBlank(char byte)
{
    if (byte > ' ')
        return byte == 'b';
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

// The token of a lower-case word, T_ERROR for one without a meaning.
int keywordToken(const char *word, qptrdiff size)
{
    if (size == 4 && std::memcmp(word, "true", 4) == 0)
        return T_TRUE;
    if (size == 5 && std::memcmp(word, "false", 5) == 0)
        return T_FALSE;
    if (size == 4 && std::memcmp(word, "null", 4) == 0)
        return T_NULL;
    return T_ERROR;
}

// The first `byte` before `end`, null when there is none.
inline const char *find(char byte, const char *p, const char *end)
{
    return static_cast<const char *>(std::memchr(p, byte, size_t(end - p)));
}

inline int hexDigit(char byte)
{
    if (isDigit(byte))
        return byte - '0';
    const int letter = (byte | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

// The low byte of two characters read as a base 16 number. The toolkit decides what anything else than
// two hexadecimal digits is: it accepts a sign or a blank as part of a number.
inline uint hexByte(const char *pair)
{
    const int high = hexDigit(pair[0]);
    const int low = hexDigit(pair[1]);
    if ((high | low) >= 0)
        return uint(high * 16 + low);
    return uint(QByteArray(pair, 2).toInt(nullptr, 16)) & 0xffu;
}

// Reads up to nine digits after at most one minus sign, which always fit. Returns false for any other
// text.
bool readShortInteger(const char *p, const char *end, int *value)
{
    const bool isNegative = *p == '-';
    if (isNegative)
        ++p;
    if (p == end || end - p > 9)
        return false;
    int magnitude = 0;
    for (; p != end; ++p) {
        if (!isDigit(*p))
            return false;
        magnitude = magnitude * 10 + (*p - '0');
    }
    *value = isNegative ? -magnitude : magnitude;
    return true;
}

// Reads up to 15 digits with a point between them, after at most one minus sign. They and the power of ten
// are exact in a double, so that their quotient is the double that is nearest. Returns false for any other
// text that has a point or an exponent, and where the processor computes with more digits than a double
// has.
bool readShortDecimal(const char *p, const char *end, double *value)
{
    const bool isNegative = *p == '-';
    if (isNegative)
        ++p;
    if (FLT_EVAL_METHOD != 0 || end - p < 3 || end - p > 16 || !isDigit(*p) || !isDigit(end[-1]))
        return false;
    qint64 digits = 0;
    qint64 divisor = 0; // none before the point
    for (; p != end; ++p) {
        if (*p == '.' && divisor == 0) {
            divisor = 1;
            continue;
        }
        if (!isDigit(*p))
            return false;
        digits = digits * 10 + (*p - '0');
        divisor *= 10;
    }
    const double magnitude = double(digits) / double(divisor);
    *value = isNegative ? -magnitude : magnitude;
    return true;
}

// The text is copied: the toolkit's conversions want it to end with a NUL.
QVariant floatingValue(const char *begin, const char *end)
{
    double shortDecimal;
    if (readShortDecimal(begin, end, &shortDecimal))
        return shortDecimal;
    return QtCompat::toDouble(QByteArray(begin, int(end - begin)));
}

QVariant integerValue(const char *begin, const char *end)
{
    int shortInteger;
    if (readShortInteger(begin, end, &shortInteger))
        return shortInteger;
    const QByteArray text(begin, int(end - begin));
    bool ok = false;
    const int value = text.toInt(&ok);
    if (ok)
        return value;
    const qlonglong longValue = text.toLongLong(&ok);
    if (ok)
        return longValue;
    return QtCompat::toDouble(text);
}

inline quint32 fourBytes(const char *bytes)
{
    quint32 value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// Of the size, and of the bytes at the beginning, in the middle and at the end. A collision costs no more
// than a string of its own for the key.
inline quint32 keyHash(const char *key, int size)
{
    const quint32 factor = 0x9e3779b1;
    quint32 hash = quint32(size);
    if (size >= 4) {
        hash = (hash ^ fourBytes(key)) * factor;
        hash = (hash ^ fourBytes(key + size / 2 - 2)) * factor;
        hash = (hash ^ fourBytes(key + size - 4)) * factor;
    } else {
        for (int i = 0; i < size; ++i)
            hash = (hash ^ uchar(key[i])) * factor;
    }
    return hash >> 16;
}

} // namespace

JsonLexer::JsonLexer(const QByteArray &data)
    : m_data(data),
      m_current(m_data.constData()),
      m_end(m_current + m_data.size()),
      m_line(1),
      m_token(T_ERROR),
      m_knownKeys(KnownKeys)
{
}

QVariant JsonLexer::value() const
{
    if (m_token == T_STRING)
        return m_text;
    return m_token == T_NUMBER ? m_number : QVariant();
}

inline void JsonLexer::skipBlanks()
{
    const char *p = m_current;
    for (; p != m_end; ++p) {
        while (m_end - p > 4 && std::memcmp(p, "    ", 4) == 0)
            p += 4;
        if (!isBlank(*p))
            break;
        if (*p == '\n')
            ++m_line;
    }
    m_current = p;
}

int JsonLexer::scanToken()
{
    skipBlanks();
    if (m_current == m_end)
        return T_END_OF_FILE;
    switch (*m_current) {
    case '"':
        return scanString();
    case '{':
        return scanByte(T_LBRACE);
    case '}':
        return scanByte(T_RBRACE);
    case '[':
        return scanByte(T_LBRACKET);
    case ']':
        return scanByte(T_RBRACKET);
    case ':':
        return scanByte(T_COLON);
    case ',':
        return scanByte(T_COMMA);
    case '+':
    case '-':
        return scanNumber();
    }
    if (isDigit(*m_current))
        return scanNumber();
    return isLowerCaseLetter(*m_current) ? scanKeyword() : T_ERROR;
}

// Four bytes after a "u" are its digits, whatever they are. A "u" too near to the end of the input means
// itself.
inline int JsonLexer::escapeSize(const char *backslash) const
{
    return backslash[1] == 'u' && m_end - backslash > 6 ? 6 : 2;
}

// The quote that ends the string at `text`, null when there is none, and the code units between the two:
// one for each byte or escape.
inline const char *JsonLexer::findQuote(const char *text, int *units) const
{
    const char *quote = find('"', text, m_end);
    while (quote) {
        const char *const backslash = find('\\', text, quote);
        if (!backslash) {
            *units += int(quote - text);
            return quote;
        }
        *units += int(backslash - text) + 1;
        text = backslash + escapeSize(backslash);
        if (text > quote)
            quote = find('"', text, m_end);
    }
    return nullptr;
}

// The keys of a configuration come again in every application. They share one string each, which saves
// memory and a twentieth of the loading.
inline void JsonLexer::takeKey(const char *bytes, int size)
{
    KnownKey &known = m_knownKeys[keyHash(bytes, size) % KnownKeys];
    const bool isKnown = known.bytes && known.text.size() == size
        && std::memcmp(known.bytes, bytes, size_t(size)) == 0;
    if (!isKnown) {
        known.bytes = bytes;
        known.text = QtCompat::fromAsciiBytes(bytes, size);
    }
    m_text = known.text;
}

int JsonLexer::scanString()
{
    const char *const text = m_current + 1;
    int units = 0;
    const char *const quote = findQuote(text, &units);
    if (!quote) {
        m_current = m_end;
        return T_ERROR;
    }
    m_current = quote + 1;
    if (units != quote - text)
        m_text = unescaped(text, quote, units);
    else if (m_current != m_end && *m_current == ':')
        takeKey(text, units);
    else
        m_text = QtCompat::fromAsciiBytes(text, units);
    return T_STRING;
}

QString JsonLexer::unescaped(const char *text, const char *quote, int units) const
{
    QString result(units, Qt::Uninitialized);
    QChar *out = result.data();
    while (text != quote) {
        if (*text != '\\') {
            *out++ = QtCompat::charFromAscii(*text++);
        } else {
            *out++ = escapedChar(text);
            text += escapeSize(text);
        }
    }
    return result;
}

QChar JsonLexer::escapedChar(const char *backslash) const
{
    const char letter = backslash[1];
    switch (letter) {
    case 'u':
        if (escapeSize(backslash) == 2)
            break;
        return QChar(ushort(hexByte(backslash + 2) << 8 | hexByte(backslash + 4)));
    case 'b':
        return QLatin1Char('\b');
    case 'f':
        return QLatin1Char('\f');
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    }
    return QtCompat::charFromAscii(letter);
}

int JsonLexer::scanNumber()
{
    const char *const first = m_current;
    bool isFloating = false;
    for (; m_current != m_end && isNumberPart(*m_current); ++m_current)
        isFloating = isFloating || isFloatingPart(*m_current);
    m_number = isFloating ? floatingValue(first, m_current) : integerValue(first, m_current);
    return T_NUMBER;
}

int JsonLexer::scanKeyword()
{
    const char *const first = m_current;
    while (m_current != m_end && isLowerCaseLetter(*m_current))
        ++m_current;
    return keywordToken(first, m_current - first);
}
