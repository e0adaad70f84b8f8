#include "network/cookiejar.h"

#include "program/console.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QNetworkCookie>
#include <QTemporaryFile>

#include <cstdio>

namespace {

bool isLasting(const QNetworkCookie &cookie)
{
    return !cookie.isSessionCookie()
        && cookie.expirationDate() > QDateTime::currentDateTime().toUTC();
}

QByteArray toLines(const QList<QNetworkCookie> &cookies)
{
    QByteArray lines;
    for (int i = 0; i < cookies.size(); ++i) {
        if (isLasting(cookies.at(i)))
            lines += cookies.at(i).toRawForm() + '\n';
    }
    return lines;
}

// The new file takes the place of the old one when it is complete. The toolkit's own way to rename a
// file does not replace another. A temporary file is readable for its owner alone from the beginning.
bool replaceFile(const QString &fileName, const QByteArray &contents)
{
    if (!QDir().mkpath(QFileInfo(fileName).path()))
        return false;
    QTemporaryFile file(fileName + QLatin1String(".XXXXXX"));
    if (!file.open() || file.write(contents) != contents.size() || !file.flush())
        return false;
    const QByteArray temporary = QFile::encodeName(file.fileName());
    if (std::rename(temporary.constData(), QFile::encodeName(fileName).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

} // namespace

CookieJar::CookieJar(const QString &file, QObject *parent) : QNetworkCookieJar(parent), m_file(file)
{
    read();
}

bool CookieJar::setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url)
{
    const bool taken = QNetworkCookieJar::setCookiesFromUrl(cookies, url);
    writeIfChanged();
    return taken;
}

void CookieJar::read()
{
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return;
    m_written = file.readAll();
    QList<QNetworkCookie> cookies;
    const QList<QNetworkCookie> stored = QNetworkCookie::parseCookies(m_written);
    for (int i = 0; i < stored.size(); ++i) {
        if (isLasting(stored.at(i)))
            cookies.append(stored.at(i));
    }
    setAllCookies(cookies);
}

void CookieJar::writeIfChanged()
{
    const QByteArray lines = toLines(allCookies());
    if (lines == m_written)
        return;
    m_written = lines; // so that a folder that cannot be written to is told of once for each change
    if (!replaceFile(m_file, lines))
        Console::error(m_file + QLatin1String(": the cookies cannot be kept"));
}
