// SPDX-License-Identifier: MIT
#include "application/applicationview.h"

#include "application/guicompat.h"

#include <AppConfig>
#include "application/applicationpage.h"
#include "application/pagekeeper.h"
#include "application/replyreport.h"
#include "network/configuredaccess.h"
#include "program/configurationfile.h"
#include "program/console.h"
#include "program/userfolders.h"
#include "effects/debugborders.h"
#include "values/hostname.h"
#include "values/valuekind.h"
#include "effects/viewsettings.h"
#include "application/websurface.h"
#include "application/zarexextfactory.h"
#include <NetworkAccessManager>

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebFrame>
#include <QWebSecurityOrigin>
#include <QWebSettings>

namespace {

// The engine takes the directory of a page's localStorage from the settings of all pages, at the moment
// when it makes the page. That of Qt 4 takes it from those of the page, with the first use.
ApplicationPage *makePageFor(const QString &tag, ApplicationPage::Maker make, QObject *parent)
{
    const QString folder = GuiCompat::localStorageFolder(UserFolders::dataOf(tag));
    QWebSettings::globalSettings()->setLocalStoragePath(folder);
    DebugBorders::restore();
    ApplicationPage *page = make(parent);
    page->settings()->setLocalStoragePath(folder);
    return page;
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
      m_replies(nullptr),
      m_timeout(0),
      m_isAttended(true)
{
    setObjectName(tag);
    m_replies = new ReplyReport(tag, networkAccess(), this);
    setWindowTitle(tag);
    setAttribute(Qt::WA_DeleteOnClose);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->setSizeConstraint(QLayout::SetNoConstraint); // the configured size counts
    setSurface(WebSurface::createWidget(m_page, this));
    if (networkAccess())
        m_page->setNetworkAccessManager(networkAccess());
    // No file reads another. The network access decides which ones can be shown.
    m_page->settings()->setAttribute(QWebSettings::LocalContentCanAccessFileUrls, false);
    connect(m_page, SIGNAL(note(QString)), SLOT(note(QString)));
    connect(m_page, SIGNAL(windowCloseRequested()), SLOT(close()));
    connect(m_page->mainFrame(), SIGNAL(javaScriptWindowObjectCleared()), SLOT(prepareScripts()));
}

// A page that goes in the middle of its loading tells the keeper that it has failed, and is no whole page
// then: the keeper goes first.
ApplicationView::~ApplicationView()
{
    delete m_keeper;
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
    const QString problem = whyNotStarted();
    if (!problem.isEmpty()) {
        m_page->showError(m_address, problem);
        setVisible(showsErrorPage());
        emit failed(problem);
        return;
    }
    boundNetwork();
    if (m_isAttended)
        keepPage(); // first, so that it is known whether the page is tried again
    else
        QTimer::singleShot(m_timeout, this, SLOT(giveUp()));
    connect(m_page, SIGNAL(settled(bool)), SLOT(firstLoadFinished(bool)));
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

QString ApplicationView::whyNotStarted() const
{
    if (!networkAccess())
        return networkProblem().isEmpty() ? QString(QLatin1String("it has no network access"))
                                          : networkProblem();
    if (!m_refusal.isEmpty())
        return m_refusal;
    return m_address.isEmpty() ? QString(QLatin1String("it has no usable Url")) : QString();
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

ReplyReport &ApplicationView::replyReport()
{
    return *m_replies;
}

void ApplicationView::refuse(const QString &reason)
{
    if (m_refusal.isEmpty())
        m_refusal = reason;
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
    expectLaterLoads();
    if (ok) {
        reportRefusal();
        emit loaded();
        return;
    }
    QString text = QString(QLatin1String("the page %1 does not load")).arg(m_address.toString());
    if (!m_page->loadError().isEmpty())
        text += QLatin1String(": ") + m_page->loadError();
    m_complaint = text;
    emit failed(text);
}

void ApplicationView::expectLaterLoads()
{
    disconnect(m_page, SIGNAL(settled(bool)), this, SLOT(firstLoadFinished(bool)));
    connect(m_page, SIGNAL(settled(bool)), SLOT(laterLoadFinished(bool)));
    m_timeout = 0;
}

// What the user broke off has no error.
void ApplicationView::laterLoadFinished(bool ok)
{
    if (ok)
        reportRefusal();
    else if (!m_page->loadError().isEmpty())
        complain(QString(QLatin1String("the page %1 does not load: %2"))
                     .arg(m_page->failedAddress().toString(), m_page->loadError()));
}

// The server's own words are shown, as far as it has any.
void ApplicationView::reportRefusal()
{
    const QString refusal = m_replies->refusalOf(m_page->mainFrame()->url());
    if (refusal.isEmpty())
        m_complaint.clear();
    else
        complain(QString(QLatin1String("the server refuses the page %1: %2"))
                     .arg(m_page->mainFrame()->url().toString(), refusal));
}

// A page that is tried again and again is told of once.
void ApplicationView::complain(const QString &text)
{
    if (text != m_complaint)
        Console::warning(tag() + QLatin1String(": ") + text);
    m_complaint = text;
}

// What is loading ends by its keeper, or with the window.
void ApplicationView::giveUp()
{
    if (m_timeout == 0)
        return; // it loaded, or failed by itself
    const int limit = m_timeout;
    expectLaterLoads();
    emit failed(QString(QLatin1String("the page %1 has not loaded after %2 ms"))
                    .arg(m_address.toString(), QString::number(limit)));
}

void ApplicationView::note(const QString &text)
{
    Console::note(tag(), text);
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
    m_ownFiles << file << keyFile;
}

// The certificate says who the device is, so only those that the configuration names are told.
void ApplicationView::boundNetwork()
{
    ConfiguredAccess *access = qobject_cast<ConfiguredAccess *>(networkAccess());
    if (!access)
        return;
    access->setCertificateDomains(QStringList(HostName::normalized(m_address.host()))
                                  + m_broadcastAccess.domains());
    LocalFiles &files = access->localFiles();
    files.setBounds(m_address, ConfigurationFile::resolve(QLatin1String(".")));
    m_ownFiles << ConfigurationFile::resolve(QFileInfo(ConfigurationFile::path()).fileName())
               << UserFolders::data() << UserFolders::cache();
    for (int i = 0; i < m_ownFiles.size(); ++i)
        files.keepBack(m_ownFiles.at(i));
}

// The property of a network module that has one.
QString ApplicationView::networkProblem() const
{
    return m_network ? m_network->property("problem").toString() : QString();
}
