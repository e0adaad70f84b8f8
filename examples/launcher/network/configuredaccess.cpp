// SPDX-License-Identifier: MIT
#include "network/configuredaccess.h"

#include "network/refusedreply.h"
#include "network/responselimit.h"
#include "values/hostname.h"

#include <QFileInfo>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslError>

namespace {

// How the toolkit calls it when a server ends the handshake, or when there can be none. All three have
// other reasons, too.
bool isHandshakeFailure(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    return reply.url().scheme() == QLatin1String("https")
        && (error == QNetworkReply::SslHandshakeFailedError
            || error == QNetworkReply::RemoteHostClosedError
            || error == QNetworkReply::UnknownNetworkError);
}

bool isOfTheWeb(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}

// What the engine plays it does not keep, and a station never ends. Its player asks like this.
bool isForPlayer(const QNetworkRequest &request)
{
    return request.hasRawHeader("icy-metadata");
}

} // namespace

ConfiguredAccess::ConfiguredAccess(QObject *parent)
    : QNetworkAccessManager(parent), m_wasBrokenOff(false), m_isSentOn(false), m_requestCount(0)
{
    connect(this, SIGNAL(finished(QNetworkReply *)), SLOT(watchEnd(QNetworkReply *)));
#ifndef NUV_WITHOUT_TLS
    connect(this, SIGNAL(sslErrors(QNetworkReply *, QList<QSslError>)),
            SLOT(noteDistrust(QNetworkReply *, QList<QSslError>)));
#endif
}

QString ConfiguredAccess::setCertificate(const QString &certificateFile, const QString &keyFile,
                                         const QString &passPhrase)
{
    return m_certificate.load(certificateFile, keyFile, passPhrase);
}

void ConfiguredAccess::setCertificateDomains(const QStringList &domains)
{
    m_certificateDomains = domains;
}

LocalFiles &ConfiguredAccess::localFiles()
{
    return m_files;
}

QString ConfiguredAccess::reason(const QUrl &url, const QString &words) const
{
    if (url != m_failedUrl || m_explanation.isEmpty())
        return words;
    return m_wasBrokenOff ? m_explanation : words + QLatin1String("; ") + m_explanation;
}

bool ConfiguredAccess::isCutOff(const QUrl &url) const
{
    return !url.isEmpty() && url == m_cutOff;
}

bool ConfiguredAccess::isSentOn() const
{
    return m_isSentOn;
}

int ConfiguredAccess::requestCount() const
{
    return m_requestCount;
}

QNetworkReply *ConfiguredAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                               QIODevice *outgoing)
{
    ++m_requestCount;
    const QString objection = objectionTo(operation, request.url());
    if (!objection.isEmpty())
        return new RefusedReply(operation, request, objection, this);
    QNetworkRequest configured(request);
    if (isForCertificate(request.url()))
        m_certificate.applyTo(&configured);
    QNetworkReply *reply = QNetworkAccessManager::createRequest(operation, configured, outgoing);
    if (isOfTheWeb(request.url()) && !isForPlayer(request))
        connect(new ResponseLimit(reply), SIGNAL(exceeded(QNetworkReply *)),
                SLOT(noteExcess(QNetworkReply *)));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the limit belongs to the reply
    return reply;
}

bool ConfiguredAccess::isForCertificate(const QUrl &url) const
{
    const QString host = HostName::normalized(url.host());
    for (int i = 0; i < m_certificateDomains.size(); ++i) {
        if (HostName::isWithin(host, m_certificateDomains.at(i)))
            return true;
    }
    return false;
}

// The toolkit writes files, too.
QString ConfiguredAccess::objectionTo(Operation operation, const QUrl &url) const
{
    if (url.scheme() != QLatin1String("file"))
        return QString();
    if (operation != GetOperation && operation != HeadOperation)
        return QLatin1String("files are only read");
    if (QFileInfo(url.toLocalFile()).size() > ResponseLimit::most)
        return ResponseLimit::reason();
    return m_files.objectionTo(url);
}

// The engine asks for the reason once all have heard of the end.
void ConfiguredAccess::watchEnd(QNetworkReply *reply)
{
    const QString note = m_notes.take(reply);
    m_isSentOn = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).isValid();
    if (reply->error() == QNetworkReply::NoError) {
        noteLength(*reply);
        return;
    }
    m_failedUrl = reply->url();
    m_wasBrokenOff = note == ResponseLimit::reason();
    m_explanation = explain(*reply, note);
}

void ConfiguredAccess::noteLength(const QNetworkReply &reply)
{
    const ResponseLimit *limit = reply.findChild<ResponseLimit *>();
    if (limit && limit->isCutOff())
        m_cutOff = reply.url();
    else if (reply.url() == m_cutOff)
        m_cutOff.clear();
}

QString ConfiguredAccess::explain(const QNetworkReply &reply, const QString &note) const
{
    if (!note.isEmpty() || !isHandshakeFailure(reply))
        return note;
    if (m_certificate.isEmpty() || isForCertificate(reply.url()))
        return m_certificate.explain(reply.errorString());
    return QLatin1String("perhaps the server demands a certificate, which is only for the host of "
                         "Url and the granted domains");
}

void ConfiguredAccess::noteExcess(QNetworkReply *reply)
{
    m_notes.insert(reply, ResponseLimit::reason());
}

#ifndef NUV_WITHOUT_TLS

// Nobody overrules them, so the request is about to fail; the error that it fails with does not say
// why.
void ConfiguredAccess::noteDistrust(QNetworkReply *reply, const QList<QSslError> &errors)
{
    m_notes.insert(reply,
                   QLatin1String("the server's certificate is not trusted: ")
                       + errors.first().errorString());
}

#endif
