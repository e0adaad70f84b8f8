// SPDX-License-Identifier: MIT
#include "examples/launcher/network/configuredaccess.h"
#include "examples/launcher/network/responselimit.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QNetworkReply>
#include <QScopedPointer>

namespace {

const char tooLarge[] = "its body is larger than 33554432 bytes";

/// An application "tv" with this first page and these further properties.
QByteArray tv(const QString &url, const QByteArray &properties = QByteArray())
{
    return Stage::application("tv", url, properties);
}

QByteArray head(const QByteArray &lines)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n" + lines + "\r\n";
}

/// Waits until the launcher has complained so, and ends it.
Run stopAfter(QProcess *process, const QString &complaint)
{
    process->setReadChannel(QProcess::StandardError);
    Stage::awaitOutput(process, complaint.toLatin1().constData());
    process->terminate();
    return Stage::finish(process);
}

/// A page that goes to the next one once it is loaded.
QByteArray pageThatGoesTo(const QString &address)
{
    return "<script>onload = function() { setTimeout(function() { location = '" + address.toLatin1()
        + "' }, 0) }</script>";
}

} // namespace

class tst_LauncherResponses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBodyHasALimit_data();
    void aBodyHasALimit();
    void aBodyBelowTheLimitIsTaken();
    void aLargePartOfAPageDoesNotStopIt();

    void aStationForThePlayerHasNoLimit_data();
    void aStationForThePlayerHasNoLimit();

    void aRefusalIsTold_data();
    void aRefusalIsTold();
    void aRefusalAfterADetourIsTold();
    void aHostThatWantsToKnowItsUserIsToldOnce();
    void aHundredHostsThatWantToKnowTheirUserAreTold();
    void aProxyThatWantsToKnowItsUserIsTold();
    void aProxyThatRefusesAPartOfAPageIsTold();
    void aLaterPageThatDoesNotLoadIsTold();
    void aFailedRequestIsNotLoaded();
};

void tst_LauncherResponses::aBodyHasALimit_data()
{
    QTest::addColumn<QByteArray>("answer");

    const QByteArray large(int(ResponseLimit::most) + 20000000, ' ');
    QTest::newRow("with its length")
        << head("Content-Length: 40000000\r\n") + QByteArray(40000000, ' ');
    QTest::newRow("without its length") << head("") + "<p>" + large;
    // Qt 4 knows only the other form: its head, and the data without their own.
    const QByteArray zipped = qCompress(large + large);
    const QByteArray deflated = head("Content-Encoding: deflate\r\n") + zipped.mid(4);
    const QByteArray gzipped = head("Content-Encoding: gzip\r\n")
        + QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\xff", 10) + zipped.mid(6);
    QTest::newRow("compressed") << ToolkitDifferences::either(gzipped, deflated);
}

void tst_LauncherResponses::aBodyHasALimit()
{
    QFETCH(QByteArray, answer);
    HttpServer server;
    server.serveBytes("/", answer);
    Stage stage;
    stage.configure(tv(server.address()));

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.err,
             text("nuv-launcher: tv: the page ") + server.address() + text(" does not load: ")
                 + text(tooLarge) + text("\n"));
    QCOMPARE(run.status, 1);
}

void tst_LauncherResponses::aBodyBelowTheLimitIsTaken()
{
    HttpServer server;
    server.serve("/", "<script src='/large.js'></script>");
    server.serve("/large.js",
                 QByteArray(int(ResponseLimit::most) / 2, ' ') + "zarexExt.say('read')");
    Stage stage;
    stage.configure(tv(server.address()));

    const Run run = stage.launch("--once tv");

    QCOMPARE(said(run), text("read"));
    QCOMPARE(run.err, QString());
}

void tst_LauncherResponses::aLargePartOfAPageDoesNotStopIt()
{
    HttpServer server;
    server.serve("/", "<p>a page<script src='/large.js'></script>");
    server.serveBytes("/large.js",
                      head("Content-Length: 40000000\r\n") + QByteArray(40000000, ' '));
    Stage stage;
    stage.configure(tv(server.address(), ", \"PrintLoadedUrls\": true"));

    const Run run = stage.launch("--once tv");

    QVERIFY2(run.out.contains(text("tv  not loaded: ") + server.address("/large.js") + text(": ")
                              + text(tooLarge)),
             qPrintable(run.out));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void tst_LauncherResponses::aStationForThePlayerHasNoLimit_data()
{
    QTest::addColumn<bool>("isForPlayer");
    QTest::addColumn<int>("error");

    QTest::newRow("a page's") << false << int(QNetworkReply::OperationCanceledError);
    QTest::newRow("the player's") << true << int(QNetworkReply::NoError);
}

void tst_LauncherResponses::aStationForThePlayerHasNoLimit()
{
    QFETCH(bool, isForPlayer);
    QFETCH(int, error);
    HttpServer server;
    server.serveBytes("/", head("Content-Length: 40000000\r\n") + QByteArray(40000000, ' '));
    ConfiguredAccess access(nullptr);
    QNetworkRequest request((QUrl(server.address())));
    if (isForPlayer)
        request.setRawHeader("icy-metadata", "1");

    const QScopedPointer<QNetworkReply> reply(access.get(request));
    QEventLoop loop;
    QObject::connect(reply.data(), SIGNAL(finished()), &loop, SLOT(quit()));
    loop.exec();

    QCOMPARE(int(reply->error()), error);
}

void tst_LauncherResponses::aRefusalIsTold_data()
{
    QTest::addColumn<QByteArray>("status");

    const char *const refusals[] = { "401 Unauthorized", "403 Forbidden", "404 Not Found",
                                     "500 Internal Server Error" };
    for (const char *refusal : refusals)
        QTest::newRow(refusal) << QByteArray(refusal);
}

// The page that a server sends along is shown, as browsers do.
void tst_LauncherResponses::aRefusalIsTold()
{
    QFETCH(QByteArray, status);
    HttpServer server;
    server.serveBytes("/",
                      "HTTP/1.1 " + status
                          + "\r\nContent-Type: text/html\r\nWWW-Authenticate: Basic realm=\"a\"\r\n"
                            "Content-Length: 37\r\n\r\n<script>zarexExt.say('sorry')</script>");
    server.serve("/first", pageThatGoesTo(server.address()));
    Stage stage;
    stage.configure(tv(server.address()) + ", "
                    + Stage::application("later", server.address("/first")));

    const QString refused = text(" the server refuses the page ") + server.address() + text(": ")
        + text(status.constData());
    QProcess process;
    stage.start(&process, "tv later");

    process.setReadChannel(QProcess::StandardError);
    QVERIFY(Stage::awaitOutput(&process, (text("tv:") + refused).toLatin1().constData()));
    const Run run = stopAfter(&process, text("nuv-launcher: later:") + refused + text("\n"));

    QStringList lines = run.err.split(QLatin1Char('\n'));
    lines.sort();
    QCOMPARE(lines.join(text("|")),
             text("|nuv-launcher: later:") + refused + text("|nuv-launcher: tv:") + refused);
}

void tst_LauncherResponses::aRefusalAfterADetourIsTold()
{
    HttpServer server;
    server.serveBytes("/", "HTTP/1.1 302 Found\r\nLocation: /gone\r\nContent-Length: 0\r\n\r\n");
    server.serveBytes("/gone",
                      "HTTP/1.1 410 Gone\r\nContent-Type: text/html\r\n"
                      "Content-Length: 4\r\n\r\ngone");
    Stage stage;
    stage.configure(tv(server.address()));

    QCOMPARE(stage.launch("--once tv").err,
             text("nuv-launcher: tv: the server refuses the page ") + server.address("/gone")
                 + text(": 410 Gone\n"));
}

void tst_LauncherResponses::aHostThatWantsToKnowItsUserIsToldOnce()
{
    HttpServer server;
    server.serve("/", "<script src='a.js'></script><script src='b.js'></script>");
    const QByteArray refusal =
        "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"a\"\r\n"
        "Content-Length: 0\r\n\r\n";
    server.serveBytes("/a.js", refusal);
    server.serveBytes("/b.js", refusal);
    Stage stage;
    stage.configure(tv(server.address()));

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.err.count(text("401 Unauthorized")), 1);
    QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.status, 0);
}

// Each is one more to the proxy that stands for all of them.
void tst_LauncherResponses::aHundredHostsThatWantToKnowTheirUserAreTold()
{
    HttpServer proxy;
    QByteArray page;
    for (int i = 0; i < 110; ++i) {
        const QByteArray script = "http://host" + QByteArray::number(i) + ".invalid/a.js";
        page += "<script src='" + script + "'></script>";
        proxy.serveBytes(script,
                         "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"a\"\r\n"
                         "Content-Length: 0\r\nConnection: close\r\n\r\n");
    }
    proxy.serve("http://tv.invalid/", page + "<script>zarexExt.say('end')</script>");
    Stage stage;
    const QByteArray address = proxy.address("").mid(7).toLatin1();
    stage.configure(tv(text("http://tv.invalid/"), ", \"HttpProxy\": \"" + address + "\""));

    const Run run = stage.launch("--once tv");

    QCOMPARE(said(run), text("end"));
    QCOMPARE(run.err.count(text(".invalid/a.js: 401 Unauthorized\n")), 100);
    QCOMPARE(run.err.count(QLatin1Char('\n')), 100);
}

void tst_LauncherResponses::aProxyThatWantsToKnowItsUserIsTold()
{
    HttpServer proxy;
    proxy.demandProxyAuthorization("Basic " + QByteArray("me:secret").toBase64());
    Stage stage;
    const QByteArray address = proxy.address("").mid(7).toLatin1();
    stage.configure(tv(text("http://tv.invalid/"), ", \"HttpProxy\": \"" + address + "\""));

    const Run run = stage.launch("--once tv");

    QVERIFY2(run.err.contains(text("roxy")), qPrintable(run.err));
    QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
}

// What it says is not the answer of a server.
void tst_LauncherResponses::aProxyThatRefusesAPartOfAPageIsTold()
{
    HttpServer proxy;
    proxy.demandProxyAuthorization("Basic " + QByteArray("me:secret").toBase64());
    Stage stage;
    const QByteArray address = proxy.address("").mid(7).toLatin1();
    stage.write("page.html", "<script src='https://tv.invalid/a.js'></script>");
    stage.configure(tv(text("page.html"), ", \"HttpProxy\": \"" + address + "\""));

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.err,
             text("nuv-launcher: tv: https://tv.invalid/a.js: Proxy requires authentication\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherResponses::aLaterPageThatDoesNotLoadIsTold()
{
    HttpServer server;
    server.serve("/", pageThatGoesTo(server.address("/next")));
    server.serveBytes("/next", QByteArray());
    Stage stage;
    stage.configure(tv(server.address()));

    const QString complaint = text("nuv-launcher: tv: the page ") + server.address("/next")
        + text(" does not load: Connection closed\n");
    QProcess process;
    stage.start(&process, "tv");

    QCOMPARE(stopAfter(&process, complaint).err, complaint);
}

void tst_LauncherResponses::aFailedRequestIsNotLoaded()
{
    HttpServer server;
    server.serve("/", "<script src='gone.js'></script><script src='closed.js'></script>");
    server.serveBytes("/closed.js", QByteArray());
    Stage stage;
    stage.configure(tv(server.address(), ", \"PrintLoadedUrls\": true"));

    const Run run = stage.launch("--once tv");

    QCOMPARE(linesAfter("tv  loaded: ", run.out).join(text(" ")), server.address());
    QStringList failures = linesAfter("tv  not loaded: ", run.out);
    failures.removeDuplicates(); // the engine tries again
    failures.sort();
    QCOMPARE(failures.join(text("|")),
             server.address("/closed.js") + text(": Connection closed|")
                 + server.address("/gone.js") + text(": ") + ToolkitDifferences::failedTransfer()
                 + server.address("/gone.js") + text(" - server replied: Not Found"));
}

NUV_TEST_MAIN(tst_LauncherResponses)

#include "tst_launcherresponses.moc"
