// SPDX-License-Identifier: MIT
#include "network/responselimit.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QString>

namespace {

const qint64 readAhead = qint64(1024) * 1024;

} // namespace

// The engine reads in its own slot, between countReadable() and noteRest(): so the one connects before
// it does, the other afterwards.
ResponseLimit::ResponseLimit(QNetworkReply *reply)
    : QObject(reply), m_reply(reply), m_arrived(0), m_readable(0), m_rest(0), m_isExceeded(false)
{
    // Without a limit the toolkit reads ahead, as fast as the server can send.
    reply->setReadBufferSize(readAhead);
    connect(reply, SIGNAL(metaDataChanged()), SLOT(lookAtLength()));
    connect(reply, SIGNAL(downloadProgress(qint64, qint64)), SLOT(countArrived(qint64)));
    connect(reply, SIGNAL(readyRead()), SLOT(countReadable()));
    QMetaObject::invokeMethod(this, "listenLast", Qt::QueuedConnection);
}

QString ResponseLimit::reason()
{
    return QString(QLatin1String("its body is larger than %1 bytes")).arg(most);
}

// Answers to other questions, and those out of the cache, can announce a body that they do not have. What
// arrives compressed has no length any more.
bool ResponseLimit::isCutOff() const
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool hasBody = status == 200
        && m_reply->operation() == QNetworkAccessManager::GetOperation
        && !m_reply->attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool();
    return hasBody
        && m_arrived < m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
}

// There is time: no data has arrived.
void ResponseLimit::lookAtLength()
{
    if (isTooLarge(m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong()))
        QMetaObject::invokeMethod(this, "breakOff", Qt::QueuedConnection);
}

void ResponseLimit::breakOff()
{
    m_reply->abort();
}

// At once: the engine would be given the rest before an event is.
void ResponseLimit::countArrived(qint64 received)
{
    m_arrived = received;
    if (isTooLarge(received))
        m_reply->abort();
}

// What arrives compressed is larger here.
void ResponseLimit::countReadable()
{
    m_readable += m_reply->bytesAvailable() - m_rest;
    m_rest = m_reply->bytesAvailable();
    if (isTooLarge(m_readable))
        m_reply->abort();
}

void ResponseLimit::listenLast()
{
    connect(m_reply, SIGNAL(readyRead()), SLOT(noteRest()));
}

void ResponseLimit::noteRest()
{
    m_rest = m_reply->bytesAvailable();
}

// True once.
bool ResponseLimit::isTooLarge(qint64 size)
{
    if (m_isExceeded || size <= most)
        return false;
    m_isExceeded = true;
    emit exceeded(m_reply);
    return true;
}
