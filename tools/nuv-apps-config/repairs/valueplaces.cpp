// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/valueplaces.h"

#include "tools/nuv-apps-config/repairs/meantkey.h"

ValuePlaces::ValuePlaces(const Document &document) : m_document(document)
{
    if (!document.isEmpty())
        addObject(document.rootNode(), Section::Document);
}

const ReadMember *ValuePlaces::at(int offset) const
{
    auto next = m_all.upper_bound(offset);
    if (next == m_all.begin())
        return nullptr;
    const auto &[begin, read] = *--next;
    const bool isKey = begin == read.member->keyBegin;
    const int end = isKey ? read.member->keyEnd : read.value->end;
    return offset < end || offset == begin ? &read : nullptr;
}

void ValuePlaces::addObject(const Node &object, Section section)
{
    if (object.type != Node::Object)
        return;
    for (const Node::Child &member : object.children) {
        const QString meant = meantKey(section, member.key);
        const Property *const property = Properties::find(section, meant);
        const Node &value = m_document.at(member);
        const ReadMember read = { property, meant, &object, &member, &value };
        ++m_counts[{ &object, meant }];
        add(member.keyBegin, read);
        if (!value.isContainer())
            add(value.begin, read);
        if (!property)
            continue;
        const QLatin1String key(property->key);
        if (key == QLatin1String("Global"))
            addObject(value, Section::Global);
        else if (key == QLatin1String("Certificate"))
            addObject(value, Section::Certificate);
        else if (key == QLatin1String("Applications"))
            addElements(value, Section::Application);
        else if (property->kind == Kind::Array)
            addElements(value, Section::Domain);
    }
}

void ValuePlaces::addElements(const Node &array, Section section)
{
    for (const Node::Child &child : array.children)
        addObject(m_document.at(child), section);
}
