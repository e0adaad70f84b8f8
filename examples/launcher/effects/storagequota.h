#ifndef STORAGEQUOTA_H
#define STORAGEQUOTA_H

#include <QObject>

class QString;
class QWebFrame;
class QWebPage;

/// How much the databases of one site may hold, for the sites of one page. The engine itself knows one
/// quota for all pages; but it tells when a site has used its own up, which is nothing at first.
class StorageQuota : public QObject
{
    Q_OBJECT

public:
    StorageQuota(QWebPage *page, qint64 bytes);

private Q_SLOTS:
    void grant(QWebFrame *frame, const QString &database);

private:
    qint64 m_bytes;
};

#endif // STORAGEQUOTA_H
