// SPDX-License-Identifier: MIT
// A launcher on Qt WebEngine: docs/porting.md has its table, with what was seen of each row.
//   nuv-webengine TAG            shows the application, until its page calls zarexExt.close()
//   nuv-webengine --properties   prints the table

#include <AppConfig>
#include <WebAppSettings>

#include <QtNetwork>
#include <QtWebChannel>
#include <QtWebEngineCore>
#include <QtWebEngineWidgets>
#include <QtWidgets>

#include <cstdio>

namespace {

QByteArray contentsOf(const QVariant &path)
{
    QFile file(path.toString());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What scripts know as zarexExt. They get answers in callbacks, and properties as of the last signal.
class Extension : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int volume MEMBER m_volume NOTIFY volumeChanged)

public Q_SLOTS:
    void say(const QString &text) { qInfo("page: %s", qUtf8Printable(text)); }
    int doubled(int number) { return number * 2; }
    void close() { QCoreApplication::quit(); }

Q_SIGNALS:
    void volumeChanged();

private:
    int m_volume = 5;
};

class Page : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;
    QWebChannel channel;
    QStringList domains; ///< whose pages get the object; all do where it is empty
    bool isSilent = false;

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message, int,
                                  const QString &) override
    {
        if (!isSilent)
            qInfo("console: %s", qUtf8Printable(message));
    }

    bool acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame) override
    {
        if (isMainFrame)
            setWebChannel(domains.isEmpty() || domains.contains(url.host()) ? &channel : nullptr);
        return true;
    }
};

struct Requests : QWebEngineUrlRequestInterceptor {
    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        if (isPrinted)
            qInfo("asked: %s", info.requestUrl().toEncoded().constData());
        if (!referrer.isEmpty()) // the first page is the first request
            info.setHttpHeader("Referer", referrer);
        referrer.clear();
    }

    bool isPrinted = false;
    QByteArray referrer;
};

struct Browser {
    Browser(const AppConfig &given, const QString &tag)
        : config(given), profile(tag), page(&profile)
    {
        profile.setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
        profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
        profile.setUrlRequestInterceptor(&requests);
        view.setPage(&page);
        view.setContextMenuPolicy(Qt::NoContextMenu);
        window.setCentralWidget(&view);
    }

    void runFirst(const QString &source)
    {
        QWebEngineScript script;
        script.setSourceCode(source);
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(QWebEngineScript::MainWorld);
        page.scripts().insert(script);
    }

    // The script of the channel asks the object for its members, so that it is there a moment later.
    void publish()
    {
        page.channel.registerObject(QLatin1String("zarexExt"), &extension);
        runFirst(
            QString::fromUtf8(contentsOf(QLatin1String(":/qtwebchannel/qwebchannel.js")))
            + QLatin1String("if (window.qt && qt.webChannelTransport)\n"
                            "    new QWebChannel(qt.webChannelTransport, function (channel) {\n"
                            "        window.zarexExt = channel.objects.zarexExt;\n"
                            "        dispatchEvent(new Event('zarexext'));\n"
                            "    });\n"));
    }

    const AppConfig config;
    Extension extension;
    Requests requests;
    QUrl url = QUrl::fromLocalFile(QDir::currentPath() + QLatin1Char('/'));
    QWebEngineProfile profile;
    QMainWindow window;
    QWebEngineView view;
    Page page;
};

template<QWebEngineSettings::WebAttribute attribute>
void set(Browser &browser, const QVariant &value)
{
    browser.page.settings()->setAttribute(attribute, value.toBool());
}

void setCertificate(Browser &browser, const QVariant &path)
{
    const QVariant key = browser.config.getCertPrivateKey();
    browser.profile.clientCertificateStore()->add(
        QSslCertificate(contentsOf(path)),
        QSslKey(contentsOf(key.isValid() ? key : path), QSsl::Rsa, QSsl::Pem, QSsl::PrivateKey,
                browser.config.getCertPassPhrase().toString().toUtf8()));
    QObject::connect(&browser.page, &Page::selectClientCertificate,
                     [](QWebEngineClientCertificateSelection selection) {
                         selection.select(selection.certificates().constFirst());
                     });
}

void setProxy(Browser &, const QVariant &value)
{
    const QUrl url(QLatin1String("http://") + value.toString());
    QNetworkProxy::setApplicationProxy({ QNetworkProxy::HttpProxy, url.host(),
                                         quint16(url.port(8080)), url.userName(), url.password() });
}

// The engine reads its environment when the first profile is made; before that there is no browser.
void addSwitch(const char *name, bool isOn)
{
    if (isOn)
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + ' ' + name);
}

/// A property, and what does its work on this engine.
struct Row {
    const char *property;
    const char *where;
    const char *counterpart;
    void (*apply)(Browser &browser, const QVariant &value);
    void (*prepare)(const QVariant &value); ///< before the engine starts
};

// clang-format off
typedef Browser &B; typedef const QVariant &V; typedef QWebEngineSettings S;
const Row rows[] = {
    { "Url", "page", "`QWebEnginePage::load()`", [](B b, V v) { b.url = b.url.resolved(QUrl(v.toString())); }, nullptr },
    { "UserAgent", "profile", "`QWebEngineProfile::setHttpUserAgent()`", [](B b, V v) { b.profile.setHttpUserAgent(v.toString()); }, nullptr },
    { "UserScript", "page", "`QWebEngineScript` in `MainWorld`, at `DocumentCreation`", [](B b, V v) { b.runFirst(QString::fromUtf8(contentsOf(v))); }, nullptr },
    { "UseGraphicsView", "none", "a view is a widget", nullptr, nullptr },
    { "Frameless", "window", "`Qt::FramelessWindowHint`", [](B b, V v) { b.window.setWindowFlag(Qt::FramelessWindowHint, v.toBool()); }, nullptr },
    { "StartMaximized", "window", "`Qt::WindowMaximized`", [](B b, V v) { b.window.setWindowState(v.toBool() ? Qt::WindowMaximized : Qt::WindowNoState); }, nullptr },
    { "WindowOpacity", "window", "`QWidget::setWindowOpacity()`", [](B b, V v) { b.window.setWindowOpacity(v.toDouble()); }, nullptr },
    { "UseTransparentBackground", "page", "`QWebEnginePage::setBackgroundColor()`", [](B b, V v) { b.window.setAttribute(Qt::WA_TranslucentBackground, v.toBool()); b.page.setBackgroundColor(v.toBool() ? Qt::transparent : Qt::white); }, nullptr },
    { "Scale", "page", "`QWebEnginePage::setZoomFactor()`, from 0.25 to 5", [](B b, V v) { b.page.setZoomFactor(v.toDouble()); }, nullptr },
    { "ShowScrollbar", "settings", "`ShowScrollBars`", set<S::ShowScrollBars>, nullptr },
    { "ShowChrome", "window", "`QWebEngineView::pageAction()`", [](B b, V v) { if (v.toBool()) b.window.addToolBar(QString())->addActions({ b.view.pageAction(Page::Back), b.view.pageAction(Page::Forward), b.view.pageAction(Page::Reload) }); }, nullptr },
    { "ResizesToContents", "view", "`QWebEnginePage::contentsSizeChanged()`", [](B b, V v) { if (v.toBool()) QObject::connect(&b.page, &Page::contentsSizeChanged, [&b](const QSizeF &size) { b.view.setMinimumSize(size.toSize()); }); }, nullptr },
    { "ProhibitMainFrameScrolling", "page", "a script that scrolls back", [](B b, V v) { if (v.toBool()) b.runFirst(QLatin1String("addEventListener('scroll', function () { scrollTo(0, 0); });")); }, nullptr },
    { "DisableSpatialNavigation", "settings", "`SpatialNavigationEnabled`", [](B b, V v) { b.page.settings()->setAttribute(S::SpatialNavigationEnabled, !v.toBool()); }, nullptr },
    { "UseCompositing", "none", "layers are always composited", nullptr, nullptr },
    { "UseTiledBackingStore", "none", "pages are always painted in tiles", nullptr, nullptr },
    { "UseWebGL", "settings", "`WebGLEnabled`", set<S::WebGLEnabled>, nullptr },
    { "UseFrameFlattening", "none", "inner frames keep their size", nullptr, nullptr },
    { "ShowFrameRate", "process", "the switch `--show-fps-counter`", nullptr, [](V v) { addSwitch("--show-fps-counter", v.toBool()); } },
    { "UseDiskCache", "profile", "`QWebEngineProfile::setHttpCacheType()`", [](B b, V v) { b.profile.setHttpCacheType(v.toBool() ? QWebEngineProfile::DiskHttpCache : QWebEngineProfile::MemoryHttpCache); }, nullptr },
    { "UseDiskCookies", "profile", "`QWebEngineProfile::setPersistentCookiesPolicy()`", [](B b, V v) { b.profile.setPersistentCookiesPolicy(v.toBool() ? QWebEngineProfile::AllowPersistentCookies : QWebEngineProfile::NoPersistentCookies); }, nullptr },
    { "UseLocalStorage", "settings", "`LocalStorageEnabled`", set<S::LocalStorageEnabled>, nullptr },
    { "OfflineStorageDatabaseEnabled", "none", "IndexedDB is always on", nullptr, nullptr },
    { "UseOfflineStorageDatabase", "none", "IndexedDB is always on", nullptr, nullptr },
    { "OfflineStorageDefaultQuotaSize", "none", "the engine decides by the size of the disk", nullptr, nullptr },
    { "OfflineWebApplicationCacheEnabled", "none", "a page needs a service worker instead", nullptr, nullptr },
    { "UseOfflineWebApplicationCache", "none", "a page needs a service worker instead", nullptr, nullptr },
    { "CacheWebView", "none", "the launcher keeps the view; `QWebEnginePage::setLifecycleState()` can stop its scripts", nullptr, nullptr },
    { "LocalContentCanAccessRemoteUrls", "settings", "`LocalContentCanAccessRemoteUrls`", set<S::LocalContentCanAccessRemoteUrls>, nullptr },
    { "GrantBroadcastRelatedSecurityClearance", "none", "the launcher registers another object, without these members", nullptr, nullptr },
    { "GrantBroadcastAccessRightDomains", "page", "`QWebEnginePage::setWebChannel()` before each page", [](B b, V v) { b.page.domains = v.toStringList(); }, nullptr },
    { "HttpProxy", "process", "`QNetworkProxy::setApplicationProxy()`", setProxy, nullptr },
    { "HttpReferrer", "profile", "`QWebEngineUrlRequestInfo::setHttpHeader()`", [](B b, V v) { b.requests.referrer = QUrl(v.toString()).resolved(QUrl(QLatin1String("/"))).toEncoded(); }, nullptr },
    { "NetworkSessionNoAutoClose", "none", "there are no network sessions", nullptr, nullptr },
    { "CertPath", "profile", "`QWebEngineProfile::clientCertificateStore()`, `QWebEnginePage::selectClientCertificate()`", setCertificate, nullptr },
    { "CertPrivateKey", "profile", "with CertPath", nullptr, nullptr },
    { "CertPassPhrase", "profile", "with CertPath", nullptr, nullptr },
    { "EnableShowErrorPage", "settings", "`ErrorPageEnabled`", set<S::ErrorPageEnabled>, nullptr },
    { "PrintLoadedUrls", "profile", "`QWebEngineUrlRequestInterceptor`", [](B b, V v) { b.requests.isPrinted = v.toBool(); }, nullptr },
    { "SuppressWebCoreWarningMessages", "page", "`QWebEnginePage::javaScriptConsoleMessage()`", [](B b, V v) { b.page.isSilent = v.toBool(); }, nullptr },
    { "RemoteInspectorPort", "process", "`QTWEBENGINE_REMOTE_DEBUGGING` in the environment", nullptr, [](V v) { qputenv("QTWEBENGINE_REMOTE_DEBUGGING", v.toByteArray()); } },
    { "ShowDebugBorders", "process", "the switch `--show-composited-layer-borders`", nullptr, [](V v) { addSwitch("--show-composited-layer-borders", v.toBool()); } },
};
// clang-format on

} // namespace

int main(int argc, char **argv)
{
    const QString tag = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    for (const Row &row : rows) {
        if (tag == QLatin1String("--properties"))
            std::printf("| %s | %s | %s |\n", row.property, row.where, row.counterpart);
    }
    AppConfig config;
    if (!getWebAppSettings()->getAppConfig(tag, config))
        return tag == QLatin1String("--properties") ? 0 : 1;
    const QString named = QString::fromLatin1(qgetenv("NUV_APPS_CONFIG_FILE")); // paths start there
    QDir::setCurrent(QFileInfo(QFile::exists(named) ? named : QString()).path());
    for (const Row &row : rows) {
        const QVariant value = config.getProperty(QLatin1String(row.property));
        if (row.prepare && value.isValid())
            row.prepare(value);
    }

    QApplication application(argc, argv);
    Browser browser(config, tag);
    browser.publish();
    for (const Row &row : rows) {
        const QVariant value = config.getProperty(QLatin1String(row.property));
        if (value.isValid())
            qInfo("%s: %s: %s", row.property, row.where, row.counterpart);
        if (value.isValid() && row.apply)
            row.apply(browser, value);
    }
    browser.window.show();
    browser.page.load(browser.url);
    return QApplication::exec();
}

#include "main.moc"
