// SPDX-License-Identifier: MIT
#ifndef TAGRULES_H
#define TAGRULES_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"

#include <QHash>

/// What can be wrong with the tags of the applications, each of which is the name of one.
class TagRules
{
public:
    TagRules(const Document &document, Findings &findings)
        : m_document(document), m_findings(findings)
    {
    }

    /// To be called for the applications in the order of the file. `mayBeMissing` where a tag that is
    /// missing is no mistake of its own. Returns whether the library loads the application.
    bool check(const Node &application, bool mayBeMissing);

private:
    QByteArray proposedName() const;
    void reportMissing(const Node &application, const Node *tag);
    bool reportDuplicate(const Node &application, const Node &tag);
    void reportSimilar(const Node &tag);

    const Document &m_document;
    Findings &m_findings;
    int m_count = 0; ///< of the applications so far
    QHash<QString, const Node *> m_tags; ///< where each was met first
    QHash<QString, const Node *> m_similar; ///< the same, in lower case
};

#endif // TAGRULES_H
