#include "effects/storagequota.h"

#include <QWebFrame>
#include <QWebPage>
#include <QWebSecurityOrigin>

StorageQuota::StorageQuota(QWebPage *page, qint64 bytes) : QObject(page), m_bytes(bytes)
{
    connect(page, SIGNAL(databaseQuotaExceeded(QWebFrame *, QString)),
            SLOT(grant(QWebFrame *, QString)));
}

void StorageQuota::grant(QWebFrame *frame, const QString &)
{
    frame->securityOrigin().setDatabaseQuota(m_bytes);
}
