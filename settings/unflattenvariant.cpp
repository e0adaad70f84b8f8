// SPDX-License-Identifier: MIT
#include "settings/flatkeys.h"

#include "global/qtcompat.h"
#include "json/varianttree.h"

#include <algorithm>
#include <iterator>

namespace {

// The object in `node`. Anything else that the node holds is dropped for an empty object.
QtCompat::MultiMap &makeObject(QVariant &node)
{
    if (!VariantTree::isMap(node)) {
        const QtCompat::MultiMap object = QtCompat::toMultiMap(node);
        VariantTree::dispose(node);
        node = QtCompat::toVariant(object);
    }
    return VariantTree::map(node);
}

// The entry `name` of the object in `node`, made when there is none. Names most often come in ascending
// order.
QVariant &entry(QVariant &node, const QString &name)
{
    QtCompat::MultiMap &object = makeObject(node);
    QtCompat::MultiMap::iterator next = object.end();
    if (!object.isEmpty() && !(std::prev(next).key() < name)) {
        next = object.lowerBound(name);
        if (next.key() == name)
            return next.value();
    }
    return QtCompat::insertBefore(object, next, name).value();
}

// Makes the object in `node` an array of `size` elements, invalid where the object has no entry for the
// position.
void makeArray(QVariant &node, int size)
{
    QtCompat::MultiMap &object = makeObject(node);
    QVariantList list;
    for (int position = 1; position <= size; ++position) {
        list.append(QVariant());
        const QtCompat::MultiMap::iterator element = object.find(QString::number(position));
        if (element != object.end())
            list.last().swap(element.value());
    }
    VariantTree::dispose(node);
    node = list;
}

int commonLength(const QString &one, const QString &other)
{
    const QChar *const end = one.constData() + qMin(one.size(), other.size());
    return int(std::mismatch(one.constData(), end, other.constData()).first - one.constData());
}

} // namespace

Unflattener::Unflattener(QVariant &root)
{
    const Component whole = { -1, &root };
    m_path.push_back(whole);
}

void Unflattener::set(const QString &key, const QVariant &value)
{
    openParent(key);
    QVariant &parent = *m_path.back().node;
    const QString name = key.mid(m_path.back().end + 1);
    if (name == FlatKeySize) {
        makeArray(parent, value.toInt());
        return;
    }
    entry(parent, name) = value;
}

// What the key has in common with the one before it is open already. Setting a value changes nothing
// above it, so the nodes on the way stay where they are.
void Unflattener::openParent(const QString &key)
{
    const int common = commonLength(m_key, key);
    while (m_path.back().end >= common)
        m_path.pop_back();
    m_key = key;
    int begin = m_path.back().end + 1;
    for (int end; (end = int(key.indexOf(FlatKeySeparator, begin))) >= 0; begin = end + 1) {
        const Component opened = { end, &entry(*m_path.back().node, key.mid(begin, end - begin)) };
        m_path.push_back(opened);
    }
}
