#include "examples/launcher/clientcertificate.h"

#include <QFile>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

// Qt 4 and Qt 5 name differently what a build without SSL lacks.
#if defined(QT_NO_SSL) || defined(QT_NO_OPENSSL)

struct ClientCertificate::Pair {
};

bool ClientCertificate::load(const QString &, const QString &, const QString &)
{
    return false;
}

void ClientCertificate::applyTo(QNetworkRequest *) const {}

#else

struct ClientCertificate::Pair {
    QSslCertificate certificate;
    QSslKey key;
};

namespace {

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

bool ClientCertificate::load(const QString &certificateFile, const QString &keyFile,
                             const QString &passPhrase)
{
    QSharedPointer<Pair> pair(new Pair);
    pair->certificate = QSslCertificate(contents(certificateFile));
    pair->key =
        QSslKey(contents(keyFile), QSsl::Rsa, QSsl::Pem, QSsl::PrivateKey, passPhrase.toUtf8());
    m_pair.clear();
    if (pair->certificate.isNull() || pair->key.isNull())
        return false;
    m_pair = pair;
    return true;
}

void ClientCertificate::applyTo(QNetworkRequest *request) const
{
    if (!m_pair)
        return;
    QSslConfiguration configuration = request->sslConfiguration();
    configuration.setLocalCertificate(m_pair->certificate);
    configuration.setPrivateKey(m_pair->key);
    request->setSslConfiguration(configuration);
}

#endif
