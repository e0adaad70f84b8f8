// SPDX-License-Identifier: MIT
#include "application/broadcastaccess.h"

#include "values/hostname.h"

#include <QUrl>
#include <QWebSecurityOrigin>

namespace {

const char secure[] = "https";

bool isAsSecureAs(const QString &scheme, const QUrl &home)
{
    const bool isPlain = scheme == QLatin1String("http");
    return scheme == QLatin1String(secure) || (isPlain && home.scheme() != QLatin1String(secure));
}

} // namespace

BroadcastAccess::BroadcastAccess() : m_domainsAreSet(false), m_hasClearance(false) {}

bool BroadcastAccess::setDomains(const QStringList &domains)
{
    QStringList names;
    for (int i = 0; i < domains.size(); ++i)
        names.append(HostName::parseDomain(domains.at(i)).value);
    if (names.contains(QString()))
        return false;
    m_domains = names;
    m_domainsAreSet = true;
    return true;
}

QStringList BroadcastAccess::domains() const
{
    return m_domains;
}

void BroadcastAccess::setClearance(bool isGiven)
{
    m_hasClearance = isGiven;
}

bool BroadcastAccess::hasClearance() const
{
    return m_hasClearance;
}

bool BroadcastAccess::answers(const QWebSecurityOrigin &origin, const QUrl &home) const
{
    if (origin.scheme() == QLatin1String("file"))
        return home.scheme() == QLatin1String("file");
    if (!isAsSecureAs(origin.scheme(), home))
        return false;
    const QString host = HostName::normalized(origin.host());
    const QStringList domains =
        m_domainsAreSet ? m_domains : QStringList(HostName::normalized(home.host()));
    for (int i = 0; i < domains.size(); ++i) {
        if (HostName::isWithin(host, domains.at(i)))
            return true;
    }
    return false;
}
