// SPDX-License-Identifier: MIT
#ifndef SECRETNODES_H
#define SECRETNODES_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/text/ranges.h"

/// Finds the secrets of a file by its tree.
class SecretNodes
{
public:
    SecretNodes(const QByteArray &bytes, const Document &document, Ranges &ranges)
        : m_bytes(bytes),
          m_document(document),
          m_ranges(ranges),
          m_surroundings(document.nodes.size(), Surroundings())
    {
    }

    void find();

private:
    struct Surroundings {
        bool isCertificate = false;
        bool isProxy = false;
    };

    void findInMember(const Node::Child &member, const Surroundings &around);
    void findInElement(const Node &element, const Surroundings &around);
    void findInText(int begin, int end, const QString &text, bool isProxy, bool isRead);
    void findPrivateKeys(int begin, int end);
    void add(int begin, int end);

    const QByteArray &m_bytes;
    const Document &m_document;
    Ranges &m_ranges;
    std::vector<Surroundings> m_surroundings; ///< of what is in each node
};

#endif // SECRETNODES_H
