// SPDX-License-Identifier: MIT
#include <AppConfig>
#include <WebAppSettings>
#include <appconfig.h>
#include <nuvlaunchersupport_version.h>
#include <webappsettings.h>

#include <QSettings>

#include <cstdio>
#include <cstring>

#if NUVLAUNCHERSUPPORT_VERSION < NUVLAUNCHERSUPPORT_VERSION_CHECK(1, 0, 0)
#error "The headers are too old."
#endif

// What a launcher asks at its start, and the storage format that is there without asking.
int main()
{
    if (std::strcmp(nuvLauncherSupportVersion(), NUVLAUNCHERSUPPORT_VERSION_STR) != 0)
        std::printf("library %s\n", nuvLauncherSupportVersion());
    const WebAppSettings *settings = getWebAppSettings();
    unsigned int port = 0;
    if (settings->getGlobalRemoteInspectorPort(port))
        std::printf("port %u\n", port);

    AppConfig global;
    if (settings->getGlobalConfig(global))
        std::printf("certificate %s\n", qPrintable(global.getCertPath().toString()));

    AppConfig config;
    if (settings->getAppConfig(QLatin1String("tv"), config)) {
        std::printf("user agent %s\n", qPrintable(config.getUserAgent().toString()));
        std::printf("scale %g\n", config.getProperty(QLatin1String("Scale")).toDouble());
        config.setUserAgent(QLatin1String("another"));
        std::printf("user agent %s\n", qPrintable(config.getUserAgent().toString()));
    }
    if (!settings->getAppConfig(QLatin1String("radio"), config))
        std::printf("no radio\n");

    // Nothing else registers a format here, so ours is the first.
    const QSettings file(QLatin1String("AppsConfig.json"), QSettings::CustomFormat1);
    std::printf("applications %d\n", file.value(QLatin1String("Applications/size")).toInt());
    return 0;
}
