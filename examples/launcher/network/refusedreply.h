// SPDX-License-Identifier: MIT
#ifndef REFUSEDREPLY_H
#define REFUSEDREPLY_H

#include <QNetworkReply>

/// The answer to a request that is not sent: an error, with its reason.
class RefusedReply : public QNetworkReply
{
    Q_OBJECT

public:
    RefusedReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request,
                 const QString &reason, QObject *parent);

    void abort() override {}

protected:
    qint64 readData(char *, qint64) override { return -1; }

private Q_SLOTS:
    void tell();
};

#endif // REFUSEDREPLY_H
