// SPDX-License-Identifier: MIT
#ifndef JSONLEXER_H
#define JSONLEXER_H

#include "json/jsongrammar.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

/// Turns JSON text into tokens, one a call. Made anew for every parse; used by one thread.
///
/// Text is read byte by byte: each byte of a string is one character (Latin-1; under Qt 4 the codec
/// of QTextCodec::setCodecForCStrings()), so a UTF-8 sequence arrives as several characters. Text
/// outside Latin-1 comes in through "\u" escapes only, one UTF-16 code unit each.
///
/// Nothing is reported from here: whatever cannot be read becomes T_ERROR, which no state of the
/// parser accepts.
class JsonLexer
{
public:
    /// Shares `data`; line() is 1, pos() 0 and value() invalid.
    explicit JsonLexer(const QByteArray &data);

    /// Scans the next token and returns its JsonToken code: T_END_OF_FILE at the end of the input,
    /// however often it is asked, and T_ERROR for what is no token.
    int nextToken()
    {
        // Half of all tokens are one of these, directly after the token before.
        const char byte = m_current == m_end ? '\0' : *m_current;
        if (byte == ',' || byte == ':')
            m_token = scanByte(byte == ',' ? T_COMMA : T_COLON);
        else
            m_token = scanToken();
        return m_token;
    }

    /// The value of the last token: a QString for T_STRING, an int, qlonglong or double for
    /// T_NUMBER, invalid for every other token.
    QVariant value() const;

    /// Moves the value of the last token, which must be T_NUMBER, into `slot`, which must be invalid.
    void takeNumber(QVariant &slot) { slot.swap(m_number); }

    /// Moves the text of the last token, which must be T_STRING, into `slot`.
    void takeText(QString &slot) { qSwap(slot, m_text); }

    /// The current line, from 1. Only line feeds between tokens count.
    int line() const { return m_line; }

    /// The index of the next unread byte, from the start of the whole input. After a byte that
    /// starts no token it is the index of that byte.
    int pos() const { return int(m_current - m_data.constData()); }

private:
    Q_DISABLE_COPY(JsonLexer)

    /// A key that was read before: its bytes in the input, and its text.
    struct KnownKey {
        KnownKey() : bytes(nullptr) {}
        const char *bytes;
        QString text;
    };
    enum { KnownKeys = 512 };

    void skipBlanks();
    int scanToken();

    int scanByte(int token)
    {
        ++m_current;
        return token;
    }

    int scanString();
    int scanNumber();
    int scanKeyword();

    const char *findQuote(const char *text, int *units) const;
    QString unescaped(const char *text, const char *quote, int units) const;
    int escapeSize(const char *backslash) const;
    QChar escapedChar(const char *backslash) const;
    void takeKey(const char *bytes, int size);

    const QByteArray m_data;
    const char *m_current; ///< the next unread byte
    const char *const m_end; ///< after the last byte
    int m_line;
    int m_token; ///< the last one
    QVariant m_number;
    QString m_text;
    std::vector<KnownKey> m_knownKeys; ///< by a hash of their bytes
};

#endif // JSONLEXER_H
