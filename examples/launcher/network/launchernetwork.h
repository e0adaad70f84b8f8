// SPDX-License-Identifier: MIT
#ifndef LAUNCHERNETWORK_H
#define LAUNCHERNETWORK_H

#include <NetworkAccessManager>

#include <QString>

class ConfiguredAccess;

/// The network access of one application: the toolkit's, with a client certificate. Each has its own
/// connections, cookies and cache.
class LauncherNetwork : public NetworkAccessManager
{
    Q_OBJECT
    Q_PROPERTY(QString problem READ problem)

public:
    explicit LauncherNetwork(QObject *parent);

    /// Sets the client certificate of the requests to come. The strings are, in this order: the file
    /// of the certificate, the file of its private key, the pass phrase of the key. Both files are
    /// PEM, the key is RSA or EC.
    ///
    /// When the two cannot be used, there is no network access any more: impl() is null. So nothing
    /// is ever asked for without the certificate that was configured for it.
    void setSslConfiguration(QString const &certificateFile, QString const &keyFile,
                             QString const &passPhrase) override;

    /// The same for a key without a pass phrase.
    void setSslConfiguration(QString const &certificateFile, QString const &keyFile) override;

    QNetworkAccessManager *impl() override;

    /// Why there is no network access; empty when there is one. A property, as the library's interface
    /// has no place for it: a launcher asks for it by its name, and goes without where another network
    /// module has none.
    QString problem() const;

private:
    ConfiguredAccess *m_access;
    QString m_certificateProblem;
};

class LauncherNetworkFactory : public NetworkAccessManagerFactory
{
public:
    /// Adds to the trusted authorities those that the user names; says so when it cannot.
    LauncherNetworkFactory();

    NetworkAccessManager *create(QObject *parent) override;
};

#endif // LAUNCHERNETWORK_H
