// SPDX-License-Identifier: MIT
#ifndef TLSCOMPAT_H
#define TLSCOMPAT_H

// Not part of the public interface, never installed.
//
// What qtcompat.h is for the toolkit's core, for its TLS. The library needs none; a launcher does.

#include <QList>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>

// Qt 4 and Qt 5 name differently what a build without TLS lacks.
#if defined(QT_NO_SSL) || defined(QT_NO_OPENSSL)
#define NUV_WITHOUT_TLS
#endif

#ifndef NUV_WITHOUT_TLS

namespace TlsCompat {

/// The kinds of keys that the toolkit can read; Qt 4 knows no elliptic curves.
inline QList<QSsl::KeyAlgorithm> keyAlgorithms()
{
    QList<QSsl::KeyAlgorithm> result;
    result << QSsl::Rsa;
#if QT_VERSION >= QT_VERSION_CHECK(5, 0, 0)
    result << QSsl::Ec;
#endif
    return result;
}

/// Presents a certificate with the chain of those that vouch for it, itself first. Qt 4 presents the
/// first one alone, so that servers have to know the authorities in between.
inline void setLocalCertificates(QSslConfiguration *configuration,
                                 const QList<QSslCertificate> &chain)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 1, 0)
    configuration->setLocalCertificate(chain.value(0));
#else
    configuration->setLocalCertificateChain(chain);
#endif
}

inline QList<QSslCertificate> systemAuthorities()
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QSslSocket::systemCaCertificates();
#else
    return QSslConfiguration::systemCaCertificates();
#endif
}

} // namespace TlsCompat

#endif // NUV_WITHOUT_TLS

#endif // TLSCOMPAT_H
