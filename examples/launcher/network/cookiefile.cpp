// SPDX-License-Identifier: MIT
#include "network/cookiefile.h"

#include "network/cookiebounds.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace {

// Of name, value, domain and path, with room for the words around them.
const int longestLine = 8192;
const qint64 largestFile = qint64(longestLine) * CookieBounds::ofAllDomains;

QList<QByteArray> filledLines(const QByteArray &contents)
{
    QList<QByteArray> lines = contents.split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

/// False for a line that this program did not write. One of a session is not among those that it does.
bool parse(const QByteArray &line, QNetworkCookie *cookie)
{
    if (line.size() > longestLine)
        return false;
    const QList<QNetworkCookie> cookies = QNetworkCookie::parseCookies(line);
    if (cookies.size() != 1)
        return false;
    *cookie = cookies.at(0);
    return !cookie->isSessionCookie() && !cookie->domain().isEmpty()
        && CookieBounds::admit(*cookie);
}

CookieFile::Contents refused(const QString &problem)
{
    CookieFile::Contents contents;
    contents.problem = problem + QLatin1String("; it is ignored");
    return contents;
}

CookieFile::Contents fromLines(const QList<QByteArray> &lines, const QDateTime &now)
{
    CookieFile::Contents contents;
    int ignored = 0;
    for (int i = qMax(0, lines.size() - CookieBounds::ofAllDomains); i < lines.size(); ++i) {
        QNetworkCookie cookie;
        if (parse(lines.at(i), &cookie))
            contents.cookies.append(cookie);
        else
            ++ignored;
    }
    contents.cookies = CookieBounds::applied(contents.cookies, now);
    if (ignored > 0)
        contents.problem =
            QString(QLatin1String("%1 of its lines are not cookies; they are ignored"))
                .arg(ignored);
    return contents;
}

} // namespace

// To open something else than a file, as a pipe, could take forever.
CookieFile::Contents CookieFile::read(const QString &fileName, const QDateTime &now)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return Contents();
    if (!info.isFile())
        return refused(QLatin1String("it is not a file"));
    if (info.size() > largestFile)
        return refused(QString(QLatin1String("it has %1 bytes, where cookies have %2 at most"))
                           .arg(info.size())
                           .arg(largestFile));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return refused(file.errorString());
    return fromLines(filledLines(file.read(largestFile)), now);
}

QByteArray CookieFile::toLines(const QList<QNetworkCookie> &cookies, const QDateTime &now)
{
    QByteArray lines;
    for (int i = 0; i < cookies.size(); ++i) {
        if (!cookies.at(i).isSessionCookie() && !CookieBounds::isExpired(cookies.at(i), now))
            lines += cookies.at(i).toRawForm() + '\n';
    }
    return lines;
}
