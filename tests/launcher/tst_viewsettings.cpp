// SPDX-License-Identifier: MIT
#include "examples/launcher/application/applicationpage.h"
#include "examples/launcher/application/applicationview.h"
#include "examples/launcher/effects/framerate.h"
#include "examples/launcher/application/launcherextension.h"
#include "examples/launcher/network/launchernetwork.h"
#include "examples/launcher/values/valuekind.h"
#include "examples/launcher/effects/viewsettings.h"
#include "examples/launcher/application/websurface.h"
#include "examples/launcher/unattended/windowpicture.h"
#include "tests/launcher/authority.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/output.h"
#include "tests/launcher/windowhints.h"
#include "tests/support/appconfigproperties.h"
#include "tests/support/guitestmain.h"
#include "tests/support/temporarydir.h"
#include "tests/support/toolkitdifferences.h"

#include <QEventLoop>
#include <QGraphicsWebView>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkCookieJar>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QTcpServer>
#include <QTimer>
#include <QWebElement>
#include <QWebFrame>
#include <QWebSettings>

#include <vector>

namespace {

TemporaryDir *folder = nullptr; // of the pages, and of what they store
Authority *authority = nullptr; // with "both.pem", and "locked.pem", whose key has a pass phrase

QUrl file(const char *name)
{
    return QUrl::fromLocalFile(folder->filePath(QLatin1String(name)));
}

void load(ApplicationView &view, const QUrl &url)
{
    QEventLoop loop;
    QObject::connect(view.page(), SIGNAL(loadFinished(bool)), &loop, SLOT(quit()));
    QTimer::singleShot(20000, &loop, SLOT(quit()));
    view.page()->mainFrame()->load(url);
    loop.exec();
}

QString answer(ApplicationView &view, const char *script)
{
    return view.page()->mainFrame()->evaluateJavaScript(QLatin1String(script)).toString();
}

/// What a page answers to `script` once it is loaded.
QString answerOf(ApplicationView &view, const char *page, const char *script)
{
    load(view, file(page));
    return answer(view, script);
}

/// What `script` answers once that is not "waiting", or when the time for it is over.
QString answerInTime(ApplicationView &view, const char *script)
{
    for (int i = 0; i < 2000 && answer(view, script) == QLatin1String("waiting"); ++i)
        QTest::qWait(10);
    return answer(view, script);
}

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString yesOrNo(bool yes)
{
    return QLatin1String(yes ? "yes" : "no");
}

template<QWebSettings::WebAttribute attribute>
QString attributeIsSet(ApplicationView &view)
{
    return yesOrNo(view.page()->settings()->testAttribute(attribute));
}

const QRgb green = 0xff00ff00u;

// How each effect is seen.

/// Loads the first page of an application. Returns an empty text, or why it failed.
QString start(ApplicationView &view)
{
    QEventLoop loop;
    QObject::connect(&view, SIGNAL(loaded()), &loop, SLOT(quit()));
    QTimer::singleShot(20000, &loop, SLOT(quit()));
    QSignalSpy failed(&view, SIGNAL(failed(QString)));
    view.start();
    if (!failed.isEmpty())
        return failed.at(0).at(0).toString();
    loop.exec();
    return QString();
}

QString addressThatIsOpened(ApplicationView &view)
{
    const QString failure = start(view);
    const QString path = view.page()->mainFrame()->url().path();
    return failure.isEmpty() ? path.section(QLatin1Char('/'), -1) : failure;
}

QString userAgent(ApplicationView &view)
{
    return answerOf(view, "page.html",
                    "/WebKit/.test(navigator.userAgent) ? 'WebKit' : navigator.userAgent");
}

QString userScriptEffect(ApplicationView &view)
{
    return answerOf(view, "page.html", "typeof fromUserScript");
}

QString classThatShowsThePage(ApplicationView &view)
{
    load(view, file("green.html"));
    const QRgb pixel = pictureOf(view).pixel(20, 20);
    return QLatin1String(view.page()->view()->metaObject()->className())
        + QLatin1String(pixel == green ? ", green" : ", blank");
}

// Off screen a frame of a few pixels is only reckoned with; on a screen a window manager would draw it.
QString frame(ApplicationView &view)
{
    return yesOrNo(ToolkitDifferences::isQt4() ? !WindowHints::haveNoFrame(view)
                                               : view.frameGeometry() != view.geometry());
}

QString maximized(ApplicationView &view)
{
    return yesOrNo(view.isMaximized());
}

QString opacity(ApplicationView &view)
{
    return QString::number(view.windowOpacity(), 'f', 2);
}

QString alphaOfThePage(ApplicationView &view)
{
    load(view, file("page.html"));
    return QString::number(qAlpha(pictureOf(view).pixel(200, 200)));
}

/// How many pixels the page is wide in its own measure, and the square in it in that of the picture.
QString widths(ApplicationView &view)
{
    const QString width = answerOf(view, "square.html", "innerWidth");
    const QImage picture = pictureOf(view);
    int ofSquare = 0;
    while (ofSquare < picture.width() && picture.pixel(ofSquare, 10) == green)
        ++ofSquare;
    return width + QLatin1String(", ") + QString::number(ofSquare);
}

QString scrollBar(ApplicationView &view)
{
    load(view, file("highgreen.html"));
    const QImage picture = pictureOf(view);
    return yesOrNo(picture.pixel(picture.width() - 5, picture.height() / 2) != green);
}

QString addressLine(ApplicationView &view)
{
    load(view, file("page.html"));
    const QLineEdit *line = view.findChild<QLineEdit *>();
    const bool isAbovePage = line && view.page()->view()->y() >= line->height();
    return isAbovePage ? line->text().section(QLatin1Char('/'), -1) : yesOrNo(false);
}

QString heightOfTheItem(ApplicationView &view)
{
    load(view, file("high.html"));
    const QGraphicsWebView *item = view.surface().item();
    return item->size().height() >= 3000 ? QLatin1String("the page's")
                                         : QLatin1String("the window's");
}

QString scrolling(ApplicationView &view)
{
    load(view, file("high.html"));
    answer(view,
           "scrolled = []; addEventListener('scroll', function(event) {"
           "scrolled.push(event.target) }, true);"
           "scrollTo(0, 500); document.getElementById('part').scrollTop = 70");
    return answerInTime(view, // the events come later than the scrolling
                        "var part = document.getElementById('part');"
                        "scrolled.indexOf(document) < 0 || scrolled.indexOf(part) < 0"
                        "? 'waiting' : scrollY + ' ' + part.scrollTop");
}

QString focusAfterAnArrowKey(ApplicationView &view)
{
    load(view, file("links.html"));
    view.page()->view()->setFocus();
    answer(view, "document.getElementById('left').focus()");
    QTest::keyClick(view.page()->view(), Qt::Key_Right);
    return answer(view, "document.activeElement.id");
}

/// Waits until a place of the window has a colour: layers and tiles are made some time after the page.
bool awaitPixel(ApplicationView &view, const QPoint &place, QRgb color)
{
    for (int i = 0; i < 2000 && pictureOf(view).pixel(place) != color; ++i)
        QTest::qWait(10);
    return pictureOf(view).pixel(place) == color;
}

QString borderOfALayer(ApplicationView &view)
{
    load(view, file("layer.html"));
    if (!awaitPixel(view, QPoint(100, 60), green))
        return text("no layer");
    const QImage picture = pictureOf(view);
    return yesOrNo(picture.pixel(100, 50) != green);
}

/// A part that is turned away is flat unless layers are put together in space. Its middle is where it is.
QString formOfATurnedPart(ApplicationView &view)
{
    load(view, file("turned.html"));
    if (!awaitPixel(view, QPoint(100, 100), green))
        return text("no part");
    return text(pictureOf(view).pixel(140, 100) == green ? "flat" : "deep");
}

/// Whether a page that is painted in tiles keeps them as they are while they are frozen. Its change would be
/// seen by the time that the later one of another page is.
QString frozenTiles(ApplicationView &view)
{
    ApplicationView other(text("other"));
    AppConfig tiled;
    tiled.setUseGraphicsView(true);
    tiled.setUseTiledBackingStore(true);
    {
        Output out(stdout);
        other.apply(tiled);
    }
    other.resize(400, 300);
    other.show();
    load(view, file("green.html"));
    load(other, file("green.html"));
    if (!awaitPixel(view, QPoint(20, 20), green) || !awaitPixel(other, QPoint(20, 20), green))
        return text("no page");

    view.surface().item()->setTiledBackingStoreFrozen(true);
    answer(view, "document.body.style.background = '#00f'");
    answer(other, "document.body.style.background = '#00f'");
    if (!awaitPixel(other, QPoint(20, 20), 0xff0000ffu))
        return text("no change");
    const QRgb pixel = pictureOf(view).pixel(20, 20);
    view.surface().item()->setTiledBackingStoreFrozen(false);
    return yesOrNo(pixel == green);
}

QString heightOfAnInnerFrame(ApplicationView &view)
{
    return answerOf(view, "outer.html",
                    "document.querySelector('iframe').offsetHeight > 900 ? 'high' : 'low'");
}

QString framesThatAreCounted(ApplicationView &view)
{
    load(view, file("page.html"));
    FrameRate *rate = view.findChild<FrameRate *>();
    if (!rate)
        return yesOrNo(false);
    QMetaObject::invokeMethod(rate, "showRate");
    for (int i = 0; i < 3; ++i)
        view.surface().canvas()->repaint();
    QMetaObject::invokeMethod(rate, "showRate");
    return rate->isVisible() ? rate->text() : yesOrNo(false);
}

QString localStorage(ApplicationView &view)
{
    return answerOf(view, "page.html", "String(window.localStorage)");
}

QString database(ApplicationView &view)
{
    return answerOf(view, "page.html",
                    "try { String(openDatabase('a', '1', 'a', 1000)) } catch (e) { 'none' }");
}

QString storingMuch(ApplicationView &view)
{
    load(view, file("page.html"));
    view.page()->mainFrame()->setHtml(
        QLatin1String("<script>stored = 'waiting';"
                      "openDatabase('a', '1', 'a', 1000).transaction(function(t) {"
                      "t.executeSql('CREATE TABLE IF NOT EXISTS a (b)');"
                      "t.executeSql('INSERT INTO a VALUES (?)', [new Array(100000).join('y')])"
                      "}, function() { stored = 'too much' }, function() { stored = 'fits' })"
                      "</script>"),
        QUrl(QString(QLatin1String("http://%1.example/")).arg(view.tag())));
    return answerInTime(view, "stored");
}

QString lifeAfterClosing(ApplicationView &view)
{
    load(view, file("page.html"));
    answer(view, "remembered = 'still there'");
    QPointer<ApplicationView> watched(&view);
    view.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return watched ? answer(view, "remembered") : QString(QLatin1String("gone"));
}

QString fetchingFromTheNetwork(ApplicationView &view)
{
    Output out(stdout); // a refusal is told on the console
    HttpServer server;
    server.serve("/", "hello");
    load(view, file("page.html"));
    const QString script = QLatin1String("fetched = 'waiting'; var r = new XMLHttpRequest;"
                                         "r.onload = function() { fetched = r.responseText };"
                                         "r.onerror = function() { fetched = 'refused' };"
                                         "try { r.open('GET', '%1'); r.send() }"
                                         "catch (e) { fetched = 'refused' }");
    view.page()->mainFrame()->evaluateJavaScript(script.arg(server.address()));
    return answerInTime(view, "fetched");
}

QString membersOfTheReceiver(ApplicationView &view)
{
    return answerOf(view, "page.html", "typeof zarexExt.volume");
}

QString extensionOfAPageOfTheWeb(ApplicationView &view)
{
    Output out(stdout); // a refusal is told
    view.page()->mainFrame()->setHtml(text("<p>"), QUrl(text("http://www.tv.example/")));
    return answer(view, "typeof zarexExt");
}

QString diskCache(ApplicationView &view)
{
    return yesOrNo(view.networkAccess()->cache());
}

QString cookieJar(ApplicationView &view)
{
    return text(view.networkAccess()->cookieJar()->metaObject()->className());
}

QString proxy(ApplicationView &view)
{
    return view.networkAccess()->proxy().hostName();
}

QString referrer(ApplicationView &view)
{
    HttpServer server;
    server.serve("/", "hello");
    view.setAddress(QUrl(server.address()));
    start(view);
    return QString::fromLatin1(server.requests("/").at(0).headers.value("referer").constData());
}

// No page is shown without the certificate that an application is to use.
QString networkAccess(ApplicationView &view)
{
    return yesOrNo(view.networkAccess());
}

QString pageThatIsMissing(ApplicationView &view)
{
    load(view, file("none.html"));
    return view.page()->mainFrame()->findFirstElement(QLatin1String("h1")).toPlainText();
}

QString applicationCache(ApplicationView &view)
{
    HttpServer server;
    server.serve("/", "<html manifest='manifest'><p>a page");
    server.serve("/manifest", "CACHE MANIFEST\n", "Content-Type: text/cache-manifest\r\n");
    load(view, QUrl(server.address()));
    // What a page asks for after its manifest is answered after that, the second one at the latest.
    answer(view,
           "later = 'waiting'; function ask(whenAnswered) { var request = new XMLHttpRequest;"
           "request.onload = whenAnswered; request.open('GET', '/'); request.send() }"
           "ask(function() { ask(function() { later = 'answered' }) })");
    answerInTime(view, "later");
    return yesOrNo(!server.requests("/manifest").isEmpty());
}

QString printedWhileLoading(ApplicationView &view, const char *beginning)
{
    Output out(stdout);
    load(view, file("talking.html"));
    return yesOrNo(out.text().contains(QLatin1String(beginning)));
}

QString printedUrls(ApplicationView &view)
{
    return printedWhileLoading(view, "  loaded: file:///");
}

QString printedMessages(ApplicationView &view)
{
    return printedWhileLoading(
        view,
        ToolkitDifferences::either("  console: talking.html:1: hello\n", "  console: hello\n"));
}

int inspectorPort()
{
    static int port = 0;
    if (port == 0) {
        QTcpServer free;
        free.listen(QHostAddress::Any, 0);
        port = free.serverPort();
    }
    return port;
}

// The engine keeps its one server to the end of the process.
QString inspectedPages(ApplicationView &view)
{
    load(view, file("page.html"));
    QNetworkAccessManager access;
    const QUrl index(QString(QLatin1String("http://127.0.0.1:%1/")).arg(inspectorPort()));
    QScopedPointer<QNetworkReply> reply(access.get(QNetworkRequest(index)));
    QEventLoop loop;
    QObject::connect(reply.data(), SIGNAL(finished()), &loop, SLOT(quit()));
    QTimer::singleShot(20000, &loop, SLOT(quit()));
    loop.exec();
    return yesOrNo(reply->readAll().contains("?page="));
}

/// What a property does, and how that is seen. Every property of the table is here once.
struct Effect {
    const char *property;
    QVariant usable;
    const char *with; ///< what else must be configured to see it; null when nothing must
    QVariant withValue;
    QString (*seen)(ApplicationView &view);
    const char *byDefault;
    const char *whenSet;
};

const std::vector<Effect> &effects()
{
    const bool on = true;
    const bool off = false;
    static const std::vector<Effect> all = {
        { "Url", text("page.html"), nullptr, QVariant(), addressThatIsOpened,
          "it has no usable Url", "page.html" },
        { "UserAgent", text("tv/1"), nullptr, QVariant(), userAgent, "WebKit", "tv/1" },
        { "UserScript", text("user.js"), nullptr, QVariant(), userScriptEffect, "undefined",
          "string" },
        { "UseGraphicsView", on, nullptr, QVariant(), classThatShowsThePage, "QWebView, green",
          "SceneView, green" },
        { "Frameless", on, nullptr, QVariant(), frame, "yes", "no" },
        { "StartMaximized", on, nullptr, QVariant(), maximized, "no", "yes" },
        { "WindowOpacity", 0.5, nullptr, QVariant(), opacity, "1.00", "0.50" },
        { "UseTransparentBackground", on, nullptr, QVariant(), alphaOfThePage, "255", "0" },
        { "Scale", 2, nullptr, QVariant(), widths, "400, 50", "200, 100" },
        { "ShowScrollbar", off, nullptr, QVariant(), scrollBar, "yes", "no" },
        { "ShowChrome", on, nullptr, QVariant(), addressLine, "no", "page.html" },
        { "ResizesToContents", on, "UseGraphicsView", on, heightOfTheItem, "the window's",
          "the page's" },
        { "ProhibitMainFrameScrolling", on, nullptr, QVariant(), scrolling, "500 70", "0 70" },
        { "DisableSpatialNavigation", off, nullptr, QVariant(), focusAfterAnArrowKey, "left",
          "right" },
        { "UseCompositing", ToolkitDifferences::either(off, on), "UseGraphicsView", on,
          formOfATurnedPart, ToolkitDifferences::either("deep", "flat"),
          ToolkitDifferences::either("flat", "deep") },
        { "UseTiledBackingStore", on, "UseGraphicsView", on, frozenTiles, "no",
          ToolkitDifferences::either("yes", "no") },
        { "UseWebGL", ToolkitDifferences::either(on, off), nullptr, QVariant(),
          attributeIsSet<QWebSettings::WebGLEnabled>, ToolkitDifferences::either("no", "yes"),
          ToolkitDifferences::either("yes", "no") },
        { "UseFrameFlattening", on, nullptr, QVariant(), heightOfAnInnerFrame, "low", "high" },
        { "ShowDebugBorders", on, "UseCompositing", on, borderOfALayer, "no",
          ToolkitDifferences::hasBordersOfLayers() ? "yes" : "no" },
        { "ShowFrameRate", on, nullptr, QVariant(), framesThatAreCounted, "no", "3 frames/s" },
        { "UseLocalStorage", on, nullptr, QVariant(), localStorage, "null", "[object Storage]" },
        { "OfflineStorageDatabaseEnabled", on, nullptr, QVariant(), database, "none",
          "[object Database]" },
        { "UseOfflineStorageDatabase", on, nullptr, QVariant(), database, "none",
          "[object Database]" },
        { "OfflineStorageDefaultQuotaSize", 10000, "UseOfflineStorageDatabase", on, storingMuch,
          "fits", "too much" },
        { "OfflineWebApplicationCacheEnabled", on, nullptr, QVariant(), applicationCache, "no",
          "yes" },
        { "UseOfflineWebApplicationCache", on, nullptr, QVariant(), applicationCache, "no", "yes" },
        { "CacheWebView", on, nullptr, QVariant(), lifeAfterClosing, "gone", "still there" },
        { "LocalContentCanAccessRemoteUrls", on, nullptr, QVariant(), fetchingFromTheNetwork,
          "refused", "hello" },
        { "GrantBroadcastRelatedSecurityClearance", on, "Url", text("page.html"),
          membersOfTheReceiver, "undefined", "number" },
        { "GrantBroadcastAccessRightDomains", QStringList(text("tv.example")), nullptr, QVariant(),
          extensionOfAPageOfTheWeb, "undefined", "object" },
        { "UseDiskCache", on, nullptr, QVariant(), diskCache, "no", "yes" },
        { "UseDiskCookies", on, nullptr, QVariant(), cookieJar, "QNetworkCookieJar", "CookieJar" },
        { "HttpProxy", text("proxy.example:8080"), nullptr, QVariant(), proxy, "",
          "proxy.example" },
        { "HttpReferrer", text("http://portal.example/"), nullptr, QVariant(), referrer, "",
          "http://portal.example/" },
        { "NetworkSessionNoAutoClose", on, nullptr, QVariant(), networkAccess, "yes", "yes" },
        { "CertPath", text("none.pem"), nullptr, QVariant(), networkAccess, "yes", "no" },
        { "CertPrivateKey", text("none.key"), "CertPath", authority->path("both.pem"),
          networkAccess, "yes", "no" },
        { "CertPassPhrase", text("hush"), "CertPath", authority->path("locked.pem"), networkAccess,
          "no", "yes" },
        { "EnableShowErrorPage", on, nullptr, QVariant(), pageThatIsMissing, "",
          "This page does not load" },
        { "PrintLoadedUrls", on, nullptr, QVariant(), printedUrls, "no", "yes" },
        { "SuppressWebCoreWarningMessages", on, nullptr, QVariant(), printedMessages, "yes", "no" },
        { "RemoteInspectorPort", inspectorPort(), nullptr, QVariant(), inspectedPages, "no",
          "yes" },
    };
    return all;
}

const ViewSetting *rowOf(const char *property)
{
    for (int i = 0; i < ViewSettings::count; ++i) {
        if (qstrcmp(ViewSettings::table[i].property, property) == 0)
            return &ViewSettings::table[i];
    }
    return nullptr;
}

void setProperty(AppConfig *config, const char *name, const QVariant &value)
{
    for (const AppConfigProperty &property : appConfigProperties) {
        if (qstrcmp(property.name, name) == 0)
            (config->*property.set)(value);
    }
}

/// The value of a property in a window, and what the launcher wrote when it got it.
class Trial
{
public:
    Trial(const Effect &effect, const QVariant &value) : m_view(new ApplicationView(tagFor(effect)))
    {
        AppConfig config;
        if (effect.with)
            setProperty(&config, effect.with, effect.withValue);
        setProperty(&config, effect.property, value);
        Output out(stdout);
        Output err(stderr);
        m_view->resize(400, 300);
        m_view->apply(config);
        m_view->show();
        m_printed = out.text();
        m_warnings = err.text();
    }

    ~Trial() { delete m_view; }

    ApplicationView &view() const { return *m_view; }
    QString printed() const { return m_printed; }
    QString warnings() const { return m_warnings; }

    /// The engine keeps the quota of a site, so each trial is one of its own.
    static QString tagFor(const Effect &effect)
    {
        static int number = 0;
        return QLatin1String(effect.property) + QString::number(++number);
    }

private:
    Q_DISABLE_COPY(Trial)

    QPointer<ApplicationView> m_view; ///< null once it was closed
    QString m_printed;
    QString m_warnings;
};

/// A value of each kind that the configuration can hold.
QVariantList oneOfEachKind()
{
    return QVariantList() << true << 7 << Q_INT64_C(5000000000) << 1.5 << text("text")
                          << (QStringList() << text("a list") << text("of texts"));
}

bool isNumber(const QVariant &value)
{
    const int type = value.userType();
    return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
}

bool areOfOneKind(const QVariant &a, const QVariant &b)
{
    const bool bothNumbers = isNumber(a) && isNumber(b);
    return bothNumbers || a.userType() == b.userType();
}

/// A certificate is no setting that an application could do without.
const char *whenUnusable(const Effect &effect)
{
    return qstrncmp(effect.property, "Cert", 4) == 0 ? "no" : effect.byDefault;
}

/// Nor is one of these.
bool isIndispensable(const Effect &effect)
{
    const QStringList names = QStringList()
        << text("HttpProxy") << text("HttpReferrer") << text("GrantBroadcastAccessRightDomains");
    return names.contains(text(effect.property));
}

} // namespace

class tst_ViewSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void everyPropertyStandsOnceInTheTable();
    void everyRowIsDescribed();
    void everyPropertyHasItsEffectAndKeepsItsDefault_data();
    void everyPropertyHasItsEffectAndKeepsItsDefault();
};

void tst_ViewSettings::initTestCase()
{
    folder = new TemporaryDir;
    const struct {
        const char *name;
        const char *contents;
    } files[] = {
        { "page.html", "<p>a page" },
        { "green.html", "<body style='background: #0f0'>" },
        { "highgreen.html", "<body style='background: #0f0; height: 3000px'>" },
        { "square.html",
          "<!DOCTYPE html><body style='margin: 0'>"
          "<div style='width: 50px; height: 50px; background: #0f0'></div>" },
        { "high.html",
          "<!DOCTYPE html><div id='part' style='height: 100px; overflow: auto'>"
          "<div style='height: 1000px'></div></div><div style='height: 3000px'></div>" },
        { "links.html", "<a id='left' href='a'>left</a> <a id='right' href='b'>right</a>" },
        { "layer.html",
          "<!DOCTYPE html><body style='margin: 0'><div style='margin: 50px; width: 100px;"
          "height: 100px; background: #0f0; -webkit-transform: translateZ(0)'></div>" },
        { "turned.html",
          "<!DOCTYPE html><body style='margin: 0'><div style='width: 200px; -webkit-perspective: "
          "100px'><div style='height: 200px; background: #0f0; -webkit-transform: "
          "rotateY(60deg)'></div></div>" },
        { "outer.html", "<!DOCTYPE html><iframe src='high.html'></iframe>" },
        { "talking.html", "<script>console.log('hello')</script>" },
        { "user.js", "fromUserScript = 'hello'" },
    };
    for (const auto &entry : files)
        folder->write(QLatin1String(entry.name), entry.contents);
    authority = new Authority;
    authority->openssl("pkey -in CA.key -aes256 -passout pass:hush -out locked.key");
    authority->join("CA.pem", "CA.key", "both.pem");
    authority->join("CA.pem", "locked.key", "locked.pem");
    folder->write(QLatin1String("AppsConfig.json"), "{}");
    qputenv("NUV_APPS_CONFIG_FILE",
            QFile::encodeName(folder->filePath(QLatin1String("AppsConfig.json"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder->path()));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(folder->path()));
    QWebSettings::setOfflineStoragePath(folder->path());
    QWebSettings::setOfflineWebApplicationCachePath(folder->path());
    static LauncherExtensionFactory extensions;
    registerZarexExtFactory(&extensions);
    static LauncherNetworkFactory networks;
    registerNetworkAccessManagerFactory(&networks);
}

void tst_ViewSettings::cleanupTestCase()
{
    delete authority;
    delete folder;
}

void tst_ViewSettings::everyPropertyStandsOnceInTheTable()
{
    QStringList expected;
    QStringList rows;
    QStringList walked;
    for (const AppConfigProperty &property : appConfigProperties)
        expected << text(property.name);
    for (int i = 0; i < ViewSettings::count; ++i)
        rows << text(ViewSettings::table[i].property);
    for (const Effect &effect : effects())
        walked << text(effect.property);
    expected.sort();
    rows.sort();
    walked.sort();
    QCOMPARE(rows, expected);
    QCOMPARE(walked, expected);
}

void tst_ViewSettings::everyRowIsDescribed()
{
    for (int i = 0; i < ViewSettings::count; ++i) {
        const ViewSetting &row = ViewSettings::table[i];
        QVERIFY2(qstrlen(row.effect) > 10 && !text(row.effect).contains(text("|")), row.property);
    }
}

void tst_ViewSettings::everyPropertyHasItsEffectAndKeepsItsDefault_data()
{
    QTest::addColumn<int>("number");

    int number = 0;
    for (const Effect &effect : effects())
        QTest::newRow(effect.property) << number++;
}

// The usable value comes last: the engine keeps its inspector to the end of the process.
void tst_ViewSettings::everyPropertyHasItsEffectAndKeepsItsDefault()
{
    QFETCH(int, number);
    const Effect &effect = effects().at(size_t(number));
    const ViewSetting &row = *rowOf(effect.property);

    Trial unset(effect, QVariant());
    QCOMPARE(unset.warnings(), QString());
    QVERIFY(!unset.printed().contains(text(effect.property) + text(" ")));
    QCOMPARE(effect.seen(unset.view()), text(effect.byDefault));

    const QVariantList values = oneOfEachKind();
    for (int i = 0; i < values.size(); ++i) {
        if (areOfOneKind(values.at(i), effect.usable))
            continue;
        Trial wrong(effect, values.at(i));
        const QString shown = row.kind->shown(values.at(i));
        const QString quote = text(values.at(i).type() == QVariant::String ? "\"" : "");
        const QString objection = text(effect.property) + text(" = ") + quote + shown + quote
            + text(" cannot be used; it takes ") + text(row.kind->name);
        if (isIndispensable(effect)) {
            QCOMPARE(wrong.warnings(), QString());
            QCOMPARE(start(wrong.view()), objection);
            continue;
        }
        QCOMPARE(wrong.warnings(),
                 text("nuv-launcher: ") + wrong.view().tag() + text(": ") + objection + text("\n"));
        QCOMPARE(effect.seen(wrong.view()), text(whenUnusable(effect)));
    }

    if (effect.usable.type() == QVariant::Bool) {
        Trial asByDefault(effect, !effect.usable.toBool());
        QCOMPARE(asByDefault.warnings(), QString());
        QCOMPARE(effect.seen(asByDefault.view()), text(effect.byDefault));
    }

    Trial usable(effect, effect.usable);
    QCOMPARE(usable.warnings(), QString());
    const bool isPossible = !row.need || row.need->isMet(usable.view());
    const QString need = isPossible
        ? QString()
        : text("  (without effect: needs ") + text(row.need->name) + text(")");
    QVERIFY(usable.printed().contains(text(" = ") + row.kind->shown(effect.usable) + need
                                      + text("\n")));
    QCOMPARE(effect.seen(usable.view()), text(effect.whenSet));
}

NUV_GUI_TEST_MAIN(tst_ViewSettings)

#include "tst_viewsettings.moc"
