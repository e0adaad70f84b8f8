// SPDX-License-Identifier: MIT
#include "effects/storagequota.h"

#include <QWebFrame>
#include <QWebPage>
#include <QWebSecurityOrigin>
#include <QWebSettings>

namespace {

bool areTheSame(const QWebSecurityOrigin &a, const QWebSecurityOrigin &b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && a.port() == b.port();
}

// Whether a quota was given to a site before.
bool isKept(const QWebSecurityOrigin &site)
{
    const QList<QWebSecurityOrigin> all = QWebSecurityOrigin::allOrigins();
    for (int i = 0; i < all.size(); ++i) {
        if (areTheSame(all.at(i), site))
            return true;
    }
    return false;
}

} // namespace

StorageQuota *StorageQuota::of(QWebPage *page)
{
    StorageQuota *quota = page->findChild<StorageQuota *>();
    return quota ? quota : new StorageQuota(page);
}

StorageQuota::StorageQuota(QWebPage *page)
    : QObject(page), m_bytes(QWebSettings::offlineStorageDefaultQuota())
{
    connect(page, SIGNAL(databaseQuotaExceeded(QWebFrame *, QString)), SLOT(grant(QWebFrame *)));
    connect(page, SIGNAL(frameCreated(QWebFrame *)), SLOT(watchFrame(QWebFrame *)));
    watchFrame(page->mainFrame());
}

void StorageQuota::setBytes(qint64 bytes)
{
    m_bytes = bytes;
}

// A site without databases has none, so that it comes here with its first one.
void StorageQuota::grant(QWebFrame *frame)
{
    frame->securityOrigin().setDatabaseQuota(m_bytes);
}

void StorageQuota::watchFrame(QWebFrame *frame)
{
    connect(frame, SIGNAL(javaScriptWindowObjectCleared()), SLOT(correct()));
}

// A site keeps the quota of an earlier start. Once a statement has run into it, raising it is too late
// for that statement.
void StorageQuota::correct()
{
    QWebSecurityOrigin site = qobject_cast<QWebFrame *>(sender())->securityOrigin();
    if (site.databaseQuota() != m_bytes && isKept(site))
        site.setDatabaseQuota(m_bytes);
}
