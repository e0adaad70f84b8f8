// SPDX-License-Identifier: MIT
#include "effects/remoteinspector.h"

#include <QString>
#include <QTcpServer>
#include <QWebPage>
#include <QWebSettings>

namespace {

quint16 openPort = 0;

// The engine does not tell.
bool isFree(quint16 port)
{
    return QTcpServer().listen(QHostAddress::Any, port);
}

} // namespace

QString RemoteInspector::open(QWebPage *page, quint16 port)
{
    if (port == 0 || port == openPort)
        return QString();
    if (openPort != 0)
        return QString(QLatin1String("the inspector of all applications is at port %1"))
            .arg(openPort);
    if (!isFree(port))
        return QLatin1String("the port is in use");
    openPort = port;
    admit(page);
    page->setProperty("_q_webInspectorServerPort", port);
    if (!isFree(port))
        return QString();
    openPort = 0;
    return QLatin1String("the engine does not open it");
}

quint16 RemoteInspector::port()
{
    return openPort;
}

void RemoteInspector::admit(QWebPage *page)
{
    if (openPort != 0)
        page->settings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
}
