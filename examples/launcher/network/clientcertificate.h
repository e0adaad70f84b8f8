// SPDX-License-Identifier: MIT
#ifndef CLIENTCERTIFICATE_H
#define CLIENTCERTIFICATE_H

#include <QSharedPointer>
#include <QString>

class QNetworkRequest;

/// The certificate with which a launcher makes itself known to servers. Empty at first.
class ClientCertificate
{
public:
    /// Reads a certificate and its private key, RSA or EC, both in PEM form. The certificates of the
    /// authorities in between can follow in the file of the certificate. Returns an empty text,
    /// or what is wrong with them, which never holds the pass phrase; the certificate is empty then.
    QString load(const QString &certificateFile, const QString &keyFile, const QString &passPhrase);

    bool isEmpty() const;

    /// Presents the certificate in the request; an empty one changes nothing.
    void applyTo(QNetworkRequest *request) const;

    /// What the certificate has to do with a connection that failed with this error; empty when it is
    /// out of the question. That a key belongs to another certificate shows here first.
    QString explain(const QString &connectionError) const;

private:
    struct Pair;
    QSharedPointer<const Pair> m_pair;
};

#endif // CLIENTCERTIFICATE_H
