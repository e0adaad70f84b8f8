// SPDX-License-Identifier: MIT
#include "benchmarks/subjects.h"

#include "benchmarks/documents.h"
#include "config/appconfig.h"
#include "config/webappsettings.h"
#include "json/jsonparser.h"
#include "settings/flatkeys.h"
#include "settings/jsonsettingsformat.h"

#include <QHash>

#include <memory>
#include <vector>

namespace {

QSettings::SettingsMap flattened(const QByteArray &document)
{
    QVariant tree = parseJson(document, nullptr);
    QString prefix;
    QSettings::SettingsMap map;
    flattenVariant(prefix, map, tree);
    return map;
}

QSettings::SettingsMap readyMap;

bool handOver(QIODevice &, QSettings::SettingsMap &map)
{
    map.swap(readyMap); // once, so that QSettings has to free it
    return true;
}

// QSettings' own work for what WebAppSettings loads: it opens the file, and every application is
// asked for its 42 values and for the list of its domains.
void readDomains(QSettings &settings)
{
    const int count = settings.beginReadArray(QLatin1String("GrantBroadcastAccessRightDomains"));
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        static_cast<void>(settings.value(QLatin1String("Domain")));
    }
    settings.endArray();
}

void readApplications(QSettings &settings, const std::vector<const char *> &keys)
{
    const int count = settings.beginReadArray(QLatin1String("Applications"));
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        for (const char *key : keys)
            static_cast<void>(settings.value(QLatin1String(key)));
        settings.beginGroup(QLatin1String("Certificate"));
        for (const char *key : { "Path", "PrivateKey", "PassPhrase" })
            static_cast<void>(settings.value(QLatin1String(key)));
        settings.endGroup();
        readDomains(settings);
    }
    settings.endArray();
}

const WebAppSettings *loaded(const QByteArray &file)
{
    qputenv("NUV_APPS_CONFIG_FILE", file);
    return new WebAppSettings; // never freed, as in the launcher
}

std::function<QVariant()> loading(const QByteArray &file, const QByteArray &who)
{
    const QString path = QString::fromLocal8Bit(file);
    if (who == "ours") {
        qputenv("NUV_APPS_CONFIG_FILE", file);
        return []() {
            new WebAppSettings;
            return QVariant();
        };
    }
    readyMap = flattened(Subjects::contentOf(file));
    if (who != "handed-over")
        return nullptr;
    const QSettings::Format format =
        QSettings::registerFormat(QLatin1String("ready"), handOver, nullptr, Qt::CaseSensitive);
    const std::vector<const char *> keys = Documents::applicationKeys();
    return [path, format, keys]() {
        QSettings settings(path, format);
        readApplications(settings, keys);
        return QVariant();
    };
}

} // namespace

Subject Subjects::prepareLoading(const QByteArray &file, const QByteArray &who)
{
    return { loading(file, who), contentOf(file).count("\"Tag\":") };
}

Subject Subjects::prepareLookUp(const QByteArray &file, const QByteArray &who)
{
    const WebAppSettings *const settings = loaded(file);
    const QString tag = QLatin1String("app3");
    AppConfig config;
    settings->getAppConfig(tag, config);
    if (who == "getAppConfig") {
        const auto found = std::make_shared<AppConfig>();
        return { [settings, tag, found]() {
                    return settings->getAppConfig(tag, *found) ? QVariant() : QVariant(false);
                },
                 1 };
    }
    if (who == "getter")
        return { [config]() { return config.getUseWebGL(); }, 1 };
    QHash<QString, QVariant> hash;
    for (const char *key : Documents::applicationKeys())
        hash.insert(QLatin1String(key), true);
    const QString key = QLatin1String("UseWebGL");
    if (who == "hash")
        return { [hash, key]() { return hash.value(key); }, 1 };
    if (who == "hash-and-key")
        return { [hash]() { return hash.value(QLatin1String("UseWebGL")); }, 1 };
    return { nullptr, 0 };
}
