#include "effects/networksettings.h"

#include "application/applicationview.h"
#include "network/cookiejar.h"
#include "program/userfolders.h"
#include "effects/viewsettings.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkProxy>
#include <QUrl>
#include <QVariant>

namespace {

bool never(const ApplicationView &)
{
    return false;
}

// What may stand around host and port in a proxy's address.
QUrl toProxyAddress(const QString &text)
{
    const bool hasScheme = text.contains(QLatin1String("://"));
    return QUrl(hasScheme ? text : QLatin1String("http://") + text);
}

bool isProxyAddress(const QUrl &address)
{
    return address.isValid() && address.scheme() == QLatin1String("http")
        && !address.host().isEmpty() && address.port() > 0
        && (address.path().isEmpty() || address.path() == QLatin1String("/"));
}

bool isOfTheWeb(const QUrl &address)
{
    return address.isValid() && !address.host().isEmpty()
        && (address.scheme() == QLatin1String("http")
            || address.scheme() == QLatin1String("https"));
}

} // namespace

const Need NetworkSettings::closingSessions = {
    "a toolkit that closes network sessions, which none on Linux does", never
};

bool NetworkSettings::setDiskCache(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool() || !view.networkAccess())
        return true;
    QNetworkDiskCache *cache = new QNetworkDiskCache(view.networkAccess());
    cache->setCacheDirectory(UserFolders::cache() + UserFolders::nameFor(view.tag()));
    view.networkAccess()->setCache(cache);
    return true;
}

bool NetworkSettings::setDiskCookies(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool() || !view.networkAccess())
        return true;
    const QString file =
        UserFolders::data() + UserFolders::nameFor(view.tag()) + QLatin1String("/cookies");
    view.networkAccess()->setCookieJar(new CookieJar(file, view.networkAccess()));
    return true;
}

bool NetworkSettings::setProxy(ApplicationView &view, const QVariant &address)
{
    const QUrl url = toProxyAddress(address.toString());
    if (!isProxyAddress(url))
        return false;
    if (view.networkAccess())
        view.networkAccess()->setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, url.host(),
                                                     quint16(url.port()), url.userName(),
                                                     url.password()));
    return true;
}

bool NetworkSettings::setReferrer(ApplicationView &view, const QVariant &address)
{
    const QUrl url(address.toString());
    if (!isOfTheWeb(url))
        return false;
    view.setReferrer(url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
    return true;
}
