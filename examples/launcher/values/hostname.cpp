// SPDX-License-Identifier: MIT
#include "values/hostname.h"

#include "values/pattern.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace {

const int largestPort = 65535;

bool isIpv6(const QString &host)
{
    return host.contains(QLatin1Char(':'));
}

// Also what one of the toolkits would take for a part of a host.
bool isForeign(QChar character)
{
    return character.isSpace() || character.unicode() < 0x20 || character.unicode() == 0x7f
        || QString(QLatin1String("/:?#@*[]\\%<>\"^`{|},;!&=+()$'")).contains(character);
}

bool hasForeignCharacter(const QString &host)
{
    return std::any_of(host.constBegin(), host.constEnd(), isForeign);
}

QString withoutBrackets(const QString &host)
{
    const bool hasBoth =
        host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')) && isIpv6(host);
    return hasBoth ? host.mid(1, host.size() - 2) : host;
}

QString normalizedIpv6(const QString &number)
{
    if (Pattern("[^0-9A-Fa-f:.]").isIn(number))
        return QString();
    QUrl url;
    url.setScheme(QLatin1String("http"));
    url.setHost(number);
    return url.isValid() ? url.host().toLower() : QString();
}

QString normalizedName(const QString &name)
{
    const QString dotless = name.endsWith(QLatin1Char('.')) ? name.left(name.size() - 1) : name;
    if (dotless.isEmpty() || hasForeignCharacter(dotless)
        || dotless.split(QLatin1Char('.')).contains(QString()))
        return QString();
    QUrl url;
    url.setScheme(QLatin1String("http"));
    url.setHost(dotless);
    return url.isValid() ? QString::fromLatin1(QUrl::toAce(url.host()).constData()).toLower()
                         : QString();
}

// What remains of an address, a pattern or a string with blanks when all but the host is taken away.
QString hostIn(const QString &text)
{
    QString host = text.trimmed();
    const int scheme = host.indexOf(QLatin1String("//"));
    if (scheme >= 0)
        host.remove(0, scheme + 2);
    host = Pattern("[/?#\\\\]").before(host);
    host = host.section(QLatin1Char('@'), -1);
    if (host.count(QLatin1Char(':')) == 1 || host.startsWith(QLatin1Char('[')))
        host = Pattern(":[0-9]*$").before(host);
    while (host.startsWith(QLatin1Char('*')) || host.startsWith(QLatin1Char('.')))
        host.remove(0, 1);
    return host;
}

Objection objectionToDomain(const QString &text)
{
    const QString host = hostIn(text);
    if (text.isEmpty())
        return Objection("it is empty");
    if (text.trimmed() != text)
        return Objection("there is a blank around the domain", host);
    if (text.contains(QLatin1String("//")))
        return Objection("the domain alone belongs here, without a scheme", host);
    if (Pattern("[/?#\\\\]").isIn(text))
        return Objection("the domain alone belongs here, without a path", host);
    if (text.contains(QLatin1Char('@')))
        return Objection("the domain alone belongs here, without a user", host);
    if (text.startsWith(QLatin1Char('*')) || text.startsWith(QLatin1Char('.')))
        return Objection("the domain alone belongs here: what is below it is granted as well",
                         host);
    if (Pattern("^([^:]*|\\[.*\\]):[0-9]*$").isIn(text))
        return Objection("the domain alone belongs here, without a port", host);
    return Objection("it is not the name of a domain");
}

} // namespace

QString HostName::normalized(const QString &host)
{
    const QString bare = withoutBrackets(host);
    return isIpv6(bare) ? normalizedIpv6(bare) : normalizedName(bare);
}

bool HostName::isNumber(const QString &host)
{
    return isIpv6(host) || Pattern("^[0-9]{1,3}(\\.[0-9]{1,3}){3}$").isIn(host);
}

bool HostName::isWithin(const QString &host, const QString &domain)
{
    if (host.isEmpty() || domain.isEmpty())
        return false;
    return host == domain
        || (!isNumber(host) && !isNumber(domain) && host.endsWith(QLatin1Char('.') + domain));
}

Parsed<QString> HostName::parseDomain(const QString &text)
{
    Parsed<QString> domain;
    domain.value = normalized(text);
    if (domain.value.isEmpty())
        domain.objection = withUsableProposal(objectionToDomain(text), [](const QString &other) {
            return normalized(other).isEmpty() ? Objection("it is not the name of a domain")
                                               : Objection();
        });
    return domain;
}

int HostName::toPort(const QString &text)
{
    if (!Pattern("^[0-9]{1,9}$").isIn(text))
        return 0;
    const int port = text.toInt();
    return port <= largestPort ? port : 0;
}
