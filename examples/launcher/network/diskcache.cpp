// SPDX-License-Identifier: MIT
#include "network/diskcache.h"

#include <QDateTime>

DiskCache::DiskCache(const QString &directory, QObject *parent) : QNetworkDiskCache(parent)
{
    setCacheDirectory(directory);
}

QIODevice *DiskCache::prepare(const QNetworkCacheMetaData &metaData)
{
    QNetworkCacheMetaData dated = metaData;
    if (!dated.expirationDate().isValid())
        dated.setExpirationDate(QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC));
    return QNetworkDiskCache::prepare(dated);
}
