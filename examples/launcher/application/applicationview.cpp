#include "application/applicationview.h"

#include <AppConfig>
#include "application/applicationpage.h"
#include "application/pagekeeper.h"
#include "program/configurationfile.h"
#include "program/console.h"
#include "program/userfolders.h"
#include "effects/debugborders.h"
#include "effects/remoteinspector.h"
#include "values/valuekind.h"
#include "effects/viewsettings.h"
#include "application/websurface.h"
#include "application/zarexextfactory.h"
#include <NetworkAccessManager>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebFrame>
#include <QWebSecurityOrigin>
#include <QWebSettings>

namespace {

// The engine takes the folder of a page's localStorage from the settings of all pages, at the moment
// when it makes the page.
ApplicationPage *makePageFor(const QString &tag, ApplicationPage::Maker make, QObject *parent)
{
    QWebSettings::globalSettings()->setLocalStoragePath(UserFolders::data()
                                                        + UserFolders::nameFor(tag));
    DebugBorders::restore();
    return make(parent);
}

bool isEmptyText(const QVariant &value)
{
    return value.userType() == QMetaType::QString && value.toString().isEmpty();
}

} // namespace

ApplicationView::ApplicationView(const QString &tag, ApplicationPage::Maker makePage)
    : m_page(makePageFor(tag, makePage, this)),
      m_network(createNetworkAccessManager(this)),
      m_layout(new QVBoxLayout(this)),
      m_keeper(nullptr),
      m_timeout(0),
      m_isAttended(true),
      m_loadedUrlsArePrinted(false)
{
    setObjectName(tag);
    setWindowTitle(tag);
    setAttribute(Qt::WA_DeleteOnClose);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->setSizeConstraint(QLayout::SetNoConstraint); // the configured size counts
    setSurface(WebSurface::createWidget(m_page, this));
    RemoteInspector::admit(m_page);
    if (networkAccess()) {
        m_page->setNetworkAccessManager(networkAccess());
        connect(networkAccess(), SIGNAL(finished(QNetworkReply *)),
                SLOT(printUrl(QNetworkReply *)));
    }
    connect(m_page, SIGNAL(note(QString)), SLOT(note(QString)));
    connect(m_page, SIGNAL(windowCloseRequested()), SLOT(close()));
    connect(m_page->mainFrame(), SIGNAL(javaScriptWindowObjectCleared()), SLOT(prepareScripts()));
}

ApplicationView::~ApplicationView() {}

QString ApplicationView::tag() const
{
    return objectName();
}

void ApplicationView::apply(const AppConfig &config)
{
    ViewSettings::apply(config, *this);
    useCertificate(config);
}

void ApplicationView::setTimeout(int timeout)
{
    m_timeout = timeout;
}

void ApplicationView::expectNobody()
{
    m_isAttended = false;
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
        m_page->showError(m_address, QLatin1String("it has no usable Url"));
        setVisible(showsErrorPage());
        emit failed(m_page->loadError());
        return;
    }
    if (m_isAttended)
        keepPage(); // first, so that it is known whether the page is tried again
    connect(m_page, SIGNAL(loadFinished(bool)), SLOT(firstLoadFinished(bool)));
    if (!m_isAttended && m_timeout > 0)
        QTimer::singleShot(m_timeout, this, SLOT(giveUp()));
    show();
    load(m_address);
}

void ApplicationView::keepPage()
{
    m_keeper = new PageKeeper(m_page, m_timeout, this);
    connect(m_keeper, SIGNAL(timedOut()), SLOT(giveUp()));
    connect(m_keeper, SIGNAL(due(QUrl)), SLOT(load(QUrl)));
    connect(m_keeper, SIGNAL(recovered()), SIGNAL(recovered()));
    connect(m_keeper, SIGNAL(note(QString)), SLOT(note(QString)));
}

void ApplicationView::load(const QUrl &address)
{
    QNetworkRequest request(address);
    if (!m_referrer.isEmpty() && address == m_address)
        request.setRawHeader("Referer", m_referrer);
    m_page->mainFrame()->load(request);
}

bool ApplicationView::isTriedAgain() const
{
    return m_keeper && m_keeper->isWaiting();
}

void ApplicationView::bringToFront()
{
    show();
    raise();
    activateWindow();
}

bool ApplicationView::showsErrorPage() const
{
    return m_page->errorPageIsShown() && !m_page->loadError().isEmpty();
}

QNetworkAccessManager *ApplicationView::networkAccess() const
{
    return m_network ? m_network->impl() : nullptr;
}

ApplicationPage *ApplicationView::page() const
{
    return m_page;
}

WebSurface &ApplicationView::surface() const
{
    return *m_surface;
}

void ApplicationView::useScene()
{
    delete m_surface->widget();
    setSurface(WebSurface::createScene(m_page, this));
}

void ApplicationView::addBar(QWidget *bar)
{
    m_layout->insertWidget(0, bar);
}

void ApplicationView::setAddress(const QUrl &address)
{
    m_address = address;
}

BroadcastAccess &ApplicationView::broadcastAccess()
{
    return m_broadcastAccess;
}

void ApplicationView::setReferrer(const QByteArray &address)
{
    m_referrer = address;
}

void ApplicationView::setLoadedUrlsArePrinted(bool printed)
{
    m_loadedUrlsArePrinted = printed;
}

// The extension object finds out by the name of the widget which application it serves.
void ApplicationView::setSurface(WebSurface *surface)
{
    m_surface.reset(surface);
    surface->widget()->setObjectName(tag());
    m_layout->addWidget(surface->widget());
    setFocusProxy(surface->widget());
}

// A new document is about to run its scripts. It finds an extension object of its own, if it may have
// one, and the effects of the launcher's own scripts. An object that served all documents would hand
// from one to the next what scripts add to it, and keep each whose scripts connect to its signals.
void ApplicationView::prepareScripts()
{
    delete m_extension.data();
    const QWebSecurityOrigin origin = m_page->mainFrame()->securityOrigin();
    if (m_broadcastAccess.answers(origin, m_address))
        createExtension();
    else if (!origin.host().isEmpty())
        note(QString(QLatin1String("zarexExt is not given to %1://%2"))
                 .arg(origin.scheme(), origin.host()));
    m_page->runDocumentScripts();
}

// The object does not watch its page. As the page's child it is gone before the page is.
void ApplicationView::createExtension()
{
    ZarexExtFactory const *factory = getZarexExtFactory();
    m_extension = factory ? factory->create(m_page, m_page, m_broadcastAccess) : nullptr;
    if (!m_extension)
        return;
    connect(m_extension, SIGNAL(openRequested(QString)), SIGNAL(openRequested(QString)));
    m_extension->attachObject();
}

// Only the first document decides whether the application could be opened; where its user goes from
// there is their own affair.
void ApplicationView::firstLoadFinished(bool ok)
{
    disconnect(m_page, SIGNAL(loadFinished(bool)), this, SLOT(firstLoadFinished(bool)));
    m_timeout = 0;
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

void ApplicationView::giveUp()
{
    if (m_timeout == 0)
        return; // it loaded, or failed by itself
    const int limit = m_timeout;
    m_timeout = 0;
    disconnect(m_page, SIGNAL(loadFinished(bool)), this, SLOT(firstLoadFinished(bool)));
    m_page->triggerAction(QWebPage::Stop);
    emit failed(QString(QLatin1String("the page %1 has not loaded after %2 ms"))
                    .arg(m_address.toString(), QString::number(limit)));
}

void ApplicationView::note(const QString &text)
{
    Console::note(tag(), text);
}

void ApplicationView::printUrl(QNetworkReply *reply)
{
    if (m_loadedUrlsArePrinted)
        Console::note(tag(), QLatin1String("loaded: ") + reply->url().toString());
}

void ApplicationView::useCertificate(const AppConfig &config)
{
    const QVariant certificate = config.getCertPath();
    if (!m_network || !certificate.isValid() || isEmptyText(certificate))
        return;
    // A file can hold both.
    const QVariant key = config.getCertPrivateKey();
    const QString file = ConfigurationFile::resolve(certificate.toString());
    const QString keyFile = key.isValid() ? ConfigurationFile::resolve(key.toString()) : file;
    const QVariant passPhrase = config.getCertPassPhrase();
    if (ValueKinds::secret.accepts(passPhrase))
        m_network->setSslConfiguration(file, keyFile, passPhrase.toString());
    else
        m_network->setSslConfiguration(file, keyFile);
}

// The property of a network module that has one.
QString ApplicationView::networkProblem() const
{
    return m_network ? m_network->property("problem").toString() : QString();
}
