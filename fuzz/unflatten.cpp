// SPDX-License-Identifier: MIT
// Values set in a tree, one after the other, in any order: Unflattener gives what a plain
// recursion gives, and so does the tree that writing makes of the same keys in theirs.
//
// The first line of an input is the tree to begin with. Every further line is a value and, after a tab,
// its key. A line that cannot be read is an invalid value.

#include "fuzz/fuzztarget.h"
#include "fuzz/sizes.h"
#include "json/varianttree.h"
#include "tests/json/plainreader.h"
#include "tests/settings/referenceformat.h"
#include "tests/settings/unflattened.h"
#include "tests/support/describe.h"

#include <QList>
#include <QPair>

namespace {

struct Setting {
    QString key;
    QVariant value;
};

Setting setting(const QByteArray &line)
{
    const int tab = line.indexOf('\t');
    const Setting result = { QtCompat::fromAsciiBytes(line.constData() + tab + 1,
                                                      line.size() - tab - 1),
                             PlainReader(line.left(tab)).tree() };
    return result;
}

QByteArray settingOneByOne(const QVariant &root, const QList<Setting> &settings)
{
    QVariant tree = root;
    const VariantTree::Disposer disposer(tree);
    Unflattener unflattener(tree);
    for (const Setting &each : settings)
        unflattener.set(each.key, each.value);
    return describe(tree);
}

QByteArray plainSetting(const QVariant &root, const QList<Setting> &settings)
{
    QVariant tree = root;
    for (const Setting &each : settings)
        tree = referenceUnflatten(tree, each.key, each.value);
    return describe(tree);
}

QByteArray plainSetting(const QSettings::SettingsMap &map)
{
    QVariant tree;
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        tree = referenceUnflatten(tree, it.key(), it.value());
    return describe(tree);
}

bool isTooDeep(const QString &key)
{
    return key.count(QLatin1Char('/')) > PlainReader::DeepestLevel;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const FuzzInput input(data, size);
    const QList<QByteArray> lines = input.bytes().split('\n');
    const QVariant root = PlainReader(lines.first()).tree();
    QList<Setting> settings;
    QSettings::SettingsMap map;
    int claimed = 0;
    for (int i = 1; i < lines.size(); ++i) {
        const Setting each = setting(lines.at(i));
        QSettings::SettingsMap one;
        one.insert(each.key, each.value);
        claimed += qBound(0, each.value.toInt(), 1001);
        if (isTooDeep(each.key) || claimsTooMuch(one) || claimed > 1000)
            return 0;
        settings.append(each);
        map.insert(each.key, each.value);
    }

    Fuzz::requireEqual(settingOneByOne(root, settings), plainSetting(root, settings),
                       "setting one by one equals the plain recursion");
    Fuzz::requireEqual(describe(unflattened(map)), plainSetting(map),
                       "the tree of a map equals the plain recursion");
    return 0;
}
