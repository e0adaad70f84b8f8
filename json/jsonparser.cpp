#include "json/jsonparser.h"

#include "global/qtcompat.h"
#include "json/jsongrammar.h"
#include "json/jsonlexer.h"
#include "json/varianttree.h"

#include <QStringList>

namespace {

const int NoToken = -1;

// A configuration needs about twenty slots. A stack of this size stays in the allocator's cache of
// small blocks.
const int InitialStackSize = 32;

// The string in its variant, without a copy.
const QString &text(const QVariant &value)
{
    return *static_cast<const QString *>(value.constData());
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
                            .arg(parser.errorPosition());
    }
    return parser.takeResult();
}

JsonParser::JsonParser() : m_top(0), m_symbols(nullptr), m_errorLine(0), m_errorPosition(0) {}

// A tree that a syntax error or an exception left behind may be as deep as the document.
JsonParser::~JsonParser()
{
    for (int i = 0; i < m_symStack.size(); ++i)
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
    const int size = m_stateStack.isEmpty() ? InitialStackSize : m_stateStack.size() * 2;
    m_stateStack.resize(size);
    m_symStack.resize(size);
    m_symbols = m_symStack.data();
}

// Moves the top up by one slot. An empty rule does so as well as a shift, hence the check here.
void JsonParser::push()
{
    ++m_top;
    if (m_top == m_stateStack.size())
        reallocateStack();
}

bool JsonParser::parse(JsonLexer *lexer)
{
    reallocateStack();
    m_top = 1;
    m_stateStack[1] = 0;
    int token = NoToken;

    for (;;) {
        const int state = m_stateStack[m_top];
        if (token == NoToken && !JsonGrammar::isDefaultOnly(state))
            token = lexer->nextToken();
        const int action = JsonGrammar::tAction(state, token);

        if (action == JsonGrammar::ACCEPT_STATE)
            return true;
        if (action > 0) {
            push();
            m_stateStack[m_top] = action;
            lexer->takeValue(m_symbols[m_top]);
            token = NoToken;
        } else if (action < 0) {
            const int rule = -action - 1;
            m_top -= JsonGrammar::rhs[rule];
            const int origin = m_stateStack[m_top];
            push();
            reduce(rule);
            m_stateStack[m_top] = JsonGrammar::ntAction(
                origin, JsonGrammar::lhs[rule] - JsonGrammar::TERMINAL_COUNT);
        } else {
            reportError(*lexer, state);
            return false;
        }
    }
}

// sym(n) is the value of the n-th symbol of the rule, and sym(1) becomes that of its result. A member
// is not made into a value of its own: its key and its value stay in their slots, as sym(1) and
// sym(3) of its rule, until the rule that follows at once moves them into the map.
void JsonParser::reduce(int rule)
{
    switch (rule) {
    case 0: // Root ::= Value
        m_result.swap(sym(1));
        break;

    case 1: // Object ::= "{" Members "}"
    case 13: // Array ::= "[" Values "]"
        sym(1).swap(sym(2));
        break;

    case 2: { // Members ::= Member
        QVariant members = QVariantMap();
        insertMember(VariantTree::map(members), sym(1)).swap(sym(3));
        sym(1).swap(members);
        break;
    }

    case 3: // Members ::= Members "," Member
        insertMember(VariantTree::map(sym(1)), sym(3)).swap(sym(5));
        break;

    case 4: // Members ::= (empty)
        sym(1) = QVariantMap();
        break;

    case 5: // Member ::= "string" ":" Value
        break;

    case 6: // Value ::= "false"
        sym(1) = false;
        break;

    case 7: // Value ::= "true"
        sym(1) = true;
        break;

    case 14: { // Values ::= Value
        QVariantList values;
        values.append(QVariant());
        values.last().swap(sym(1));
        sym(1) = values;
        break;
    }

    case 15: { // Values ::= Values "," Value
        QVariantList &values = VariantTree::list(sym(1));
        values.append(QVariant());
        values.last().swap(sym(3));
        break;
    }

    case 16: // Values ::= (empty)
        sym(1) = QVariantList();
        break;
    }
}

// While the keys of an object come in ascending order, the slot of its "{", as sym(0) of the rule,
// holds the last of them, and the next one goes straight to the end of the map.
QVariant &JsonParser::insertMember(QVariantMap &members, QVariant &key)
{
    const QString &name = text(key);
    QVariant &lastKey = sym(0);
    if (!members.isEmpty() && (!lastKey.isValid() || name < text(lastKey))) {
        lastKey.clear();
        return QtCompat::insertMulti(members, name);
    }
    QVariant &value = QtCompat::insertMultiLast(members, name);
    lastKey.swap(key);
    return value;
}

// Only what can be shifted counts as expected. More than two things to expect are not listed: the
// message would be long and say little.
void JsonParser::reportError(const JsonLexer &lexer, int state)
{
    QStringList expected;
    for (int token = 0; token < JsonGrammar::TERMINAL_COUNT; ++token) {
        if (JsonGrammar::tAction(state, token) > 0)
            expected += QLatin1Char('\'') + QLatin1String(JsonGrammar::spell[token]) + QLatin1Char('\'');
    }
    m_errorLine = lexer.line();
    m_errorPosition = lexer.position();
    if (expected.size() == 1 || expected.size() == 2)
        m_errorMessage = QLatin1String("Expected ") + expected.join(QLatin1String(", "));
}
