// SPDX-License-Identifier: MIT
#include "benchmarks/mappings.h"

#include "benchmarks/readers.h"
#include "benchmarks/subjects.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "settings/flatkeys.h"

#include <memory>

namespace {

QSettings::SettingsMap flatten(QVariant &tree)
{
    QString prefix;
    QSettings::SettingsMap map;
    flattenVariant(prefix, map, tree);
    return map;
}

QVariant unflattened(const QSettings::SettingsMap &map)
{
    QVariant tree;
    Unflattener unflattener(tree);
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        unflattener.set(it.key(), it.value());
    return tree;
}

} // namespace

Subject Subjects::prepareFlattening(const QByteArray &document, const QByteArray &who)
{
    if (who == "ours") {
        const auto tree = std::make_shared<QVariant>();
        return { [tree]() { return QVariant(flatten(*tree)); }, 0,
                 [tree, document]() { *tree = parseJson(document, nullptr); } };
    }
    const QVariant tree = parseJson(document, nullptr);
    if (who == "plain")
        return { Mappings::prepareFlatteningPlainly(tree), 0 };
    if (who == "floor")
        return { Mappings::prepareFlatteningFloor(tree), 0 };
    return { nullptr, 0 };
}

Subject Subjects::prepareUnflattening(const QByteArray &document, const QByteArray &who)
{
    const QVariant tree = parseJson(document, nullptr);
    QVariant usedUp = tree;
    const QSettings::SettingsMap map = flatten(usedUp);
    if (who == "ours")
        return { [map]() { return unflattened(map); }, map.size() };
    if (who == "plain")
        return { Mappings::prepareUnflatteningPlainly(map), map.size() };
    if (who == "floor")
        return { Readers::prepareFloor(JsonWriter::serializeCompact(tree)), map.size() };
    return { nullptr, 0 };
}
