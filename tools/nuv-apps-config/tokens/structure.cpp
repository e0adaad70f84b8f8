// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tokens/structure.h"

bool Structure::expectsValue() const
{
    return m_expected == Root || m_expected == MemberValue || m_expected == FirstElement
        || m_expected == Element;
}

void Structure::goBack(const Mark &mark)
{
    if (depth() > mark.depth)
        m_open.pop_back();
    else if (depth() < mark.depth)
        m_open.push_back(mark.innermost);
    m_expected = mark.expected;
}

bool Structure::take(int code)
{
    switch (code) {
    case T_LBRACE:
        return open('{', FirstKey);
    case T_LBRACKET:
        return open('[', FirstElement);
    case T_RBRACE:
        return close('{', FirstKey, AfterMember);
    case T_RBRACKET:
        return close('[', FirstElement, AfterElement);
    case T_COMMA:
        return takeComma();
    case T_COLON:
        if (m_expected != Colon)
            return false;
        m_expected = MemberValue;
        return true;
    case T_END_OF_FILE:
        return m_expected == Nothing;
    default:
        return takeScalar(code);
    }
}

bool Structure::open(char bracket, Expected first)
{
    if (!expectsValue())
        return false;
    m_open.push_back(bracket);
    m_expected = first;
    return true;
}

bool Structure::close(char bracket, Expected first, Expected after)
{
    if (innermost() != bracket || (m_expected != first && m_expected != after))
        return false;
    m_open.pop_back();
    m_expected = afterValue();
    return true;
}

bool Structure::takeComma()
{
    if (m_expected == FirstKey || m_expected == AfterMember)
        m_expected = Key;
    else if (m_expected == FirstElement || m_expected == AfterElement)
        m_expected = Element;
    else
        return false;
    return true;
}

bool Structure::takeScalar(int code)
{
    const bool isScalar =
        code == T_STRING || code == T_NUMBER || code == T_TRUE || code == T_FALSE || code == T_NULL;
    if (code == T_STRING && expectsKey()) {
        m_expected = Colon;
        return true;
    }
    if (!isScalar || !expectsValue())
        return false;
    m_expected = afterValue();
    return true;
}

Structure::Expected Structure::afterValue() const
{
    if (m_open.empty())
        return Nothing;
    return m_open.back() == '{' ? AfterMember : AfterElement;
}

QByteArray Structure::closing() const
{
    QByteArray brackets;
    for (size_t i = m_open.size(); i-- > 0;)
        brackets += m_open[i] == '{' ? '}' : ']';
    return brackets;
}
