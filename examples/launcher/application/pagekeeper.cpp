// SPDX-License-Identifier: MIT
#include "application/pagekeeper.h"

#include "application/applicationpage.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QWebFrame>

namespace {

const int ShortestPause = 1000;
const int LongestPause = 60000;
const int FirstServerError = 500;

} // namespace

PageKeeper::PageKeeper(ApplicationPage *page, int timeout, QObject *parent)
    : QObject(parent), m_page(page), m_failures(0), m_status(0)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(timeout);
    m_pause.setSingleShot(true);
    connect(&m_patience, SIGNAL(timeout()), SLOT(giveUp()));
    connect(&m_pause, SIGNAL(timeout()), SLOT(tryAgain()));
    connect(page, SIGNAL(loadStarted()), SLOT(started()));
    connect(page, SIGNAL(settled(bool)), SLOT(finished(bool)));
    connect(page->mainFrame(), SIGNAL(initialLayoutCompleted()), SLOT(shown()));
    connect(page->networkAccessManager(), SIGNAL(finished(QNetworkReply *)),
            SLOT(look(QNetworkReply *)));
}

int PageKeeper::pauseBefore(int attempt)
{
    int pause = ShortestPause;
    for (int i = 1; i < attempt && pause < LongestPause; ++i)
        pause *= 2;
    return qMin(pause, LongestPause);
}

bool PageKeeper::keeps(const QUrl &address)
{
    return address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
}

void PageKeeper::started()
{
    m_pause.stop(); // somebody is faster
    m_status = 0;
    if (m_patience.interval() > 0)
        m_patience.start();
}

void PageKeeper::shown()
{
    m_patience.stop();
}

void PageKeeper::look(QNetworkReply *reply)
{
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (m_trail.follow(*reply) && status >= FirstServerError)
        m_status = status;
}

void PageKeeper::finished(bool ok)
{
    m_patience.stop();
    if (ok ? m_status != 0 : m_page->mayLoadLater()) {
        wait();
    } else if (ok && m_failures > 0) {
        emit note(QString(QLatin1String("has loaded, at attempt %1")).arg(m_failures + 1));
        m_failures = 0;
        emit recovered();
    }
}

void PageKeeper::giveUp()
{
    wait();
    emit timedOut(); // first, as the end of the loading is told as a failure, too
    m_page->triggerAction(QWebPage::Stop);
}

// Said once, however long the server stays away.
void PageKeeper::wait()
{
    m_address = m_page->mainFrame()->requestedUrl();
    if (!keeps(m_address))
        return;
    ++m_failures;
    const QString reason =
        m_status == 0 ? QString() : QString(QLatin1String("the server answers %1; ")).arg(m_status);
    if (m_failures == 1)
        emit note(reason
                  + QString(QLatin1String("the page is tried again, after %1 s at first, later "
                                          "every %2 s"))
                        .arg(ShortestPause / 1000)
                        .arg(LongestPause / 1000));
    m_pause.start(pauseBefore(m_failures));
}

void PageKeeper::tryAgain()
{
    emit due(m_address);
}
