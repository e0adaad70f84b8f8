// SPDX-License-Identifier: MIT
#include "json/varianttree.h"

#include <QVector>

#include <new>

namespace {

typedef QVector<QVariant> Nodes;

// Moves `child` to the end of `pending` when it is a container; scalars go with their parent.
void setAside(QVariant &child, Nodes &pending)
{
    if (!VariantTree::isContainer(child))
        return;
    pending.append(QVariant());
    pending.last().swap(child);
}

// A container that somebody else holds, too, is left alone: it loses no more than a reference.
void setChildrenAside(QVariant &node, Nodes &pending)
{
    if (VariantTree::isMap(node)) {
        QtCompat::MultiMap &map = VariantTree::map(node);
        if (!map.isDetached())
            return;
        for (QtCompat::MultiMap::iterator it = map.begin(); it != map.end(); ++it)
            setAside(it.value(), pending);
    } else {
        QVariantList &list = VariantTree::list(node);
        if (!list.isDetached())
            return;
        for (QVariantList::iterator it = list.begin(); it != list.end(); ++it)
            setAside(*it, pending);
    }
}

void disposeInSteps(QVariant &root)
{
    Nodes pending;
    setAside(root, pending);
    while (!pending.isEmpty()) {
        QVariant node;
        node.swap(pending.last());
        pending.pop_back();
        setChildrenAside(node, pending);
    }
}

} // namespace

void VariantTree::disposeContainer(QVariant &value)
{
    try {
        disposeInSteps(value);
    } catch (const std::bad_alloc &) {
        // What is left is freed as the toolkit does it, by recursion.
    }
}
