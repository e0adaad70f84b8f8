// SPDX-License-Identifier: MIT
#ifndef DOCUMENT_H
#define DOCUMENT_H

#include "tools/nuv-apps-config/text/ranges.h"

#include <QString>
#include <QVariant>

#include <vector>

/// A value of the file and where it is.
struct Node {
    enum Type { Null, Bool, Number, Text, Object, Array, Missing };

    struct Child {
        int node; ///< its index in the document
        int keyBegin; ///< of members only
        int keyEnd;
        QString key;
    };

    Type type = Missing;
    int begin = 0;
    int end = 0;
    QVariant value; ///< as the library has it; of scalars only
    std::vector<Child> children;

    bool isContainer() const { return type == Object || type == Array; }
    int length() const { return end - begin; }
};

/// A whole file, as far as it could be read: a tree in one list.
struct Document {
    std::vector<Node> nodes;
    int root = -1; ///< none
    int depth = 0;
    Ranges mended; ///< where a mistake in the syntax was
    Ranges loose; ///< where a comma waits for an entry that may be the one that is missing
    Ranges doubtful; ///< where it concerned what a key or a value says
    Ranges moved; ///< where it concerned a bracket, so that entries may belong elsewhere
    Ranges odd; ///< what the library accepts, and JSON does not

    /// Whether something may be missing in the node only because of a mistake in the syntax.
    bool isMended(const Node &node) const
    {
        return mended.touch(node.begin, node.end) || isLoose(node);
    }

    /// Whether a comma that waits for an entry is one of its own, not of a value in it.
    bool isLoose(const Node &node) const
    {
        int begin = node.begin;
        for (const Node::Child &child : node.children) {
            if (loose.touch(begin, at(child).begin))
                return true;
            begin = at(child).end;
        }
        return loose.touch(begin, node.end);
    }

    /// Whether the value may be another one than was meant.
    bool isDoubtful(const Node &node) const
    {
        return doubtful.touch(node.begin, node.isContainer() ? node.begin : node.end);
    }
    /// Whether some of its entries may belong elsewhere, and others into it.
    bool isMoved(const Node &node) const { return moved.touch(node.begin, node.end); }

    bool isDoubtful(const Node::Child &member) const
    {
        return doubtful.touch(member.keyBegin, member.keyEnd);
    }

    bool isEmpty() const { return root < 0; }
    const Node &at(const Node::Child &child) const { return nodes[size_t(child.node)]; }
    const Node &rootNode() const { return nodes[size_t(root)]; }

    /// The member of `object` with that key that survives in the flat keys: the first of the text.
    /// Null when there is none.
    const Node::Child *member(const Node &object, const QString &key) const
    {
        for (const Node::Child &child : object.children) {
            if (object.type == Node::Object && child.key == key)
                return &child;
        }
        return nullptr;
    }
};

#endif // DOCUMENT_H
