// SPDX-License-Identifier: MIT
#include "examples/launcher/program/terminationsignals.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QImage>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

/// A process whose standard streams are made by a function, in the child before the program is run.
class ProcessWithStreams : public QProcess
{
public:
    explicit ProcessWithStreams(void (*makeStreams)()) : m_makeStreams(makeStreams) {}

protected:
    void setupChildProcess() { m_makeStreams(); }

private:
    void (*m_makeStreams)();
};

static void closeStreams()
{
    for (int number = 0; number <= STDERR_FILENO; ++number)
        ::close(number);
}

static void writeToNobody()
{
    int ends[2];
    if (::pipe(ends) != 0)
        ::_exit(1);
    ::close(ends[0]);
    ::dup2(ends[1], STDOUT_FILENO);
    ::dup2(ends[1], STDERR_FILENO);
}

class tst_LauncherHardships : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aServerThatMisbehavesStopsNobodyElse_data();
    void aServerThatMisbehavesStopsNobodyElse();
    void whoWaitsForeverEndsWhenToldTo();
    void theProgramEndsInOrderAtASignal_data();
    void theProgramEndsInOrderAtASignal();
    void aSecondSignalEndsAScriptThatNeverDoes();
    void withoutAPipeSignalsEndTheProgramAtOnce();
    void noFileTakesThePlaceOfAStreamThatIsClosed();
    void messagesThatNobodyReadsStopNothing();
};

void tst_LauncherHardships::aServerThatMisbehavesStopsNobodyElse_data()
{
    QTest::addColumn<QByteArray>("answer"); // to any request
    QTest::addColumn<QString>("problem");

    QTest::newRow("closes at once") << QByteArray() << text("Connection closed");
    QTest::newRow("closes in the middle of the head")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-") << text("Connection closed");
    QTest::newRow("closes in the middle of the page") << QByteArray(
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 1000\r\n\r\n<p>")
                                                      << text("the server broke off its answer");
    QTest::newRow("refuses without a word")
        << QByteArray("HTTP/1.1 500 Sorry\r\nContent-Length: 0\r\n\r\n") << text("Sorry");
    QTest::newRow("speaks another language")
        << QByteArray("220 mail.example\r\n") << text("Connection closed");
    QTest::newRow("redirects to itself")
        << QByteArray("HTTP/1.1 302 Found\r\nLocation: /bad\r\nContent-Length: 0\r\n\r\n")
        << text("Redirection limit reached");
}

void tst_LauncherHardships::aServerThatMisbehavesStopsNobodyElse()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, problem);
    HttpServer server;
    server.serve("/", "<body style='background: #0f0'>");
    server.serveBytes("/bad", answer);
    Stage stage;
    stage.configure(Stage::application("bad", server.address("/bad")) + ", "
                    + Stage::application("tv", server.address()));

    const Run run = stage.launch("--screenshot out.png --size 40x40 bad tv");

    QCOMPARE(run.err,
             text("nuv-launcher: bad: the page ") + server.address("/bad")
                 + text(" does not load: ") + problem + text("\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(QImage(stage.path("out-tv.png")).pixel(20, 20), 0xff00ff00u);
}

void tst_LauncherHardships::whoWaitsForeverEndsWhenToldTo()
{
    HttpServer server;
    server.ignore("/silent");
    Stage stage;
    stage.write("page.html", "<script>zarexExt.say('here')</script>");
    stage.configure(Stage::application("silent", server.address("/silent")) + ", "
                    + Stage::application("tv", text("page.html")));
    QProcess launcher;
    stage.start(&launcher, "silent tv");

    QVERIFY(Stage::awaitOutput(&launcher, "here"));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

void tst_LauncherHardships::theProgramEndsInOrderAtASignal_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_LauncherHardships::theProgramEndsInOrderAtASignal()
{
    QFETCH(int, number);
    Stage stage;
    stage.write("page.html", "<script>zarexExt.say('here')</script>");
    stage.configure(Stage::application("tv", text("page.html")));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "here"));
    kill(pid_t(ToolkitDifferences::processId(launcher)), number);

    QCOMPARE(Stage::finish(&launcher).status, 0);
}

void tst_LauncherHardships::aSecondSignalEndsAScriptThatNeverDoes()
{
    Stage stage;
    stage.write("page.html", "<script>zarexExt.say('busy'); for (;;);</script>");
    stage.configure(Stage::application("tv", text("page.html")));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "busy"));
    for (int i = 0; i < 200 && !launcher.waitForFinished(100); ++i)
        launcher.terminate();

    QCOMPARE(launcher.state(), QProcess::NotRunning);
    QCOMPARE(launcher.exitStatus(), QProcess::CrashExit);
}

// As without the object that hears them.
void tst_LauncherHardships::withoutAPipeSignalsEndTheProgramAtOnce()
{
#ifdef __SANITIZE_ADDRESS__
    return; // a sanitizer opens files itself, to see what an address leads to
#endif
    const int next = ::dup(STDERR_FILENO);
    ::close(next);
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none = { rlim_t(next), before.rlim_max };
    struct sigaction earlier;
    QCOMPARE(::sigaction(SIGTERM, nullptr, &earlier), 0);
    QTest::ignoreMessage(QtWarningMsg, "no pipe for signals: Too many open files");
    ::setrlimit(RLIMIT_NOFILE, &none);
    {
        const TerminationSignals endings;
        ::setrlimit(RLIMIT_NOFILE, &before);
        struct sigaction action;
        QCOMPARE(::sigaction(SIGTERM, nullptr, &action), 0);
        QVERIFY(action.sa_handler == earlier.sa_handler);
    }
}

// Only root sees what a process that leaves no core file has open.
void tst_LauncherHardships::noFileTakesThePlaceOfAStreamThatIsClosed()
{
    HttpServer server;
    server.ignore("/");
    Stage stage;
    stage.configure(Stage::application("tv", server.address()));
    ProcessWithStreams launcher(closeStreams);
    stage.start(&launcher, "tv");

    QVERIFY(server.awaitRequests("/"));
    const QString folder = text("/proc/%1/fd/").arg(ToolkitDifferences::processId(launcher));
    for (int number = 0; number <= STDERR_FILENO && ::geteuid() == 0; ++number)
        QCOMPARE(QFile::symLinkTarget(folder + QString::number(number)), text("/dev/null"));
    launcher.terminate();

    QCOMPARE(Stage::finish(&launcher).status, 0);
}

void tst_LauncherHardships::messagesThatNobodyReadsStopNothing()
{
    Stage stage;
    stage.write("page.html",
                "<body style='background: #0f0'><script>zarexExt.say('here')</script>");
    stage.configure(Stage::application("tv", text("page.html"), ", \"Scale\": \"wide\""));
    ProcessWithStreams launcher(writeToNobody);
    stage.start(&launcher, "--screenshot out.png --size 40x40 tv");

    QCOMPARE(Stage::finish(&launcher).status, 0);
    QCOMPARE(QImage(stage.path("out.png")).pixel(20, 20), 0xff00ff00u);
}

NUV_TEST_MAIN(tst_LauncherHardships)

#include "tst_launcherhardships.moc"
