// SPDX-License-Identifier: MIT
#ifndef IGNORES_H
#define IGNORES_H

#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/tree/document.h"

/// What a file asks check to leave out: "_comment check": "ignore no-address, null-value: a test page".
/// It holds in the object that has the key, and in all that is in it.
class Ignores
{
public:
    Ignores(const Document &document, Findings &findings)
        : m_document(document), m_findings(findings)
    {
    }

    /// Comes before the findings of keys and values.
    void read();

    /// Reports those that had nothing to ignore. Comes last.
    void reportUnused();

private:
    struct Ignore {
        const Node *object;
        const Node::Child *member;
        QString rule;
        size_t index; ///< among those of the findings
    };

    void readMember(const Node &object, const Node::Child &member);
    void add(const Node &object, const Node::Child &member, const QString &rule);
    void report(const Node::Child &member, const QString &what, const QString &hint);

    const Document &m_document;
    Findings &m_findings;
    std::vector<Ignore> m_all;
};

#endif // IGNORES_H
