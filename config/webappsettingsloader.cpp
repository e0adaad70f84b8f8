// SPDX-License-Identifier: MIT
#include "config/webappsettings_p.h"

#include "global/qtcompat.h"
#include "settings/jsonsettingsformat.h"

#include <QFile>
#include <QSettings>
#include <QStringList>

#include <memory>

namespace {

struct Row {
    const char *key;
    void (AppConfig::*set)(QVariant const &);
};

// The properties that are read from the key of their own name, in the order of reading.
const Row rows[] = {
    { "UserAgent", &AppConfig::setUserAgent },
    { "UserScript", &AppConfig::setUserScript },
    { "Url", &AppConfig::setUrl },
    { "UseGraphicsView", &AppConfig::setUseGraphicsView },
    { "UseDiskCache", &AppConfig::setUseDiskCache },
    { "UseCompositing", &AppConfig::setUseCompositing },
    { "UseTiledBackingStore", &AppConfig::setUseTiledBackingStore },
    { "UseWebGL", &AppConfig::setUseWebGL },
    { "ShowDebugBorders", &AppConfig::setShowDebugBorders },
    { "UseFrameFlattening", &AppConfig::setUseFrameFlattening },
    { "CacheWebView", &AppConfig::setCacheWebView },
    { "ShowFrameRate", &AppConfig::setShowFrameRate },
    { "ResizesToContents", &AppConfig::setResizesToContents },
    { "UseLocalStorage", &AppConfig::setUseLocalStorage },
    { "UseOfflineStorageDatabase", &AppConfig::setUseOfflineStorageDatabase },
    { "UseOfflineWebApplicationCache", &AppConfig::setUseOfflineWebApplicationCache },
    { "UseDiskCookies", &AppConfig::setUseDiskCookies },
    { "PrintLoadedUrls", &AppConfig::setPrintLoadedUrls },
    { "StartMaximized", &AppConfig::setStartMaximized },
    { "UseTransparentBackground", &AppConfig::setUseTransparentBackground },
    { "SuppressWebCoreWarningMessages", &AppConfig::setSuppressWebCoreWarningMessages },
    { "Scale", &AppConfig::setScale },
    { "ShowChrome", &AppConfig::setShowChrome },
    { "EnableShowErrorPage", &AppConfig::setEnableShowErrorPage },
    { "OfflineStorageDefaultQuotaSize", &AppConfig::setOfflineStorageDefaultQuotaSize },
    { "WindowOpacity", &AppConfig::setWindowOpacity },
    { "ShowScrollbar", &AppConfig::setShowScrollbar },
    { "Frameless", &AppConfig::setFrameless },
    { "RemoteInspectorPort", &AppConfig::setRemoteInspectorPort },
    { "HttpProxy", &AppConfig::setHttpProxy },
    { "DisableSpatialNavigation", &AppConfig::setDisableSpatialNavigation },
    { "HttpReferrer", &AppConfig::setHttpReferrer },
    { "NetworkSessionNoAutoClose", &AppConfig::setNetworkSessionNoAutoClose },
    { "LocalContentCanAccessRemoteUrls", &AppConfig::setLocalContentCanAccessRemoteUrls },
    { "OfflineWebApplicationCacheEnabled", &AppConfig::setOfflineWebApplicationCacheEnabled },
    { "OfflineStorageDatabaseEnabled", &AppConfig::setOfflineStorageDatabaseEnabled },
    { "GrantBroadcastRelatedSecurityClearance",
      &AppConfig::setGrantBroadcastRelatedSecurityClearance },
    { "ProhibitMainFrameScrolling", &AppConfig::setProhibitMainFrameScrolling },
};

// The keys of the rows as QSettings wants them, made once for all applications.
QStringList keysOfRows()
{
    QStringList keys;
    for (const Row &row : rows)
        keys.append(QLatin1String(row.key));
    return keys;
}

QVariant read(const QSettings &settings, const char *key)
{
    return settings.value(QLatin1String(key));
}

// A JSON null counts as absent, as its variant is invalid. Values are stored as they are.
void copy(const QSettings &settings, const QString &key, AppConfig &config,
          void (AppConfig::*set)(QVariant const &))
{
    const QVariant value = settings.value(key);
    if (value.isValid())
        (config.*set)(value);
}

// A key or a pass phrase is of no use without the certificate that it belongs to.
void loadCertificate(QSettings &settings, AppConfig &config)
{
    settings.beginGroup(QLatin1String("Certificate"));
    const QVariant path = read(settings, "Path");
    if (path.isValid()) {
        config.setCertPath(path);
        copy(settings, QLatin1String("PrivateKey"), config, &AppConfig::setCertPrivateKey);
        copy(settings, QLatin1String("PassPhrase"), config, &AppConfig::setCertPassPhrase);
    }
    settings.endGroup();
}

// An array without a usable domain still gives a list, an empty one; an empty array gives none.
void loadDomains(QSettings &settings, AppConfig &config)
{
    QStringList domains;
    const int count = settings.beginReadArray(QLatin1String("GrantBroadcastAccessRightDomains"));
    for (int i = 0; i < count; ++i) {
        // What setArrayIndex() and "Domain" ask for, at a sixth of the cost.
        const QVariant domain = settings.value(QString::number(i + 1) + QLatin1String("/Domain"));
        if (domain.isValid())
            domains.append(domain.toString());
    }
    settings.endArray();
    if (count != 0)
        config.setGrantBroadcastAccessRightDomains(domains);
}

AppConfig loadApplication(QSettings &settings, const QStringList &keys)
{
    AppConfig config;
    for (int i = 0; i < keys.size(); ++i)
        copy(settings, keys.at(i), config, rows[i].set);
    loadCertificate(settings, config);
    loadDomains(settings, config);
    return config;
}

QString findFile()
{
    const QString named = QtCompat::fromAscii(qgetenv("NUV_APPS_CONFIG_FILE"));
    return QFile::exists(named) ? named : QString(QLatin1String("AppsConfig.json"));
}

} // namespace

WebAppSettingsPrivate::WebAppSettingsPrivate()
    : settings(nullptr), version(0.0f), remoteInspectorPort(NoPort)
{
    const QString path = findFile();
    if (QFile::exists(path))
        load(path);
}

// The version is a float on purpose: 0.99999999 is narrowed to 1 and passes, 1.99999999 to 2 and does
// not. It is compared as it is, since not every float has an int to be truncated to.
bool WebAppSettingsPrivate::isUsable() const
{
    return settings && settings->status() == QSettings::NoError && version >= 1.0f
        && version < 2.0f;
}

void WebAppSettingsPrivate::load(const QString &path)
{
    std::unique_ptr<QSettings> opened(new QSettings(path, JsonSettingsFormat, nullptr));
    settings = opened.get();
    loadGlobal();
    if (isUsable())
        loadApplications();
    // Nothing can throw any more: it is kept until the process ends.
    static_cast<void>(opened.release());
}

void WebAppSettingsPrivate::loadGlobal()
{
    settings->beginGroup(QLatin1String("Global"));
    version = static_cast<float>(read(*settings, "Version").toDouble());
    if (read(*settings, "RemoteInspectorPort").isValid())
        remoteInspectorPort = read(*settings, "RemoteInspectorPort").toUInt();
    loadCertificate(*settings, globalConfig);
    settings->endGroup();
}

void WebAppSettingsPrivate::loadApplications()
{
    applications.clear();
    const QStringList keys = keysOfRows();
    const int count = settings->beginReadArray(QLatin1String("Applications"));
    for (int i = 0; i < count; ++i) {
        settings->setArrayIndex(i);
        const QVariant value = read(*settings, "Tag");
        const QString tag = value.toString();
        // The first application with a tag wins whole; nothing of a later one is merged into it.
        if (value.isValid() && !applications.contains(tag))
            applications.insert(tag, loadApplication(*settings, keys));
    }
    settings->endArray();
}
