// SPDX-License-Identifier: MIT
#ifndef JSONPARSER_H
#define JSONPARSER_H

#include "json/jsonlexer.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

/// Parses JSON text into a variant tree.
///
/// An object becomes a QVariantMap that keeps every entry of a key that comes more than once (value()
/// gives the one that comes last in the text), an array a QVariantList, a string a QString, a number
/// an int, a qlonglong or a double, true and false a bool, null an invalid QVariant. The root may be
/// any of them.
///
/// Returns the tree. On a syntax error it stores "<expected> at line <line> pos <byte>" in
/// `*errorMessage`, unless that is null, and returns the root if the error comes after a complete
/// one, else an invalid variant. On success it leaves `*errorMessage` alone. Reentrant.
QVariant parseJson(const QByteArray &json, QString *errorMessage);

/// Drives the LALR(1) tables of the grammar and builds the variant tree. Parses one document; made anew
/// for each.
class JsonParser
{
public:
    JsonParser();
    ~JsonParser();

    /// Reads tokens from `lexer` to the end of the document. Returns false on a syntax error, which
    /// ends the parse.
    bool parse(JsonLexer *lexer);

    /// The root value, once the document held a complete one; invalid before.
    const QVariant &result() const { return m_result; }

    /// Moves the root value out of the parser.
    QVariant takeResult();

    /// What the parser expected at the error, as "Expected 'x'" or "Expected 'x', 'y'"; empty for nothing
    /// or more than two things.
    QString errorMessage() const { return m_errorMessage; }

    /// The lexer's line and position at the error; meaningful after one only.
    int errorLine() const { return m_errorLine; }
    int errorPos() const { return m_errorPos; }

    /// The whole message; meaningful after an error only.
    QString errorText() const;

private:
    Q_DISABLE_COPY(JsonParser)

    /// A state, and the value of the symbol that led to it: of a string its text, of a member its key and
    /// its value.
    struct Slot {
        Slot() : state(0) {}
        int state;
        QString text;
        QVariant value;
    };

    Slot *addSlot();
    Slot *push(Slot *top, int state);
    Slot *shift(Slot *top, int state, int token, JsonLexer *lexer);
    Slot *reduce(Slot *top, int rule);
    void build(int rule, Slot *sym);
    static void addMember(QVariant &object, Slot &member);
    static void addElement(QVariant &array, Slot &element);
    void setError(const JsonLexer &lexer, int state);

    std::vector<Slot> m_stack; ///< slot 0 is never used
    Slot *m_limit; ///< after the last slot
    QVariant m_result;
    QString m_errorMessage;
    int m_errorLine;
    int m_errorPos;
};

#endif // JSONPARSER_H
