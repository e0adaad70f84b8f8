// SPDX-License-Identifier: MIT
// The loader, on a configuration file in a directory of its own. What is found does not depend on who asks
// first, and the lookups keep their word for every input.

#include "config/webappsettings_p.h"
#include "fuzz/fuzztarget.h"
#include "fuzz/sizes.h"
#include "settings/jsonsettingsformat.h"
#include "tests/support/temporarydir.h"

#include <QBuffer>
#include <QScopedPointer>
#include <QSettings>

namespace {

bool claimsTooMuch(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    readJsonSettings(device, map);
    return claimsTooMuch(map);
}

// The toolkit keeps what it read from a file by its name, size and time, so each input has a name of its
// own.
QString nextName()
{
    static quint64 number = 0;
    return QString::number(++number) + QLatin1String(".json");
}

void checkLoaded(const WebAppSettingsPrivate &loaded, const QSettings &settings)
{
    const float version = float(settings.value(QLatin1String("Global/Version")).toDouble());
    const bool isUsable = version >= 1.0f && version < 2.0f;
    Fuzz::require(loaded.isUsable() == isUsable, "the version alone decides");
    Fuzz::require(isUsable || loaded.applications.isEmpty(), "no version, no applications");
    const int count = settings.value(QLatin1String("Applications/size")).toInt();
    Fuzz::require(loaded.applications.size() <= qMax(0, count),
                  "no application comes from nowhere");
    for (const AppConfig &application : loaded.applications) {
        Fuzz::require(application.getCertPath().isValid()
                          || (!application.getCertPrivateKey().isValid()
                              && !application.getCertPassPhrase().isValid()),
                      "no key without its certificate");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const TemporaryDir folder;
    Fuzz::silenceWarnings();
    const FuzzInput input(data, size);
    if (claimsTooMuch(input.bytes()))
        return 0;

    const QString path = folder.write(nextName(), input.bytes());
    qputenv("NUV_APPS_CONFIG_FILE", QFile::encodeName(path));
    {
        const WebAppSettingsPrivate loaded;
        const QScopedPointer<QSettings> settings(loaded.settings);
        Fuzz::require(settings && settings->fileName() == path, "the file is found");
        checkLoaded(loaded, *settings);
    }
    QFile::remove(path);
    return 0;
}
