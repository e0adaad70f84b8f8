#ifndef REFERENCEFORMAT_H
#define REFERENCEFORMAT_H

#include <QSettings>
#include <QString>
#include <QVariant>

// The two mappings in their plainest form: recursive, with copies, step by step. The library's own
// must give the same for every input.

inline void referenceFlatten(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantMap) {
        const QVariantMap object = value.toMap();
        for (QVariantMap::const_iterator it = object.constBegin(); it != object.constEnd(); ++it) {
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

inline QVariant referenceUnflatten(const QVariant &node, const QString &key, const QVariant &value)
{
    QVariantMap object = node.toMap();
    const int separator = key.indexOf(QLatin1String("/"));
    if (separator >= 0) {
        const QString head = key.left(separator);
        const QString rest = key.mid(separator + 1);
        object.insert(head, referenceUnflatten(object.value(head), rest, value));
        return object;
    }
    if (key != QLatin1String("size")) {
        object.insert(key, value);
        return object;
    }
    QVariantList array;
    for (int n = 1; n <= value.toInt(); ++n)
        array.append(object.value(QString::number(n)));
    return array;
}

#endif // REFERENCEFORMAT_H
