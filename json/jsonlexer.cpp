#include "json/jsonlexer.h"

#include "global/qtcompat.h"

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
int keywordToken(const char *word, int size)
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

// The first byte that is no space in front of `end`, or `end`. Indentation is long, and comes in
// fours.
inline const char *skipSpaces(const char *p, const char *end)
{
    while (end - p >= 4 && std::memcmp(p, "    ", 4) == 0)
        p += 4;
    while (p != end && *p == ' ')
        ++p;
    return p;
}

int hexDigit(char byte)
{
    if (isDigit(byte))
        return byte - '0';
    const char letter = char(byte | 0x20);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// The low byte of two characters read as a base 16 number. Whatever is not two hexadecimal digits is
// the toolkit's to judge: it takes a sign or a blank for part of a number.
uint hexByte(const char *pair)
{
    const int high = hexDigit(pair[0]);
    const int low = hexDigit(pair[1]);
    if (high >= 0 && low >= 0)
        return uint(high * 16 + low);
    return uint(QByteArray(pair, 2).toInt(nullptr, 16)) & 0xffu;
}

// Up to nine digits behind at most one minus sign, which always fit; false for anything else.
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
    int value;
    if (readShortInteger(begin, end, &value))
        return value;
    const QByteArray text(begin, int(end - begin));
    bool ok = false;
    value = text.toInt(&ok);
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

// Which bucket a key belongs into. Its size and three of its bytes spread the keys of a configuration
// well: 48 of them share no more than three buckets.
inline uint bucketOf(const char *key, int size, uint buckets)
{
    if (size == 0)
        return 0;
    uint hash = uint(size);
    hash = hash * 31 + static_cast<uchar>(key[size / 4]);
    hash = hash * 31 + static_cast<uchar>(key[size / 2]);
    hash = hash * 31 + static_cast<uchar>(key[size - 1]);
    return hash % buckets;
}

} // namespace

JsonLexer::JsonLexer(const QByteArray &data)
    : m_data(data),
      m_current(m_data.constData()),
      m_end(m_current + m_data.size()),
      m_line(1),
      m_buckets()
{
}

inline int JsonLexer::acceptString(const QString &text, const char *quote)
{
    m_value = text;
    m_current = quote + 1;
    return T_STRING;
}

// The entry for the key in its bucket, which may hold another key, or none yet.
inline JsonLexer::KnownKey *JsonLexer::knownKey(const char *key, int size)
{
    quint8 &number = m_buckets[bucketOf(key, size, KeyBuckets)];
    if (number == 0) {
        m_knownKeys.append(KnownKey());
        number = quint8(m_knownKeys.size());
    }
    return &m_knownKeys[number - 1];
}

// The keys of a configuration come again in every application, and in one string each. A key that is
// known is plain text, so it is not searched for escapes again.
int JsonLexer::scanString()
{
    const char *const text = m_current + 1;
    const char *const quote = find('"', text, m_end);
    if (!quote)
        return unterminatedString();
    const int size = int(quote - text);

    KnownKey *known = nullptr;
    if (quote + 1 != m_end && quote[1] == ':') {
        known = knownKey(text, size);
        if (known->size == size && std::memcmp(known->bytes, text, size_t(size)) == 0)
            return acceptString(known->text, quote);
    }

    const char *const backslash = find('\\', text, quote);
    if (backslash)
        return scanEscapedString(text, quote, backslash);
    const QString plainText = QtCompat::fromAsciiBytes(text, size);
    if (known) {
        known->bytes = text;
        known->size = size;
        known->text = plainText;
    }
    return acceptString(plainText, quote);
}

int JsonLexer::scanNumber()
{
    const char *const first = m_current;
    const char *p = first;
    quint8 classes = 0;
    while (p != m_end && (byteClass(*p) & NumberPart))
        classes |= byteClass(*p++);
    m_value = classes & FloatingPart ? floatingValue(first, p) : integerValue(first, p);
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
    return keywordToken(first, int(p - first));
}

int JsonLexer::nextToken()
{
    if (m_value.isValid())
        m_value.clear();

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

// Goes from backslash to backslash. An escape may take the quote that was found for its own; then the
// next one is looked for.
int JsonLexer::scanEscapedString(const char *text, const char *quote, const char *backslash)
{
    m_text.resize(0);
    while (backslash) {
        appendText(text, backslash);
        if (backslash + 1 == m_end)
            return unterminatedString();
        text = appendEscape(backslash + 1);
        if (text > quote)
            quote = find('"', text, m_end);
        if (!quote)
            return unterminatedString();
        backslash = find('\\', text, quote);
    }
    appendText(text, quote);
    return acceptString(QString(reinterpret_cast<const QChar *>(m_text.constData()), m_text.size()),
                        quote);
}

int JsonLexer::unterminatedString()
{
    m_current = m_end;
    return T_ERROR;
}

void JsonLexer::appendText(const char *bytes, const char *end)
{
    const int oldSize = m_text.size();
    m_text.resize(oldSize + int(end - bytes));
    ushort *out = m_text.data() + oldSize;
    for (; bytes != end; ++bytes)
        *out++ = QtCompat::charFromAscii(*bytes).unicode();
}

// Appends what the escape stands for and returns the byte behind it. Four bytes behind a "u" are
// taken for its digits whatever they are; a "u" too near the end of the input stands for itself, as
// every letter without a meaning does.
const char *JsonLexer::appendEscape(const char *letter)
{
    switch (*letter) {
    case 'b':
        m_text.append('\b');
        return letter + 1;
    case 'f':
        m_text.append('\f');
        return letter + 1;
    case 'n':
        m_text.append('\n');
        return letter + 1;
    case 'r':
        m_text.append('\r');
        return letter + 1;
    case 't':
        m_text.append('\t');
        return letter + 1;
    case 'u':
        if (m_end - letter > 5) {
            m_text.append(ushort(hexByte(letter + 1) << 8 | hexByte(letter + 3)));
            return letter + 5;
        }
        break;
    }
    m_text.append(QtCompat::charFromAscii(*letter).unicode());
    return letter + 1;
}
