// SPDX-License-Identifier: MIT
#include "tests/launcher/authority.h"
#include "tests/launcher/stage.h"
#include "tests/launcher/tlsserver.h"
#include "tests/launcher/windowhints.h"
#include "tests/support/appconfigproperties.h"
#include "tests/support/guitestmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QFile>
#include <QImage>
#include <QMap>
#include <QRegExp>
#include <QSharedPointer>
#include <QWidget>

#include <vector>

namespace {

const QRgb green = 0xff00ff00u;

/// What can be seen of one application without looking into the launcher.
struct Seen {
    QStringList says; ///< its page, in the last start
    QString out; ///< lines that the launcher wrote about it, in the last start
    QImage picture; ///< null where none was taken
    QList<HttpRequest> requests; ///< to its server, in the last start
};

/// Where an application is looked at.
enum Scene {
    InPictures, ///< once, with a picture
    Twice, ///< in a second start, after one that ended in order
    Alone ///< in a start of its own
};

/// A property, and how its effect is seen from outside. Each row is two applications, of which the second
/// one has the property. Both have the address of a server of their own unless they name another one.
///
/// In their properties and pages "ADDRESS" is that of the server and "PORT" its port, "FREE" a port that
/// nobody listens on, "CERTIFICATES" the folder of the authority, and "FILE" a file with the page.
struct Row {
    const char *property;
    Scene scene;
    const char *both; ///< what both applications have, or the first one alone
    const char *set; ///< what the second one has as well
    const char *page;
    QString (*look)(const Seen &seen); ///< null for a start of its own
    QString (*play)(const QByteArray &application, HttpServer &server);
    const char *byDefault;
    const char *whenSet;
};

QString yesOrNo(bool yes)
{
    return text(yes ? "yes" : "no");
}

// How it is looked at.

QString says(const Seen &seen)
{
    return seen.says.join(text(" "));
}

QString isAskedFor(const Seen &seen)
{
    return yesOrNo(!seen.requests.isEmpty());
}

QString header(const Seen &seen, const char *name)
{
    return seen.requests.isEmpty()
        ? text("no request")
        : QString::fromLatin1(seen.requests.at(0).headers.value(name).constData());
}

QString userAgent(const Seen &seen)
{
    const QString name = header(seen, "user-agent");
    return name.contains(text("WebKit")) ? text("WebKit") : name;
}

QString referrer(const Seen &seen)
{
    return header(seen, "referer");
}

QString cookie(const Seen &seen)
{
    return header(seen, "cookie");
}

QString targetOfTheRequest(const Seen &seen)
{
    const QByteArray target = seen.requests.isEmpty() ? "none" : seen.requests.at(0).target;
    return text(target.startsWith("http://") ? "an address" : target.constData());
}

QString client(const Seen &seen)
{
    return seen.requests.isEmpty() ? text("nobody") : seen.requests.at(0).client;
}

QString askedForAgain(const Seen &seen)
{
    QStringList targets;
    for (int i = 0; i < seen.requests.size(); ++i)
        targets << QString::fromLatin1(seen.requests.at(i).target.constData());
    targets.removeAll(text("/favicon.ico"));
    return targets.join(text(" "));
}

/// The engine of Qt 4 may ask for the page as well.
QString askedForTheManifest(const Seen &seen)
{
    const QString targets = askedForAgain(seen);
    return ToolkitDifferences::isQt4() && targets == text("/ /manifest") ? text("/manifest")
                                                                         : targets;
}

QString alphaOfTheCorner(const Seen &seen)
{
    return QString::number(qAlpha(seen.picture.pixel(200, 200)));
}

/// How many pixels from the left are green, and what the page says.
QString widthOfTheSquare(const Seen &seen)
{
    int width = 0;
    while (width < seen.picture.width() && seen.picture.pixel(width, 10) == green)
        ++width;
    return QString::number(width) + text(", ") + says(seen);
}

QString rightEdge(const Seen &seen)
{
    const bool isPage = seen.picture.pixel(seen.picture.width() - 5, 150) == green;
    return text(isPage ? "page, " : "bar, ") + says(seen);
}

QString topEdge(const Seen &seen)
{
    return text(seen.picture.pixel(200, 5) == green ? "page" : "bar");
}

QString edgeOfALayer(const Seen &seen)
{
    const bool isPlain = seen.picture.pixel(100, 50) == seen.picture.pixel(100, 60);
    return text(isPlain ? "plain" : "bordered");
}

QString foreignPixels(const Seen &seen)
{
    int count = 0;
    for (int x = 0; x < seen.picture.width(); ++x) {
        for (int y = 0; y < seen.picture.height(); ++y)
            count += seen.picture.pixel(x, y) == green ? 0 : 1;
    }
    return text(count == 0 ? "none" : "some");
}

QString errorPage(const Seen &seen)
{
    return seen.picture.isNull() ? text("no window")
                                 : QString::number(seen.picture.pixel(5, 5), 16);
}

QString loadedAddresses(const Seen &seen)
{
    return yesOrNo(seen.out.contains(QRegExp(text("loaded: http://[^\n]*/\n"))));
}

QString consoleMessages(const Seen &seen)
{
    return linesAfter("console: ", seen.out).join(text(" "));
}

QString lastWordInTheConsole(const Seen &seen)
{
    return consoleMessages(seen).section(QLatin1Char(' '), -1);
}

QString remarkAboutTheValue(const Seen &seen)
{
    return says(seen) + text(seen.out.contains(text("(without effect: needs")) ? ", none" : "");
}

// The pages.

const char hello[] = "<script>zarexExt.say('hello')</script>";
const char greenPage[] = "<body style='background: #0f0'>";
const char highPage[] =
    "<!DOCTYPE html><body style='margin: 0; background: #0f0'><div style='height: 3000px'></div>"
    "<script>onload = function() { scrollTo(0, 500); setTimeout(function() {"
    "zarexExt.say(scrollY) }, 100) }</script>";
const char squarePage[] = "<!DOCTYPE html><body style='margin: 0'>"
                          "<div style='width: 50px; height: 50px; background: #0f0'></div>"
                          "<script>zarexExt.say(innerWidth)</script>";
const char layerPage[] =
    "<!DOCTYPE html><body style='margin: 0'><div style='margin: 50px; width: 100px;"
    "height: 100px; background: #0f0; -webkit-transform: translateZ(0)'></div>";
const char framePage[] =
    "<!DOCTYPE html><iframe src='data:text/html,<div style=\"height: 1000px\"></div>'></iframe>"
    "<script>onload = function() { zarexExt.say("
    "document.querySelector('iframe').offsetHeight > 900 ? 'high' : 'low') }</script>";
const char scriptPage[] = "<script>zarexExt.say(typeof fromUserScript)</script>";
const char talkingPage[] = "<script>console.log('hello')</script>";
const char volumePage[] = "<script>zarexExt.say(typeof zarexExt.volume)</script>";
const char extensionPage[] = "<script>console.log(typeof zarexExt)</script>";
const char cookiePage[] = "<script>onload = function() { zarexExt.say('done') }</script>";
const char picturePage[] = "<img src='/picture' onerror='zarexExt.say(\"done\")'>";
const char counterPage[] =
    "<script>var store = window.localStorage; var n = store ? Number(store.n || 0) : 'nothing';"
    "if (store) store.n = n + 1; zarexExt.say(n); zarexExt.say('done')</script>";
const char databasePage[] =
    "<script>function end(word) { zarexExt.say(word); zarexExt.say('done') }"
    "if (!window.openDatabase) end('nothing');"
    "else openDatabase('a', '1', 'a', 1000).transaction(function(t) {"
    "t.executeSql('CREATE TABLE IF NOT EXISTS a (b)');"
    "t.executeSql('SELECT * FROM a', [], function(t, found) {"
    "    t.executeSql('INSERT INTO a VALUES (1)', [], function() { end(found.rows.length) }) })"
    "}, function(e) { end('failed') })</script>";
const char roomPage[] = "<script>function end(word) { zarexExt.say(word); zarexExt.say('done') }"
                        "openDatabase('a', '1', 'a', 1000).transaction(function(t) {"
                        "t.executeSql('CREATE TABLE IF NOT EXISTS a (b)');"
                        "t.executeSql('INSERT INTO a VALUES (?)', [new Array(100000).join('y')])"
                        "}, function() { end('too much') }, function() { end('fits') })</script>";
const char manifestPage[] =
    "<html manifest='/manifest'><script>function end() { zarexExt.say('done') }"
    "applicationCache.oncached = applicationCache.onnoupdate = applicationCache.onerror = end;"
    "onload = function() { setTimeout(function() { if (applicationCache.status == 0) end() }, "
    "1000) }</script>";
const char fetchingPage[] =
    "<script>var r = new XMLHttpRequest; r.onload = function() { zarexExt.say(r.responseText) };"
    "r.onerror = function() { zarexExt.say('refused') };"
    "try { r.open('GET', 'ADDRESSdata'); r.send() }"
    "catch (e) { zarexExt.say('refused') }</script>";
const char keyPage[] =
    "<a id='left' href='a'>left</a> <a id='right' href='b'>right</a><script>"
    "onkeydown = function() { setTimeout(function() {"
    "zarexExt.say(document.activeElement.id) }, 100) };"
    "onload = function() { document.getElementById('left').focus(); zarexExt.say('ready') }"
    "</script>";
const char webGlPage[] = "<canvas id='c'></canvas><script>var c = document.getElementById('c');"
                         "var gl = c.getContext('webgl') || c.getContext('experimental-webgl');"
                         "zarexExt.say(gl ? 'draws' : 'nothing'); zarexExt.say('ready')</script>";

} // namespace

namespace {

/// A start of one application in an attended window on the display, to its page's first words.
class Play
{
public:
    explicit Play(const QByteArray &application, const char *options = "--size 300x200 tv")
    {
        m_stage.set("DISPLAY", QString::fromLatin1(qgetenv("DISPLAY").constData()));
        m_stage.configure(application);
        m_stage.start(&m_process, options);
        m_isReady = Stage::awaitOutput(&m_process, "  says: ready\n");
    }

    ~Play()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool isReady() const { return m_isReady; }
    QString out() { return QString::fromLocal8Bit(m_process.peek(m_process.bytesAvailable())); }
    QProcess &process() { return m_process; }

    /// What a program of the display answers, with arguments that are separated by spaces.
    static QString ask(const char *program, const char *arguments)
    {
        QProcess asked;
        asked.start(text(program), text(arguments).split(QLatin1Char(' ')));
        asked.waitForFinished();
        return QString::fromLatin1(asked.readAllStandardOutput().constData());
    }

private:
    Q_DISABLE_COPY(Play)

    Stage m_stage;
    QProcess m_process;
    bool m_isReady;
};

/// A blue window that covers the screen, and what is seen in front of it.
class Background
{
public:
    Background()
    {
        m_window.setStyleSheet(text("background: #00f"));
        m_window.setGeometry(QRect(QPoint(0, 0), ToolkitDifferences::screen().size()));
        m_window.show();
        await(isBlue);
    }

    /// The colour of a place once the green page in front of it is there: the windows are put together by
    /// another program.
    QRgb inFront() const { return await(isGreenish); }

private:
    static bool isBlue(QRgb color) { return color == 0xff0000ffu; }

    // Neither the background alone nor a window that is still empty.
    static bool isGreenish(QRgb color) { return qRed(color) < 4 && qGreen(color) > 0; }

    static QRgb await(bool (*isIt)(QRgb))
    {
        for (int i = 0; i < 1000 && !isIt(ToolkitDifferences::screen().pixel(20, 20)); ++i)
            QTest::qWait(20);
        return ToolkitDifferences::screen().pixel(20, 20);
    }

    QWidget m_window;
};

QString frameOfTheWindow(const QByteArray &application, HttpServer &)
{
    Play play(application);
    const bool isPlain = WindowHints::haveNoFrame(QStringList() << text("-name") << text("tv"));
    return text(isPlain ? "no frame" : "frame");
}

QString colorOnTheScreen(const QByteArray &application, HttpServer &)
{
    const Background background;
    Play play(application);
    const QRgb color = background.inFront();
    const bool isHalf = qAbs(qGreen(color) - 0x7f) < 4 && qAbs(qBlue(color) - 0x7f) < 4;
    return isHalf ? text("half") : QString::number(color, 16);
}

QString farCornerOfTheScreen(const QByteArray &application, HttpServer &)
{
    const Background background;
    Play play(application);
    background.inFront();
    const QImage screen = ToolkitDifferences::screen();
    return text(screen.pixel(screen.width() - 5, screen.height() - 5) == green ? "page" : "empty");
}

// The window has the focus only once the display has told it so.
QString focusAfterAnArrowKey(const QByteArray &application, HttpServer &)
{
    Play play(application);
    QStringList words;
    for (int i = 0; i < 50 && words.size() < 2; ++i) {
        Play::ask("xdotool", "search --name ^tv$ windowfocus key Right");
        play.process().waitForReadyRead(300);
        words = linesAfter("tv  says: ", play.out());
    }
    return words.value(1);
}

QString drawing(const QByteArray &application, HttpServer &)
{
    Play play(application);
    return linesAfter("tv  says: ", play.out()).value(0);
}

int freePort()
{
    static int port = 0;
    if (port == 0) {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        port = server.serverPort();
    }
    return port;
}

QString inspector(const QByteArray &application, HttpServer &)
{
    Play play(application);
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(freePort()));
    return text(socket.waitForConnected(2000) ? "listens" : "closed");
}

bool isVisible(const char *title)
{
    const QByteArray arguments = "search --onlyvisible --name ^" + QByteArray(title) + "$";
    return !Play::ask("xdotool", arguments.constData()).isEmpty();
}

/// A page that asks the server for a target again and again, and does something once it is there.
QByteArray pageThatWaitsFor(const char *target, const char *action)
{
    return QByteArray("<script>var asked = setInterval(function() {"
                      "var r = new XMLHttpRequest; r.open('GET', '")
        + target + "', false); r.send(); if (r.status != 200) return; clearInterval(asked); "
        + action + " }, 100)</script>";
}

void awaitVisible(const char *title, bool isExpected)
{
    for (int i = 0; i < 600 && isVisible(title) != isExpected; ++i)
        QTest::qWait(20);
}

// The page closes its window; another application asks for it again once that is no longer there.
QString lifeAfterClosing(const QByteArray &application, HttpServer &server)
{
    HttpServer other;
    other.serve("/", pageThatWaitsFor("/closed", "zarexExt.open('tv')"));
    Play play(application + ", " + Stage::application("other", other.address()), "tv other");
    awaitVisible("tv", true);
    server.serve("/close", "yes");
    awaitVisible("tv", false);
    other.serve("/closed", "yes");
    for (int i = 0; i < 600; ++i) {
        if (server.requests("/").size() > 1)
            return text("begins anew");
        if (play.out().contains(text("is shown again")))
            return text("goes on");
        QTest::qWait(20);
    }
    return text("is gone");
}

} // namespace

namespace {

const QByteArray closingPage = "<script>onload = function() { zarexExt.say('ready') }</script>"
    + pageThatWaitsFor("/close", "close()");
const char readyPage[] = "<body style='background: #0f0'><script>zarexExt.say('ready')</script>";

const std::vector<Row> &rows()
{
    const char *const bordered = ToolkitDifferences::hasBordersOfLayers() ? "bordered" : "plain";
    static const std::vector<Row> all = {
        { "Url", InPictures, "\"UserAgent\": \"tv\"", "\"Url\": \"ADDRESS\"", hello, isAskedFor,
          nullptr, "no", "yes" },
        { "UserAgent", InPictures, "", "\"UserAgent\": \"tv/1\"", hello, userAgent, nullptr,
          "WebKit", "tv/1" },
        { "UserScript", InPictures, "", "\"UserScript\": \"user.js\"", scriptPage, says, nullptr,
          "undefined", "string" },
        { "UseGraphicsView", InPictures, "\"ResizesToContents\": true", "\"UseGraphicsView\": true",
          highPage, says, nullptr, "500", "0" },
        { "Frameless", Alone, "", "\"Frameless\": true", readyPage, nullptr, frameOfTheWindow,
          "frame", "no frame" },
        { "StartMaximized", Alone, "", "\"StartMaximized\": true", readyPage, nullptr,
          farCornerOfTheScreen, "empty", "page" },
        { "WindowOpacity", Alone, "", "\"WindowOpacity\": 0.5", readyPage, nullptr,
          colorOnTheScreen, "ff00ff00", "half" },
        { "UseTransparentBackground", InPictures, "", "\"UseTransparentBackground\": true", hello,
          alphaOfTheCorner, nullptr, "255", "0" },
        { "Scale", InPictures, "", "\"Scale\": 2", squarePage, widthOfTheSquare, nullptr, "50, 400",
          "100, 200" },
        { "ShowScrollbar", InPictures, "", "\"ShowScrollbar\": false", highPage, rightEdge, nullptr,
          "bar, 500", "page, 500" },
        { "ShowChrome", InPictures, "", "\"ShowChrome\": true", greenPage, topEdge, nullptr, "page",
          "bar" },
        { "ResizesToContents", InPictures, "\"UseGraphicsView\": true",
          "\"ResizesToContents\": true", highPage, says, nullptr, "500", "0" },
        { "ProhibitMainFrameScrolling", InPictures, "", "\"ProhibitMainFrameScrolling\": true",
          highPage, says, nullptr, "500", "0" },
        { "DisableSpatialNavigation", Alone, "", "\"DisableSpatialNavigation\": false", keyPage,
          nullptr, focusAfterAnArrowKey, "left", "right" },
        { "UseCompositing", InPictures, "\"ShowDebugBorders\": true", "\"UseCompositing\": true",
          layerPage, edgeOfALayer, nullptr, "plain", bordered },
        { "UseTiledBackingStore", InPictures, "\"UseGraphicsView\": true",
          "\"UseTiledBackingStore\": true", hello, remarkAboutTheValue, nullptr, "hello",
          ToolkitDifferences::either("hello", "hello, none") },
        { "UseWebGL", Alone, "",
          ToolkitDifferences::either("\"UseWebGL\": true", "\"UseWebGL\": false"), webGlPage,
          nullptr, drawing, ToolkitDifferences::drawsWithWebGLUnasked() ? "draws" : "nothing",
          ToolkitDifferences::canDrawWithWebGL() && ToolkitDifferences::isQt4() ? "draws"
                                                                                : "nothing" },
        { "UseFrameFlattening", InPictures, "", "\"UseFrameFlattening\": true", framePage, says,
          nullptr, "low", "high" },
        { "ShowFrameRate", InPictures, "", "\"ShowFrameRate\": true", greenPage, foreignPixels,
          nullptr, "none", "some" },
        { "UseDiskCache", Twice, "", "\"UseDiskCache\": true", picturePage, askedForAgain, nullptr,
          "/ /picture", "/" },
        { "UseDiskCookies", Twice, "", "\"UseDiskCookies\": true", cookiePage, cookie, nullptr, "",
          "a=b" },
        { "UseLocalStorage", Twice, "", "\"UseLocalStorage\": true", counterPage, says, nullptr,
          "nothing", "1" },
        { "OfflineStorageDatabaseEnabled", Twice, "", "\"OfflineStorageDatabaseEnabled\": true",
          databasePage, says, nullptr, "nothing", "1" },
        { "UseOfflineStorageDatabase", Twice, "", "\"UseOfflineStorageDatabase\": true",
          databasePage, says, nullptr, "nothing", "1" },
        { "OfflineStorageDefaultQuotaSize", Twice, "\"UseOfflineStorageDatabase\": true",
          "\"OfflineStorageDefaultQuotaSize\": 10000", roomPage, says, nullptr, "fits",
          ToolkitDifferences::keepsQuotas() ? "too much" : "fits" },
        { "OfflineWebApplicationCacheEnabled", Twice, "",
          "\"OfflineWebApplicationCacheEnabled\": true", manifestPage, askedForTheManifest, nullptr,
          "/", "/manifest" },
        { "UseOfflineWebApplicationCache", Twice, "", "\"UseOfflineWebApplicationCache\": true",
          manifestPage, askedForTheManifest, nullptr, "/", "/manifest" },
        { "CacheWebView", Alone, "", "\"CacheWebView\": true", closingPage.constData(), nullptr,
          lifeAfterClosing, "begins anew", "goes on" },
        { "LocalContentCanAccessRemoteUrls", InPictures, "\"Url\": \"FILE\"",
          "\"LocalContentCanAccessRemoteUrls\": true", fetchingPage, says, nullptr, "refused",
          "fetched" },
        { "GrantBroadcastRelatedSecurityClearance", InPictures, "",
          "\"GrantBroadcastRelatedSecurityClearance\": true", volumePage, says, nullptr,
          "undefined", "number" },
        { "GrantBroadcastAccessRightDomains", InPictures, "",
          "\"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"tv.example\" } ]", extensionPage,
          lastWordInTheConsole, nullptr, "object", "undefined" },
        { "HttpProxy", InPictures, "", "\"HttpProxy\": \"127.0.0.1:PORT\"", hello,
          targetOfTheRequest, nullptr, "/", "an address" },
        { "HttpReferrer", InPictures, "", "\"HttpReferrer\": \"http://portal.example/\"", hello,
          referrer, nullptr, "", "http://portal.example/" },
        { "NetworkSessionNoAutoClose", InPictures, "", "\"NetworkSessionNoAutoClose\": true", hello,
          remarkAboutTheValue, nullptr, "hello", "hello, none" },
        { "CertPath", InPictures, "\"Url\": \"SECURE\"",
          "\"Certificate\": { \"Path\": \"CERTIFICATES/both.pem\" }", hello, client, nullptr,
          "nobody", "device" },
        { "CertPrivateKey", InPictures,
          "\"Url\": \"SECURE\", \"Certificate\": { \"Path\": \"CERTIFICATES/device.pem\" }",
          "\"Url\": \"SECURE\", \"Certificate\": { \"Path\": \"CERTIFICATES/device.pem\","
          "\"PrivateKey\": \"CERTIFICATES/device.key\" }",
          hello, client, nullptr, "nobody", "device" },
        { "CertPassPhrase", InPictures,
          "\"Url\": \"SECURE\", \"Certificate\": { \"Path\": \"CERTIFICATES/locked.pem\" }",
          "\"Url\": \"SECURE\", \"Certificate\": { \"Path\": \"CERTIFICATES/locked.pem\","
          "\"PassPhrase\": \"hush\" }",
          hello, client, nullptr, "nobody", "device" },
        { "EnableShowErrorPage", InPictures, "\"Url\": \"http://127.0.0.1:FREE/\"",
          "\"EnableShowErrorPage\": true", hello, errorPage, nullptr, "no window", "fff5f3ee" },
        { "PrintLoadedUrls", InPictures, "", "\"PrintLoadedUrls\": true", hello, loadedAddresses,
          nullptr, "no", "yes" },
        { "SuppressWebCoreWarningMessages", InPictures, "",
          "\"SuppressWebCoreWarningMessages\": true", talkingPage, lastWordInTheConsole, nullptr,
          "hello", "" },
        { "RemoteInspectorPort", Alone, "", "\"RemoteInspectorPort\": FREE", readyPage, nullptr,
          inspector, "closed", "listens" },
        { "ShowDebugBorders", InPictures, "\"UseCompositing\": true", "\"ShowDebugBorders\": true",
          layerPage, edgeOfALayer, nullptr, "plain", bordered },
    };
    return all;
}

} // namespace

/// Every property has an effect that shows outside of the process: to a server, in a second start, in a
/// picture, on the screen, or to the scripts of a page.
class tst_LauncherProperties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyPropertyIsLookedAt();
    void everyPropertyShowsOutside_data();
    void everyPropertyShowsOutside();

private:
    void prepare(const Row &row, bool isSet);
    void takePictures();
    void startTwice();
    Seen seen(const QString &tag, const Run &run) const;
    QStringList tagsIn(Scene scene) const;
    QByteArray elementsOf(const QStringList &tags) const;
    QString observation(const Row &row, bool isSet) const;

    Authority m_authority;
    QMap<QString, QSharedPointer<HttpServer>> m_servers; ///< by tag, as the following
    QMap<QString, QByteArray> m_applications;
    QMap<QString, Seen> m_seen;
    Stage m_stage;
};

namespace {

QString tagOf(const Row &row, bool isSet)
{
    return text(row.property) + text(isSet ? "-set" : "-unset");
}

bool isTls(const Row &row)
{
    return QByteArray(row.both).contains("SECURE");
}

QByteArray joined(const QByteArray &one, const QByteArray &other)
{
    return one.isEmpty() || other.isEmpty() ? one + other : one + ", " + other;
}

/// Of "Applications".
QByteArray element(const QByteArray &tag, const QByteArray &properties)
{
    return "{ \"Tag\": \"" + tag + "\", " + properties + " }";
}

/// The properties of an application but for its tag and what is implied.
QByteArray propertiesOf(const Row &row, bool isSet)
{
    const bool replaces = QByteArray(row.set).contains("\"Url\"");
    if (!isSet)
        return row.both;
    return replaces ? QByteArray(row.set) : joined(row.both, row.set);
}

} // namespace

void tst_LauncherProperties::initTestCase()
{
    m_authority.issue("server");
    m_authority.issue("device");
    m_authority.join("device.pem", "device.key", "both.pem");
    m_authority.openssl("pkey -in device.key -aes256 -passout pass:hush -out locked.key");
    m_authority.join("device.pem", "locked.key", "locked.pem");
    m_stage.set("SSL_CERT_FILE", m_authority.path("CA.pem"));
    m_stage.write("user.js", "fromUserScript = 'hello'");
    for (const Row &row : rows()) {
        prepare(row, false);
        prepare(row, true);
    }
    takePictures();
    startTwice();
}

// The servers of two applications are two sites, so that none has what another one stored.
void tst_LauncherProperties::prepare(const Row &row, bool isSet)
{
    const QString tag = tagOf(row, isSet);
    QSharedPointer<HttpServer> server(isTls(row) ? new TlsServer(m_authority.path("CA.pem"),
                                                                 m_authority.path("server.pem"),
                                                                 m_authority.path("server.key"))
                                                 : new HttpServer);
    const QByteArray address = server->address().toLatin1();
    QByteArray page = row.page;
    page.replace("ADDRESS", address);
    server->serve("/", page, "Set-Cookie: a=b; Max-Age=3600\r\n");
    server->serve("/data", "fetched");
    server->serve("/picture", "none", "Cache-Control: max-age=3600\r\n");
    server->serve("/manifest", "CACHE MANIFEST\n", "Content-Type: text/cache-manifest\r\n");
    m_stage.write((tag + text(".html")).toLatin1().constData(), page);

    QByteArray properties = propertiesOf(row, isSet);
    const bool isUrlRow = qstrcmp(row.property, "Url") == 0;
    if (!isUrlRow && !properties.contains("\"Url\""))
        properties = joined(properties, "\"Url\": \"ADDRESS\"");
    properties.replace("SECURE", address).replace("ADDRESS", address);
    properties.replace("PORT", QByteArray::number(server->serverPort()));
    properties.replace("FREE", QByteArray::number(freePort()));
    properties.replace("FILE", tag.toLatin1() + ".html");
    properties.replace("CERTIFICATES", m_authority.path("").toLatin1());
    m_servers.insert(tag, server);
    m_applications.insert(tag, properties);
}

Seen tst_LauncherProperties::seen(const QString &tag, const Run &run) const
{
    Seen result;
    result.out = linesAfter((tag + text("  ")).toLatin1().constData(), run.out).join(text("\n"))
        + text("\n");
    result.says = linesAfter((tag + text("  says: ")).toLatin1().constData(), run.out);
    result.says.removeAll(text("done"));
    result.picture = QImage(m_stage.path(("out-" + tag.toLatin1() + ".png").constData()));
    result.requests = m_servers.value(tag)->requests();
    return result;
}

// All of them in one start.
void tst_LauncherProperties::takePictures()
{
    QStringList arguments =
        QString(text("--screenshot out.png --size 400x300 --wait 1000")).split(QLatin1Char(' '));
    arguments += tagsIn(InPictures);
    m_stage.configure(elementsOf(tagsIn(InPictures)));
    const Run run = m_stage.launch(arguments, m_stage.path("."));
    const QStringList tags = tagsIn(InPictures);
    for (int i = 0; i < tags.size(); ++i)
        m_seen.insert(tags.at(i), seen(tags.at(i), run));
}

// Each start ends in order when all pages are done, so that nothing depends on how long that takes.
void tst_LauncherProperties::startTwice()
{
    const QStringList tags = tagsIn(Twice);
    m_stage.configure(elementsOf(tags));
    for (int start = 0; start < 2; ++start) {
        for (int i = 0; i < tags.size(); ++i)
            m_servers.value(tags.at(i))->forget();
        QProcess process;
        m_stage.start(&process, tags, m_stage.path("."));
        for (int i = 0; i < tags.size(); ++i)
            QVERIFY2(Stage::awaitOutput(&process, (tags.at(i) + text("  says: done\n")).toLatin1()),
                     qPrintable(tags.at(i)));
        process.terminate();
        const Run run = Stage::finish(&process);
        for (int i = 0; i < tags.size(); ++i)
            m_seen.insert(tags.at(i), seen(tags.at(i), run));
    }
}

QStringList tst_LauncherProperties::tagsIn(Scene scene) const
{
    QStringList tags;
    for (const Row &row : rows()) {
        if (row.scene == scene)
            tags << tagOf(row, false) << tagOf(row, true);
    }
    return tags;
}

QByteArray tst_LauncherProperties::elementsOf(const QStringList &tags) const
{
    QByteArray elements;
    for (int i = 0; i < tags.size(); ++i)
        elements =
            joined(elements, element(tags.at(i).toLatin1(), m_applications.value(tags.at(i))));
    return elements;
}

void tst_LauncherProperties::everyPropertyIsLookedAt()
{
    QStringList expected;
    QStringList walked;
    for (const AppConfigProperty &property : appConfigProperties)
        expected << text(property.name);
    for (const Row &row : rows())
        walked << text(row.property);
    expected.sort();
    walked.sort();
    QCOMPARE(walked, expected);
    QCOMPARE(walked.size(), 42);
}

void tst_LauncherProperties::everyPropertyShowsOutside_data()
{
    QTest::addColumn<int>("number");

    int number = 0;
    for (const Row &row : rows())
        QTest::newRow(row.property) << number++;
}

void tst_LauncherProperties::everyPropertyShowsOutside()
{
    QFETCH(int, number);
    const Row &row = rows().at(size_t(number));

    QCOMPARE(observation(row, false), text(row.byDefault));
    QCOMPARE(observation(row, true), text(row.whenSet));
}

QString tst_LauncherProperties::observation(const Row &row, bool isSet) const
{
    const QString tag = tagOf(row, isSet);
    return row.look ? row.look(m_seen.value(tag))
                    : row.play(element("tv", m_applications.value(tag)), *m_servers.value(tag));
}

NUV_GUI_TEST_MAIN(tst_LauncherProperties)

#include "tst_launcherproperties.moc"
