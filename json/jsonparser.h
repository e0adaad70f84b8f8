#ifndef JSONPARSER_H
#define JSONPARSER_H

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

class JsonLexer;

/// Parses JSON text into a variant tree.
///
/// An object becomes a QVariantMap that keeps every entry of a key that comes more than once (value()
/// gives the one that comes last in the text), an array a QVariantList, a string a QString, a number
/// an int, a qlonglong or a double, true and false a bool, null an invalid QVariant. The root may be
/// any of them.
///
/// Returns the tree. On a syntax error it stores "<expected> at line <line> pos <byte>" in
/// `*errorMessage`, unless that is null, and returns the root if the error comes behind a complete
/// one, else an invalid variant. On success it leaves `*errorMessage` alone. Reentrant.
QVariant parseJson(const QByteArray &json, QString *errorMessage);

/// The driver of the LALR(1) tables, made anew for every parse.
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

    /// What could have stood in place of the error, as "Expected 'x'" or "Expected 'x', 'y'"; empty
    /// when nothing or more than two things could.
    QString errorMessage() const { return m_errorMessage; }

    /// The lexer's line and position at the error; meaningful after one only.
    int errorLine() const { return m_errorLine; }
    int errorPos() const { return m_errorPos; }

private:
    Q_DISABLE_COPY(JsonParser)

    // The state stack and the stack of the symbols' values in one. The key of a member is held as
    // what it is.
    struct Slot {
        int state;
        QString key;
        QVariant value;
    };

    Slot *push(Slot *top, int state);
    Slot *grow();
    static void takeValue(JsonLexer *lexer, Slot *slot);
    void reduce(int rule, Slot *sym);
    void reportError(const JsonLexer &lexer, int state);

    QVector<Slot> m_stack; ///< slot 0 is never used
    Slot *m_limit; ///< behind the last slot
    QString m_errorMessage;
    int m_errorLine;
    int m_errorPos;
    QVariant m_result;
};

#endif // JSONPARSER_H
