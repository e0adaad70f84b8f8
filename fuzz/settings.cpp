// SPDX-License-Identifier: MIT
// Read, written, read again, through the two callbacks of the settings format: the flat keys are those
// of a plain recursion, and a document that was written once no longer changes.

#include "fuzz/fuzztarget.h"
#include "fuzz/sizes.h"
#include "settings/jsonsettingsformat.h"
#include "tests/json/plainreader.h"
#include "tests/settings/referenceformat.h"
#include "tests/support/describe.h"

#include <QBuffer>

#include <cmath>

static QSettings::SettingsMap readMap(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    Fuzz::require(readJsonSettings(device, map), "the read callback returns true");
    return map;
}

static QByteArray writtenMap(const QSettings::SettingsMap &map)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    Fuzz::require(writeJsonSettings(device, map), "the write callback returns true");
    return device.data();
}

// The infinities are written as words that cannot be read, and the largest doubles become one when they
// are rounded to 15 digits.
static bool holdsInfinity(const QSettings::SettingsMap &map)
{
    for (const QVariant &value : map) {
        if (value.userType() == QMetaType::Double
            && std::fabs(value.toDouble()) > 1.7976931348623e308)
            return true;
    }
    return false;
}

// A negative zero is written as "-0", which is the integer 0 when it is read again.
static void makeZerosPositive(QSettings::SettingsMap &map)
{
    for (QVariant &value : map) {
        if (value.userType() == QMetaType::Double && std::fpclassify(value.toDouble()) == FP_ZERO)
            value = 0;
    }
}

static void compareWithRecursion(const QByteArray &bytes, const QSettings::SettingsMap &map)
{
    const PlainReader plain(bytes);
    if (plain.isTooDeep())
        return;
    QSettings::SettingsMap reference;
    if (plain.error().isEmpty()) {
        QString prefix;
        referenceFlatten(prefix, reference, plain.tree());
    }
    Fuzz::requireEqual(describeLines(map), describeLines(reference),
                       "the flat keys are those of a plain recursion");
}

// The flat keys count: each of them repeats the path to it, whatever the size of the document.
static qint64 sizeOfKeys(const QSettings::SettingsMap &map)
{
    qint64 size = 0;
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        size += it.key().size() * qint64(sizeof(QChar));
    return size;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::silenceWarnings();
    const FuzzInput input(data, size);
    QSettings::SettingsMap map;
    Fuzz::requireProportion([&]() { map = readMap(input.bytes()); },
                            [&]() { return qint64(size) + sizeOfKeys(map); });
    compareWithRecursion(input.bytes(), map);
    if (map.isEmpty() || claimsTooMuch(map) || holdsInfinity(map))
        return 0;
    makeZerosPositive(map);

    QByteArray written;
    Fuzz::requireProportion([&]() { written = writtenMap(map); },
                            [&]() { return sizeOfKeys(map) + written.size(); });
    const QSettings::SettingsMap again = readMap(written);
    compareWithRecursion(written, again);
    Fuzz::require(!again.isEmpty(), "what was written can be read");
    Fuzz::requireEqual(writtenMap(again), written, "what was written once stays as it is");
    return 0;
}
