// SPDX-License-Identifier: MIT
#ifndef COOKIEBOUNDS_H
#define COOKIEBOUNDS_H

#include <QList>
#include <QNetworkCookie>

class QDateTime;

/// How many cookies a jar holds, and how large each may be. The numbers are those of common browsers.
namespace CookieBounds {

const int ofOneDomain = 180;
const int ofAllDomains = 3000;
const int largestContents = 4096; ///< bytes of a name and a value together
const int largestAttribute = 1024; ///< bytes of a domain or a path

/// Whether a cookie is small enough to be taken.
bool admit(const QNetworkCookie &cookie);

bool isExpired(const QNetworkCookie &cookie, const QDateTime &now);

/// The newest of cookies that are small enough, as many as there may be, in their order, which is that of
/// their age. None has expired.
QList<QNetworkCookie> applied(const QList<QNetworkCookie> &cookies, const QDateTime &now);

} // namespace CookieBounds

#endif // COOKIEBOUNDS_H
