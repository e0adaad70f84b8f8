// SPDX-License-Identifier: MIT
#ifndef DISKCACHE_H
#define DISKCACHE_H

#include <QNetworkDiskCache>

/// Keeps what was fetched, also for the next start. What came without an expiry date is kept, but the
/// server is asked each time whether it is still so: Qt 4 takes it for fresh for ever, so that a device
/// would never see an update.
class DiskCache : public QNetworkDiskCache
{
    Q_OBJECT

public:
    DiskCache(const QString &directory, QObject *parent);

    QIODevice *prepare(const QNetworkCacheMetaData &metaData) override;
};

#endif // DISKCACHE_H
