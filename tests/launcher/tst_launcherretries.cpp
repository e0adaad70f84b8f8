// SPDX-License-Identifier: MIT
#include "examples/launcher/application/pagekeeper.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>

namespace {

const char helloPage[] = "<script>onload = function() { zarexExt.say('hello') }</script>";
const char brokenAnswer[] = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n";

QByteArray unavailable(const QByteArray &words)
{
    return "HTTP/1.1 503 Service Unavailable\r\nContent-Type: text/html\r\nConnection: close\r\n"
           "Content-Length: "
        + QByteArray::number(words.size()) + "\r\n\r\n" + words;
}

/// Ends the launcher as its service manager would.
Run stop(QProcess *process)
{
    process->terminate();
    return Stage::finish(process);
}

/// Lets the server work until a client does not wait any longer; false when it takes too long.
bool awaitDeparture(const HttpServer &server, const char *target)
{
    QElapsedTimer time;
    time.start();
    while (server.departures(target) == 0 && time.elapsed() < 60000)
        QTest::qWait(10);
    return server.departures(target) > 0;
}

} // namespace

class tst_LauncherRetries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePausesGrowToAMinute();

    void aPageIsShownWhoseServerComesLate_data();
    void aPageIsShownWhoseServerComesLate();
    void aSecureServerIsAskedAgain();
    void aServerThatCannotAnswerYetIsAskedAgain_data();
    void aServerThatCannotAnswerYetIsAskedAgain();
    void aPageWhosePictureCannotComeIsLeftAlone();
    void aServerThatIsSilentIsAskedAgain();
    void aPageThatTakesTooLongIsNotWaitedForAtTheServer_data();
    void aPageThatTakesTooLongIsNotWaitedForAtTheServer();
    void aRefusalAfterASilenceIsTold();
    void aPageThatShowsSomethingIsLeftAlone();
    void aLaterPageComesBackToo();
    void whatWillNotLoadIsNotTriedAgain_data();
    void whatWillNotLoadIsNotTriedAgain();
    void theFirstPageIsAskedForWithItsReferrerEachTime();
    void aFailureThatStaysIsToldOnce();
    void aFileThatIsMissingIsNotWaitedFor();
    void anApplicationWhoseServerHasNoPageHasFailed();
};

void tst_LauncherRetries::thePausesGrowToAMinute()
{
    const int expected[] = { 1000, 2000, 4000, 8000, 16000, 32000, 60000, 60000 };
    int attempt = 0;
    for (int pause : expected)
        QCOMPARE(PageKeeper::pauseBefore(++attempt), pause);
    QCOMPARE(PageKeeper::pauseBefore(1000000), 60000);
}

void tst_LauncherRetries::aPageIsShownWhoseServerComesLate_data()
{
    QTest::addColumn<QByteArray>("property");

    QTest::newRow("without an error page") << QByteArray();
    QTest::newRow("with an error page") << QByteArray(", \"EnableShowErrorPage\": true");
}

void tst_LauncherRetries::aPageIsShownWhoseServerComesLate()
{
    QFETCH(QByteArray, property);
    HttpServer server;
    server.serve("/", helloPage);
    const quint16 port = server.serverPort();
    const QString address = server.address();
    server.close();
    Stage stage;
    stage.configure(Stage::application("tv", address, property));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(Stage::awaitOutput(
        &process, "tv  the page is tried again, after 1 s at first, later every 60 s\n"));
    QVERIFY(server.listen(QHostAddress::LocalHost, port));
    QVERIFY(Stage::awaitOutput(&process, "tv  says: hello\n"));
    QVERIFY(Stage::awaitOutput(&process, "tv  has loaded, at attempt "));
    const Run run = stop(&process);

    QCOMPARE(run.err,
             text("nuv-launcher: tv: the page ") + address
                 + text(" does not load: Connection refused\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherRetries::aSecureServerIsAskedAgain()
{
    HttpServer server;
    const QString address = server.address().replace(text("http:"), text("https:"));
    server.close();
    Stage stage;
    stage.configure(Stage::application("tv", address));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(Stage::awaitOutput(&process, "tv  the page is tried again"));
    stop(&process);
}

void tst_LauncherRetries::aServerThatCannotAnswerYetIsAskedAgain_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("words");

    QTest::newRow("with words") << QByteArray("/") << QByteArray("late");
    QTest::newRow("without a word") << QByteArray("/") << QByteArray();
    QTest::newRow("after a detour") << QByteArray("/application") << QByteArray("late");
}

void tst_LauncherRetries::aServerThatCannotAnswerYetIsAskedAgain()
{
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, words);
    HttpServer server;
    server.serveBytes("/",
                      "HTTP/1.1 302 Found\r\nLocation: " + target
                          + "\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
    server.serveBytes(target, unavailable(words));
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(Stage::awaitOutput(&process, "tv  the server answers 503; the page is tried again"));
    server.serve(target.constData(), helloPage);
    QVERIFY(Stage::awaitOutput(&process, "tv  says: hello\n"));

    QCOMPARE(server.requests("/").size(), 2);
    QCOMPARE(server.requests(target.constData()).size(), 2);
    QCOMPARE(stop(&process).status, 0);
}

void tst_LauncherRetries::aPageWhosePictureCannotComeIsLeftAlone()
{
    HttpServer server;
    server.serveBytes("/picture", unavailable("late"));
    server.serve("/",
                 "<img src='/picture'><script>onload = function() { setTimeout(function() {"
                 "zarexExt.say('still here') }, 50) }</script>");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(Stage::awaitOutput(&process, "tv  says: still here\n"));
    const Run run = stop(&process);

    QVERIFY2(!run.out.contains(text("tried again")), qPrintable(run.out));
    QCOMPARE(server.requests("/picture").size(), 1);
}

void tst_LauncherRetries::aServerThatIsSilentIsAskedAgain()
{
    HttpServer server;
    server.serve("/", helloPage);
    server.ignore("/");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    QProcess process;
    stage.start(&process, "--timeout 500 tv");

    QVERIFY(server.awaitRequests("/", 2));
    server.ignore(QByteArray());
    QVERIFY(Stage::awaitOutput(&process, "tv  says: hello\n"));
    QVERIFY(Stage::awaitOutput(&process, "tv  has loaded, at attempt "));
    const Run run = stop(&process);

    QCOMPARE(run.err,
             text("nuv-launcher: tv: the page ") + server.address()
                 + text(" has not loaded after 500 ms\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherRetries::aPageThatTakesTooLongIsNotWaitedForAtTheServer_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QString>("arguments");

    QTest::newRow("the first page of an application that nobody attends")
        << QByteArray("%1") << text("--once --wait 60000 --timeout 300 tv other");
    // A file is not asked for again, which would end the loading as well.
    QTest::newRow("what a later page needs first")
        << QByteArray("first.html") << text("--timeout 300 tv other");
}

// The launcher itself goes on.
void tst_LauncherRetries::aPageThatTakesTooLongIsNotWaitedForAtTheServer()
{
    QFETCH(QByteArray, address);
    QFETCH(QString, arguments);
    HttpServer server;
    server.ignore("/never");
    const QString never = server.address("/never");
    Stage stage;
    Applications applications;
    applications.add("tv", text(address.constData()).replace(text("%1"), never));
    applications.add("other", text("other.html"));
    stage.configure(applications.elements());
    stage.write("other.html", "<p>");
    stage.write("first.html",
                "<script>onload = function() { setTimeout(function() {"
                "location = 'second.html' }, 50) }</script>");
    stage.write("second.html", "<script src='" + never.toLatin1() + "'></script><p>");
    QProcess process;
    stage.start(&process, arguments.toLatin1().constData());

    QVERIFY(awaitDeparture(server, "/never"));

    QCOMPARE(int(process.state()), int(QProcess::Running));
    stop(&process);
    QCOMPARE(server.requests("/never").size(), 1);
}

void tst_LauncherRetries::aRefusalAfterASilenceIsTold()
{
    HttpServer server;
    server.ignore("/");
    server.serveBytes("/", "HTTP/1.1 410 Gone\r\nContent-Length: 4\r\n\r\ngone");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    QProcess process;
    stage.start(&process, "--timeout 500 tv");

    QVERIFY(awaitDeparture(server, "/"));
    server.ignore(QByteArray());
    QVERIFY(Stage::awaitOutput(&process, "tv  has loaded, at attempt "));

    QCOMPARE(
        stop(&process).err,
        text("nuv-launcher: tv: the page ") + server.address()
            + text(" has not loaded after 500 ms\nnuv-launcher: tv: the server refuses the page ")
            + server.address() + text(": 410 Gone\n"));
}

// Its picture never comes, so that the loading never ends. By the time that the other application is tried
// again the time of both is over.
void tst_LauncherRetries::aPageThatShowsSomethingIsLeftAlone()
{
    HttpServer server;
    server.serve("/", "<p>Hello<img src='/never'>");
    server.ignore("/never");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()) + ", "
                    + Stage::application("other", server.address("/never")));
    QProcess process;
    stage.start(&process, "--timeout 2000 tv other");

    QVERIFY(server.awaitRequests("/never", 3));
    const Run run = stop(&process);

    QCOMPARE(linesAfter("nuv-launcher: tv: ", run.err), QStringList());
    QCOMPARE(server.requests("/").size(), 1);
}

void tst_LauncherRetries::aLaterPageComesBackToo()
{
    HttpServer server;
    server.serve("/",
                 "<script>onload = function() { setTimeout(function() {"
                 "location = '/second' }, 50) }</script>");
    server.serveBytes("/second", QByteArray());
    Stage stage;
    stage.configure(Stage::application("tv", server.address(),
                                       ", \"HttpReferrer\": \"http://portal.example/\""));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(Stage::awaitOutput(&process, "tv  the page is tried again"));
    server.serve("/second", helloPage);
    QVERIFY(Stage::awaitOutput(&process, "tv  says: hello\n"));

    QCOMPARE(server.requests("/").size(), 1);
    QCOMPARE(server.requests("/").at(0).headers.value("referer"),
             QByteArray("http://portal.example/"));
    const QList<HttpRequest> later = server.requests("/second");
    for (int i = 0; i < later.size(); ++i)
        QVERIFY(later.at(i).headers.value("referer") != "http://portal.example/");
    QCOMPARE(stop(&process).status, 0);
}

// Every row is an application of its own; all are opened by one launch. The engine ends the loading of all
// these as a failure.
void tst_LauncherRetries::whatWillNotLoadIsNotTriedAgain_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("requests");

    const char *const heads[][2] = {
        { "a file that the engine cannot show",
          "200 OK\r\nContent-Type: application/zip\r\nContent-Length: 4" },
        { "a page that the server does not have", "404 Not Found\r\nContent-Length: 0" },
        { "a page that the server refuses", "403 Forbidden\r\nContent-Length: 0" },
        { "nothing, as the server means it", "204 No Content\r\nContent-Length: 0" },
    };
    Applications applications;
    HttpServer server;
    for (const char *const(&head)[2] : heads) {
        const QByteArray target = "/" + QByteArray::number(int(&head - heads));
        server.serveBytes(target,
                          "HTTP/1.1 " + QByteArray(head[1]) + "\r\nConnection: close\r\n\r\nPK34");
        const QByteArray page = "/page" + target;
        server.serve(page.constData(),
                     "<script>onload = function() { setTimeout(function() { location = '" + target
                         + "'; setTimeout(function() { zarexExt.say('still here') }, 1500) }, 50) }"
                           "</script>");
        applications.add(head[0], server.address(page.constData()));
    }
    Stage stage;
    stage.configure(applications.elements());
    QProcess process;
    stage.start(&process, applications.arguments().mid(2), stage.path("."));
    for (const char *const(&head)[2] : heads)
        Stage::awaitOutput(&process, (QByteArray(head[0]) + "  says: still here\n").constData());
    const Run run = stop(&process);
    for (const char *const(&head)[2] : heads) {
        const QByteArray target = "/" + QByteArray::number(int(&head - heads));
        QTest::newRow(head[0])
            << linesAfter((QByteArray(head[0]) + "  ").constData(), run.out).join(text("\n"))
            << server.requests(target.constData()).size();
    }
}

void tst_LauncherRetries::whatWillNotLoadIsNotTriedAgain()
{
    QFETCH(QString, output);
    QFETCH(int, requests);

    QVERIFY2(output.contains(text("still here")), qPrintable(output));
    QVERIFY2(!output.contains(text("tried again")), qPrintable(output));
    QCOMPARE(requests, 1);
}

void tst_LauncherRetries::theFirstPageIsAskedForWithItsReferrerEachTime()
{
    HttpServer server;
    server.serveBytes("/", brokenAnswer);
    Stage stage;
    stage.configure(Stage::application("tv", server.address(),
                                       ", \"HttpReferrer\": \"http://portal.example/\""));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(server.awaitRequests("/", 2));
    stop(&process);

    const QList<HttpRequest> requests = server.requests("/");
    for (int i = 0; i < requests.size(); ++i)
        QCOMPARE(requests.at(i).headers.value("referer"), QByteArray("http://portal.example/"));
}

void tst_LauncherRetries::aFailureThatStaysIsToldOnce()
{
    HttpServer server;
    server.serveBytes("/", brokenAnswer);
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    QProcess process;
    stage.start(&process, "tv");

    QVERIFY(server.awaitRequests("/", 3));
    const Run run = stop(&process);

    QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.out.count(text("tried again")), 1);
    QCOMPARE(run.status, 1);
}

void tst_LauncherRetries::aFileThatIsMissingIsNotWaitedFor()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"none.html\" }");

    const Run run = stage.launch("tv");

    QCOMPARE(run.status, 1);
    QVERIFY(!run.out.contains(text("tried again")));
}

void tst_LauncherRetries::anApplicationWhoseServerHasNoPageHasFailed()
{
    HttpServer server;
    server.serveBytes("/", "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));

    const Run run = stage.launch("tv");

    QCOMPARE(run.status, 1);
    QVERIFY(!run.out.contains(text("tried again")));
    QCOMPARE(server.requests("/").size(), 1);
}

NUV_TEST_MAIN(tst_LauncherRetries)

#include "tst_launcherretries.moc"
