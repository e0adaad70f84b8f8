// SPDX-License-Identifier: MIT
#include "application/documenttrail.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QWebFrame>

bool DocumentTrail::follow(const QNetworkReply &reply)
{
    const QWebFrame *frame = qobject_cast<QWebFrame *>(reply.request().originatingObject());
    const bool isForPage = frame && !frame->parentFrame();
    if (!isForPage || (reply.url() != frame->requestedUrl() && reply.url() != m_next))
        return false;
    const QUrl target = reply.attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    m_next = target.isEmpty() ? QUrl() : reply.url().resolved(target);
    return true;
}
