// SPDX-License-Identifier: MIT
#include "config/webappsettings.h"

#include "config/webappsettings_p.h"

WebAppSettings::WebAppSettings() : d(new WebAppSettingsPrivate) {}

WebAppSettings::~WebAppSettings() {}

bool WebAppSettings::getGlobalRemoteInspectorPort(unsigned int &port) const
{
    if (!d || !d->isUsable() || d->remoteInspectorPort == WebAppSettingsPrivate::NoPort)
        return false;
    port = d->remoteInspectorPort;
    return true;
}

bool WebAppSettings::getGlobalConfig(AppConfig &config) const
{
    if (!d)
        return false;
    config = d->globalConfig;
    return true;
}

bool WebAppSettings::getAppConfig(QString const &tag, AppConfig &config) const
{
    if (!d)
        return false;
    const QHash<QString, AppConfig>::const_iterator it = d->applications.constFind(tag);
    if (it == d->applications.constEnd())
        return false;
    config = it.value();
    return true;
}

WebAppSettings *getWebAppSettings()
{
    static WebAppSettings settings;
    return &settings;
}
