// SPDX-License-Identifier: MIT
#include "benchmarks/mappings.h"

#include "benchmarks/treebuilder.h"

#include <memory>
#include <vector>

namespace {

typedef QSettings::SettingsMap Map;

bool isMap(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantMap;
}

bool isList(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList;
}

// The two mappings as they are described, without a thought of their cost.
void flattenPlainly(QString &prefix, Map &map, const QVariant &value)
{
    if (isMap(value)) {
        const QVariantMap &object = Containers::map(value);
        for (QVariantMap::const_iterator it = object.constBegin(); it != object.constEnd(); ++it) {
            prefix += it.key() + QLatin1Char('/');
            flattenPlainly(prefix, map, it.value());
        }
    } else if (isList(value)) {
        const QVariantList &array = Containers::list(value);
        map.insert(prefix + QLatin1String("size"), array.size());
        for (int i = 0; i < array.size(); ++i) {
            prefix += QString::number(i + 1) + QLatin1Char('/');
            flattenPlainly(prefix, map, array.at(i));
        }
    } else {
        map.insert(prefix.left(prefix.size() - 1), value);
    }
    prefix.truncate(prefix.lastIndexOf(QLatin1Char('/'), -2) + 1);
}

QVariant unflattenPlainly(const QVariant &node, const QString &key, const QVariant &value)
{
    QVariantMap object = node.toMap();
    const int separator = key.indexOf(QLatin1Char('/'));
    if (separator >= 0) {
        const QString head = key.left(separator);
        object.insert(head, unflattenPlainly(object.value(head), key.mid(separator + 1), value));
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

QVariant unflattenOneByOne(const Map &map)
{
    QVariant root;
    for (Map::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        root = unflattenPlainly(root, it.key(), it.value());
    return root;
}

// The flat keys, known already, in the order of the tree.
struct Entry {
    std::vector<QChar> key;
    QVariant value;
};
typedef std::vector<Entry> Entries;

void collect(const QString &path, const QVariant &value, Entries &entries)
{
    const auto add = [&entries](const QString &key, const QVariant &entry) {
        entries.push_back({ std::vector<QChar>(key.begin(), key.end()), entry });
    };
    const QString start = path.isEmpty() ? path : path + QLatin1Char('/');
    if (isMap(value)) {
        const QVariantMap &object = Containers::map(value);
        for (QVariantMap::const_iterator it = object.constBegin(); it != object.constEnd(); ++it)
            collect(start + it.key(), it.value(), entries);
    } else if (isList(value)) {
        const QVariantList &array = Containers::list(value);
        add(start + QLatin1String("size"), array.size());
        for (int i = 0; i < array.size(); ++i)
            collect(start + QString::number(i + 1), array.at(i), entries);
    } else {
        add(path, value);
    }
}

Map insert(const Entries &entries)
{
    Map map;
    for (const Entry &entry : entries)
        map.insert(QString(entry.key.data(), int(entry.key.size())), entry.value);
    return map;
}

} // namespace

Mappings::Mapping Mappings::prepareFlatteningPlainly(const QVariant &tree)
{
    return [tree]() {
        QString prefix;
        Map map;
        flattenPlainly(prefix, map, tree);
        return QVariant(map);
    };
}

Mappings::Mapping Mappings::prepareFlatteningFloor(const QVariant &tree)
{
    const auto entries = std::make_shared<Entries>();
    collect(QString(), tree, *entries);
    return [entries]() { return QVariant(insert(*entries)); };
}

Mappings::Mapping Mappings::prepareUnflatteningPlainly(const QSettings::SettingsMap &map)
{
    return [map]() { return unflattenOneByOne(map); };
}
