// SPDX-License-Identifier: MIT
#include "examples/launcher/application/applicationpage.h"
#include "examples/launcher/application/applicationview.h"
#include "examples/launcher/application/broadcastaccess.h"
#include "examples/launcher/application/launcherextension.h"
#include "examples/launcher/network/launchernetwork.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/guitestmain.h"

#include <QEventLoop>
#include <QFile>
#include <QMetaMethod>
#include <QPointer>
#include <QScopedPointer>
#include <QStringList>
#include <QTimer>
#include <QWebFrame>
#include <QWebPage>
#include <QWebSecurityOrigin>
#include <QWebSettings>

namespace {

/// A page with an extension object.
class Host
{
public:
    explicit Host(bool hasClearance = false)
    {
        BroadcastAccess access;
        access.setClearance(hasClearance);
        m_extension = LauncherExtensionFactory().create(&m_page, &m_page, access);
        m_page.mainFrame()->setHtml(QLatin1String("<p>"));
        m_extension->attachObject();
    }

    QString ask(const QString &script)
    {
        return m_page.mainFrame()->evaluateJavaScript(script).toString();
    }

    QString ask(const char *script) { return ask(QString(QLatin1String(script))); }
    QPointer<ZarexExtBase> extension() const { return m_extension; }

private:
    QWebPage m_page;
    QPointer<ZarexExtBase> m_extension;
};

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// The resident memory of this process, in KiB, when the engine has freed what it can; 0 where the
/// system does not tell.
int residentMemory()
{
    QWebSettings::clearMemoryCaches();
    QFile file(text("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray status = file.readAll();
    const int begin = status.indexOf("VmRSS:") + 6;
    return status.mid(begin, status.indexOf("kB", begin) - begin).trimmed().toInt();
}

void load(QWebPage *page, const QUrl &url)
{
    QEventLoop loop;
    QObject::connect(page, SIGNAL(loadFinished(bool)), &loop, SLOT(quit()));
    QTimer::singleShot(20000, &loop, SLOT(quit()));
    page->mainFrame()->load(url);
    loop.exec();
}

} // namespace

class tst_LauncherExtension : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scriptsSeeTheseMembersAndNoOthers_data();
    void scriptsSeeTheseMembersAndNoOthers();
    void scriptsNeitherDeleteNorRenameTheObject();
    void scriptsNeitherReplaceNorRemoveItsMembers();
    void theVolumeIsBoundedAndAnnounced();
    void aPageThatNobodyShowsHasNoSize();

    void theOriginOfADocumentDecides_data();
    void theOriginOfADocumentDecides();
    void whatIsNoDomainIsNotTaken_data();
    void whatIsNoDomainIsNotTaken();

    void eachDocumentIsDecidedAbout();
    void aSandboxedDocumentIsRefused();
    void theListedDomainsReplaceTheOwn();
    void aDeletedObjectIsBackInTheNextDocument();
    void memoryStaysLevelOverManyDocuments();
};

void tst_LauncherExtension::scriptsSeeTheseMembersAndNoOthers_data()
{
    QTest::addColumn<bool>("hasClearance");
    QTest::addColumn<QStringList>("own");

    QStringList own;
    own << text("model") << text("application()") << text("viewSize()") << text("say(QString)")
        << text("open(QString)");
    QTest::newRow("an application") << false << own;
    own << text("volume") << text("volumeChanged(int)");
    QTest::newRow("one that may control the receiver") << true << own;
}

// The methods stand in the list under their whole signatures, and answer to their names alone as well.
void tst_LauncherExtension::scriptsSeeTheseMembersAndNoOthers()
{
    QFETCH(bool, hasClearance);
    QFETCH(QStringList, own);
    Host host(hasClearance);
    QStringList expected = own;
    expected << text("openRequested(QString)") << text("attachObject()") << text("deleteLater()")
             << text("destroyed(QObject*)") << text("destroyed()");
    if (!ToolkitDifferences::isQt4())
        expected << text("objectNameChanged(QString)");

    const QString listed =
        host.ask("var names = []; for (var name in zarexExt) names.push(name); names.join()");

    QCOMPARE(sorted(listed.split(QLatin1Char(','))).join(text(" ")),
             sorted(expected).join(text(" ")));
    // The name of the object is there, but answers nothing. Beyond that it is as any other object.
    expected << text("objectName");
    QCOMPARE(sorted(host.ask("Object.getOwnPropertyNames(zarexExt).join()").split(QLatin1Char(',')))
                 .join(text(" ")),
             sorted(expected).join(text(" ")));
    QCOMPARE(host.ask("Object.getPrototypeOf(zarexExt) === Object.prototype"), text("true"));
    expected.removeOne(text("objectName"));
    QStringList reached;
    const QMetaObject *meta = host.extension()->metaObject();
    for (int i = 0; i < meta->methodCount(); ++i)
        reached << QString::fromLatin1(
            ToolkitDifferences::signatureOf(meta->method(i)).constData());
    for (int i = 0; i < meta->propertyCount(); ++i)
        reached << text(meta->property(i).name());
    reached.removeDuplicates();
    for (int i = 0; i < reached.size(); ++i) {
        const QString name = reached.at(i);
        const bool exists =
            host.ask(QString(text("typeof zarexExt['%1']")).arg(name)) != text("undefined");
        QVERIFY2(exists == expected.contains(name), qPrintable(name));
        const QString shortName = name.section(QLatin1Char('('), 0, 0);
        QCOMPARE(host.ask(text("typeof zarexExt.") + shortName) != text("undefined"), exists);
    }
}

void tst_LauncherExtension::scriptsNeitherDeleteNorRenameTheObject()
{
    Host host;

    host.ask("zarexExt.deleteLater(); zarexExt['deleteLater()'](); zarexExt.objectName = 'other'");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(host.extension());
    QCOMPARE(host.extension()->objectName(), text("zarexExt"));
}

void tst_LauncherExtension::scriptsNeitherReplaceNorRemoveItsMembers()
{
    Host host;

    host.ask("delete zarexExt.model; zarexExt.model = 'mine'; delete zarexExt.application;"
             "zarexExt.application = function() { return 'mine' }");

    QCOMPARE(host.ask("zarexExt.model"), text("nuv-launcher"));
    QCOMPARE(host.ask("zarexExt.application()"), QString());
}

void tst_LauncherExtension::theVolumeIsBoundedAndAnnounced()
{
    Host host(true);
    host.ask("zarexExt.volume = 30");

    host.ask("var heard = []; zarexExt.volumeChanged.connect(function(v) { heard.push(v) });"
             "zarexExt.volume = 400; zarexExt.volume = 100; zarexExt.volume = -3");

    QCOMPARE(host.ask("heard.join()"), text("100,0"));
    QCOMPARE(host.ask("zarexExt.volume"), text("0"));
}

void tst_LauncherExtension::aPageThatNobodyShowsHasNoSize()
{
    Host host;

    QCOMPARE(host.ask("var size = zarexExt.viewSize(); size.width + 'x' + size.height"),
             text("0x0"));
    QCOMPARE(host.ask("'<' + zarexExt.application() + '>'"), text("<>"));
}

void tst_LauncherExtension::theOriginOfADocumentDecides_data()
{
    QTest::addColumn<QString>("home");
    QTest::addColumn<QString>("domains"); // separated by spaces; "unset" when there are none
    QTest::addColumn<QString>("document");
    QTest::addColumn<bool>("isAnswered");

    struct Case {
        const char *name;
        const char *home;
        const char *domains;
        const char *document;
        bool isAnswered;
    };
    const char *const web = "http://tv.example/";
    const char *const file = "file:///apps/tv.html";
    const Case cases[] = {
        { "own host", web, "unset", "http://tv.example/next", true },
        { "own host, at another port", web, "unset", "http://tv.example:8080/", true },
        { "own host, with TLS", web, "unset", "https://tv.example/", true },
        { "below the own host", web, "unset", "http://www.tv.example/", true },
        { "above the own host", web, "unset", "http://example/", false },
        { "another host", web, "unset", "http://radio.example/", false },
        { "a file, from the web", web, "unset", "file:///apps/tv.html", false },
        { "a file, from a file", file, "unset", "file:///apps/other.html", true },
        { "the web, from a file", file, "unset", "http://tv.example/", false },
        { "a listed domain", web, "a.example b.example", "http://b.example/", true },
        { "below a listed domain", web, "a.example", "https://deep.www.a.example/", true },
        { "in another case", web, "A.Example", "http://a.EXAMPLE/", true },
        { "in letters beyond ASCII", web, "t\303\274r.example", "http://xn--tr-xka.example/",
          true },
        { "after a listed domain", web, "a.example", "http://a.example.com/", false },
        { "that ends alike", web, "a.example", "http://nota.example/", false },
        { "with the domain as its user", web, "a.example", "http://a.example@b.example/", false },
        { "own host, not listed", web, "a.example", "http://tv.example/", false },
        { "own file, with a list", file, "a.example", "file:///apps/tv.html", true },
        { "own host, with an empty list", web, "", "http://tv.example/", false },
        { "a listed address", web, "127.0.0.1", "http://127.0.0.1:81/", true },
        { "below a listed address", web, "10.0.0.1", "http://7.10.0.0.1/", false },
        { "that ends like an address", web, "0.0.1", "http://10.0.0.1/", false },
        { "a listed address of IPv6", web, "::1", "http://[::1]:81/", true },
        { "in brackets", web, "[::1]", "http://[::1]/", true },
        { "in a longer form", web, "::1", "http://[0:0::1]/", !ToolkitDifferences::isQt4() },
        { "another address of IPv6", web, "::1", "http://[::2]/", false },
        { "own address of IPv6", "http://[::1]/", "unset", "http://[::1]:81/", true },
        { "with a dot at its end", web, "a.example.", "http://a.example/", true },
        { "listed without the dot", web, "a.example", "http://www.a.example./", true },
        { "own host, with a dot", web, "unset", "http://tv.example./", true },
        { "own host without TLS", "https://tv.example/", "unset", "http://tv.example/", false },
        { "own host with TLS, too", "https://tv.example/", "unset", "https://tv.example/", true },
        { "listed, without TLS", "https://tv.example/", "a.example", "http://a.example/", false },
        { "listed, with TLS, too", "https://tv.example/", "a.example", "https://a.example/", true },
        { "nothing loaded", web, "unset", "about:blank", false },
        { "another scheme", web, "unset", "ftp://tv.example/", false },
    };
    for (const Case &row : cases)
        QTest::newRow(row.name) << text(row.home) << QString::fromUtf8(row.domains)
                                << text(row.document) << row.isAnswered;
}

void tst_LauncherExtension::theOriginOfADocumentDecides()
{
    QFETCH(QString, home);
    QFETCH(QString, domains);
    QFETCH(QString, document);
    QFETCH(bool, isAnswered);
    BroadcastAccess access;
    if (domains != text("unset"))
        QVERIFY(
            access.setDomains(domains.isEmpty() ? QStringList() : domains.split(QLatin1Char(' '))));
    QWebPage page;
    page.mainFrame()->setHtml(text("<p>"), QUrl(document));

    QCOMPARE(access.answers(page.mainFrame()->securityOrigin(), QUrl(home)), isAnswered);
}

void tst_LauncherExtension::whatIsNoDomainIsNotTaken_data()
{
    QTest::addColumn<QString>("domain");
    const char *const texts[] = { "",          "http://tv.example", "tv.example/", "tv.example:80",
                                  "*.example", "tv example",        ".",           "[::1" };
    for (const char *domain : texts)
        QTest::newRow(*domain ? domain : "empty") << text(domain);
}

void tst_LauncherExtension::whatIsNoDomainIsNotTaken()
{
    QFETCH(QString, domain);
    BroadcastAccess access;

    QVERIFY(!access.setDomains(QStringList() << text("a.example") << domain));

    QWebPage page;
    page.mainFrame()->setHtml(text("<p>"), QUrl(text("http://tv.example/")));
    const QUrl home(text("http://tv.example/"));
    QVERIFY(access.answers(page.mainFrame()->securityOrigin(), home));
}

// The server is known under two names.
void tst_LauncherExtension::eachDocumentIsDecidedAbout()
{
    HttpServer server;
    const QByteArray own = server.address("").toLatin1();
    const QByteArray foreign = QByteArray(own).replace("127.0.0.1", "localhost");
    server.serve("/",
                 "<iframe src='" + own
                     + "/frame'></iframe><script>"
                       "console.log('own: ' + typeof zarexExt);"
                       "onload = function() { location = '"
                     + foreign + "/foreign' }</script>");
    server.serve("/frame", "<script>console.log('frame: ' + typeof zarexExt)</script>");
    server.serve("/foreign",
                 "<script>console.log('foreign: ' + typeof zarexExt);"
                 "onload = function() { location = '"
                     + own + "/again' }</script>");
    server.serve("/again",
                 "<script>console.log('again: ' + typeof zarexExt);"
                 "onload = function() { location = '/away' }</script>");
    server.serveBytes("/away",
                      "HTTP/1.1 302 Found\r\nLocation: " + foreign
                          + "/last\r\nContent-Length: 0\r\n\r\n");
    server.serve("/last", "<script>console.log('redirected: ' + typeof zarexExt)</script>");
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"" + own + "/\" }");
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "redirected: "));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QStringList answers = run.out.split(QLatin1Char('\n')).filter(text("console: "));
    answers.replaceInStrings(QRegExp(text(".*:\\d+: ")), QString());
    QCOMPARE(answers.join(text(", ")),
             text("own: object, frame: undefined, foreign: undefined, again: object, "
                  "redirected: undefined"));
    QCOMPARE(linesAfter("tv  zarexExt is not given to ", run.out).join(text(", ")),
             text("http://localhost, http://localhost"));
    QCOMPARE(run.status, 0);
}

// The engine of Qt 4 does not know this policy.
void tst_LauncherExtension::aSandboxedDocumentIsRefused()
{
    HttpServer server;
    server.serve("/", "<script>console.log('typeof ' + typeof zarexExt)</script>",
                 "Content-Security-Policy: sandbox allow-scripts\r\n");
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"" + server.address().toLatin1() + "\" }");

    const Run run = stage.launch("--screenshot out.png tv");

    QCOMPARE(run.status, 0);
    QVERIFY2(
        run.out.contains(text("typeof ") + text(ToolkitDifferences::either("object", "undefined"))),
        qPrintable(run.out));
}

void tst_LauncherExtension::theListedDomainsReplaceTheOwn()
{
    HttpServer server;
    const QByteArray own = server.address("").toLatin1();
    const QByteArray listed = QByteArray(own).replace("127.0.0.1", "localhost");
    server.serve("/",
                 "<script>console.log('own: ' + typeof zarexExt);"
                 "onload = function() { location = '"
                     + listed + "/listed' }</script>");
    server.serve("/listed", "<script>zarexExt.say('listed')</script>");
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"" + own
                    + "/\","
                      "\"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"localhost\" } ] }");
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "says: "));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QVERIFY(run.out.contains(text("own: undefined")));
    QCOMPARE(said(run), text("listed"));
    QCOMPARE(run.err, QString());
}

void tst_LauncherExtension::aDeletedObjectIsBackInTheNextDocument()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html",
                "<script>zarexExt.say('here'); zarexExt.mine = 1; delete window.zarexExt;"
                "console.log('deleted: ' + typeof window.zarexExt);"
                "window.zarexExt = null; location.replace('next.html')</script>");
    stage.write("next.html", "<script>zarexExt.say('back, ' + typeof zarexExt.mine)</script>");
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "back, "));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QCOMPARE(said(run), text("here; back, undefined"));
    QVERIFY(run.out.contains(text("deleted: undefined")));
    QCOMPARE(run.status, 0);
}

// What a document holds, with all that its scripts connect, goes with it. The first 100 fill what the
// engine keeps anyway.
void tst_LauncherExtension::memoryStaysLevelOverManyDocuments()
{
    const LauncherExtensionFactory extensions;
    registerZarexExtFactory(&extensions);
    LauncherNetworkFactory networks;
    registerNetworkAccessManagerFactory(&networks);
    TemporaryDir folder;
    const QByteArray listener = ToolkitDifferences::marksWhatItCallsBack()
        ? "var changes = 0; zarexExt.volumeChanged.connect(function() { ++changes });"
        : "var changes = 2; zarexExt.volumeChanged;";
    const QUrl page = QUrl::fromLocalFile(folder.write(
        text("page.html"),
        "<script>" + listener
            + "zarexExt.volume = 40; zarexExt.volume = 50; zarexExt.viewSize();</script>"));
    ApplicationView view(text("tv"));
    view.setAddress(page);
    view.broadcastAccess().setClearance(true);

    int memoryAt100 = 0;
    for (int document = 1; document <= 500; ++document) {
        load(view.page(), page);
        QCOMPARE(view.page()->mainFrame()->evaluateJavaScript(text("changes")).toInt(), 2);
        QCOMPARE(view.page()->findChildren<ZarexExtBase *>().size(), 1);
        if (document % 50 == 0 && document <= 100)
            memoryAt100 = residentMemory();
    }
    const int perDocument = (residentMemory() - memoryAt100) / 400;

    QVERIFY(memoryAt100 > 0);
#ifdef NUV_SANITIZED // a sanitizer keeps what is freed, to see whether it is used all the same
    Q_UNUSED(perDocument)
#else
    QVERIFY2(perDocument < 20, qPrintable(QString::number(perDocument)));
#endif
    registerZarexExtFactory(nullptr);
    registerNetworkAccessManagerFactory(nullptr);
}

NUV_GUI_TEST_MAIN(tst_LauncherExtension)

#include "tst_launcherextension.moc"
