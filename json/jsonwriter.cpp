#include "json/jsonwriter.h"

#include "json/varianttree.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <climits>
#include <cstring>

namespace {

const char hexDigits[] = "0123456789abcdef";

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

inline bool isPlain(ushort unit)
{
    return unit < 128 && !shortEscapes[unit];
}

char *writeUnicodeEscape(char *out, ushort unit)
{
    *out++ = '\\';
    *out++ = 'u';
    *out++ = hexDigits[unit >> 12];
    *out++ = hexDigits[unit >> 8 & 0xf];
    *out++ = hexDigits[unit >> 4 & 0xf];
    *out++ = hexDigits[unit & 0xf];
    return out;
}

char *writeEscape(char *out, ushort unit)
{
    if (unit > 127)
        return writeUnicodeEscape(out, unit);
    *out++ = '\\';
    *out++ = shortEscapes[unit];
    return out;
}

// A text that grows by half, so that the old block and the new one together never hold more than two
// and a half times what is written.
class Text
{
public:
    Text() : m_out(nullptr), m_limit(nullptr) {}

    void append(char byte)
    {
        *reserve(1) = byte;
        ++m_out;
    }

    void append(const char *bytes, int size)
    {
        std::memcpy(reserve(size), bytes, size_t(size));
        m_out += size;
    }

    void append(const QByteArray &bytes) { append(bytes.constData(), bytes.size()); }

    void appendSpaces(int count)
    {
        if (count <= 0)
            return;
        std::memset(reserve(count), ' ', size_t(count));
        m_out += count;
    }

    void appendEscaped(const QString &text);
    void appendNumber(qulonglong magnitude, bool isNegative);

    QByteArray take()
    {
        m_bytes.resize(size());
        return m_bytes;
    }

private:
    int size() const { return int(m_out - m_bytes.constData()); }

    // Where the next `count` bytes may be written.
    char *reserve(int count)
    {
        if (m_limit - m_out < count)
            grow(count);
        return m_out;
    }

    void grow(int count);

    QByteArray m_bytes; ///< the text and the room behind it
    char *m_out; ///< the end of the text
    char *m_limit; ///< the end of the room
};

void Text::grow(int count)
{
    const int oldSize = m_out ? size() : 0;
    const qint64 wanted = qMax<qint64>(qint64(oldSize) + count, qint64(oldSize) + oldSize / 2);
    m_bytes.resize(oldSize);
    m_bytes.reserve(int(qBound<qint64>(240, wanted, INT_MAX - 64)));
    m_bytes.resize(m_bytes.capacity());
    m_out = m_bytes.data() + oldSize;
    m_limit = m_bytes.data() + m_bytes.size();
}

// In pieces, so that the room for the longest escapes is never six times a long string.
void Text::appendEscaped(const QString &text)
{
    const int pieceSize = 64;
    const int longestEscape = 6;
    const ushort *unit = text.utf16();
    const ushort *const last = unit + text.size();
    while (unit != last) {
        const ushort *const pieceEnd = last - unit > pieceSize ? unit + pieceSize : last;
        char *out = reserve(int(pieceEnd - unit) * longestEscape);
        for (; unit != pieceEnd; ++unit) {
            if (isPlain(*unit))
                *out++ = char(*unit);
            else
                out = writeEscape(out, *unit);
        }
        m_out = out;
    }
}

void Text::appendNumber(qulonglong magnitude, bool isNegative)
{
    const int longestNumber = 20;
    char digits[longestNumber];
    char *const end = digits + longestNumber;
    char *first = end;
    do {
        *--first = char('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude);
    if (isNegative)
        append('-');
    append(first, int(end - first));
}

bool isArray(const QVariant &value)
{
    return VariantTree::isList(value) || value.userType() == QMetaType::QStringList;
}

bool isContainer(const QVariant &value)
{
    return VariantTree::isMap(value) || isArray(value);
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
    // An open container and the place in it. One of map and list is in use.
    struct Level {
        Level() : isObject(false), index(0) {}
        bool isObject;
        QVariantMap map;
        QVariantMap::const_iterator member;
        QVariantList list;
        int index;
    };

    void printValue(const QVariant &value);
    void printScalar(const QVariant &value);
    void printInteger(qlonglong value);
    void printString(const QString &text);
    void printOther(const QVariant &value);
    void openObject(const QVariantMap &map);
    void openArray(const QVariantList &list);
    void open(char bracket);
    void close();
    void printMember(Level &level);
    void printElement(Level &level);
    void printSeparator(bool isFirst);
    void printLineFeed();
    void printIndentation();

    const Layout m_layout;
    const int m_indentStep;
    int m_indentation;
    QVector<Level> m_levels;
    Text m_text;
};

QByteArray Printer::print(const QVariant &root)
{
    printValue(root);
    while (!m_levels.isEmpty()) {
        Level &level = m_levels.last();
        if (level.isObject && level.member != level.map.constEnd())
            printMember(level);
        else if (!level.isObject && level.index < level.list.size())
            printElement(level);
        else
            close();
    }
    return m_text.take();
}

void Printer::printValue(const QVariant &value)
{
    if (VariantTree::isMap(value))
        openObject(VariantTree::map(value));
    else if (isArray(value))
        openArray(value.toList());
    else
        printScalar(value);
}

void Printer::openObject(const QVariantMap &map)
{
    open('{');
    Level &level = m_levels.last();
    level.isObject = true;
    level.map = map;
    level.member = level.map.constBegin();
}

void Printer::openArray(const QVariantList &list)
{
    open('[');
    m_levels.last().list = list;
}

void Printer::open(char bracket)
{
    printIndentation();
    m_text.append(bracket);
    printLineFeed();
    m_indentation += m_indentStep;
    m_levels.append(Level());
}

void Printer::close()
{
    const char bracket = m_levels.last().isObject ? '}' : ']';
    m_levels.pop_back();
    m_indentation -= m_indentStep;
    printLineFeed();
    printIndentation();
    m_text.append(bracket);
}

// The walk steps on first: printing a container opens a level, which may move the others.
void Printer::printMember(Level &level)
{
    const QVariantMap::const_iterator member = level.member++;
    printSeparator(member == level.map.constBegin());
    printIndentation();
    printString(member.key());
    m_text.append(':');
    if (isContainer(member.value()))
        printLineFeed();
    printValue(member.value());
}

void Printer::printElement(Level &level)
{
    const int index = level.index++;
    const QVariant &element = level.list.at(index);
    printSeparator(index == 0);
    if (!isContainer(element))
        printIndentation();
    printValue(element);
}

void Printer::printSeparator(bool isFirst)
{
    if (isFirst)
        return;
    m_text.append(',');
    printLineFeed();
}

void Printer::printLineFeed()
{
    if (m_layout == Indented)
        m_text.append('\n');
}

void Printer::printIndentation()
{
    if (m_layout == Indented)
        m_text.appendSpaces(m_indentation);
}

void Printer::printScalar(const QVariant &value)
{
    switch (value.userType()) {
    case QVariant::Invalid:
        m_text.append("null", 4);
        break;
    case QMetaType::Bool:
        value.toBool() ? m_text.append("true", 4) : m_text.append("false", 5);
        break;
    case QMetaType::Int:
    case QMetaType::LongLong:
        printInteger(value.toLongLong());
        break;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        m_text.appendNumber(value.toULongLong(), false);
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        m_text.append(QString::number(value.toDouble(), 'g', 15).toUtf8());
        break;
    case QMetaType::QString:
    case QMetaType::QByteArray:
        printString(value.toString());
        break;
    default:
        printOther(value);
    }
}

void Printer::printInteger(qlonglong value)
{
    const bool isNegative = value < 0;
    const qulonglong bits = static_cast<qulonglong>(value);
    m_text.appendNumber(isNegative ? 0 - bits : bits, isNegative);
}

void Printer::printString(const QString &text)
{
    m_text.append('"');
    m_text.appendEscaped(text);
    m_text.append('"');
}

// The types that no parser makes. A character is written without quotes, as it always has been.
void Printer::printOther(const QVariant &value)
{
    if (value.userType() == QMetaType::QChar) {
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
    text.appendEscaped(value.toString());
    return text.take();
}
