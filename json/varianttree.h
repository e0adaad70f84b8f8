// SPDX-License-Identifier: MIT
#ifndef VARIANTTREE_H
#define VARIANTTREE_H

#include "global/qtcompat.h"

#include <QVariant>

/// Access to variant trees without copies and without recursion.
///
/// A tree can be as deep as its document has brackets, so nothing here or in the walks that use it
/// takes stack in proportion to the depth. The toolkit's own destructors do, hence dispose().
namespace VariantTree {

inline bool isMap(const QVariant &value)
{
    return value.userType() == QtCompat::multiMapType();
}

inline bool isList(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList;
}

inline bool isContainer(const QVariant &value)
{
    const int type = value.userType();
    return type == QtCompat::multiMapType() || type == QMetaType::QVariantList;
}

/// The container in its variant, to be changed in place. Taking it out and putting it back would
/// copy it whole at every change, as long as the variant still holds it. `value` must be a map.
///
/// A variant has room for the handle of a container and never shares it with another variant, so that
/// there is nothing to detach, as QVariant::data() would.
inline QtCompat::MultiMap &map(QVariant &value)
{
    return *static_cast<QtCompat::MultiMap *>(const_cast<void *>(value.constData()));
}

inline const QtCompat::MultiMap &map(const QVariant &value)
{
    return *static_cast<const QtCompat::MultiMap *>(value.constData());
}

/// As map(); `value` must be a list.
inline QVariantList &list(QVariant &value)
{
    return *static_cast<QVariantList *>(const_cast<void *>(value.constData()));
}

inline const QVariantList &list(const QVariant &value)
{
    return *static_cast<const QVariantList *>(value.constData());
}

/// A container that a walk has open, and the place in it. One of map and list is in use; the other is
/// empty.
struct Level {
    Level() : isObject(false), index(0) {}

    explicit Level(const QVariant &container)
        : isObject(isMap(container) || QtCompat::isOtherMap(container)), index(0)
    {
        if (QtCompat::isOtherMap(container))
            map = QtCompat::toMultiMap(container);
        else if (isObject)
            map = VariantTree::map(container);
        else
            list = container.toList();
        member = map.constBegin();
    }

    bool hasNext() const { return isObject ? member != map.constEnd() : index < list.size(); }

    bool isObject;
    QtCompat::MultiMap map;
    QtCompat::MultiMap::const_iterator member;
    QVariantList list;
    int index; ///< of the entries that were visited
};

/// Takes apart the container that `value` holds, as far as nobody else holds it. Never throws.
void disposeContainer(QVariant &value);

/// Makes `value` invalid, without recursion. Never throws.
inline void dispose(QVariant &value)
{
    if (!value.isValid())
        return;
    if (isContainer(value))
        disposeContainer(value);
    value.clear();
}

/// Disposes of a tree at the end of a block, however the block is left.
class Disposer
{
public:
    explicit Disposer(QVariant &tree) : m_tree(tree) {}
    ~Disposer() { dispose(m_tree); }

private:
    Q_DISABLE_COPY(Disposer)
    QVariant &m_tree;
};

} // namespace VariantTree

#endif // VARIANTTREE_H
