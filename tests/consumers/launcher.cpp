// SPDX-License-Identifier: MIT
#include <AppConfig>
#include <WebAppSettings>

#include <QApplication>
#include <QUrl>
#include <QWebView>

#include <cstdio>

// A launcher in ten lines.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    AppConfig config;
    if (!getWebAppSettings()->getAppConfig(QLatin1String("tv"), config))
        return 1;
    QWebView view;
    QObject::connect(&view, SIGNAL(loadFinished(bool)), &application, SLOT(quit()));
    view.load(QUrl(config.getUrl().toString()));
    application.exec();
    std::printf("shows %s\n", qPrintable(view.title()));
    return 0;
}
