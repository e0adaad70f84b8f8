// SPDX-License-Identifier: MIT
#include "json/jsonparser.h"

#include "global/qtcompat.h"
#include "json/jsongrammar.h"
#include "json/varianttree.h"

#include <QStringList>

QVariant parseJson(const QByteArray &json, QString *errorMessage)
{
    JsonLexer lexer(json);
    JsonParser parser;
    if (!parser.parse(&lexer) && errorMessage)
        *errorMessage = parser.errorText();
    return parser.takeResult();
}

JsonParser::JsonParser() : m_limit(nullptr), m_errorLine(0), m_errorPos(0) {}

// A tree that a syntax error or an exception left here may be as deep as the document.
JsonParser::~JsonParser()
{
    for (Slot &slot : m_stack)
        VariantTree::dispose(slot.value);
    VariantTree::dispose(m_result);
}

QVariant JsonParser::takeResult()
{
    QVariant result;
    result.swap(m_result);
    return result;
}

QString JsonParser::errorText() const
{
    return QString::fromLatin1("%1 at line %2 pos %3")
        .arg(m_errorMessage)
        .arg(m_errorLine)
        .arg(m_errorPos);
}

bool JsonParser::parse(JsonLexer *lexer)
{
    const int noToken = -1;
    int token = noToken;
    Slot *top = push(addSlot(), 0);
    for (;;) {
        // A state that has nothing but its default action does not wait for a token.
        if (token == noToken && !JsonGrammar::isDefaultOnly(top->state))
            token = lexer->nextToken();
        const int action = JsonGrammar::tAction(top->state, token);
        if (action < 0) {
            top = reduce(top, -action - 1);
            continue;
        }
        if (action == JsonGrammar::ACCEPT_STATE)
            return true;
        if (action == 0) {
            setError(*lexer, top->state);
            return false;
        }
        top = shift(top, action, token, lexer);
        token = noToken;
    }
}

// The stack has room for 128 slots at first, then for twice as many. A slot is made when it is reached for
// the first time, as most documents need few.
JsonParser::Slot *JsonParser::addSlot()
{
    if (m_stack.size() == m_stack.capacity())
        m_stack.reserve(m_stack.empty() ? 128 : 2 * m_stack.size());
    m_stack.push_back(Slot());
    m_limit = m_stack.data() + m_stack.size();
    return &m_stack.back();
}

// Moves the top up by one slot and returns it. A reduction by an empty rule does so as well as a shift,
// hence the check here.
inline JsonParser::Slot *JsonParser::push(Slot *top, int state)
{
    ++top;
    if (top == m_limit)
        top = addSlot();
    top->state = state;
    return top;
}

inline JsonParser::Slot *JsonParser::shift(Slot *top, int state, int token, JsonLexer *lexer)
{
    top = push(top, state);
    if (token == T_STRING)
        lexer->takeText(top->text);
    else if (token == T_NUMBER)
        lexer->takeNumber(top->value);
    return top;
}

Q_ALWAYS_INLINE JsonParser::Slot *JsonParser::reduce(Slot *top, int rule)
{
    top -= JsonGrammar::rhs[rule];
    const int nonterminal = JsonGrammar::lhs[rule] - JsonGrammar::TERMINAL_COUNT;
    top = push(top, JsonGrammar::ntAction(top->state, nonterminal));
    build(rule, top - 1);
    return top;
}

// sym[n] is the slot of the n-th symbol of the rule, and sym[1] becomes that of its result. Values are
// moved, so that the slots above the top have none.
Q_ALWAYS_INLINE void JsonParser::build(int rule, Slot *sym)
{
    switch (rule) {
    case 0: // Root ::= Value
        m_result.swap(sym[1].value);
        break;

    case 1: // Object ::= "{" Members "}"
    case 13: // Array ::= "[" Values "]"
        sym[1].value.swap(sym[2].value);
        break;

    case 2: { // Members ::= Member
        QVariant members = QtCompat::toVariant(QtCompat::MultiMap());
        addMember(members, sym[1]);
        sym[1].value.swap(members);
        break;
    }

    case 3: // Members ::= Members "," Member
        addMember(sym[1].value, sym[3]);
        break;

    case 4: // Members ::= (empty)
        sym[1].value = QtCompat::toVariant(QtCompat::MultiMap());
        break;

    case 5: // Member ::= "string" ":" Value
        sym[1].value.swap(sym[3].value);
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
        break;

    case 12: // Value ::= "string"
        sym[1].value = sym[1].text;
        break;

    case 14: { // Values ::= Value
        QVariant values = QVariantList();
        addElement(values, sym[1]);
        sym[1].value.swap(values);
        break;
    }

    case 15: // Values ::= Values "," Value
        addElement(sym[1].value, sym[3]);
        break;

    case 16: // Values ::= (empty)
        sym[1].value = QVariantList();
        break;
    }
}

// A key that comes twice keeps both entries.
void JsonParser::addMember(QVariant &object, Slot &member)
{
    QtCompat::insertMulti(VariantTree::map(object), member.text).swap(member.value);
}

void JsonParser::addElement(QVariant &array, Slot &element)
{
    QVariantList &values = VariantTree::list(array);
    values.append(QVariant());
    values.last().swap(element.value);
}

// Only what can be shifted counts as expected. More than two things to expect are not listed: the
// message would be long and say little.
void JsonParser::setError(const JsonLexer &lexer, int state)
{
    QStringList names;
    for (int token = 0; token < JsonGrammar::TERMINAL_COUNT; ++token) {
        if (JsonGrammar::tAction(state, token) > 0)
            names +=
                QLatin1Char('\'') + QLatin1String(JsonGrammar::spell[token]) + QLatin1Char('\'');
    }
    if (names.size() == 1 || names.size() == 2)
        m_errorMessage = QLatin1String("Expected ") + names.join(QLatin1String(", "));
    m_errorLine = lexer.line();
    m_errorPos = lexer.pos();
}
