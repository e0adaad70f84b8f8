#include "json/jsonparser.h"

#include "global/qtcompat.h"
#include "json/jsongrammar.h"
#include "json/jsonlexer.h"
#include "json/varianttree.h"

#include <QStringList>

namespace {

const int NoToken = -1;

// Enough for a flat document. A configuration needs 22 slots, so it doubles this once and stays in the
// allocator's cache of blocks, which ends at 1,024 bytes.
const int InitialStackSize = 12;

// Adds a member to an object and moves its value into the map. While the keys come in ascending order,
// `lastKey` holds the last of them, and the next one goes straight to the end of the map; it is null
// from the first that does not.
void insertMember(QVariantMap &members, QString &lastKey, QString &key, QVariant &value)
{
    if (members.isEmpty() || (!lastKey.isNull() && !qMapLessThanKey(key, lastKey))) {
        QtCompat::insertMultiLast(members, key).swap(value);
        qSwap(lastKey, key);
    } else {
        QtCompat::insertMulti(members, key).swap(value);
        lastKey = QString();
    }
    key = QString();
}

// Appends an element to an array and moves its value into the list.
Q_ALWAYS_INLINE void appendElement(QVariantList &values, QVariant &value)
{
    static const QVariant invalid;
    values.append(invalid);
    values.last().swap(value);
}

} // namespace

QVariant parseJson(const QByteArray &json, QString *errorMessage)
{
    JsonLexer lexer(json);
    JsonParser parser;
    if (!parser.parse(&lexer) && errorMessage) {
        *errorMessage = QString::fromLatin1("%1 at line %2 pos %3")
                            .arg(parser.errorMessage())
                            .arg(parser.errorLine())
                            .arg(parser.errorPos());
    }
    return parser.takeResult();
}

JsonParser::JsonParser() : m_limit(nullptr), m_errorLine(0), m_errorPos(0) {}

// A tree that a syntax error or an exception left behind may be as deep as the document.
JsonParser::~JsonParser()
{
    for (int i = 0; i < m_stack.size(); ++i)
        VariantTree::dispose(m_stack[i].value);
    VariantTree::dispose(m_result);
}

QVariant JsonParser::takeResult()
{
    QVariant result;
    result.swap(m_result);
    return result;
}

// Doubles the stack and returns where its first new slot is.
JsonParser::Slot *JsonParser::grow()
{
    const int oldSize = m_stack.size();
    m_stack.resize(qMax(InitialStackSize, oldSize * 2));
    m_limit = m_stack.data() + m_stack.size();
    return m_stack.data() + oldSize;
}

// Moves the top up by one slot and returns it. An empty rule does so as well as a shift, hence the
// check here.
inline JsonParser::Slot *JsonParser::push(Slot *top, int state)
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
// and sym[3] of its rule, until the rule that follows at once moves them into the map. The key of the
// slot of the "{", sym[0] there, is free to hold the last key of the object.
Q_ALWAYS_INLINE void JsonParser::reduce(int rule, Slot *sym)
{
    switch (rule) {
    case 0: // Root ::= Value
        m_result.swap(sym[1].value);
        break;

    case 1: // Object ::= "{" Members "}"
    case 13: // Array ::= "[" Values "]"
        sym[1].value.swap(sym[2].value);
        sym[1].key = QString();
        break;

    case 2: { // Members ::= Member
        QVariant members = QVariantMap();
        insertMember(VariantTree::map(members), sym[0].key, sym[1].key, sym[3].value);
        sym[1].value.swap(members);
        break;
    }

    case 3: // Members ::= Members "," Member
        insertMember(VariantTree::map(sym[1].value), sym[0].key, sym[3].key, sym[5].value);
        break;

    case 4: // Members ::= (empty)
        sym[1].value = QVariantMap();
        break;

    case 5: // Member ::= "string" ":" Value
        break;

    case 6: // Value ::= "false"
        sym[1].value = false;
        break;

    case 7: // Value ::= "true"
        sym[1].value = true;
        break;

    case 8: // Value ::= "null"
    case 9: // Value ::= Object
    case 10: // Value ::= Array
    case 11: // Value ::= "number"
    case 12: // Value ::= "string"
        break;

    case 14: { // Values ::= Value
        QVariant values = QVariantList();
        appendElement(VariantTree::list(values), sym[1].value);
        sym[1].value.swap(values);
        break;
    }

    case 15: // Values ::= Values "," Value
        appendElement(VariantTree::list(sym[1].value), sym[3].value);
        break;

    case 16: // Values ::= (empty)
        sym[1].value = QVariantList();
        break;
    }
}

// Moves the value of a string or a number into its slot.
inline void JsonParser::takeValue(JsonLexer *lexer, Slot *slot)
{
    if (slot->state == JsonGrammar::KEY_STATE)
        lexer->takeText(slot->key);
    else
        lexer->takeValue(slot->value);
}

bool JsonParser::parse(JsonLexer *lexer)
{
    int state = 0;
    int token = NoToken;
    Slot *top = push(grow(), state);

    for (;;) {
        // A state that has nothing but its default action does not wait for a token.
        if (token == NoToken && !JsonGrammar::isDefaultOnly(state))
            token = lexer->nextToken();
        const int action = JsonGrammar::tAction(state, token);

        if (action > 0) {
            if (action == JsonGrammar::ACCEPT_STATE)
                return true;
            state = action;
            top = push(top, state);
            if (token <= T_NUMBER)
                takeValue(lexer, top);
            token = NoToken;
        } else if (action < 0) {
            const int rule = -action - 1;
            top -= JsonGrammar::rhs[rule];
            state = JsonGrammar::ntAction(top->state,
                                          JsonGrammar::lhs[rule] - JsonGrammar::TERMINAL_COUNT);
            top = push(top, state);
            reduce(rule, top - 1);
        } else {
            reportError(*lexer, state);
            return false;
        }
    }
}

// Only what can be shifted counts as expected. More than two things to expect are not listed: the
// message would be long and say little.
void JsonParser::reportError(const JsonLexer &lexer, int state)
{
    QStringList expected;
    for (int token = 0; token < JsonGrammar::TERMINAL_COUNT; ++token) {
        if (JsonGrammar::tAction(state, token) > 0)
            expected +=
                QLatin1Char('\'') + QLatin1String(JsonGrammar::spell[token]) + QLatin1Char('\'');
    }
    m_errorLine = lexer.line();
    m_errorPos = lexer.pos();
    if (expected.size() == 1 || expected.size() == 2)
        m_errorMessage = QLatin1String("Expected ") + expected.join(QLatin1String(", "));
}
