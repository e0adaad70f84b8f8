// SPDX-License-Identifier: MIT
#ifndef STORAGEQUOTA_H
#define STORAGEQUOTA_H

#include <QObject>

class QString;
class QWebFrame;
class QWebPage;

/// How much the databases of one site may hold, for the sites of one page. The engine itself knows one
/// quota for all pages, and keeps with each site what it was given once.
class StorageQuota : public QObject
{
    Q_OBJECT

public:
    /// The quota of a page, which owns it. It is the engine's default at first.
    static StorageQuota *of(QWebPage *page);

    void setBytes(qint64 bytes);

private Q_SLOTS:
    void grant(QWebFrame *frame);
    void watchFrame(QWebFrame *frame);
    void correct();

private:
    explicit StorageQuota(QWebPage *page);

    qint64 m_bytes;
};

#endif // STORAGEQUOTA_H
