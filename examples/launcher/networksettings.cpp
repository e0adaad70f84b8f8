#include "examples/launcher/networksettings.h"

#include "examples/launcher/applicationview.h"
#include "examples/launcher/userfolders.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QVariant>

bool NetworkSettings::setDiskCache(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool() || !view.networkAccess())
        return true;
    QNetworkDiskCache *cache = new QNetworkDiskCache(&view);
    cache->setCacheDirectory(UserFolders::cache() + UserFolders::nameFor(view.tag()));
    view.networkAccess()->setCache(cache);
    return true;
}
