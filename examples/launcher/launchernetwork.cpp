#include "examples/launcher/launchernetwork.h"

#include "examples/launcher/clientcertificate.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

/// Presents the client certificate in every request. The toolkit keeps no such setting for one
/// network access manager, only for one request or the whole process.
class ConfiguredAccess : public QNetworkAccessManager
{
public:
    explicit ConfiguredAccess(QObject *parent) : QNetworkAccessManager(parent) {}

    ClientCertificate certificate;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoing) override
    {
        QNetworkRequest configured(request);
        certificate.applyTo(&configured);
        return QNetworkAccessManager::createRequest(operation, configured, outgoing);
    }
};

LauncherNetwork::LauncherNetwork(QObject *parent)
    : NetworkAccessManager(parent),
      m_access(new ConfiguredAccess(this)),
      m_certificateIsUsable(true)
{
}

void LauncherNetwork::setSslConfiguration(QString const &certificateFile, QString const &keyFile,
                                          QString const &passPhrase)
{
    m_certificateIsUsable = m_access->certificate.load(certificateFile, keyFile, passPhrase);
}

void LauncherNetwork::setSslConfiguration(QString const &certificateFile, QString const &keyFile)
{
    setSslConfiguration(certificateFile, keyFile, QString());
}

QNetworkAccessManager *LauncherNetwork::impl()
{
    return m_certificateIsUsable ? m_access : nullptr;
}

NetworkAccessManager *LauncherNetworkFactory::create(QObject *parent)
{
    return new LauncherNetwork(parent);
}
