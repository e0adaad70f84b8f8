#ifndef JSONLEXER_H
#define JSONLEXER_H

#include "json/jsongrammar.h"

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>
#include <QVariant>

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
        // Half of all tokens are one of these, directly behind the token before.
        if (m_current != m_end && (*m_current == ',' || *m_current == ':')) {
            m_token = *m_current++ == ',' ? T_COMMA : T_COLON;
            return m_token;
        }
        m_token = scanToken();
        return m_token;
    }

    /// The value of the last token: a QString for T_STRING, an int, qlonglong or double for
    /// T_NUMBER, invalid for every other token.
    QVariant value() const;

    /// Moves the value of the last token, which must be T_STRING or T_NUMBER, into `slot`, which must
    /// be invalid.
    void takeValue(QVariant &slot)
    {
        if (m_token == T_STRING)
            slot = m_text;
        else
            slot.swap(m_number);
    }

    /// Moves the text of the last token, which must be T_STRING, into `slot`, which must be null.
    void takeText(QString &slot) { qSwap(slot, m_text); }

    /// The current line, from 1. Only line feeds between tokens count.
    int line() const { return m_line; }

    /// The index of the next unread byte, from the start of the whole input. After a byte that
    /// starts no token it is the index of that byte.
    int pos() const { return int(m_current - m_data.constData()); }

private:
    Q_DISABLE_COPY(JsonLexer)

    /// A key that was met before: its bytes in the input, and its text.
    struct KnownKey {
        KnownKey() : bytes(nullptr), size(-1) {}
        const char *bytes;
        int size;
        QString text;
    };

    int scanToken();
    int scanString();
    int scanKey(const char *text, const char *quote);
    int scanNewKey(const char *text, const char *quote, quint8 &number);
    int scanEscapedString(const char *text, const char *quote);
    int scanNumber();
    int scanKeyword();
    int unterminatedString();

    static int bucket(const char *key, int size);
    ushort *roomBehind(qptrdiff used, qptrdiff bytes);
    const char *readEscape(const char *letter, ushort *unit) const;

    const QByteArray m_data;
    const char *m_current; ///< the next unread byte
    const char *const m_end; ///< behind the last byte
    int m_line;
    int m_token; ///< the last one
    QVariant m_number;
    QString m_text;
    QVarLengthArray<ushort, 128> m_unescaped; ///< a string with escapes, while it is read

    // The number in m_knownKeys, from 1, of the key that was last met in a bucket; 0 for none.
    enum { KeyBuckets = 128 };
    QVarLengthArray<KnownKey, KeyBuckets> m_knownKeys;
    quint8 m_buckets[KeyBuckets];
};

#endif // JSONLEXER_H
