// SPDX-License-Identifier: MIT
#include "network/cookiejar.h"

#include "network/cookiebounds.h"
#include "network/cookiefile.h"
#include "program/console.h"
#include "program/userfolders.h"
#include "program/wholefile.h"

#include <QDateTime>
#include <QFileInfo>
#include <QNetworkCookie>

namespace {

const int longestDelay = 5000; // milliseconds from a change to the file

QDateTime now()
{
    return QDateTime::currentDateTime().toUTC();
}

QString replaceFile(const QString &fileName, const QByteArray &contents)
{
    const QString problem = UserFolders::make(QFileInfo(fileName).path());
    return problem.isEmpty() ? WholeFile::replace(fileName, contents) : problem;
}

} // namespace

CookieJar::CookieJar(const QString &file, QObject *parent)
    : QNetworkCookieJar(parent), m_file(file), m_failed(false)
{
    WholeFile::removeLeftovers(m_file);
    const CookieFile::Contents contents = CookieFile::read(m_file, now());
    if (!contents.problem.isEmpty())
        Console::error(m_file + QLatin1String(": ") + contents.problem);
    setAllCookies(contents.cookies);
    m_written = CookieFile::toLines(contents.cookies, now());
    m_delay.setSingleShot(true);
    m_delay.setInterval(longestDelay);
    connect(&m_delay, SIGNAL(timeout()), SLOT(write()));
}

CookieJar::~CookieJar()
{
    if (m_delay.isActive())
        write();
}

// The delay is not begun anew at each change: a page that never stops setting cookies would keep them
// from the file.
bool CookieJar::setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url)
{
    QList<QNetworkCookie> small;
    for (int i = 0; i < cookies.size(); ++i) {
        if (CookieBounds::admit(cookies.at(i)))
            small.append(cookies.at(i));
    }
    const bool taken = QNetworkCookieJar::setCookiesFromUrl(small, url);
    setAllCookies(CookieBounds::applied(allCookies(), now()));
    if (!m_delay.isActive())
        m_delay.start();
    return taken; // false where one is taken back, which changes the file, too
}

// A disk stays full for long: it is told once, until the cookies could be written again.
void CookieJar::write()
{
    m_delay.stop();
    const QByteArray lines = CookieFile::toLines(allCookies(), now());
    if (lines == m_written)
        return;
    const QString problem = replaceFile(m_file, lines);
    if (!problem.isEmpty() && !m_failed)
        Console::error(m_file + QLatin1String(": the cookies cannot be kept: ") + problem);
    m_failed = !problem.isEmpty();
    if (!m_failed)
        m_written = lines;
}
