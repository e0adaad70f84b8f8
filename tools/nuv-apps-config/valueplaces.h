#ifndef VALUEPLACES_H
#define VALUEPLACES_H

#include "tools/nuv-apps-config/document.h"
#include "tools/nuv-apps-config/properties.h"

#include <map>

/// A member of an object that the library reads.
struct ReadMember {
    Section section; ///< of the object
    const Property *property; ///< null where the section does not know the key
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

private:
    void addObject(const Node &object, Section section);
    void addElements(const Node &array, Section section);
    void add(int begin, const ReadMember &member) { m_all.insert({ begin, member }); }

    const Document &m_document;
    std::map<int, ReadMember> m_all; ///< by where the key or the value begins
};

#endif // VALUEPLACES_H
