// SPDX-License-Identifier: MIT
#include "network/trustedauthorities.h"

#include "network/tlscompat.h"

#include <QFile>

#ifdef NUV_WITHOUT_TLS

QString TrustedAuthorities::addFromEnvironment()
{
    return QString();
}

#else

namespace {

QString complaint(const QString &file, const QString &reason)
{
    return QString(QLatin1String("SSL_CERT_FILE names %1: %2")).arg(file, reason);
}

// As soon as it is told of an authority, the toolkit looks for no others in the system's directories.
void add(const QList<QSslCertificate> &authorities)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(TlsCompat::systemAuthorities() + authorities);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace

QString TrustedAuthorities::addFromEnvironment()
{
    QFile file(QFile::decodeName(qgetenv("SSL_CERT_FILE")));
    if (file.fileName().isEmpty())
        return QString();
    if (!file.open(QIODevice::ReadOnly))
        return complaint(file.fileName(), file.errorString());
    const QList<QSslCertificate> authorities = QSslCertificate::fromData(file.readAll());
    if (authorities.isEmpty())
        return complaint(file.fileName(), QLatin1String("no certificate in PEM form is in it"));
    add(authorities);
    return QString();
}

#endif
