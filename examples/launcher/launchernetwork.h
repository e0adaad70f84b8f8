#ifndef LAUNCHERNETWORK_H
#define LAUNCHERNETWORK_H

#include "hooks/networkaccessmanager.h"

#include <QString>

class ConfiguredAccess;

/// The network access of one application: the toolkit's, with a client certificate.
class LauncherNetwork : public NetworkAccessManager
{
    Q_OBJECT

public:
    explicit LauncherNetwork(QObject *parent);

    /// Sets the client certificate of the requests to come. The texts are, in this order: the file
    /// of the certificate, the file of its private key, the pass phrase of the key. Both files are
    /// PEM, the key is RSA.
    ///
    /// When the two cannot be used, there is no network access any more: impl() is null. So nothing
    /// is ever asked for without the certificate that was configured for it.
    void setSslConfiguration(QString const &certificateFile, QString const &keyFile,
                             QString const &passPhrase) override;

    /// The same for a key without a pass phrase.
    void setSslConfiguration(QString const &certificateFile, QString const &keyFile) override;

    QNetworkAccessManager *impl() override;

private:
    ConfiguredAccess *m_access;
    bool m_certificateIsUsable;
};

class LauncherNetworkFactory : public NetworkAccessManagerFactory
{
public:
    NetworkAccessManager *create(QObject *parent) override;
};

#endif // LAUNCHERNETWORK_H
