// SPDX-License-Identifier: MIT
#ifndef PLAINREADER_H
#define PLAINREADER_H

#include "global/qtcompat.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstring>

/// The JSON dialect read a second time, in its plainest form: by recursion and one byte at a time. The
/// library's own parser must give the same tree and the same error text for every input.
///
/// The recursion ends at a bound, where isTooDeep() tells that there is nothing to compare.
class PlainReader
{
public:
    explicit PlainReader(const QByteArray &text)
        : m_text(text), m_pos(0), m_line(1), m_depth(0), m_token(End), m_isTooDeep(false)
    {
        advance();
        const bool isRead = readValue(m_tree);
        if (isRead && m_token != End)
            fail("'end of file'");
        if (!isRead)
            m_tree = QVariant();
    }

    static const int DeepestLevel = 200;

    bool isTooDeep() const { return m_isTooDeep; }
    QVariant tree() const { return m_tree; }

    /// Empty when the text was read whole.
    QString error() const { return m_error; }

private:
    Q_DISABLE_COPY(PlainReader)

    // The other tokens are the bytes that they are made of; for a keyword it is the first one.
    enum Token { End = 0, Bad = 1, Text = '"', Number = '0' };

    bool isAt(const char *bytes) const
    {
        const char byte = m_pos < m_text.size() ? m_text.at(m_pos) : '\0';
        return byte != '\0' && std::strchr(bytes, byte);
    }

    void advance()
    {
        while (isAt(" \t\r\nb")) {
            m_line += m_text.at(m_pos) == '\n';
            ++m_pos;
        }
        m_token = scan();
    }

    int scan()
    {
        if (m_pos >= m_text.size())
            return End;
        const char first = m_text.at(m_pos);
        if (first == '"')
            return scanText();
        if (isAt("+-0123456789"))
            return scanNumber();
        if (first >= 'a' && first <= 'z')
            return scanWord();
        if (!isAt("{}[]:,"))
            return Bad;
        ++m_pos;
        return first;
    }

    int scanText()
    {
        m_value = QVariant();
        QString text;
        for (++m_pos; m_pos < m_text.size(); ++m_pos) {
            const char byte = m_text.at(m_pos);
            if (byte == '"') {
                ++m_pos;
                m_value = text;
                return Text;
            }
            if (byte != '\\')
                text += QtCompat::charFromAscii(byte);
            else if (++m_pos < m_text.size())
                text += escape(m_text.at(m_pos));
        }
        m_pos = m_text.size();
        return Bad;
    }

    QChar escape(char letter)
    {
        static const char letters[] = "bfnrt";
        static const char meanings[] = "\b\f\n\r\t";
        if (letter == 'u' && m_pos + 4 < m_text.size() - 1) {
            const int high = m_text.mid(m_pos + 1, 2).toInt(nullptr, 16) & 0xff;
            const int low = m_text.mid(m_pos + 3, 2).toInt(nullptr, 16) & 0xff;
            m_pos += 4;
            return QChar(ushort(high * 256 + low));
        }
        const char *const found = letter != 0 ? std::strchr(letters, letter) : nullptr;
        return found ? QLatin1Char(meanings[found - letters]) : QtCompat::charFromAscii(letter);
    }

    int scanNumber()
    {
        const int begin = m_pos;
        while (isAt("+-.0123456789eE"))
            ++m_pos;
        const QByteArray number = m_text.mid(begin, m_pos - begin);
        const bool isFloating =
            number.contains('.') || number.contains('e') || number.contains('E');
        bool fits = false;
        m_value = number.toInt(&fits);
        if (!fits)
            m_value = number.toLongLong(&fits);
        if (!fits || isFloating)
            m_value = QtCompat::toDouble(number);
        return Number;
    }

    int scanWord()
    {
        const int begin = m_pos;
        while (m_pos < m_text.size() && m_text.at(m_pos) >= 'a' && m_text.at(m_pos) <= 'z')
            ++m_pos;
        const QByteArray word = m_text.mid(begin, m_pos - begin);
        if (word != "true" && word != "false" && word != "null")
            return Bad;
        m_value = word == "null" ? QVariant() : QVariant(word == "true");
        return word.at(0);
    }

    // Ends the reading at the current token. More than two things to expect are not listed.
    bool fail(const char *expected)
    {
        m_error = QLatin1String(*expected ? "Expected " : "") + QLatin1String(expected)
            + QLatin1String(" at line ") + QString::number(m_line) + QLatin1String(" pos ")
            + QString::number(m_pos);
        return false;
    }

    bool readValue(QVariant &value)
    {
        if (m_token == '{' || m_token == '[')
            return readContainer(value);
        if (!beginsValue())
            return fail("");
        value = m_value;
        advance();
        return true;
    }

    bool readContainer(QVariant &value)
    {
        if (m_depth == DeepestLevel) {
            m_isTooDeep = true;
            return fail("");
        }
        ++m_depth;
        const bool isObject = m_token == '{';
        advance();
        const bool isRead = isObject ? readObject(value) : readArray(value);
        --m_depth;
        if (isRead)
            advance();
        return isRead;
    }

    // A comma may come before the first entry, but none after the last.
    bool readObject(QVariant &value)
    {
        QtCompat::MultiMap object;
        if (m_token == Text && !readMember(object))
            return false;
        while (m_token == ',') {
            advance();
            if (m_token != Text)
                return fail("'string'");
            if (!readMember(object))
                return false;
        }
        value = QtCompat::toVariant(object);
        return m_token == '}' || fail("'}', ','");
    }

    bool readMember(QtCompat::MultiMap &object)
    {
        const QString key = m_value.toString();
        advance();
        if (m_token != ':')
            return fail("':'");
        advance();
        QVariant value;
        if (!readValue(value))
            return false;
        QtCompat::insertMulti(object, key) = value;
        return true;
    }

    bool readArray(QVariant &value)
    {
        QVariantList array;
        if (beginsValue() && !readElement(array))
            return false;
        while (m_token == ',') {
            advance();
            if (!readElement(array))
                return false;
        }
        value = array;
        return m_token == ']' || fail("']', ','");
    }

    bool beginsValue() const
    {
        return m_token != End && m_token != Bad && std::strchr("{[\"0tfn", m_token);
    }

    bool readElement(QVariantList &array)
    {
        QVariant element;
        if (!readValue(element))
            return false;
        array.append(element);
        return true;
    }

    const QByteArray m_text;
    int m_pos; ///< of the byte after the current token
    int m_line;
    int m_depth;
    int m_token;
    QVariant m_value; ///< of the current token
    bool m_isTooDeep;
    QVariant m_tree;
    QString m_error;
};

#endif // PLAINREADER_H
