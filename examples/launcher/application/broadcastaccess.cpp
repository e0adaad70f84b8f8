#include "application/broadcastaccess.h"

#include <QRegExp>
#include <QUrl>
#include <QWebSecurityOrigin>

namespace {

/// As hosts are compared: in lower case and in ASCII; empty when it is no name.
QString normalized(const QString &domain)
{
    const QRegExp foreign(QLatin1String("[\\s/:?#@*\\[\\]]"));
    return domain.contains(foreign) ? QString()
                                    : QString::fromLatin1(QUrl::toAce(domain).constData());
}

bool isWithin(const QString &host, const QString &domain)
{
    return !domain.isEmpty() && (host == domain || host.endsWith(QLatin1Char('.') + domain));
}

bool isOfTheWeb(const QString &scheme)
{
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

} // namespace

BroadcastAccess::BroadcastAccess() : m_domainsAreSet(false), m_hasClearance(false) {}

bool BroadcastAccess::setDomains(const QStringList &domains)
{
    QStringList names;
    for (int i = 0; i < domains.size(); ++i)
        names.append(normalized(domains.at(i)));
    if (names.contains(QString()))
        return false;
    m_domains = names;
    m_domainsAreSet = true;
    return true;
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
    if (!isOfTheWeb(origin.scheme()))
        return false;
    const QString host = normalized(origin.host());
    const QStringList domains = m_domainsAreSet ? m_domains : QStringList(normalized(home.host()));
    for (int i = 0; i < domains.size(); ++i) {
        if (isWithin(host, domains.at(i)))
            return true;
    }
    return false;
}
