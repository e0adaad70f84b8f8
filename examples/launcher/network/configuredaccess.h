// SPDX-License-Identifier: MIT
#ifndef CONFIGUREDACCESS_H
#define CONFIGUREDACCESS_H

#include "network/clientcertificate.h"
#include "network/localfiles.h"
#include "network/tlscompat.h"

#include <QHash>
#include <QNetworkAccessManager>
#include <QStringList>
#include <QUrl>

/// The network access of one application, which decides about every request: which files can be loaded,
/// who is shown the client certificate, how large a response may be. The toolkit keeps no certificate for
/// one network access manager, only for one request or the whole process.
class ConfiguredAccess : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit ConfiguredAccess(QObject *parent);

    /// For the requests to come. Returns an empty text, or why it cannot be used.
    QString setCertificate(const QString &certificateFile, const QString &keyFile,
                           const QString &passPhrase);

    /// The domains whose servers, and those of what is below them, are shown the certificate. None at
    /// first. They are normalized.
    void setCertificateDomains(const QStringList &domains);

    LocalFiles &localFiles();

    /// Why the request for `url` that has just failed did so. `words` is what the engine knows of it.
    QString reason(const QUrl &url, const QString &words) const;

    /// Whether the server broke off its last answer for `url` without an error that the engine hears of.
    bool isCutOff(const QUrl &url) const;

    /// Whether the last request that ended was sent on to another address.
    bool isSentOn() const;

    /// How many requests there were so far.
    int requestCount() const;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoing) override;

private Q_SLOTS:
    void watchEnd(QNetworkReply *reply);
    void noteExcess(QNetworkReply *reply);
#ifndef NUV_WITHOUT_TLS
    void noteDistrust(QNetworkReply *reply, const QList<QSslError> &errors);
#endif

private:
    bool isForCertificate(const QUrl &url) const;
    QString objectionTo(Operation operation, const QUrl &url) const;
    void noteLength(const QNetworkReply &reply);
    QString explain(const QNetworkReply &reply, const QString &note) const;

    ClientCertificate m_certificate;
    QStringList m_certificateDomains;
    LocalFiles m_files;
    QHash<QNetworkReply *, QString> m_notes; ///< why a request is about to fail
    QUrl m_failedUrl; ///< of the last request that failed
    QString m_explanation; ///< why it did, beyond the words of the toolkit
    bool m_wasBrokenOff; ///< by this object, so that these words mean nothing
    bool m_isSentOn;
    int m_requestCount;
    QUrl m_cutOff; ///< the last answer that was cut off; empty once it has come whole
};

#endif // CONFIGUREDACCESS_H
