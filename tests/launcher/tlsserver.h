// SPDX-License-Identifier: MIT
#ifndef TLSSERVER_H
#define TLSSERVER_H

#include "tests/launcher/httpserver.h"

#include <QSslCertificate>
#include <QSslKey>

/// The same with TLS. It demands a certificate of every client, and answers none whose certificate
/// was not issued by the authority.
class TlsServer : public HttpServer
{
    Q_OBJECT

public:
    /// The three files are in PEM form; the key is RSA.
    TlsServer(const QString &authority, const QString &certificate, const QString &key);

    /// From now on it asks for a certificate, and is content without one.
    void demandNothing() { m_isContent = true; }

    QString address(const char *path = "/") const override;

protected:
    QTcpSocket *makeSocket() override;
    void begin(QTcpSocket *socket) override;
    QString clientOf(QTcpSocket *socket) const override;

private:
    QList<QSslCertificate> m_authority;
    QSslCertificate m_certificate;
    QSslKey m_key;
    bool m_isContent;
};

#endif // TLSSERVER_H
