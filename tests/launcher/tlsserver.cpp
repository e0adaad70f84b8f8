// SPDX-License-Identifier: MIT
#include "tests/launcher/tlsserver.h"

#include <QFile>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QVariant>

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(fileName));
    return file.readAll();
}

// A list of names under Qt 5, where a subject may have several.
QString commonName(const QSslCertificate &certificate)
{
    const QVariant names =
        QVariant::fromValue(certificate.subjectInfo(QSslCertificate::CommonName));
    return names.userType() == QMetaType::QStringList ? names.toStringList().value(0)
                                                      : names.toString();
}

} // namespace

TlsServer::TlsServer(const QString &authority, const QString &certificate, const QString &key)
    : m_authority(QSslCertificate::fromData(contents(authority))),
      m_certificate(contents(certificate)),
      m_key(contents(key), QSsl::Rsa),
      m_isContent(false)
{
}

QString TlsServer::address(const char *path) const
{
    const QString scheme = QLatin1String("http://127.0.0.1:");
    return HttpServer::address(path).replace(
        0, scheme.size(),
        QLatin1String("https://") + ToolkitDifferences::trustedLocalHost() + QLatin1Char(':'));
}

QTcpSocket *TlsServer::makeSocket()
{
    return new QSslSocket(this);
}

void TlsServer::begin(QTcpSocket *socket)
{
    QSslSocket *secure = static_cast<QSslSocket *>(socket);
    QSslConfiguration configuration = secure->sslConfiguration();
    configuration.setCaCertificates(m_authority);
    configuration.setLocalCertificate(m_certificate);
    configuration.setPrivateKey(m_key);
    configuration.setPeerVerifyMode(m_isContent ? QSslSocket::QueryPeer : QSslSocket::VerifyPeer);
    secure->setSslConfiguration(configuration);
    secure->startServerEncryption();
}

QString TlsServer::clientOf(QTcpSocket *socket) const
{
    return commonName(static_cast<QSslSocket *>(socket)->peerCertificate());
}
