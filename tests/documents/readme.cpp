// SPDX-License-Identifier: MIT
// The piece of code in README.md, so that it is compiled.

#include <AppConfig>
#include <WebAppSettings>

#include <QUrl>
#include <QWebView>

void showTelevision(QWebView &view, const QUrl &configurationFile)
{
    AppConfig config;
    if (getWebAppSettings()->getAppConfig(QLatin1String("tv"), config)) {
        // A relative address is one from the directory of the configuration file.
        view.load(configurationFile.resolved(QUrl(config.getUrl().toString())));
        if (config.getScale().isValid()) // invalid: not configured, so keep the browser's default
            view.setZoomFactor(config.getScale().toReal());
    }
}
