// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/jsontext.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace {

// Control characters, those from 0x7f to 0x9f among them, could steer a terminal. Half of a surrogate
// pair has no form in UTF-8.
bool needsEscape(const QString &text, int i)
{
    const QChar c = text.at(i);
    if (c.isHighSurrogate())
        return i + 1 == text.size() || !text.at(i + 1).isLowSurrogate();
    if (c.isLowSurrogate())
        return i == 0 || !text.at(i - 1).isHighSurrogate();
    const ushort code = c.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0);
}

QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size() + 2);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result += QLatin1Char('\\') + c;
        else if (c == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (c == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (needsEscape(text, i))
            result += QString(QLatin1String("\\u%1")).arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            result += c;
    }
    return result;
}

} // namespace

QByteArray JsonText::number(double value)
{
    if (std::isinf(value))
        return value < 0 ? "\"-inf\"" : "\"inf\"";
    QByteArray digits = QByteArray::number(std::fabs(value), 'g', QLocale::FloatingPointShortest);
    if (!digits.contains('.') && !digits.contains('e'))
        digits += ".0";
    return std::signbit(value) ? '-' + digits : digits;
}

void JsonText::key(const QString &name)
{
    beginEntry();
    quoted(name);
    m_text += ": ";
    m_isAfterKey = true;
}

void JsonText::value(const QVariant &value)
{
    if (value.userType() == QMetaType::QStringList) {
        beginArray();
        for (const QString &text : value.toStringList())
            this->value(text);
        endArray();
        return;
    }
    beginEntry();
    switch (value.userType()) {
    case QMetaType::QString:
        quoted(value.toString());
        break;
    case QMetaType::Float:
    case QMetaType::Double:
        m_text += number(value.toDouble());
        break;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        m_text += value.toByteArray();
        break;
    default:
        m_text += "null";
    }
}

void JsonText::member(const char *name, const QVariant &content)
{
    key(name);
    value(content);
}

void JsonText::begin(char bracket)
{
    beginEntry();
    m_text += bracket;
    ++m_depth;
    m_isFirst = true;
}

void JsonText::end(char bracket)
{
    --m_depth;
    if (!m_isFirst)
        newLine();
    m_isFirst = false;
    m_text += bracket;
}

void JsonText::beginEntry()
{
    if (m_isAfterKey || m_depth == 0) {
        m_isAfterKey = false;
        return;
    }
    if (!m_isFirst)
        m_text += ',';
    m_isFirst = false;
    newLine();
}

void JsonText::newLine()
{
    m_text += '\n' + QByteArray(4 * m_depth, ' ');
}

void JsonText::quoted(const QString &text)
{
    m_text += '"' + escaped(text).toUtf8() + '"';
}
