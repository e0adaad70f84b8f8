#include "json/jsonlexer.h"

#include "global/qtcompat.h"
#include "json/keyhash.h"

#include <cfloat>
#include <cstring>

namespace {

// What a byte means where a token may begin. A byte that is a whole token has its JsonToken code as
// its class, so the other classes begin behind those codes.
enum ByteClass {
    Other = 0, // begins no token
    Blank = 13, // skipped
    LineFeed, // skipped, and begins a line
    Quote, // begins a string
    Letter, // begins a keyword
    Sign, // begins a number, as does a digit
    ClassMask = 0x1f,

    // What a byte means inside a number, in the same table.
    NumberPart = 0x20, // belongs to it
    FloatingPart = 0x40 // and makes it a double
};

// The table's legend: no Other, bl Blank, lf LineFeed, qu Quote, le Letter, di a digit, si a sign,
// po the point, ex and EX the exponent's letters; the rest are tokens.
const quint8 no = Other, bl = Blank, lf = LineFeed, qu = Quote, le = Letter;
const quint8 di = Sign | NumberPart, si = Sign | NumberPart;
const quint8 po = Other | NumberPart | FloatingPart;
const quint8 ex = Letter | NumberPart | FloatingPart, EX = Other | NumberPart | FloatingPart;
const quint8 ob = T_LBRACE, cb = T_RBRACE, oa = T_LBRACKET, ca = T_RBRACKET;
const quint8 cl = T_COLON, cm = T_COMMA;

// The letter b is blank: a lone b between tokens has always been skipped, and files rely on it.
// clang-format off
const quint8 byteClasses[256] = {
//  0   1   2   3   4   5   6   7   8   9   a   b   c   d   e   f
    no, no, no, no, no, no, no, no, no, bl, lf, no, no, bl, no, no, // 0
    no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, // 1
    bl, no, qu, no, no, no, no, no, no, no, no, si, cm, si, po, no, // 2   ! " # $ % & ' ( ) * + , - . /
    di, di, di, di, di, di, di, di, di, di, cl, no, no, no, no, no, // 3  0 to 9 : ; < = > ?
    no, no, no, no, no, EX, no, no, no, no, no, no, no, no, no, no, // 4  @ A to O
    no, no, no, no, no, no, no, no, no, no, no, oa, no, ca, no, no, // 5  P to Z [ \ ] ^ _
    no, le, bl, le, le, ex, le, le, le, le, le, le, le, le, le, le, // 6  ` a to o
    le, le, le, le, le, le, le, le, le, le, le, ob, no, cb, no      // 7  p to z { | } ~, and Other to 255
};
// clang-format on

inline quint8 byteClass(char byte)
{
    return byteClasses[static_cast<uchar>(byte)];
}

inline bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

inline bool isLowerCaseLetter(char byte)
{
    return byte >= 'a' && byte <= 'z';
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

// The first `byte` in front of `end`, null when there is none.
inline const char *find(char byte, const char *p, const char *end)
{
    return static_cast<const char *>(std::memchr(p, byte, size_t(end - p)));
}

// The first byte that is no space in front of `end`, or `end`. Indentation is long, and often
// comes in fours.
inline const char *skipSpaces(const char *p, const char *end)
{
    while (end - p >= 4 && std::memcmp(p, "    ", 4) == 0)
        p += 4;
    while (p != end && *p == ' ')
        ++p;
    return p;
}

inline int hexDigit(char byte)
{
    if (isDigit(byte))
        return byte - '0';
    const int letter = (byte | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

// The low byte of two characters read as a base 16 number. Whatever is not two hexadecimal digits is
// the toolkit's to judge: it takes a sign or a blank for part of a number.
inline uint hexByte(const char *pair)
{
    const int high = hexDigit(pair[0]);
    const int low = hexDigit(pair[1]);
    if ((high | low) >= 0)
        return uint(high * 16 + low);
    return uint(QByteArray(pair, 2).toInt(nullptr, 16)) & 0xffu;
}

// Reads up to nine digits behind at most one minus sign, which always fit. Returns the byte behind
// them, null when the number is anything else or goes on.
inline const char *readShortInteger(const char *p, const char *end, int *value)
{
    const bool isNegative = *p == '-';
    if (isNegative)
        ++p;
    const char *const limit = p + qMin<qptrdiff>(end - p, 9);
    const char *const first = p;
    int magnitude = 0;
    for (; p != limit && isDigit(*p); ++p)
        magnitude = magnitude * 10 + (*p - '0');
    if (p == first || (p != end && (byteClass(*p) & NumberPart)))
        return nullptr;
    *value = isNegative ? -magnitude : magnitude;
    return p;
}

// A decimal fraction of up to 15 digits without exponent. Its digits and its power of ten are exact
// as doubles, so that their quotient is rounded once, to what a full conversion gives.
bool readShortDecimal(const char *p, const char *end, double *value)
{
    static const double powersOfTen[] = { 1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14 };
    const bool isNegative = *p == '-';
    if (isNegative)
        ++p;
    if (FLT_EVAL_METHOD != 0 || end - p > 16)
        return false;
    const char *const first = p;
    const char *point = nullptr;
    qint64 digits = 0;
    for (; p != end; ++p) {
        if (isDigit(*p))
            digits = digits * 10 + (*p - '0');
        else if (*p == '.' && !point && p != first)
            point = p;
        else
            return false;
    }
    if (!point || point + 1 == end)
        return false;
    const double magnitude = double(digits) / powersOfTen[end - point - 1];
    *value = isNegative ? -magnitude : magnitude;
    return true;
}

// The text is copied: the toolkit's conversions want it to end with a NUL.
QVariant integerValue(const char *begin, const char *end)
{
    const QByteArray text(begin, int(end - begin));
    bool ok = false;
    const int value = text.toInt(&ok);
    if (ok)
        return value;
    const qlonglong longValue = text.toLongLong(&ok);
    if (ok)
        return longValue;
    return text.toDouble();
}

QVariant floatingValue(const char *begin, const char *end)
{
    double value;
    if (readShortDecimal(begin, end, &value))
        return value;
    return QByteArray(begin, int(end - begin)).toDouble();
}

quint64 eightBytes(const char *bytes)
{
    quint64 value;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

// Keys are short, and memcmp() would cost more than it does for them. The last eight bytes may have been
// compared in part before.
bool areEqual(const char *a, const char *b, int size)
{
    int i = 0;
    if (size >= 8) {
        for (; i < size - 8; i += 8) {
            if (eightBytes(a + i) != eightBytes(b + i))
                return false;
        }
        return eightBytes(a + size - 8) == eightBytes(b + size - 8);
    }
    while (i != size && a[i] == b[i])
        ++i;
    return i == size;
}

} // namespace

JsonLexer::JsonLexer(const QByteArray &data)
    : m_data(data),
      m_current(m_data.constData()),
      m_end(m_current + m_data.size()),
      m_line(1),
      m_token(T_ERROR),
      m_buckets()
{
}

QVariant JsonLexer::value() const
{
    if (m_token == T_STRING)
        return m_text;
    return m_token == T_NUMBER ? m_number : QVariant();
}

inline int JsonLexer::bucket(const char *key, int size)
{
    return int(keyHash(reinterpret_cast<const uchar *>(key), size) % KeyBuckets);
}

// The keys of a configuration come again in every application, and in one string each. A key that is
// known is plain text, so it is not searched for escapes again.
inline int JsonLexer::scanKey(const char *text, const char *quote)
{
    const int size = int(quote - text);
    quint8 &number = m_buckets[bucket(text, size)];
    if (number == 0)
        return scanNewKey(text, quote, number);
    const KnownKey &known = m_knownKeys[number - 1];
    if (known.size != size || !areEqual(known.bytes, text, size))
        return scanNewKey(text, quote, number);
    m_text = known.text;
    return T_STRING;
}

int JsonLexer::scanString()
{
    const char *const text = m_current + 1;
    const char *const quote = find('"', text, m_end);
    if (!quote)
        return unterminatedString();
    m_current = quote + 1;
    if (m_current != m_end && *m_current == ':')
        return scanKey(text, quote);
    if (find('\\', text, quote))
        return scanEscapedString(text, quote);
    m_text = QtCompat::fromAsciiBytes(text, int(quote - text));
    return T_STRING;
}

// The key takes the place of what its bucket held.
int JsonLexer::scanNewKey(const char *text, const char *quote, quint8 &number)
{
    if (find('\\', text, quote))
        return scanEscapedString(text, quote);
    const int size = int(quote - text);
    m_text = QtCompat::fromAsciiBytes(text, size);
    if (number == 0) {
        m_knownKeys.append(KnownKey());
        number = quint8(m_knownKeys.size());
    }
    KnownKey &known = m_knownKeys[number - 1];
    known.bytes = text;
    known.size = size;
    known.text = m_text;
    return T_STRING;
}

int JsonLexer::scanNumber()
{
    const char *const first = m_current;
    int shortInteger;
    const char *p = readShortInteger(first, m_end, &shortInteger);
    if (p) {
        m_number = shortInteger;
        m_current = p;
        return T_NUMBER;
    }
    p = first;
    quint8 classes = 0;
    while (p != m_end && (byteClass(*p) & NumberPart))
        classes |= byteClass(*p++);
    m_number = classes & FloatingPart ? floatingValue(first, p) : integerValue(first, p);
    m_current = p;
    return T_NUMBER;
}

int JsonLexer::scanKeyword()
{
    const char *const first = m_current;
    const char *p = first;
    while (p != m_end && isLowerCaseLetter(*p))
        ++p;
    m_current = p;
    return keywordToken(first, p - first);
}

int JsonLexer::scanToken()
{
    const char *p = m_current;
    int kind = Blank;
    while (p != m_end) {
        kind = byteClass(*p) & ClassMask;
        if (kind == LineFeed) {
            ++m_line;
            p = skipSpaces(p + 1, m_end);
        } else if (kind == Blank) {
            ++p;
        } else {
            break;
        }
    }
    m_current = p;
    if (p == m_end)
        return T_END_OF_FILE;

    switch (kind) {
    case Quote:
        return scanString();
    case Sign:
        return scanNumber();
    case Letter:
        return scanKeyword();
    case Other:
        return T_ERROR;
    default:
        ++m_current;
        return kind;
    }
}

// Reads up to `quote`, the first one in the input, or, where an escape takes that for its own, to the
// next.
int JsonLexer::scanEscapedString(const char *text, const char *quote)
{
    ushort *out = roomBehind(0, quote - text);
    for (;;) {
        // Where there is one escape, the next is often near; else it is worth a search.
        const char *const near = text + qMin<qptrdiff>(quote - text, 16);
        while (text != near && *text != '\\')
            *out++ = QtCompat::charFromAscii(*text++).unicode();
        if (text == near && text != quote) {
            const char *const backslash = find('\\', text, quote);
            const char *const stop = backslash ? backslash : quote;
            while (text != stop)
                *out++ = QtCompat::charFromAscii(*text++).unicode();
        }
        if (text == quote)
            break;
        text = readEscape(text + 1, out++);
        if (text <= quote)
            continue;
        quote = find('"', text, m_end);
        if (!quote)
            return unterminatedString();
        out = roomBehind(out - m_unescaped.constData(), quote - text);
    }
    m_text = QString(reinterpret_cast<const QChar *>(m_unescaped.constData()),
                     int(out - m_unescaped.constData()));
    m_current = quote + 1;
    return T_STRING;
}

// Where the unit behind the first `used` ones goes, with room for as many more as there are bytes: none
// of them gives more than one.
ushort *JsonLexer::roomBehind(qptrdiff used, qptrdiff bytes)
{
    if (used + bytes > m_unescaped.size())
        m_unescaped.resize(int(used + bytes));
    return m_unescaped.data() + used;
}

int JsonLexer::unterminatedString()
{
    m_current = m_end;
    return T_ERROR;
}

// Stores what the escape stands for and returns the byte behind it. Four bytes behind a "u" are taken
// for its digits whatever they are; a "u" too near the end of the input stands for itself, as every
// letter without a meaning does.
const char *JsonLexer::readEscape(const char *letter, ushort *unit) const
{
    if (*letter == 'u' && m_end - letter > 5) {
        *unit = ushort(hexByte(letter + 1) << 8 | hexByte(letter + 3));
        return letter + 5;
    }
    switch (*letter) {
    case 'b':
        *unit = '\b';
        break;
    case 'f':
        *unit = '\f';
        break;
    case 'n':
        *unit = '\n';
        break;
    case 'r':
        *unit = '\r';
        break;
    case 't':
        *unit = '\t';
        break;
    default:
        *unit = QtCompat::charFromAscii(*letter).unicode();
    }
    return letter + 1;
}
