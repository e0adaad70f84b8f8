// SPDX-License-Identifier: MIT
#include "application/launcherextension.h"

#include "application/broadcastaccess.h"
#include "program/console.h"
#include "application/receiverextension.h"

#include <QWidget>

LauncherExtension::LauncherExtension(QObject *parent, QWebPage *servedPage)
    : ZarexExtBase(parent, servedPage)
{
}

QString LauncherExtension::model() const
{
    return QLatin1String("nuv-launcher");
}

// The launcher names each view after its application.
QString LauncherExtension::application() const
{
    return hostView() ? hostView()->objectName() : QString();
}

QVariantMap LauncherExtension::viewSize() const
{
    const QSize size = hostView() ? hostView()->size() : QSize(0, 0);
    QVariantMap result;
    result.insert(QLatin1String("width"), size.width());
    result.insert(QLatin1String("height"), size.height());
    return result;
}

void LauncherExtension::say(const QString &text) const
{
    Console::note(application(), QLatin1String("says: ") + text);
}

void LauncherExtension::open(const QString &tag)
{
    Console::note(application(), QLatin1String("opens: ") + tag);
    emit openRequested(tag);
}

ZarexExtBase *LauncherExtensionFactory::create(QObject *parent, QWebPage *page,
                                               const BroadcastAccess &access) const
{
    return access.hasClearance() ? new ReceiverExtension(parent, page)
                                 : new LauncherExtension(parent, page);
}
