// SPDX-License-Identifier: MIT
#include "values/webaddress.h"

#include "values/hostname.h"
#include "values/pattern.h"

namespace {

/// The parts of "scheme://user@host:port/path", as they are written.
struct Parts {
    QString scheme; ///< without its colon
    QString slashes; ///< before the host
    QString user; ///< with its "@"
    QString host;
    QString port; ///< without its colon
    QString path; ///< and what follows it
};

Parts partsOf(const QString &text)
{
    Parts parts;
    parts.scheme = text.section(QLatin1Char(':'), 0, 0);
    QString rest = text.mid(parts.scheme.size() + 1);
    Pattern slashes("^[/\\\\]*");
    slashes.indexIn(rest);
    parts.slashes = slashes.cap();
    rest.remove(0, parts.slashes.size());
    if (parts.slashes.contains(QLatin1Char('\\')))
        rest.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const int path = Pattern("[/?#\\\\]").indexIn(rest);
    const QString authority = path < 0 ? rest : rest.left(path);
    parts.path = path < 0 ? QString() : rest.mid(path);
    parts.user = authority.left(authority.lastIndexOf(QLatin1Char('@')) + 1);
    const QString place = authority.mid(parts.user.size());
    const int colon = place.indexOf(QLatin1Char(':'), qMax(0, place.indexOf(QLatin1Char(']'))));
    const bool isOpen = place.startsWith(QLatin1Char('[')) && !place.contains(QLatin1Char(']'));
    parts.host = colon < 0 || isOpen ? place : place.left(colon);
    parts.port = colon < 0 || isOpen ? QString() : place.mid(colon + 1);
    return parts;
}

QString joined(const Parts &parts, const QString &host)
{
    const QString port = parts.port.isEmpty() ? QString() : QLatin1Char(':') + parts.port;
    return parts.scheme + QLatin1String("://") + parts.user + host + port + parts.path;
}

QString bracketed(const Parts &parts)
{
    const QString number = parts.host.startsWith(QLatin1Char('[')) ? parts.host.mid(1) : parts.host;
    Parts whole = parts;
    whole.port.clear();
    const QString tail = parts.port.isEmpty() ? QString() : QLatin1Char(':') + parts.port;
    return joined(whole, QLatin1Char('[') + number + tail + QLatin1Char(']'));
}

bool isScheme(const QString &text)
{
    return text == QLatin1String("http") || text == QLatin1String("https")
        || text == QLatin1String("ftp");
}

// "http://me:a/b@host/" breaks off at the slash of the password.
QString withEncodedSlash(const QString &text)
{
    const int begin = text.indexOf(QLatin1String("//")) + 2;
    const int end = text.indexOf(QLatin1Char('@'), begin);
    QString user = text.mid(begin, end - begin);
    user.replace(QLatin1Char('/'), QLatin1String("%2F"));
    user.replace(QLatin1Char('?'), QLatin1String("%3F"));
    user.replace(QLatin1Char('#'), QLatin1String("%23"));
    return text.left(begin) + user + text.mid(end);
}

Objection judgeHost(const Parts &parts)
{
    const bool isOpen =
        parts.host.startsWith(QLatin1Char('[')) && !parts.host.endsWith(QLatin1Char(']'));
    if (isOpen)
        return Objection("the ] after the host is missing", bracketed(parts));
    if (parts.port.contains(QLatin1Char(':')))
        return Objection("an IPv6 address must be in brackets", bracketed(parts));
    if (HostName::normalized(parts.host).isEmpty())
        return Objection("the host is not a name that a host can have");
    return Objection();
}

Objection judgePort(const Parts &parts, const QString &text)
{
    if (parts.port.isEmpty() || HostName::toPort(parts.port) != 0)
        return Objection();
    if (parts.user.isEmpty() && parts.path.contains(QLatin1Char('@')))
        return Objection("a / in a password must be written %2F", withEncodedSlash(text));
    return Objection("the port is not a number from 1 to 65535");
}

Objection judgeReferrer(const QString &text)
{
    if (text.isEmpty())
        return Objection("it is empty");
    if (text.trimmed() != text)
        return Objection("there is a blank around the address", text.trimmed());
    const QString scheme = WebAddress::schemeOf(text);
    if (isScheme(scheme) && scheme != QLatin1String("ftp"))
        return WebAddress::judge(text);
    const bool hasOther = text.contains(QLatin1String("://"));
    return Objection("it does not begin with http:// or https://",
                     QLatin1String("https://")
                         + (hasOther ? text.section(QLatin1String("://"), 1) : text));
}

} // namespace

QString WebAddress::schemeOf(const QString &text)
{
    Pattern scheme("^([A-Za-z][A-Za-z0-9+.-]*):");
    return scheme.isIn(text) ? scheme.cap(1).toLower() : QString();
}

Objection WebAddress::judge(const QString &text)
{
    const Parts parts = partsOf(text);
    if (parts.host.isEmpty())
        return Objection("the host is missing");
    if (parts.slashes.size() > 2)
        return Objection("the host is missing", joined(parts, parts.host));
    if (parts.slashes != QLatin1String("//"))
        return Objection("two slashes must follow the colon", joined(parts, parts.host));
    if (isScheme(parts.host.toLower()) && parts.path.startsWith(QLatin1String("//")))
        return Objection("it begins with a scheme twice",
                         parts.host + QLatin1Char(':') + parts.path);
    const Objection port = judgePort(parts, text);
    if (!port.isNone() && !parts.port.contains(QLatin1Char(':')))
        return port;
    const Objection host = judgeHost(parts);
    if (!host.isNone())
        return host;
    return QUrl(text).isValid() ? Objection() : Objection("it is not an address");
}

Parsed<QUrl> parseReferrer(const QString &text)
{
    Parsed<QUrl> address;
    address.objection = withUsableProposal(judgeReferrer(text), judgeReferrer);
    if (!address.isUsable())
        return address;
    address.value =
        QUrl::fromEncoded(QUrl(text).toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
    address.value.setScheme(address.value.scheme().toLower()); // Qt 4 leaves it as it is written
    return address;
}
