#ifndef JSONDRIVER_H
#define JSONDRIVER_H

#include "global/qtcompat.h"
#include "json/jsongrammar.h"
#include "json/jsonlexer.h"

#include <QString>
#include <QVector>

/// Where a document is wrong.
struct JsonSyntaxError {
    JsonSyntaxError() : line(0), pos(0) {}
    JsonSyntaxError(const JsonLexer &lexer, int state);

    /// "<expected> at line <line> pos <byte>".
    QString toString() const;

    /// What could have stood there, as "Expected 'x'" or "Expected 'x', 'y'"; empty when nothing or more
    /// than two things could.
    QString expected;
    int line;
    int pos;
};

/// The driver of the LALR(1) tables, made anew for every parse. What the document becomes is the
/// builder's to say, which has:
///
/// | member                                           | is                                        |
/// |--------------------------------------------------|-------------------------------------------|
/// | Value                                            | a symbol's value, null when new; has swap |
/// | static QVariant &scalar(Value &)                 | where a null value takes a scalar         |
/// | void beginObject(Value &)                        | makes an empty object of a null value     |
/// | void addMember(Value &object, QString &lastKey, QString &key, Value &) | moves a member into it |
/// | void endObject(Value &)                          | is called behind the last member          |
/// | void beginArray(Value &)                         | makes an empty array of a null value      |
/// | void addElement(Value &array, Value &)           | moves an element into it                  |
/// | void endArray(Value &)                           | is called behind the last element         |
/// | static void dispose(Value &)                     | frees what a syntax error left behind     |
///
/// `lastKey` is null for the first member; what the builder stores there it finds at the next one of
/// the same object.
template<typename Builder>
class JsonDriver
{
public:
    typedef typename Builder::Value Value;

    /// Does not own `builder`.
    explicit JsonDriver(Builder *builder) : m_builder(builder), m_limit(nullptr) {}
    ~JsonDriver();

    /// Reads tokens from `lexer` to the end of the document. Returns false on a syntax error, which
    /// ends the parse.
    bool parse(JsonLexer *lexer);

    /// The root value, once the document held a complete one; null before.
    Value &result() { return m_result; }
    const Value &result() const { return m_result; }

    /// Meaningful after a syntax error only.
    const JsonSyntaxError &error() const { return m_error; }

private:
    Q_DISABLE_COPY(JsonDriver)

    // Enough for a flat document. A configuration needs 22 slots, so it doubles this once and stays in
    // the allocator's cache of blocks, which ends at 1,024 bytes.
    enum { InitialStackSize = 12 };

    // The state stack and the stack of the symbols' values in one. The key of a member is held as
    // what it is.
    struct Slot {
        int state;
        QString key;
        Value value;
    };

    Slot *push(Slot *top, int state);
    Slot *grow();
    static void takeValue(JsonLexer *lexer, Slot *slot);
    void reduce(int rule, Slot *sym);

    Builder *const m_builder;
    QVector<Slot> m_stack; ///< slot 0 is never used
    Slot *m_limit; ///< behind the last slot
    Value m_result;
    JsonSyntaxError m_error;
};

// A tree that a syntax error or an exception left behind may be as deep as the document.
template<typename Builder>
JsonDriver<Builder>::~JsonDriver()
{
    for (int i = 0; i < m_stack.size(); ++i)
        Builder::dispose(m_stack[i].value);
    Builder::dispose(m_result);
}

// Doubles the stack and returns where its first new slot is.
template<typename Builder>
typename JsonDriver<Builder>::Slot *JsonDriver<Builder>::grow()
{
    const int oldSize = m_stack.size();
    m_stack.resize(qMax(int(InitialStackSize), oldSize * 2));
    m_limit = m_stack.data() + m_stack.size();
    return m_stack.data() + oldSize;
}

// Moves the top up by one slot and returns it. An empty rule does so as well as a shift, hence the
// check here.
template<typename Builder>
inline typename JsonDriver<Builder>::Slot *JsonDriver<Builder>::push(Slot *top, int state)
{
    ++top;
    if (top == m_limit)
        top = grow();
    top->state = state;
    return top;
}

// sym[n] is the slot of the n-th symbol of the rule, and sym[1] becomes that of its result. The slots
// above that are left without a value, as all slots above the top are.
//
// A member is not made into a value of its own: its key and its value stay in their slots, as sym[1]
// and sym[3] of its rule, until the rule that follows at once moves them into the object. The key of
// the slot of the "{", sym[0] there, is free to hold the last key of the object.
template<typename Builder>
Q_ALWAYS_INLINE void JsonDriver<Builder>::reduce(int rule, Slot *sym)
{
    switch (rule) {
    case 0: // Root ::= Value
        m_result.swap(sym[1].value);
        break;

    case 1: // Object ::= "{" Members "}"
        m_builder->endObject(sym[2].value);
        sym[1].value.swap(sym[2].value);
        sym[1].key = QString();
        break;

    case 2: // Members ::= Member
        m_builder->beginObject(sym[1].value);
        m_builder->addMember(sym[1].value, sym[0].key, sym[1].key, sym[3].value);
        break;

    case 3: // Members ::= Members "," Member
        m_builder->addMember(sym[1].value, sym[0].key, sym[3].key, sym[5].value);
        break;

    case 4: // Members ::= (empty)
        m_builder->beginObject(sym[1].value);
        break;

    case 5: // Member ::= "string" ":" Value
        break;

    case 6: // Value ::= "false"
        Builder::scalar(sym[1].value) = false;
        break;

    case 7: // Value ::= "true"
        Builder::scalar(sym[1].value) = true;
        break;

    case 8: // Value ::= "null"
    case 9: // Value ::= Object
    case 10: // Value ::= Array
    case 11: // Value ::= "number"
    case 12: // Value ::= "string"
        break;

    case 13: // Array ::= "[" Values "]"
        m_builder->endArray(sym[2].value);
        sym[1].value.swap(sym[2].value);
        break;

    case 14: { // Values ::= Value
        Value values = Value();
        m_builder->beginArray(values);
        m_builder->addElement(values, sym[1].value);
        sym[1].value.swap(values);
        break;
    }

    case 15: // Values ::= Values "," Value
        m_builder->addElement(sym[1].value, sym[3].value);
        break;

    case 16: // Values ::= (empty)
        m_builder->beginArray(sym[1].value);
        break;
    }
}

// Moves the value of a string or a number into its slot.
template<typename Builder>
inline void JsonDriver<Builder>::takeValue(JsonLexer *lexer, Slot *slot)
{
    if (slot->state == JsonGrammar::KEY_STATE)
        lexer->takeText(slot->key);
    else
        lexer->takeValue(Builder::scalar(slot->value));
}

template<typename Builder>
bool JsonDriver<Builder>::parse(JsonLexer *lexer)
{
    const int noToken = -1;
    int state = 0;
    int token = noToken;
    Slot *top = push(grow(), state);

    for (;;) {
        // A state that has nothing but its default action does not wait for a token.
        if (token == noToken && !JsonGrammar::isDefaultOnly(state))
            token = lexer->nextToken();
        const int action = JsonGrammar::tAction(state, token);

        if (action > 0) {
            if (action == JsonGrammar::ACCEPT_STATE)
                return true;
            state = action;
            top = push(top, state);
            if (token <= T_NUMBER)
                takeValue(lexer, top);
            token = noToken;
        } else if (action < 0) {
            const int rule = -action - 1;
            top -= JsonGrammar::rhs[rule];
            state = JsonGrammar::ntAction(top->state,
                                          JsonGrammar::lhs[rule] - JsonGrammar::TERMINAL_COUNT);
            top = push(top, state);
            reduce(rule, top - 1);
        } else {
            m_error = JsonSyntaxError(*lexer, state);
            return false;
        }
    }
}

#endif // JSONDRIVER_H
