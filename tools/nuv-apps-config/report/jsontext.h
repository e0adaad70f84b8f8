// SPDX-License-Identifier: MIT
#ifndef JSONTEXT_H
#define JSONTEXT_H

#include <QByteArray>
#include <QString>
#include <QVariant>

/// Writes JSON in UTF-8, entry by entry, in the order of the calls. The toolkit's own writer would not
/// do: it makes doubles of 64-bit integers, and loses the sign of a zero.
///
/// An integer is written with all its digits, a double so that it reads back the same, and
/// always with a point or an exponent: 1.0, 1e+22. For one beyond all numbers JSON has no form that every
/// reader takes: it is the string "inf" or "-inf". The library makes no double that is not a number.
class JsonText
{
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    /// The key of the member that comes next.
    void key(const QString &name);
    void key(const char *name) { key(QString(QLatin1String(name))); }

    /// A scalar, or a list of strings; anything else is null.
    void value(const QVariant &value);

    void member(const char *name, const QVariant &content);

    /// The document. Every object and array must be at its end.
    QByteArray document() const { return m_text + '\n'; }

    /// The digits of a double that read back as the same one.
    static QByteArray number(double value);

private:
    void begin(char bracket);
    void end(char bracket);
    void beginEntry();
    void newLine();
    void quoted(const QString &text);

    QByteArray m_text;
    int m_depth = 0;
    bool m_isFirst = true; ///< of its object or array
    bool m_isAfterKey = false;
};

#endif // JSONTEXT_H
