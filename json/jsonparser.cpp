#include "json/jsonparser.h"

#include "global/qtcompat.h"
#include "json/jsongrammar.h"
#include "json/jsonlexer.h"
#include "json/varianttree.h"

#include <QStringList>

namespace {

const int NoToken = -1;

// Enough for a flat document. A configuration needs about twenty slots, so that its stacks stay in the
// allocator's cache of small blocks.
const int InitialStackSize = 8;

// The string in its variant, without a copy.
const QString &text(const QVariant &value)
{
    return *static_cast<const QString *>(value.constData());
}

// Adds a member to an object and moves its value into the map. While the keys come in ascending order,
// `lastKey` holds the last of them, and the next one goes straight to the end of the map.
void insertMember(QVariantMap &members, QVariant &lastKey, QVariant &key, QVariant &value)
{
    const QString &name = text(key);
    if (members.isEmpty() || (lastKey.isValid() && !(name < text(lastKey)))) {
        QtCompat::insertMultiLast(members, name).swap(value);
        lastKey.swap(key);
    } else {
        QtCompat::insertMulti(members, name).swap(value);
        lastKey.clear();
    }
    key.clear();
}

// Appends an element to an array and moves its value into the list.
void appendElement(QVariantList &values, QVariant &value)
{
    values.append(QVariant());
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

JsonParser::JsonParser()
    : m_states(nullptr), m_symbols(nullptr), m_stackSize(0), m_errorLine(0), m_errorPos(0)
{
}

// A tree that a syntax error or an exception left behind may be as deep as the document.
JsonParser::~JsonParser()
{
    for (int i = 0; i < m_stackSize; ++i)
        VariantTree::dispose(m_symbols[i]);
    VariantTree::dispose(m_result);
}

QVariant JsonParser::takeResult()
{
    QVariant result;
    result.swap(m_result);
    return result;
}

void JsonParser::reallocateStack()
{
    const int size = m_stackSize == 0 ? InitialStackSize : m_stackSize * 2;
    m_stateStack.resize(size);
    m_symStack.resize(size);
    m_states = m_stateStack.data();
    m_symbols = m_symStack.data();
    m_stackSize = size;
}

// An empty rule moves the top up as well as a shift, hence the check here.
inline void JsonParser::push(int *tos, int state)
{
    ++*tos;
    if (*tos == m_stackSize)
        reallocateStack();
    m_states[*tos] = state;
}

// sym[n] is the value of the n-th symbol of the rule, and sym[1] becomes that of its result. The slots
// above that are left invalid, as all slots above the top are.
//
// A member is not made into a value of its own: its key and its value stay in their slots, as sym[1]
// and sym[3] of its rule, until the rule that follows at once moves them into the map. The slot of the
// "{", sym[0] there, is free to hold the last key of the object.
Q_ALWAYS_INLINE void JsonParser::reduce(int rule, QVariant *sym)
{
    switch (rule) {
    case 0: // Root ::= Value
        m_result.swap(sym[1]);
        break;

    case 1: // Object ::= "{" Members "}"
    case 13: // Array ::= "[" Values "]"
        sym[1].swap(sym[2]);
        sym[2].clear();
        break;

    case 2: { // Members ::= Member
        QVariant members = QVariantMap();
        insertMember(VariantTree::map(members), sym[0], sym[1], sym[3]);
        sym[1].swap(members);
        break;
    }

    case 3: // Members ::= Members "," Member
        insertMember(VariantTree::map(sym[1]), sym[0], sym[3], sym[5]);
        break;

    case 4: // Members ::= (empty)
        sym[1] = QVariantMap();
        break;

    case 5: // Member ::= "string" ":" Value
        break;

    case 6: // Value ::= "false"
        sym[1] = false;
        break;

    case 7: // Value ::= "true"
        sym[1] = true;
        break;

    case 8: // Value ::= "null"
    case 9: // Value ::= Object
    case 10: // Value ::= Array
    case 11: // Value ::= "number"
    case 12: // Value ::= "string"
        break;

    case 14: { // Values ::= Value
        QVariant values = QVariantList();
        appendElement(VariantTree::list(values), sym[1]);
        sym[1].swap(values);
        break;
    }

    case 15: // Values ::= Values "," Value
        appendElement(VariantTree::list(sym[1]), sym[3]);
        break;

    case 16: // Values ::= (empty)
        sym[1] = QVariantList();
        break;
    }
}

bool JsonParser::parse(JsonLexer *lexer)
{
    reallocateStack();
    int tos = 0;
    int state = 0;
    push(&tos, state);
    int token = NoToken;

    for (;;) {
        int action = -JsonGrammar::action_default[state];
        if (!JsonGrammar::isDefaultOnly(state)) {
            if (token == NoToken)
                token = lexer->nextToken();
            action = JsonGrammar::tAction(state, token);
        }

        if (action > 0) {
            if (action == JsonGrammar::ACCEPT_STATE)
                return true;
            state = action;
            push(&tos, state);
            if (token <= T_NUMBER)
                lexer->takeValue(m_symbols[tos]);
            token = NoToken;
        } else if (action < 0) {
            const int rule = -action - 1;
            tos -= JsonGrammar::rhs[rule];
            state = JsonGrammar::ntAction(m_states[tos],
                                          JsonGrammar::lhs[rule] - JsonGrammar::TERMINAL_COUNT);
            push(&tos, state);
            reduce(rule, m_symbols + tos - 1);
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
