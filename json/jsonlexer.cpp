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

// Not zero when one of the eight bytes of `word` equals `byte`.
inline quint64 matches(quint64 word, char byte)
{
    const quint64 ones = Q_UINT64_C(0x0101010101010101);
    const quint64 difference = word ^ (ones * static_cast<uchar>(byte));
    return (difference - ones) & ~difference & (ones << 7);
}

// The first quote or backslash in front of `end`, or `end`. Long strings pass eight bytes at a time.
const char *findQuoteOrBackslash(const char *p, const char *end)
{
    for (; end - p >= 8; p += 8) {
        quint64 word;
        std::memcpy(&word, p, sizeof word);
        if (matches(word, '"') | matches(word, '\\'))
            break;
    }
    while (p != end && *p != '"' && *p != '\\')
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

// Which of the buckets, a power of two, a key belongs into. Its size and three of its bytes spread
// the keys of a configuration well.
inline int bucketOf(const char *key, int size, int buckets)
{
    if (size == 0)
        return 0;
    const uint first = static_cast<uchar>(key[0]);
    const uint middle = static_cast<uchar>(key[size / 2]);
    const uint last = static_cast<uchar>(key[size - 1]);
    return int((uint(size) + first * 7 + middle * 31 + last * 3) & uint(buckets - 1));
}

} // namespace

JsonLexer::JsonLexer(const QByteArray &data) : m_data(data), m_line(1), m_position(0) {}

int JsonLexer::nextToken()
{
    if (m_value.isValid())
        m_value.clear();

    const char *p = current();
    const char *const last = end();
    for (; p != last; ++p) {
        const int kind = byteClass(*p) & ClassMask;
        if (kind == LineFeed)
            ++m_line;
        else if (kind != Blank)
            break;
    }
    moveTo(p);
    if (p == last)
        return T_END_OF_FILE;

    const int kind = byteClass(*p) & ClassMask;
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
        ++m_position;
        return kind;
    }
}

int JsonLexer::scanString()
{
    const char *const text = current() + 1;
    const char *const stop = findQuoteOrBackslash(text, end());
    if (stop == end())
        return unterminatedString();
    if (*stop == '\\')
        return scanEscapedString(text, stop);

    const char *const next = stop + 1;
    const int size = int(stop - text);
    if (next != end() && *next == ':')
        m_value = keyText(text, size);
    else
        m_value = QtCompat::fromAsciiBytes(text, size);
    moveTo(next);
    return T_STRING;
}

int JsonLexer::scanEscapedString(const char *begin, const char *escape)
{
    m_text.resize(0);
    const char *run = begin;
    const char *stop = escape;
    while (stop != end() && *stop == '\\') {
        appendText(run, stop);
        const char *const letter = stop + 1;
        if (letter == end())
            return unterminatedString();
        run = appendEscape(letter);
        stop = findQuoteOrBackslash(run, end());
    }
    if (stop == end())
        return unterminatedString();
    appendText(run, stop);
    m_value = QString(reinterpret_cast<const QChar *>(m_text.constData()), m_text.size());
    moveTo(stop + 1);
    return T_STRING;
}

int JsonLexer::unterminatedString()
{
    m_position = m_data.size();
    return T_ERROR;
}

// The keys of a configuration come again in every application, and in one string each.
QString JsonLexer::keyText(const char *bytes, int size)
{
    if (m_knownKeys.isEmpty())
        m_knownKeys.resize(64);
    KnownKey &known = m_knownKeys[bucketOf(bytes, size, m_knownKeys.size())];
    if (known.size != size || std::memcmp(known.bytes, bytes, size_t(size)) != 0) {
        known.text = QtCompat::fromAsciiBytes(bytes, size);
        known.bytes = bytes;
        known.size = size;
    }
    return known.text;
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
        if (end() - letter > 5) {
            m_text.append(ushort(hexByte(letter + 1) << 8 | hexByte(letter + 3)));
            return letter + 5;
        }
        break;
    }
    m_text.append(QtCompat::charFromAscii(*letter).unicode());
    return letter + 1;
}

int JsonLexer::scanNumber()
{
    const char *const first = current();
    const char *const last = end();
    const char *p = first;
    quint8 classes = 0;
    while (p != last && (byteClass(*p) & NumberPart))
        classes |= byteClass(*p++);
    m_value = classes & FloatingPart ? floatingValue(first, p) : integerValue(first, p);
    moveTo(p);
    return T_NUMBER;
}

int JsonLexer::scanKeyword()
{
    const char *const first = current();
    const char *const last = end();
    const char *p = first;
    while (p != last && isLowerCaseLetter(*p))
        ++p;
    moveTo(p);
    return keywordToken(first, int(p - first));
}
