// SPDX-License-Identifier: MIT
#ifndef VALUEPLACES_H
#define VALUEPLACES_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/properties/properties.h"

#include <QHash>
#include <QPair>

#include <map>

/// A member of an object that the library reads, or would if its key were spelt right.
struct ReadMember {
    const Property *property; ///< that is meant; null where nobody can tell
    QString meant; ///< its key, by meantKey()
    const Node *object;
    const Node::Child *member;
    const Node *value;
};

/// Finds the member that a place of the file belongs to, among all in which the library looks for
/// properties.
class ValuePlaces
{
public:
    explicit ValuePlaces(const Document &document);

    /// The member with its key, or its value that is no object or array, at `offset`. Null when there is
    /// none. A value that is known by where it begins may be empty.
    const ReadMember *at(int offset) const;

    /// How many members of the object mean that key.
    int count(const Node &object, const QString &meant) const
    {
        return m_counts.value({ &object, meant });
    }

private:
    void addObject(const Node &object, Section section);
    void addElements(const Node &array, Section section);
    void add(int begin, const ReadMember &member) { m_all.insert({ begin, member }); }

    const Document &m_document;
    std::map<int, ReadMember> m_all; ///< by where the key or the value begins
    QHash<QPair<const Node *, QString>, int> m_counts;
};

#endif // VALUEPLACES_H
