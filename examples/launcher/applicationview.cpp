#include "examples/launcher/applicationview.h"

#include "config/appconfig.h"
#include "examples/launcher/applicationpage.h"
#include "examples/launcher/configurationfile.h"
#include "examples/launcher/console.h"
#include "examples/launcher/viewsettings.h"
#include "examples/launcher/zarexextfactory.h"
#include "hooks/networkaccessmanager.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPainter>
#include <QWebFrame>

ApplicationView::ApplicationView(const QString &tag)
    : m_page(new ApplicationPage(this)),
      m_network(createNetworkAccessManager(this)),
      m_consoleIsShown(true),
      m_loadedUrlsArePrinted(false)
{
    setObjectName(tag);
    setWindowTitle(tag);
    setAttribute(Qt::WA_DeleteOnClose);
    setPage(m_page);
    if (networkAccess()) {
        m_page->setNetworkAccessManager(networkAccess());
        connect(networkAccess(), SIGNAL(finished(QNetworkReply *)),
                SLOT(printUrl(QNetworkReply *)));
    }
    connect(m_page, SIGNAL(consoleMessage(QString)), SLOT(printConsoleMessage(QString)));

    // From its first evaluation on, a frame announces the window object of each document once, even
    // of one without scripts.
    m_page->mainFrame()->evaluateJavaScript(QLatin1String("undefined"));
    connect(m_page->mainFrame(), SIGNAL(javaScriptWindowObjectCleared()), SLOT(prepareScripts()));
}

QString ApplicationView::tag() const
{
    return objectName();
}

void ApplicationView::apply(const AppConfig &config)
{
    ViewSettings::apply(config, *this);
    useCertificate(config);
}

void ApplicationView::keepSize(const QSize &size)
{
    setWindowState(Qt::WindowNoState);
    resize(size);
}

void ApplicationView::start()
{
    if (!networkAccess()) {
        const QString problem = networkProblem();
        emit failed(problem.isEmpty() ? QString(QLatin1String("it has no network access"))
                                      : problem);
        return;
    }
    if (m_address.isEmpty()) {
        emit failed(QLatin1String("it has no usable Url"));
        return;
    }
    connect(this, SIGNAL(loadFinished(bool)), SLOT(firstLoadFinished(bool)));
    show();
    QNetworkRequest request(m_address);
    if (!m_referrer.isEmpty())
        request.setRawHeader("Referer", m_referrer);
    page()->mainFrame()->load(request);
}

// The widget draws on a background of its own, the frame on what it is given.
QImage ApplicationView::picture() const
{
    QImage image(size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    m_page->mainFrame()->render(&painter);
    return image;
}

void ApplicationView::setAddress(const QUrl &address)
{
    m_address = address;
}

void ApplicationView::setReferrer(const QByteArray &address)
{
    m_referrer = address;
}

void ApplicationView::setUserAgent(const QString &userAgent)
{
    m_page->setUserAgent(userAgent);
}

void ApplicationView::setUserScript(const QString &source)
{
    m_userScript = source;
}

void ApplicationView::setConsoleIsShown(bool shown)
{
    m_consoleIsShown = shown;
}

void ApplicationView::setLoadedUrlsArePrinted(bool printed)
{
    m_loadedUrlsArePrinted = printed;
}

QNetworkAccessManager *ApplicationView::networkAccess() const
{
    return m_network ? m_network->impl() : nullptr;
}

// A new document is about to run its scripts. It finds the extension object, even where a script of
// an earlier document deleted it, and the effects of the user script.
void ApplicationView::prepareScripts()
{
    if (!m_extension)
        createExtension();
    if (m_extension)
        m_extension->attachObject();
    if (!m_userScript.isEmpty())
        m_page->mainFrame()->evaluateJavaScript(m_userScript);
}

// The object does not watch its page. As the page's child it is gone before the page is.
void ApplicationView::createExtension()
{
    ZarexExtFactory const *factory = getZarexExtFactory();
    m_extension = factory ? factory->create(m_page, m_page) : nullptr;
    if (m_extension)
        connect(m_extension, SIGNAL(openRequested(QString)), SIGNAL(openRequested(QString)));
}

// Only the first document decides whether the application could be opened; where its user goes from
// there is their own affair.
void ApplicationView::firstLoadFinished(bool ok)
{
    disconnect(this, SIGNAL(loadFinished(bool)), this, SLOT(firstLoadFinished(bool)));
    if (ok) {
        emit loaded();
        return;
    }
    QString text = QString(QLatin1String("the page %1 does not load")).arg(m_address.toString());
    if (!m_page->loadError().isEmpty())
        text += QLatin1String(": ") + m_page->loadError();
    if (!networkProblem().isEmpty())
        text += QLatin1String("; ") + networkProblem();
    emit failed(text);
}

void ApplicationView::printConsoleMessage(const QString &message)
{
    if (m_consoleIsShown)
        Console::note(tag(), QLatin1String("console: ") + message);
}

void ApplicationView::printUrl(QNetworkReply *reply)
{
    if (m_loadedUrlsArePrinted)
        Console::note(tag(), QLatin1String("loaded: ") + reply->url().toString());
}

void ApplicationView::useCertificate(const AppConfig &config)
{
    const QString certificate = config.getCertPath().toString();
    if (certificate.isEmpty() || !m_network)
        return;
    // A file can hold both.
    const QVariant key = config.getCertPrivateKey();
    const QString keyFile = key.isValid() ? key.toString() : certificate;
    const QVariant passPhrase = config.getCertPassPhrase();
    if (passPhrase.isValid())
        m_network->setSslConfiguration(ConfigurationFile::resolve(certificate),
                                       ConfigurationFile::resolve(keyFile), passPhrase.toString());
    else
        m_network->setSslConfiguration(ConfigurationFile::resolve(certificate),
                                       ConfigurationFile::resolve(keyFile));
}

// The property of a network module that has one.
QString ApplicationView::networkProblem() const
{
    return m_network ? m_network->property("problem").toString() : QString();
}
