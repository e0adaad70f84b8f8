// SPDX-License-Identifier: MIT
// The smallest launcher that uses all of libnuvlaunchersupport: one application, one view. The document
// docs/integrating.md goes through it; examples/launcher is the one to copy from.

#include <AppConfig>
#include <NetworkAccessManager>
#include <NetworkAccessManagerFactory>
#include <WebAppSettings>
#include <ZarexExtBase>

#include <QApplication>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QSslKey>
#include <QUrl>
#include <QWebView>

// What the library leaves to the launcher: how an extension object is made.
class ZarexExtFactory
{
public:
    virtual ~ZarexExtFactory() {}
    virtual ZarexExtBase *create(QWebPage *page) const = 0;
};

class Extension : public ZarexExtBase
{
    Q_OBJECT

public:
    explicit Extension(QWebPage *servedPage) : ZarexExtBase(servedPage, servedPage) {}

public Q_SLOTS:
    QString model() const { return QLatin1String("box-1"); }
    void say(const QString &text) const { qWarning("the page says: %s", qPrintable(text)); }
};

class ExtensionFactory : public ZarexExtFactory
{
public:
    ZarexExtBase *create(QWebPage *page) const override { return new Extension(page); }
};

class Network : public NetworkAccessManager
{
public:
    explicit Network(QObject *parent) : NetworkAccessManager(parent), m_isUsable(true) {}

    // The strings are, in this order: the certificate's file, the key's file, the pass phrase.
    void setSslConfiguration(QString const &certificate, QString const &key,
                             QString const &passPhrase) override
    {
        QFile file(key);
        file.open(QIODevice::ReadOnly);
        const QSslKey opened(&file, QSsl::Rsa, QSsl::Pem, QSsl::PrivateKey, passPhrase.toUtf8());
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate::fromPath(certificate).value(0));
        tls.setPrivateKey(opened);
        QSslConfiguration::setDefaultConfiguration(tls); // of the process, which shows one page
        m_isUsable = !tls.localCertificate().isNull() && !opened.isNull();
    }

    void setSslConfiguration(QString const &certificate, QString const &key) override
    {
        setSslConfiguration(certificate, key, QString());
    }

    QNetworkAccessManager *impl() override { return m_isUsable ? &m_access : nullptr; }

private:
    QNetworkAccessManager m_access;
    bool m_isUsable; ///< nothing is to be shown without the certificate
};

class NetworkFactory : public NetworkAccessManagerFactory
{
public:
    NetworkAccessManager *create(QObject *parent) override { return new Network(parent); }
};

// Stays open like a television set, unless there is nothing to show.
class View : public QWebView
{
    Q_OBJECT

public Q_SLOTS:
    void endUnless(bool loaded)
    {
        if (loaded)
            return;
        qWarning("the page does not load: %s", qPrintable(url().toString()));
        QApplication::exit(1);
    }
};

// The configuration's file, as the library looks for it.
static QString configurationFile()
{
    const QString named = QString::fromLatin1(qgetenv("NUV_APPS_CONFIG_FILE").constData());
    return QFile::exists(named) ? named : QString::fromLatin1("AppsConfig.json");
}

// Returns false when the application is not configured, or its certificate cannot be used.
static bool open(QWebView &view, const QString &tag)
{
    AppConfig config;
    if (!getWebAppSettings()->getAppConfig(tag, config))
        return false;
    NetworkAccessManager *network = createNetworkAccessManager(view.page());
    if (config.getCertPath().isValid())
        network->setSslConfiguration(config.getCertPath().toString(),
                                     config.getCertPrivateKey().toString(),
                                     config.getCertPassPhrase().toString());
    if (!network->impl())
        return false;
    view.page()->setNetworkAccessManager(network->impl());
    getZarexExtFactory()->create(view.page());

    if (config.getScale().isValid()) // invalid: not configured, so the browser's default stays
        view.setZoomFactor(config.getScale().toReal());
    // An address without a scheme is relative to the configuration's file.
    const QUrl base = QUrl::fromLocalFile(QFileInfo(configurationFile()).absoluteFilePath());
    view.load(base.resolved(QUrl(config.getUrl().toString())));
    return true;
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const ExtensionFactory extensions;
    registerZarexExtFactory(&extensions);
    NetworkFactory networks;
    registerNetworkAccessManagerFactory(&networks);

    View view; // gone before the factories are
    // Queued, as a page may end its loading before the event loop runs.
    QObject::connect(&view, SIGNAL(loadFinished(bool)), &view, SLOT(endUnless(bool)),
                     Qt::QueuedConnection);
    if (!open(view, QLatin1String("tv"))) {
        qWarning("there is no application \"tv\", or no use for its certificate");
        return 1;
    }
    view.show();
    return application.exec();
}

#include "main.moc"
