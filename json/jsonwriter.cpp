// SPDX-License-Identifier: MIT
#include "json/jsonwriter.h"

#include "json/varianttree.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <climits>
#include <cstring>

namespace {

const char hexDigits[] = "0123456789abcdef";

// The letter after the backslash for a character with a short escape, 0 for every other.
inline char shortEscape(ushort unit)
{
    switch (unit) {
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    case '"':
    case '\\':
        return char(unit);
    }
    return 0;
}

// Writes a code unit that may need an escape, and returns the place after it.
inline char *writeUnit(char *out, ushort unit)
{
    const char letter = shortEscape(unit);
    if (unit > 127) {
        *out++ = '\\';
        *out++ = 'u';
        for (int shift = 12; shift >= 0; shift -= 4)
            *out++ = hexDigits[unit >> shift & 0xf];
    } else if (letter) {
        *out++ = '\\';
        *out++ = letter;
    } else {
        *out++ = char(unit);
    }
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
        reserve(1);
        *m_out++ = byte;
    }

    void append(const char *bytes, int size)
    {
        if (size <= 0)
            return; // there may be no room at all yet
        reserve(size);
        std::memcpy(m_out, bytes, size_t(size));
        m_out += size;
    }

    void append(const QByteArray &bytes) { append(bytes.constData(), int(bytes.size())); }

    void appendSpaces(int count)
    {
        if (count <= 0)
            return;
        reserve(count);
        std::memset(m_out, ' ', size_t(count));
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
    Q_DISABLE_COPY(Text)

    int size() const { return m_out ? int(m_out - m_bytes.constData()) : 0; }

    void reserve(int count)
    {
        if (m_limit - m_out < count)
            grow(count);
    }

    void grow(int count);

    QByteArray m_bytes; ///< the text and the room after it
    char *m_out; ///< the end of the text
    char *m_limit; ///< the end of the room
};

void Text::grow(int count)
{
    const qint64 smallest = 240;
    const qint64 largest = INT_MAX - 64;
    const int oldSize = size();
    const qint64 needed = qint64(oldSize) + count;
    if (needed > largest)
        qBadAlloc();
    m_bytes.resize(oldSize);
    m_bytes.reserve(
        int(qMin(qMax(qMax(needed, smallest), qint64(oldSize) + oldSize / 2), largest)));
    m_bytes.resize(m_bytes.capacity());
    m_out = m_bytes.data() + oldSize;
    m_limit = m_bytes.data() + m_bytes.size();
}

// In pieces, with room for the longest escapes of one piece at a time: for those of the whole text it
// would be six times as much as a long one needs.
void Text::appendEscaped(const QString &text)
{
    const int pieceSize = 32;
    const int longestEscape = 6;
    const ushort *unit = reinterpret_cast<const ushort *>(text.constData());
    const ushort *const last = unit + text.size();
    while (unit != last) {
        reserve(pieceSize * longestEscape);
        char *out = m_out;
        const ushort *const stop = last - unit > pieceSize ? unit + pieceSize : last;
        for (; unit != stop; ++unit) {
            const bool isPlain = *unit >= ' ' && *unit < 128 && *unit != '"' && *unit != '\\';
            if (isPlain)
                *out++ = char(*unit);
            else
                out = writeUnit(out, *unit);
        }
        m_out = out;
    }
}

void Text::appendNumber(qulonglong magnitude, bool isNegative)
{
    char digits[20];
    char *const end = digits + sizeof digits;
    char *first = end;
    do {
        *--first = char('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (isNegative)
        append('-');
    append(first, int(end - first));
}

enum Layout { Compact, Indented };

// Walks a tree with a list of the open containers instead of recursion.
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
    void printValue(const QVariant &value);
    void printOther(const QVariant &value);
    void printInteger(qlonglong value);
    void printString(const QString &text);
    void open(char bracket, const QVariant &container);
    void close();
    void startLine();
    void startEntry(bool isFirst);

    const Layout m_layout;
    const int m_indentStep;
    int m_indentation;
    QVector<Level> m_levels;
    Text m_text;
};

bool isContainer(const QVariant &value)
{
    return VariantTree::isContainer(value) || value.userType() == QMetaType::QStringList
        || QtCompat::isOtherMap(value);
}

void Printer::startLine()
{
    if (m_layout == Compact)
        return;
    m_text.append('\n');
    m_text.appendSpaces(m_indentation);
}

void Printer::startEntry(bool isFirst)
{
    if (!isFirst)
        m_text.append(',');
    startLine();
}

QByteArray Printer::print(const QVariant &root)
{
    if (isContainer(root))
        m_text.appendSpaces(m_indentation);
    printValue(root);
    while (!m_levels.isEmpty())
        printEntries();
    return m_text.take();
}

// Prints the entries of the innermost container, up to one that opens another, or to the end. The walk
// steps on before it prints: opening a level may move the others.
void Printer::printEntries()
{
    const int depth = int(m_levels.size());
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
    const QtCompat::MultiMap::const_iterator member = level.member++;
    startEntry(level.index++ == 0);
    printString(member.key());
    m_text.append(':');
    if (isContainer(member.value()))
        startLine();
    printValue(member.value());
}

void Printer::printElement(Level &level)
{
    const QVariant &element = level.list.at(level.index);
    startEntry(level.index++ == 0);
    printValue(element);
}

void Printer::printValue(const QVariant &value)
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
    case QMetaType::QVariantMap:
        open('{', value);
        break;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        open('[', value);
        break;
    default:
        printOther(value);
    }
}

// The types that no parser makes; and with Qt 6 the map that it makes, whose type has a number only at
// run time. A character is written without quotes on purpose, because files rely
// on it.
void Printer::printOther(const QVariant &value)
{
    if (VariantTree::isMap(value)) {
        open('{', value);
    } else if (value.userType() == QMetaType::QChar) {
        const ushort unit = value.toChar().unicode();
        char escape[6];
        if (unit > 127)
            m_text.append(escape, int(writeUnit(escape, unit) - escape));
        else
            m_text.append(char(unit));
    } else if (value.canConvert<qlonglong>()) {
        printInteger(value.toLongLong());
    } else if (value.canConvert<QString>()) {
        printString(value.toString());
    }
}

void Printer::open(char bracket, const QVariant &container)
{
    m_text.append(bracket);
    m_indentation += m_indentStep;
    m_levels.append(Level(container));
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
    startLine();
    m_text.append(bracket);
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
