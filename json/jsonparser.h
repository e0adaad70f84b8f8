#ifndef JSONPARSER_H
#define JSONPARSER_H

#include "json/jsondriver.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

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

/// Builds variant trees. A value is null as an invalid variant.
class JsonTreeBuilder
{
public:
    typedef QVariant Value;

    static QVariant &scalar(QVariant &value) { return value; }
    static void beginObject(QVariant &value);
    static void addMember(QVariant &object, QString &lastKey, QString &key, QVariant &value);
    static void endObject(QVariant &) {}
    static void beginArray(QVariant &value);
    void addElement(QVariant &array, QVariant &value);
    static void endArray(QVariant &) {}
    static void dispose(QVariant &value);

private:
    const QVariant m_invalid; ///< to make room in an array with
};

/// Parses one document into a variant tree, made anew for each.
class JsonParser
{
public:
    JsonParser();
    ~JsonParser();

    /// Reads tokens from `lexer` to the end of the document. Returns false on a syntax error, which
    /// ends the parse.
    bool parse(JsonLexer *lexer);

    /// The root value, once the document held a complete one; invalid before.
    const QVariant &result() const { return m_driver.result(); }

    /// Moves the root value out of the parser.
    QVariant takeResult();

    /// What could have stood in place of the error, as "Expected 'x'" or "Expected 'x', 'y'"; empty
    /// when nothing or more than two things could.
    QString errorMessage() const { return m_driver.error().expected; }

    /// The lexer's line and position at the error; meaningful after one only.
    int errorLine() const { return m_driver.error().line; }
    int errorPos() const { return m_driver.error().pos; }

    /// The whole message; meaningful after an error only.
    QString errorText() const { return m_driver.error().toString(); }

private:
    Q_DISABLE_COPY(JsonParser)

    JsonTreeBuilder m_builder;
    JsonDriver<JsonTreeBuilder> m_driver;
};

#endif // JSONPARSER_H
