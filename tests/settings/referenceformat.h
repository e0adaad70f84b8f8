// SPDX-License-Identifier: MIT
#ifndef REFERENCEFORMAT_H
#define REFERENCEFORMAT_H

#include "global/qtcompat.h"

#include <QSettings>
#include <QString>
#include <QVariant>

// The two mappings in their plainest form: recursive, with copies, step by step. The library's own
// must give the same for every input.

inline void referenceFlatten(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    if (value.userType() == QtCompat::multiMapType()) {
        const QtCompat::MultiMap object = QtCompat::toMultiMap(value);
        for (QtCompat::MultiMap::const_iterator it = object.constBegin(); it != object.constEnd();
             ++it) {
            prefix += it.key() + QLatin1String("/");
            referenceFlatten(prefix, map, it.value());
        }
    } else if (value.userType() == QMetaType::QVariantList) {
        const QVariantList array = value.toList();
        map.insert(prefix + QLatin1String("size"), int(array.size()));
        for (int i = 0; i < array.size(); ++i) {
            prefix += QString::number(i + 1) + QLatin1String("/");
            referenceFlatten(prefix, map, array.at(i));
        }
    } else {
        map.insert(prefix.left(prefix.size() - 1), value);
    }
    prefix.truncate(prefix.lastIndexOf(QLatin1String("/"), -2) + 1);
}

/// What `object` holds under `key`, as the map of the other toolkits gives and replaces it.
inline QVariant &referenceEntry(QtCompat::MultiMap &object, const QString &key)
{
    const QtCompat::MultiMap::iterator found = object.find(key);
    return found == object.end() ? object.insert(key, QVariant()).value() : found.value();
}

inline QVariant referenceUnflatten(const QVariant &node, const QString &key, const QVariant &value)
{
    QtCompat::MultiMap object = QtCompat::toMultiMap(node);
    const int separator = int(key.indexOf(QLatin1String("/")));
    if (separator >= 0) {
        const QString head = key.left(separator);
        const QString rest = key.mid(separator + 1);
        QVariant &entry = referenceEntry(object, head);
        entry = referenceUnflatten(entry, rest, value);
        return QtCompat::toVariant(object);
    }
    if (key != QLatin1String("size")) {
        referenceEntry(object, key) = value;
        return QtCompat::toVariant(object);
    }
    QVariantList array;
    for (int n = 1; n <= value.toInt(); ++n)
        array.append(object.value(QString::number(n)));
    return array;
}

#endif // REFERENCEFORMAT_H
