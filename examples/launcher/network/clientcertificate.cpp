// SPDX-License-Identifier: MIT
#include "network/clientcertificate.h"

#include "network/tlscompat.h"

#include <QFile>
#include <QNetworkRequest>

#ifdef NUV_WITHOUT_TLS

struct ClientCertificate::Pair {
};

QString ClientCertificate::load(const QString &, const QString &, const QString &)
{
    return QLatin1String("the toolkit was built without TLS, so that it has no use for its "
                         "certificate");
}

void ClientCertificate::applyTo(QNetworkRequest *) const {}

QString ClientCertificate::explain(const QString &) const
{
    return QString();
}

#else

struct ClientCertificate::Pair {
    QString certificateFile;
    QString keyFile;
    QList<QSslCertificate> chain;
    QSslKey key;
};

namespace {

/// Returns what is wrong with the file.
QString read(const QString &fileName, QByteArray *contents)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QString(QLatin1String("%1 cannot be read: %2")).arg(fileName, file.errorString());
    *contents = file.readAll();
    return QString();
}

bool isEncrypted(const QByteArray &pem)
{
    return pem.contains("BEGIN ENCRYPTED PRIVATE KEY") || pem.contains("Proc-Type: 4,ENCRYPTED");
}

QSslKey toKey(const QByteArray &pem, const QString &passPhrase)
{
    const QList<QSsl::KeyAlgorithm> algorithms = TlsCompat::keyAlgorithms();
    QSslKey key;
    for (int i = 0; i < algorithms.size() && key.isNull(); ++i)
        key = QSslKey(pem, algorithms.at(i), QSsl::Pem, QSsl::PrivateKey, passPhrase.toUtf8());
    return key;
}

QString whyNoKey(const QByteArray &pem, const QString &passPhrase)
{
    if (!isEncrypted(pem))
        return QLatin1String("holds no private key of a known kind in PEM form");
    return QLatin1String(passPhrase.isEmpty() ? "needs a pass phrase"
                                              : "does not open with its pass phrase");
}

QString loadCertificates(const QString &fileName, QList<QSslCertificate> *chain)
{
    QByteArray pem;
    const QString problem = read(fileName, &pem);
    if (!problem.isEmpty())
        return QLatin1String("its certificate ") + problem;
    *chain = QSslCertificate::fromData(pem);
    return chain->isEmpty()
        ? QLatin1String("its certificate ") + fileName + QLatin1String(" is none in PEM form")
        : QString();
}

QString loadKey(const QString &fileName, const QString &passPhrase, QSslKey *key)
{
    QByteArray pem;
    const QString problem = read(fileName, &pem);
    if (!problem.isEmpty())
        return QLatin1String("its private key ") + problem;
    // Without a pass phrase the TLS library might ask for one, at the terminal.
    if (!isEncrypted(pem) || !passPhrase.isEmpty())
        *key = toKey(pem, passPhrase);
    return key->isNull() ? QLatin1String("its private key ") + fileName + QLatin1Char(' ')
            + whyNoKey(pem, passPhrase)
                         : QString();
}

// The words of the TLS library, which are not translated, for a key of the same kind and of another.
bool isMismatch(const QString &error)
{
    return error.contains(QLatin1String("key values mismatch"))
        || error.contains(QLatin1String("key type mismatch"))
        || error.contains(QLatin1String("no certificate assigned"));
}

} // namespace

QString ClientCertificate::load(const QString &certificateFile, const QString &keyFile,
                                const QString &passPhrase)
{
    m_pair.clear();
    QSharedPointer<Pair> pair(new Pair);
    pair->certificateFile = certificateFile;
    pair->keyFile = keyFile;
    QString problem = loadCertificates(certificateFile, &pair->chain);
    if (problem.isEmpty())
        problem = loadKey(keyFile, passPhrase, &pair->key);
    if (problem.isEmpty())
        m_pair = pair;
    return problem;
}

void ClientCertificate::applyTo(QNetworkRequest *request) const
{
    if (!m_pair)
        return;
    QSslConfiguration configuration = request->sslConfiguration();
    TlsCompat::setLocalCertificates(&configuration, m_pair->chain);
    configuration.setPrivateKey(m_pair->key);
    request->setSslConfiguration(configuration);
}

QString ClientCertificate::explain(const QString &connectionError) const
{
    if (!m_pair)
        return QString();
    if (isMismatch(connectionError))
        return QString(QLatin1String("its private key %1 does not belong to its certificate %2"))
            .arg(m_pair->keyFile, m_pair->certificateFile);
    return QLatin1String("perhaps the server does not accept its certificate ")
        + m_pair->certificateFile;
}

#endif

bool ClientCertificate::isEmpty() const
{
    return m_pair.isNull();
}
