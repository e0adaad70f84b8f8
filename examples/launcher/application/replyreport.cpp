// SPDX-License-Identifier: MIT
#include "application/replyreport.h"

#include "network/configuredaccess.h"
#include "program/console.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace {

const int leastRefusal = 400; // of the numbers that HTTP has for an answer
const int mostComplaints = 100;

QString reasonOf(const QNetworkReply &reply)
{
    const ConfiguredAccess *access = qobject_cast<ConfiguredAccess *>(reply.manager());
    return access ? access->reason(reply.url(), reply.errorString()) : reply.errorString();
}

/// As in "404 Not Found"; empty when the server refuses nothing, or was not asked.
QString refusalIn(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString words = QString::fromLatin1(
        reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toByteArray().constData());
    return status < leastRefusal ? QString()
                                 : (QString::number(status) + QLatin1Char(' ') + words).trimmed();
}

} // namespace

ReplyReport::ReplyReport(const QString &tag, QNetworkAccessManager *access, QObject *parent)
    : QObject(parent), m_tag(tag), m_addressesArePrinted(false)
{
    if (access)
        connect(access, SIGNAL(finished(QNetworkReply *)), SLOT(report(QNetworkReply *)));
}

void ReplyReport::setAddressesArePrinted(bool printed)
{
    m_addressesArePrinted = printed;
}

QString ReplyReport::refusalOf(const QUrl &document) const
{
    return document == m_refusedDocument ? m_refusal : QString();
}

void ReplyReport::report(QNetworkReply *reply)
{
    if (m_addressesArePrinted)
        printAddress(*reply);
    if (m_trail.follow(*reply)) {
        m_refusedDocument = reply->url();
        m_refusal = refusalIn(*reply);
        return;
    }
    if (reply->error() == QNetworkReply::AuthenticationRequiredError
        || reply->error() == QNetworkReply::ProxyAuthenticationRequiredError)
        complainOnce(*reply);
}

void ReplyReport::printAddress(const QNetworkReply &reply) const
{
    const QString address = reply.url().toString();
    if (reply.error() == QNetworkReply::NoError)
        Console::note(m_tag, QLatin1String("loaded: ") + address);
    else
        Console::note(
            m_tag, QLatin1String("not loaded: ") + address + QLatin1String(": ") + reasonOf(reply));
}

// A page can ask again and again.
void ReplyReport::complainOnce(const QNetworkReply &reply)
{
    const QString host = reply.url().host();
    if (m_complaints.size() >= mostComplaints || m_complaints.contains(host))
        return;
    m_complaints.insert(host);
    const QString refusal = refusalIn(reply);
    Console::warning(m_tag + QLatin1String(": ") + reply.url().toString() + QLatin1String(": ")
                     + (refusal.isEmpty() ? reply.errorString() : refusal));
}
