// SPDX-License-Identifier: MIT
#include "effects/networksettings.h"

#include "application/applicationview.h"
#include "network/cookiejar.h"
#include "network/diskcache.h"
#include "program/userfolders.h"
#include "effects/viewsettings.h"
#include "values/proxyaddress.h"
#include "values/webaddress.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QUrl>
#include <QVariant>

namespace {

bool never(const ApplicationView &)
{
    return false;
}

} // namespace

const Need NetworkSettings::closingSessions = {
    "a toolkit that closes network sessions, which none on Linux does", never
};

bool NetworkSettings::setDiskCache(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool() || !view.networkAccess())
        return true;
    view.networkAccess()->setCache(
        new DiskCache(UserFolders::cacheOf(view.tag()), view.networkAccess()));
    return true;
}

bool NetworkSettings::setDiskCookies(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool() || !view.networkAccess())
        return true;
    const QString file = UserFolders::dataOf(view.tag()) + QLatin1String("/cookies");
    view.networkAccess()->setCookieJar(new CookieJar(file, view.networkAccess()));
    return true;
}

bool NetworkSettings::setProxy(ApplicationView &view, const QVariant &address)
{
    const Parsed<ProxyAddress> proxy = parseProxy(address.toString());
    if (!proxy.isUsable())
        return false;
    if (view.networkAccess())
        view.networkAccess()->setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, proxy.value.host,
                                                     quint16(proxy.value.port), proxy.value.user,
                                                     proxy.value.password));
    return true;
}

bool NetworkSettings::setReferrer(ApplicationView &view, const QVariant &address)
{
    const Parsed<QUrl> referrer = parseReferrer(address.toString());
    if (!referrer.isUsable())
        return false;
    view.setReferrer(referrer.value.toEncoded());
    return true;
}
