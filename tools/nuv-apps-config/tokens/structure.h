// SPDX-License-Identifier: MIT
#ifndef STRUCTURE_H
#define STRUCTURE_H

#include "json/jsongrammar.h"

#include <QByteArray>

#include <string>

/// What may come next in a document: the library's grammar as a walk from token to token.
class Structure
{
public:
    enum Expected {
        Root,
        Nothing, ///< the document is complete
        FirstKey, ///< or a closing brace, or the one comma that may lead
        Key,
        Colon,
        MemberValue,
        AfterMember,
        FirstElement, ///< or a closing bracket, or the one comma that may lead
        Element,
        AfterElement
    };

    /// What is needed to take one token back.
    struct Mark {
        Expected expected = Root;
        int depth = 0;
        char innermost = '\0';
    };
    Mark mark() const { return Mark { m_expected, depth(), innermost() }; }

    /// Takes back the one token that came after the mark.
    void goBack(const Mark &mark);

    /// False when the token cannot come next; nothing changes then.
    bool take(int code);

    Expected expected() const { return m_expected; }
    bool expectsKey() const { return m_expected == FirstKey || m_expected == Key; }
    bool expectsValue() const;
    bool mayClose() const
    {
        return m_expected == FirstKey || m_expected == FirstElement || m_expected == AfterMember
            || m_expected == AfterElement;
    }
    int depth() const { return int(m_open.size()); }

    /// The innermost bracket that is open, 0 for none.
    char innermost() const { return m_open.empty() ? '\0' : m_open.back(); }

    /// The brackets that would close all that is open.
    QByteArray closing() const;

private:
    bool open(char bracket, Expected first);
    bool close(char bracket, Expected first, Expected after);
    bool takeComma();
    bool takeScalar(int code);
    Expected afterValue() const;

    Expected m_expected = Root;
    std::string m_open;
};

#endif // STRUCTURE_H
