#include "examples/launcher/launcherextension.h"

#include "examples/launcher/console.h"

#include <QWidget>

LauncherExtension::LauncherExtension(QObject *parent, QWebPage *servedPage)
    : ZarexExtBase(parent, servedPage), m_volume(30)
{
}

QString LauncherExtension::model() const
{
    return QLatin1String("nuv-launcher");
}

int LauncherExtension::volume() const
{
    return m_volume;
}

void LauncherExtension::setVolume(int volume)
{
    const int bounded = qBound(0, volume, 100);
    if (bounded == m_volume)
        return;
    m_volume = bounded;
    emit volumeChanged(m_volume);
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

ZarexExtBase *LauncherExtensionFactory::create(QObject *parent, QWebPage *page) const
{
    return new LauncherExtension(parent, page);
}
