#ifndef CONFIGUREDACCESS_H
#define CONFIGUREDACCESS_H

#include "network/clientcertificate.h"
#include "network/tlscompat.h"

#include <QNetworkAccessManager>

/// Presents a client certificate in every request. The toolkit keeps no such setting for one network
/// access manager, only for one request or the whole process.
class ConfiguredAccess : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit ConfiguredAccess(QObject *parent);

    /// For the requests to come. Returns an empty text, or why it cannot be used.
    QString setCertificate(const QString &certificateFile, const QString &keyFile,
                           const QString &passPhrase);

    /// Why the last connection that failed did so, as far as certificates are concerned; empty when
    /// they are not.
    QString connectionProblem() const;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoing) override;

private Q_SLOTS:
    void watchEnd(QNetworkReply *reply);
#ifndef NUV_WITHOUT_TLS
    void noteDistrust(QNetworkReply *reply, const QList<QSslError> &errors);
#endif

private:
    ClientCertificate m_certificate;
    QString m_distrust;
    QString m_problem;
};

#endif // CONFIGUREDACCESS_H
