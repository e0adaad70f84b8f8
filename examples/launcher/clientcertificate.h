#ifndef CLIENTCERTIFICATE_H
#define CLIENTCERTIFICATE_H

#include <QSharedPointer>

class QNetworkRequest;
class QString;

/// The certificate with which a launcher makes itself known to a server. Empty at first.
class ClientCertificate
{
public:
    /// Reads a PEM certificate and its RSA key. Returns false when one of the two cannot be used,
    /// or the toolkit was built without SSL; the certificate is empty then.
    bool load(const QString &certificateFile, const QString &keyFile, const QString &passPhrase);

    /// Presents the certificate in the request; an empty one changes nothing.
    void applyTo(QNetworkRequest *request) const;

private:
    struct Pair;
    QSharedPointer<const Pair> m_pair;
};

#endif // CLIENTCERTIFICATE_H
