// SPDX-License-Identifier: MIT
#include "network/refusedreply.h"

#include <QNetworkRequest>

// Who asks connects to the signals when it has the reply.
RefusedReply::RefusedReply(QNetworkAccessManager::Operation operation,
                           const QNetworkRequest &request, const QString &reason, QObject *parent)
    : QNetworkReply(parent)
{
    setOperation(operation);
    setRequest(request);
    setUrl(request.url());
    open(ReadOnly | Unbuffered); // forgets an error
    setError(ContentAccessDenied, reason);
    setFinished(true); // a script can wait for the reply
    QMetaObject::invokeMethod(this, "tell", Qt::QueuedConnection);
}

void RefusedReply::tell()
{
    emit finished();
}
