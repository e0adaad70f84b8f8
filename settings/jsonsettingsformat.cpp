// SPDX-License-Identifier: MIT
#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/varianttree.h"
#include "settings/flatkeys.h"

#include <QIODevice>

bool readJsonSettings(QIODevice &device, QSettings::SettingsMap &map)
{
    QString errorMessage;
    QVariant tree = parseJson(QtCompat::readAll(device), &errorMessage);
    const VariantTree::Disposer disposer(tree);
    if (!errorMessage.isEmpty()) {
        // As the debug stream of Qt 4 writes a string: in quotes and with a space after it.
        qWarning("\"%s\" ", qPrintable(errorMessage));
        return true;
    }
    QString prefix;
    flattenVariant(prefix, map, tree);
    return true;
}

bool writeJsonSettings(QIODevice &device, const QSettings::SettingsMap &map)
{
    QVariant tree;
    const VariantTree::Disposer disposer(tree);
    Unflattener unflattener(tree);
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        unflattener.set(it.key(), it.value());
    device.write(JsonWriter::serialize(tree, 4, 0));
    return true;
}
