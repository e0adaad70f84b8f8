// SPDX-License-Identifier: MIT
#include "tests/support/filecontents.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/analysis/libraryview.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/report/progress.h"
#include "tools/nuv-apps-config/rules/certificates.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <grp.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

/// What whoever calls the program relies on without looking: what an error of the system does, what a
/// terminal gets and a log does not, that names survive in every form, and that diff overlooks nothing.
class tst_Promises : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aReadErrorIsTrouble();
    void aPipeIsReadToItsEnd();
    void aPartOfTheOutputIsTrouble();
    void signalsTakeNothingFromTheOutput();
    void errorsWithoutAReaderEndNothing();
    void coloursAreForTerminalsThatWantThem_data();
    void coloursAreForTerminalsThatWantThem();
    void progressIsForTerminals();
    void theEnvironmentStays_data();
    void theEnvironmentStays();
    void nothingIsWrittenForLoading();
    void aCopyThatHasNoRoomIsTrouble();
    void whatIsIgnoredIsKnown();
    void whatIsIgnoredInVainIsFound();
    void theChosenFileIsToldUnlessThatIsIgnored();
    void aFormattedFileIsNotWritten();
    void namesSurviveInMessages();
    void namesSurviveInCommandsOfGithub();
    void namesSurviveInSarif_data();
    void namesSurviveInSarif();
    void diffOverlooksNothing_data();
    void diffOverlooksNothing();
    void aCertificateOfTheFutureIsFound();
    void nobodyLooksIntoTheProcess();

private:
    struct Result {
        int status; ///< -1 when a signal ended it
        QByteArray output;
        QByteArray errors;
    };

    Result run(const QStringList &call,
               const std::function<void()> &prepare = std::function<void()>()) const;
    Result run(const char *call,
               const std::function<void()> &prepare = std::function<void()>()) const
    {
        return run(QString(QLatin1String(call)).split(QLatin1Char(' ')), prepare);
    }
    QByteArray contents(const char *name) const;
    void write(const char *name, const QByteArray &bytes) const
    {
        m_folder.write(QLatin1String(name), bytes);
    }

    TemporaryDir m_folder;
};

namespace {

const char clean[] = "{\n    \"Global\": {\n        \"Version\": 1\n    }\n}\n";

QByteArray document(const QByteArray &global, const QByteArray &applications)
{
    return "{ \"Global\": { \"Version\": 1" + global + " }, \"Applications\": [ " + applications
        + " ] }";
}

/// The slave of a terminal of our own, and its other end.
class Terminal
{
public:
    Terminal() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
            qFatal("no terminal");
        m_slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
    }
    ~Terminal()
    {
        ::close(m_slave);
        ::close(m_master);
    }

    int slave() const { return m_slave; }
    QByteArray shown() const { return ChildCall::readAll(m_master); }

private:
    Q_DISABLE_COPY(Terminal)

    int m_master;
    int m_slave;
};

void openAs(const char *path, int descriptor)
{
    ::dup2(::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600), descriptor);
}

void doNothing(int) {}

void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

QStringList words(const char *call)
{
    return QString(QLatin1String(call)).split(QLatin1Char(' '));
}

} // namespace

void tst_Promises::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
    qInstallMessageHandler(dropMessage); // as main() does
    for (const char *variable : { "NUV_APPS_CONFIG_FILE", "NO_COLOR", "TERM", "COLUMNS" })
        qunsetenv(variable);
    write("clean.json", clean);
    write("broken.json", "[1,]");
}

tst_Promises::Result tst_Promises::run(const QStringList &call,
                                       const std::function<void()> &prepare) const
{
    const ChildCall::Result result = ChildCall::run([&] {
        openAs("errors", STDERR_FILENO);
        if (prepare)
            prepare();
        Output output;
        const int status =
            Program::run(QStringList(QLatin1String("nuv-apps-config")) + call, output);
        std::fflush(stderr);
        return status;
    });
    return Result { result.isEnded() ? result.exitStatus() : -1, result.output,
                    contents("errors") };
}

QByteArray tst_Promises::contents(const char *name) const
{
    return fileContents(m_folder.filePath(QLatin1String(name)));
}

// The memory of a process is a file whose beginning cannot be read.
void tst_Promises::aReadErrorIsTrouble()
{
    for (const char *command : { "check", "fmt", "show", "list", "keys" }) {
        const Result result =
            run(QStringList(QLatin1String(command)) << QLatin1String("/proc/self/mem"));
        QCOMPARE(result.errors,
                 QByteArray("nuv-apps-config: /proc/self/mem: Input/output error\n"));
        QCOMPARE(result.status, 2);
    }
    write("cert.json",
          document(", \"Certificate\": { \"Path\": \"/proc/self/mem\" }", QByteArray()));
    const QByteArray output = run("check cert.json").output;
    QVERIFY2(output.contains("/proc/self/mem cannot be read: "), output.constData());
}

// What has come so far has been read when the rest comes.
void tst_Promises::aPipeIsReadToItsEnd()
{
    const QByteArray halves[] = { "{ \"Global\": { \"Version\": 1 },\n",
                                  "\"Applications\": [ { \"Tag\": \"tv\" } ] }\n" };
    const Result result = run("list --file -", [&] {
        int ends[2];
        if (::pipe(ends) != 0)
            ::_exit(99);
        if (::fork() == 0) {
            ChildCall::writeAll(ends[1], halves[0]);
            int waiting = 1;
            for (int i = 0; waiting > 0 && i < 60000 && ::ioctl(ends[0], FIONREAD, &waiting) == 0;
                 ++i)
                ::usleep(1000);
            ChildCall::writeAll(ends[1], halves[1]);
            ::_exit(0);
        }
        ::close(ends[1]);
        ::dup2(ends[0], STDIN_FILENO);
    });
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.output, QByteArray("tv\n"));
}

// A disk that fills up takes a part and refuses the rest.
void tst_Promises::aPartOfTheOutputIsTrouble()
{
    const Result result = run("template all", [] {
        openAs("output", STDOUT_FILENO);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = { 1000, 1000 };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    QCOMPARE(contents("output").size(), 1000);
    QCOMPARE(result.errors,
             QByteArray("nuv-apps-config: cannot write to the standard output: File too large\n"));
    QCOMPARE(result.status, 2);
}

// More than a pipe takes at once, so that writing waits, and signals that end the waiting.
void tst_Promises::signalsTakeNothingFromTheOutput()
{
    QByteArray elements;
    for (int i = 0; i < 20000; ++i)
        elements += "\"" + QByteArray::number(i) + "\", ";
    write("long.json", "[ " + elements + "1 ]");
    const Result undisturbed = run("fmt long.json");
    QVERIFY(undisturbed.output.size() > 200000);
    for (int i = 0; i < 5; ++i) {
        const Result result = run("fmt long.json", [] {
            struct sigaction action = {};
            action.sa_handler = doNothing;
            ::sigaction(SIGALRM, &action, nullptr);
            const itimerval often = { { 0, 200 }, { 0, 200 } };
            ::setitimer(ITIMER_REAL, &often, nullptr);
        });
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, undisturbed.output);
    }
}

void tst_Promises::errorsWithoutAReaderEndNothing()
{
    const Result result = run("check none.json", [] {
        int ends[2];
        if (::pipe(ends) != 0 || ::close(ends[0]) != 0)
            ::_exit(99);
        ::dup2(ends[1], STDERR_FILENO);
    });
    QCOMPARE(result.status, 2);
}

void tst_Promises::coloursAreForTerminalsThatWantThem_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("when");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, const char *variable, const char *value, const char *when,
                        bool expected) {
        QTest::newRow(name) << QByteArray(variable) << QByteArray(value)
                            << QString(QLatin1String(when)) << expected;
    };
    row("a terminal", "TERM", "xterm", "auto", true);
    row("an unnamed terminal", "NO_COLOR", "", "auto", true);
    row("a terminal without colours", "TERM", "dumb", "auto", false);
    row("a user without colours", "NO_COLOR", "1", "auto", false);
    row("a user who asks for them", "NO_COLOR", "1", "always", true);
    row("a call without colours", "TERM", "xterm", "never", false);
}

void tst_Promises::coloursAreForTerminalsThatWantThem()
{
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    QFETCH(QString, when);
    QFETCH(bool, expected);
    const Terminal terminal;
    const QStringList call = words("check broken.json --color") << when;
    const Result onTerminal = run(call, [&] {
        qputenv(variable.constData(), value);
        ::dup2(terminal.slave(), STDOUT_FILENO);
    });
    QCOMPARE(onTerminal.status, 1);
    const QByteArray shown = terminal.shown();
    QVERIFY2(shown.contains("a comma after the last entry"), shown.constData());
    QCOMPARE(shown.contains("\033[1;31merror"), expected);
    const Result inPipe = run(call, [&] { qputenv(variable.constData(), value); });
    QCOMPARE(inPipe.output.contains('\033'), when == QLatin1String("always"));
}

void tst_Promises::progressIsForTerminals()
{
    const Terminal terminal;
    const ChildCall::Result result = ChildCall::run([&] {
        ::dup2(terminal.slave(), STDERR_FILENO);
        QElapsedTimer time;
        time.start();
        Progress progress(QLatin1String("long.json"), 200);
        QByteArray shown;
        for (; shown.isEmpty() && time.elapsed() < 60000; ::usleep(1000)) {
            progress.reached(50);
            shown = terminal.shown();
        }
        const bool isEarly = time.elapsed() < 1000; // who waits less needs no word
        ChildCall::writeAll(STDOUT_FILENO, shown);
        openAs("log", STDERR_FILENO);
        progress.reached(100);
        ::dup2(terminal.slave(), STDERR_FILENO); // where the line is taken back
        return isEarly ? 1 : 0;
    });
    QCOMPARE(result.output, QByteArray("\rlong.json: 25 %"));
    QCOMPARE(contents("log"), QByteArray());
    QCOMPARE(result.exitStatus(), 0);
}

void tst_Promises::theEnvironmentStays_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("a file that is loaded") << QByteArray(clean) << true;
    QTest::newRow("a file with a syntax error") << QByteArray("[1,]") << true;
    QTest::newRow("a file that is not loaded")
        << document(QByteArray(), QByteArray()).replace("[  ]", "{ \"size\": 2147483647 }")
        << false;
}

void tst_Promises::theEnvironmentStays()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLoaded);
    const char variable[] = "NUV_APPS_CONFIG_FILE";
    QString error;
    qunsetenv(variable);
    QCOMPARE(bool(LibraryView::load(bytes, &error)), isLoaded);
    QVERIFY(!qEnvironmentVariableIsSet(variable));
    for (const char *value : { "/some/where.json", "" }) {
        qputenv(variable, value);
        QCOMPARE(bool(LibraryView::load(bytes, &error)), isLoaded);
        QVERIFY(qEnvironmentVariableIsSet(variable));
        QCOMPARE(qgetenv(variable), QByteArray(value));
    }
    qunsetenv(variable);
}

// What is in no file stays in none when the program is interrupted.
void tst_Promises::nothingIsWrittenForLoading()
{
    QCOMPARE(run("show clean.json", [] { qputenv("TMPDIR", "/nowhere"); }).status, 0);
}

// The copy in memory is a file for the system, too.
void tst_Promises::aCopyThatHasNoRoomIsTrouble()
{
    const QByteArray reason = "there is not enough memory for this file\n";
    const auto withoutRoom = [] {
        ::dup2(STDOUT_FILENO, STDERR_FILENO); // a pipe
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = { 10, 10 };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    };
    for (const char *call : { "show clean.json", "list clean.json", "keys clean.json" }) {
        const Result result = run(call, withoutRoom);
        QCOMPARE(result.output, "nuv-apps-config: clean.json: " + reason);
        QCOMPARE(result.status, 2);
    }
    const Result checked = run("check clean.json", withoutRoom);
    QVERIFY2(checked.output.endsWith("\nwhat the launcher will see was not tried: " + reason),
             checked.output.constData());
}

void tst_Promises::whatIsIgnoredIsKnown()
{
    const auto errors = [this](const char *rule) {
        return run(words("check clean.json --ignore") << QLatin1String(rule)).errors;
    };
    QCOMPARE(errors("nul-value"),
             QByteArray("nuv-apps-config: there is no rule \"nul-value\"; did you mean "
                        "\"null-value\"?\n"));
    QCOMPARE(errors("xyzzy"),
             QByteArray("nuv-apps-config: there is no rule \"xyzzy\"; explain lists them all\n"));
    QCOMPARE(errors("null-value,trailing-comma"),
             QByteArray("nuv-apps-config: trailing-comma cannot be ignored: the library reads "
                        "nothing of such a file\n"));
}

void tst_Promises::whatIsIgnoredInVainIsFound()
{
    const auto output = [this](const char *rules) {
        write("ignoring.json",
              document(QByteArray(),
                       "{ \"Tag\": \"tv\", \"Url\": \"about:blank\", \"_comment check\": \"ignore "
                           + QByteArray(rules) + "\" }"));
        return run("check ignoring.json").output;
    };
    const QByteArray alone = output("null-value");
    QVERIFY2(alone.contains("\"null-value\" finds nothing here that could be ignored "
                            "[unused-ignore]\n"),
             alone.constData());
    QVERIFY2(alone.contains("        hint: remove it\n"), alone.constData());
    const QByteArray both = output("null-value, no-effect");
    QCOMPARE(both.count("[unused-ignore]"), 2);
    QVERIFY2(!both.contains("hint: "), both.constData());
}

void tst_Promises::theChosenFileIsToldUnlessThatIsIgnored()
{
    write("AppsConfig.json",
          document(QByteArray(), "{ \"Tag\": \"tv\", \"Url\": \"about:blank\" }"));
    const auto elsewhere = [] { qputenv("NUV_APPS_CONFIG_FILE", "/nowhere.json"); };
    const Result told = run("check", elsewhere);
    QVERIFY2(told.output.contains(" [variable-names-nothing]\n"), told.output.constData());
    QCOMPARE(told.status, 1);
    const Result ignored = run("check --ignore variable-names-nothing", elsewhere);
    QVERIFY2(!ignored.output.contains("variable-names-nothing"), ignored.output.constData());
    QCOMPARE(ignored.status, 0);
    QVERIFY(QFile::remove(QLatin1String("AppsConfig.json")));
}

void tst_Promises::aFormattedFileIsNotWritten()
{
    struct stat before;
    QCOMPARE(::stat("clean.json", &before), 0);
    QCOMPARE(run("fmt --write clean.json").status, 0);
    struct stat after;
    QCOMPARE(::stat("clean.json", &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    QCOMPARE(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    QCOMPARE(contents("clean.json"), QByteArray(clean));
}

void tst_Promises::namesSurviveInMessages()
{
    write("%2%3.json",
          document(QByteArray(),
                   "{ \"Tag\": \"%2 %3\" }, { \"Tag\": \"%2 %3\", \"Scale\": 1 }, "
                   "{ \"Tag\": \"a\\u0000\\nb\", \"%1%2\": \"%3\" }"));
    const QByteArray output = run("check %2%3.json").output;
    for (const char *message :
         { "%2%3.json:1:78: error: another application has the tag \"%2 %3\"; this one is skipped "
           "whole, with its 1 other key [duplicate-tag]\n",
           "Applications does not know the key \"%1%2\" [unknown-key]\n" })
        QVERIFY2(output.contains(message), output.constData());
    QCOMPARE(run("list %2%3.json").output, QByteArray("%2 %3\na\\u0000\\nb\n"));
    QVERIFY(
        run("show %2%3.json").output.startsWith("File: %2%3.json (named on the command line)\n"));
    QCOMPARE(run("get %2%3.json %1 %2").errors,
             QByteArray("nuv-apps-config: %2%3.json has no application \"%1\"; it has %2 %3, "
                        "a\\u0000\\nb\n"));
}

void tst_Promises::namesSurviveInCommandsOfGithub()
{
    const char name[] = "a,b:100%\r\n%3.json";
    write(name,
          document(QByteArray(), "{ \"Tag\": \"tv\", \"Url\": \"about:blank\", \"5%2\": 1 }"));
    const QByteArray output = run(words("check --format github") << QLatin1String(name)).output;
    QVERIFY2(output.startsWith("::warning file=a%2Cb%3A100%25%0D%0A%253.json,line=1,col="),
             output.constData());
    QVERIFY2(output.contains(",title=unknown-key::Applications does not know the key \"5%252\""),
             output.constData());
    QCOMPARE(output.count('\n'), 2); // one for the finding, one for the effect
    QVERIFY2(output.contains("\n::notice file=a%2Cb%3A100%25%0D%0A%253.json,title=effect::"),
             output.constData());
}

void tst_Promises::namesSurviveInSarif_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("uri");
    const QString odd = QString::fromUtf8("50% \xc3\xbc#?[1].json");
    const QString encoded = QLatin1String("50%25%20%C3%BC%23%3F%5B1%5D.json");
    const QString folder = m_folder.path();
    QTest::newRow("a relative name") << odd << encoded;
    QTest::newRow("a folder stays one")
        << QLatin1String("./") + odd << QLatin1String("./") + encoded;
    QTest::newRow("a name that looks like a scheme")
        << QString(QLatin1String("c:d.json")) << QString(QLatin1String("c%3Ad.json"));
    QTest::newRow("an absolute name")
        << folder + QLatin1String("/50% \"x.json")
        << QLatin1String("file://") + folder + QLatin1String("/50%25%20%22x.json");
}

void tst_Promises::namesSurviveInSarif()
{
    QFETCH(QString, name);
    QFETCH(QString, uri);
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[1,]") == 4);
    file.close();
    const QByteArray output = run(words("check --format sarif") << name).output;
    const QJsonValue found =
        QJsonDocument::fromJson(output)[QLatin1String("runs")][0][QLatin1String("results")][0];
    QCOMPARE(found[QLatin1String("ruleId")].toString(), QString(QLatin1String("trailing-comma")));
    const QJsonValue place =
        found[QLatin1String("locations")][0][QLatin1String("physicalLocation")];
    QCOMPARE(place[QLatin1String("artifactLocation")][QLatin1String("uri")].toString(), uri);
}

void tst_Promises::diffOverlooksNothing_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after,
                        const char *expected) {
        QTest::newRow(name) << before << after << QByteArray(expected);
    };
    const QByteArray none;
    const QByteArray tv = "{ \"Tag\": \"tv\" }";
    const QByteArray full = "{ \"Tag\": \"menu\", \"Scale\": 1.5, \"Frameless\": true }";
    const auto certificate = [](const QByteArray &path) {
        return ", \"Certificate\": { \"Path\": \"" + path
            + "\", \"PrivateKey\": \"k\", \"PassPhrase\": \"geheim\" }";
    };
    row("the version", document(none, tv), document(none, tv).replace(": 1 }", ": 1.5 }"),
        "- Global: Version = 1\n+ Global: Version = 1.5\n");
    row("the port", document(", \"RemoteInspectorPort\": 1", tv),
        document(", \"RemoteInspectorPort\": 2", tv),
        "- Global: RemoteInspectorPort = 1\n+ Global: RemoteInspectorPort = 2\n");
    row("a port that comes", document(none, tv), document(", \"RemoteInspectorPort\": 2", tv),
        "+ Global: RemoteInspectorPort = 2\n");
    row("the global certificate", document(certificate("a"), tv), document(certificate("b"), tv),
        "- Global: CertPath = \"a\"\n+ Global: CertPath = \"b\"\n");
    row("a global certificate that goes", document(certificate("a"), tv), document(none, tv),
        "- Global: CertPath = \"a\"\n- Global: CertPrivateKey = \"k\"\n"
        "- Global: CertPassPhrase = \"********\"\n");
    row("an application that goes", document(none, tv + ", " + full), document(none, tv),
        "- menu: Tag = \"menu\"\n- menu: Scale = 1.5\n- menu: Frameless = true\n");
    row("an application that comes", document(none, tv), document(none, tv + ", " + full),
        "+ menu: Tag = \"menu\"\n+ menu: Scale = 1.5\n+ menu: Frameless = true\n");
    row("the type of a value", document(none, full),
        document(none, QByteArray(full).replace("true", "\"true\"")),
        "- menu: Frameless = true\n+ menu: Frameless = \"true\"\n");
    row("all of it in another order", document(none, tv + ", " + full),
        document(none, full + ", " + tv), "");
}

void tst_Promises::diffOverlooksNothing()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QByteArray, expected);
    write("before.json", before);
    write("after.json", after);
    const Result result = run("diff before.json after.json");
    QCOMPARE(result.output, expected);
    QCOMPARE(result.status, expected.isEmpty() ? 0 : 1);
}

// It is valid from 2090 on.
void tst_Promises::aCertificateOfTheFutureIsFound()
{
    if (!Certificates::areAvailable())
        QSKIP("OpenSSL's library is not installed");
    write("future.pem",
          "-----BEGIN CERTIFICATE-----\n"
          "MIIBDTCBtAIBATAKBggqhkjOPQQDAjARMQ8wDQYDVQQDDAZmdXR1cmUwIhgPMjA5\n"
          "MDAxMDEwMDAwMDBaGA8yMDkxMDEwMTAwMDAwMFowETEPMA0GA1UEAwwGZnV0dXJl\n"
          "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEYgFWiENYog3D+sH03YbURwqr9BBi\n"
          "nwXM+zYYs1uU3F3brOI2sAS5WQ0PA1urVg8stYdYwYj/ZoM+8uwscQUgqjAKBggq\n"
          "hkjOPQQDAgNIADBFAiAwoF9t7VhT2abGdahJrZQgwVoZMyVLxhR77W+gjnJFGQIh\n"
          "AMG37Pp/K5mwsPEC9if26EVrRp2TZ53ZRUBVz2cnBP8t\n"
          "-----END CERTIFICATE-----\n");
    write("future.json",
          document(", \"Certificate\": { \"Path\": \"future.pem\", \"PrivateKey\": \"none.key\" }",
                   "{ \"Tag\": \"tv\", \"Url\": \"about:blank\" }"));
    const QByteArray output = run("check future.json").output;
    QVERIFY2(output.contains("the certificate is not valid yet [certificate-expired]"),
             output.constData());
}

// What others may look into belongs to its user in the system's list of processes, what nobody may to root.
// A program that has taken more than a pipe holds has begun its work.
void tst_Promises::nobodyLooksIntoTheProcess()
{
    const uid_t user = ::geteuid() == 0 ? 65534 : ::geteuid();
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[0], STDIN_FILENO);
        ::close(ends[1]);
        if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setuid(user) != 0))
            ::_exit(99);
        ::execl(PROGRAM, PROGRAM, "check", "-", nullptr);
        ::_exit(99);
    }
    ::close(ends[0]);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    ChildCall::writeAll(ends[1], QByteArray(1 << 20, ' '));
    std::signal(SIGPIPE, before);
    struct stat found = {};
    const QByteArray place = "/proc/" + QByteArray::number(child) + "/status";
    const bool isFound = ::stat(place.constData(), &found) == 0;
    ::kill(child, SIGKILL);
    ::close(ends[1]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 99)
        QSKIP("nobody may not start the program");
    QVERIFY(isFound);
    QCOMPARE(int(found.st_uid), 0);
}

NUV_TEST_MAIN(tst_Promises)

#include "tst_promises.moc"
