// SPDX-License-Identifier: MIT
#include "network/cookiebounds.h"

#include <QDateTime>
#include <QHash>

bool CookieBounds::admit(const QNetworkCookie &cookie)
{
    return cookie.name().size() + cookie.value().size() <= largestContents
        && cookie.domain().size() <= largestAttribute && cookie.path().size() <= largestAttribute;
}

bool CookieBounds::isExpired(const QNetworkCookie &cookie, const QDateTime &now)
{
    return !cookie.isSessionCookie() && cookie.expirationDate() <= now;
}

// The newest ones are at the end.
QList<QNetworkCookie> CookieBounds::applied(const QList<QNetworkCookie> &cookies,
                                            const QDateTime &now)
{
    QList<QNetworkCookie> kept;
    QHash<QString, int> ofDomain;
    for (int i = cookies.size() - 1; i >= 0 && kept.size() < ofAllDomains; --i) {
        const QNetworkCookie &cookie = cookies.at(i);
        if (!isExpired(cookie, now) && ofDomain[cookie.domain()]++ < ofOneDomain)
            kept.prepend(cookie);
    }
    return kept;
}
