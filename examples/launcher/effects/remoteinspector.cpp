// SPDX-License-Identifier: MIT
#include "effects/remoteinspector.h"

#include "effects/debugborders.h"

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

// The inspector shows any page. Only with this it shows what a page wrote before it was looked at.
void keepConsoles()
{
    QWebSettings::globalSettings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
    DebugBorders::restore();
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
    page->setProperty("_q_webInspectorServerPort", port);
    if (isFree(port))
        return QLatin1String("the engine does not open it");
    openPort = port;
    keepConsoles();
    return QString();
}

quint16 RemoteInspector::port()
{
    return openPort;
}
