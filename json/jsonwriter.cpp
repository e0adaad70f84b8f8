#include "json/jsonwriter.h"

#include "json/varianttree.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <climits>
#include <cmath>
#include <cstring>

namespace {

// A byte in two digits. The digits one by one make escapes cost half as much again.
const char hexPairs[] = "000102030405060708090a0b0c0d0e0f"
                        "101112131415161718191a1b1c1d1e1f"
                        "202122232425262728292a2b2c2d2e2f"
                        "303132333435363738393a3b3c3d3e3f"
                        "404142434445464748494a4b4c4d4e4f"
                        "505152535455565758595a5b5c5d5e5f"
                        "606162636465666768696a6b6c6d6e6f"
                        "707172737475767778797a7b7c7d7e7f"
                        "808182838485868788898a8b8c8d8e8f"
                        "909192939495969798999a9b9c9d9e9f"
                        "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"
                        "b0b1b2b3b4b5b6b7b8b9babbbcbdbebf"
                        "c0c1c2c3c4c5c6c7c8c9cacbcccdcecf"
                        "d0d1d2d3d4d5d6d7d8d9dadbdcdddedf"
                        "e0e1e2e3e4e5e6e7e8e9eaebecedeeef"
                        "f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff";

const char digitPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233"
                          "34353637383940414243444546474849505152535455565758596061626364656667"
                          "6869707172737475767778798081828384858687888990919293949596979899";

// The letter behind the backslash for a character with a short escape, 0 for every other.
// clang-format off
const char shortEscapes[128] = {
    0, 0, 0, 0, 0, 0, 0, 0, 'b', 't', 'n', 0, 'f', 'r', 0, 0, // 0x00
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,           // 0x10
    0, 0, '"', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,         // 0x20
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,           // 0x30
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,           // 0x40
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, '\\'                  // 0x50, and none to 127
};
// clang-format on

inline char *writeUnicodeEscape(char *out, size_t unit)
{
    std::memcpy(out, "\\u", 2);
    std::memcpy(out + 2, hexPairs + 2 * (unit >> 8), 2);
    std::memcpy(out + 4, hexPairs + 2 * (unit & 0xff), 2);
    return out + 6;
}

inline bool isPlain(ushort unit)
{
    return unit < 128 && shortEscapes[unit] == 0;
}

// Writes a unit that is not plain.
inline char *writeEscape(char *out, ushort unit)
{
    if (unit > 127)
        return writeUnicodeEscape(out, unit);
    out[0] = '\\';
    out[1] = shortEscapes[unit];
    return out + 2;
}

inline quint64 inAllBytes(uchar byte)
{
    return byte * Q_UINT64_C(0x0101010101010101);
}

// Four code units below 128, one in each 16 bits, moved together into the lower 32 bits.
inline quint64 narrowed(quint64 units)
{
    units = (units | units >> 8) & Q_UINT64_C(0x0000ffff0000ffff);
    return (units | units >> 16) & Q_UINT64_C(0x00000000ffffffff);
}

// Writes eight code units as eight bytes if none of them needs an escape, and none is a control
// character, which might. Most of a configuration goes this way, at half the cost of single steps.
inline bool writeEightPlain(char *out, const ushort *units)
{
    quint64 first;
    quint64 second;
    std::memcpy(&first, units, sizeof first);
    std::memcpy(&second, units + 4, sizeof second);
    if ((first | second) & Q_UINT64_C(0xff80ff80ff80ff80))
        return false;
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    const quint64 bytes = narrowed(first) | narrowed(second) << 32;
#else
    const quint64 bytes = narrowed(first) << 32 | narrowed(second);
#endif
    // The bytes are below 128, so that an addition to each carries into its own highest bit: there
    // where the byte is a space or above, where it is no quote, and where it is no backslash.
    const quint64 isPlain = (bytes + inAllBytes(0x80 - ' '))
        & ((bytes ^ inAllBytes('"')) + inAllBytes(0x7f))
        & ((bytes ^ inAllBytes('\\')) + inAllBytes(0x7f)) & inAllBytes(0x80);
    if (isPlain != inAllBytes(0x80))
        return false;
    std::memcpy(out, &bytes, sizeof bytes);
    return true;
}

// Writes a part of a text: eight units at once as long as they are plain, then some one by one, for where
// one escape is, the next is often near.
inline char *writeUnits(char *out, const ushort *unit, const ushort *end)
{
    while (unit != end) {
        for (; end - unit >= 8 && writeEightPlain(out, unit); unit += 8)
            out += 8;
        const ushort *const stop = end - unit > 16 ? unit + 16 : end;
        for (;;) {
            for (; unit != stop && isPlain(*unit); ++unit)
                *out++ = char(*unit);
            if (unit == stop)
                break;
            out = writeEscape(out, *unit++);
        }
    }
    return out;
}

// A text that grows by half, so that the old block and the new one together never hold more than two
// and a half times what is written.
class Text
{
public:
    Text() : m_out(nullptr), m_limit(nullptr) { grow(SmallestRoom); }

    void append(char byte)
    {
        reserve(1);
        *m_out++ = byte;
    }

    void append(const char *bytes, int size)
    {
        reserve(size);
        std::memcpy(m_out, bytes, size_t(size));
        m_out += size;
    }

    void append(const QByteArray &bytes) { append(bytes.constData(), bytes.size()); }

    // Eight spaces at a time; what is too many is written over.
    void appendSpaces(int count)
    {
        reserve(qMax(count, 0) + 8);
        putSpaces(count);
    }

    void appendLineFeed(int indentation, bool afterComma)
    {
        reserve(qMax(indentation, 0) + 10);
        if (afterComma)
            *m_out++ = ',';
        *m_out++ = '\n';
        putSpaces(indentation);
    }

    void appendEscaped(const QString &text, bool isQuoted);
    void appendNumber(qulonglong magnitude, bool isNegative);
    void appendNumber(double value);

    QByteArray take()
    {
        m_bytes.resize(size());
        return m_bytes;
    }

private:
    Q_DISABLE_COPY(Text)

    enum { SmallestRoom = 240 };

    int size() const { return m_out ? int(m_out - m_bytes.constData()) : 0; }

    void reserve(int count)
    {
        if (m_limit - m_out < count)
            grow(count);
    }

    void putSpaces(int count)
    {
        if (count <= 0)
            return;
        char *const end = m_out + count;
        for (char *out = m_out; out < end; out += 8)
            std::memcpy(out, "        ", 8);
        m_out = end;
    }

    void grow(int count);

    QByteArray m_bytes; ///< the text and the room behind it
    char *m_out; ///< the end of the text
    char *m_limit; ///< the end of the room
};

void Text::grow(int count)
{
    const qint64 largest = INT_MAX - 64;
    const int oldSize = size();
    const qint64 needed = qint64(oldSize) + count;
    if (needed > largest)
        qBadAlloc();
    m_bytes.resize(oldSize);
    m_bytes.reserve(int(qMin(qMax(needed, qint64(oldSize) + oldSize / 2), largest)));
    m_bytes.resize(m_bytes.capacity());
    m_out = m_bytes.data() + oldSize;
    m_limit = m_bytes.data() + m_bytes.size();
}

// In pieces, with room for the longest escapes of one piece at a time: for those of the whole text it
// would be six times as much as a long one needs. There is room for a quote on either side of each.
void Text::appendEscaped(const QString &text, bool isQuoted)
{
    const int pieceSize = 32;
    const int longestEscape = 6;
    const ushort *unit = reinterpret_cast<const ushort *>(text.constData());
    const ushort *const last = unit + text.size();
    reserve(pieceSize * longestEscape + 2);
    char *out = m_out;
    if (isQuoted)
        *out++ = '"';
    while (last - unit > pieceSize) {
        m_out = writeUnits(out, unit, unit + pieceSize);
        unit += pieceSize;
        reserve(pieceSize * longestEscape + 2);
        out = m_out;
    }
    out = writeUnits(out, unit, last);
    if (isQuoted)
        *out++ = '"';
    m_out = out;
}

// The digits are written from the last one, two at a time, and copied with what stands behind them:
// a copy of a fixed size costs a third.
void Text::appendNumber(qulonglong magnitude, bool isNegative)
{
    const int longestNumber = 21;
    char digits[2 * longestNumber];
    char *const end = digits + longestNumber;
    char *first = end;
    for (; magnitude >= 100; magnitude /= 100) {
        first -= 2;
        std::memcpy(first, digitPairs + magnitude % 100 * 2, 2);
    }
    if (magnitude >= 10) {
        first -= 2;
        std::memcpy(first, digitPairs + magnitude * 2, 2);
    } else {
        *--first = char('0' + magnitude);
    }
    if (isNegative)
        *--first = '-';
    reserve(longestNumber);
    std::memcpy(m_out, first, longestNumber);
    m_out += end - first;
}

// Up to three decimals, which is what people write, are put out by integer arithmetic. Where the
// thousandths give back the very value, they are its 15 significant digits, too.
void Text::appendNumber(double value)
{
    const qint64 thousandths = std::fabs(value) < 1e12 ? qRound64(value * 1000) : 0;
    if (thousandths == 0 || double(thousandths) / 1000 != value) {
        append(QString::number(value, 'g', 15).toUtf8());
        return;
    }
    const qulonglong magnitude = qulonglong(qAbs(thousandths));
    appendNumber(magnitude / 1000, thousandths < 0);
    int decimals = int(magnitude % 1000);
    if (decimals == 0)
        return;
    append('.');
    for (; decimals != 0; decimals = decimals % 100 * 10)
        append(char('0' + decimals / 100));
}

// The value of a variant whose type is known, without a conversion.
template<typename T>
const T &valueOf(const QVariant &variant)
{
    return *static_cast<const T *>(variant.constData());
}

enum Layout { Compact, Indented };

// Walks a tree with a list of the open containers in place of recursion.
class Printer
{
public:
    Printer(Layout layout, int indentStep, int indentation)
        : m_layout(layout), m_indentStep(indentStep), m_indentation(indentation)
    {
    }

    QByteArray print(const QVariant &root);

private:
    typedef VariantTree::Level Level;

    void printEntries();
    void printMember(Level &level);
    void printElement(Level &level);
    void printValue(int type, const QVariant &value);
    void printRarer(int type, const QVariant &value);
    void printOther(int type, const QVariant &value);
    void printInteger(qlonglong value);
    void printString(const QString &text);
    void openObject(const QVariantMap &map);
    void openArray(const QVariantList &list);
    void close();
    void printLineFeed();
    void startEntry(bool isFirst);

    const Layout m_layout;
    const int m_indentStep;
    int m_indentation;
    QVector<Level> m_levels;
    Text m_text;
};

bool isContainer(int type)
{
    return type == QMetaType::QVariantMap || type == QMetaType::QVariantList
        || type == QMetaType::QStringList;
}

inline void Printer::printLineFeed()
{
    if (m_layout == Indented)
        m_text.appendLineFeed(m_indentation, false);
}

inline void Printer::startEntry(bool isFirst)
{
    if (m_layout == Indented)
        m_text.appendLineFeed(m_indentation, !isFirst);
    else if (!isFirst)
        m_text.append(',');
}

QByteArray Printer::print(const QVariant &root)
{
    if (isContainer(root.userType()))
        m_text.appendSpaces(m_indentation);
    printValue(root.userType(), root);
    while (!m_levels.isEmpty())
        printEntries();
    return m_text.take();
}

// Prints the entries of the innermost container, up to one that opens another, or to the end. The walk
// steps on before it prints: opening a level may move the others.
void Printer::printEntries()
{
    const int depth = m_levels.size();
    Level &level = m_levels.last();
    while (level.hasNext()) {
        if (level.isObject)
            printMember(level);
        else
            printElement(level);
        if (m_levels.size() != depth)
            return;
    }
    close();
}

void Printer::printMember(Level &level)
{
    const QVariantMap::const_iterator member = level.member++;
    startEntry(level.index++ == 0);
    printString(member.key());
    m_text.append(':');
    const int type = member.value().userType();
    if (isContainer(type))
        printLineFeed();
    printValue(type, member.value());
}

void Printer::printElement(Level &level)
{
    const QVariant &element = level.list.at(level.index);
    startEntry(level.index++ == 0);
    printValue(element.userType(), element);
}

// Texts and integers come first, without the preparations that all the other types need together.
inline void Printer::printValue(int type, const QVariant &value)
{
    if (type == QMetaType::QString)
        printString(valueOf<QString>(value));
    else if (type == QMetaType::Int)
        printInteger(valueOf<int>(value));
    else
        printRarer(type, value);
}

void Printer::printRarer(int type, const QVariant &value)
{
    switch (type) {
    case QVariant::Invalid:
        m_text.append("null", 4);
        break;
    case QMetaType::Bool:
        valueOf<bool>(value) ? m_text.append("true", 4) : m_text.append("false", 5);
        break;
    case QMetaType::LongLong:
        printInteger(valueOf<qlonglong>(value));
        break;
    case QMetaType::UInt:
        m_text.appendNumber(valueOf<uint>(value), false);
        break;
    case QMetaType::ULongLong:
        m_text.appendNumber(valueOf<qulonglong>(value), false);
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        m_text.appendNumber(value.toDouble());
        break;
    case QMetaType::QByteArray:
        printString(value.toString());
        break;
    case QMetaType::QVariantMap:
        openObject(VariantTree::map(value));
        break;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        openArray(value.toList());
        break;
    default:
        printOther(type, value);
    }
}

void Printer::openObject(const QVariantMap &map)
{
    m_text.append('{');
    m_indentation += m_indentStep;
    m_levels.append(Level());
    m_levels.last().open(map);
}

void Printer::openArray(const QVariantList &list)
{
    m_text.append('[');
    m_indentation += m_indentStep;
    m_levels.append(Level());
    m_levels.last().list = list;
}

// A container without entries holds an empty line.
void Printer::close()
{
    const Level &level = m_levels.last();
    const char bracket = level.isObject ? '}' : ']';
    if (level.index == 0 && m_layout == Indented)
        m_text.append('\n');
    m_levels.pop_back();
    m_indentation -= m_indentStep;
    printLineFeed();
    m_text.append(bracket);
}

void Printer::printInteger(qlonglong value)
{
    const bool isNegative = value < 0;
    const qulonglong bits = static_cast<qulonglong>(value);
    m_text.appendNumber(isNegative ? 0 - bits : bits, isNegative);
}

inline void Printer::printString(const QString &text)
{
    m_text.appendEscaped(text, true);
}

// The types that no parser makes. A character is written without quotes, as it always has been.
void Printer::printOther(int type, const QVariant &value)
{
    if (type == QMetaType::QChar) {
        const ushort unit = value.toChar().unicode();
        char escape[6];
        if (unit > 127)
            m_text.append(escape, int(writeUnicodeEscape(escape, unit) - escape));
        else
            m_text.append(char(unit));
    } else if (value.canConvert(QVariant::LongLong)) {
        printInteger(value.toLongLong());
    } else if (value.canConvert(QVariant::String)) {
        printString(value.toString());
    }
}

} // namespace

QByteArray JsonWriter::serialize(const QVariant &value, int indentStep, int indentation)
{
    return Printer(Indented, indentStep, indentation).print(value);
}

QByteArray JsonWriter::serializeCompact(const QVariant &value)
{
    return Printer(Compact, 0, 0).print(value);
}

QByteArray JsonWriter::escapeString(const QVariant &value)
{
    Text text;
    text.appendEscaped(value.toString(), false);
    return text.take();
}
