#include "network/configuredaccess.h"

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

} // namespace

ConfiguredAccess::ConfiguredAccess(QObject *parent) : QNetworkAccessManager(parent)
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

QString ConfiguredAccess::connectionProblem() const
{
    return m_problem;
}

QNetworkReply *ConfiguredAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                               QIODevice *outgoing)
{
    QNetworkRequest configured(request);
    m_certificate.applyTo(&configured);
    return QNetworkAccessManager::createRequest(operation, configured, outgoing);
}

void ConfiguredAccess::watchEnd(QNetworkReply *reply)
{
    if (!isHandshakeFailure(*reply))
        return;
    m_problem = m_distrust.isEmpty() ? m_certificate.explain(reply->errorString()) : m_distrust;
    m_distrust.clear();
}

#ifndef NUV_WITHOUT_TLS

// Nobody overrules them, so the request is about to fail; the error that it fails with does not say
// why.
void ConfiguredAccess::noteDistrust(QNetworkReply *, const QList<QSslError> &errors)
{
    m_distrust = QLatin1String("the server's certificate is not trusted");
    if (!errors.isEmpty())
        m_distrust += QLatin1String(": ") + errors.first().errorString();
}

#endif
