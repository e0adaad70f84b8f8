// SPDX-License-Identifier: MIT
#ifndef UNFLATTENED_H
#define UNFLATTENED_H

#include "json/varianttree.h"
#include "settings/flatkeys.h"

/// `node` with `value` set in it; `node` itself stays as it is.
inline QVariant unflattened(const QVariant &node, const QString &key, const QVariant &value)
{
    QVariant tree = node;
    Unflattener(tree).set(key, value);
    return tree;
}

/// The tree of all entries of `map`, as writing makes it.
inline QVariant unflattened(const QSettings::SettingsMap &map)
{
    QVariant tree;
    const VariantTree::Disposer disposer(tree); // an exception may leave it deep
    Unflattener unflattener(tree);
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        unflattener.set(it.key(), it.value());
    QVariant result;
    result.swap(tree);
    return result;
}

#endif // UNFLATTENED_H
