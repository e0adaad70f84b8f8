// SPDX-License-Identifier: MIT
#include "examples/launcher/network/clientcertificate.h"
#include "examples/launcher/network/configuredaccess.h"
#include "examples/launcher/network/responselimit.h"
#include "examples/launcher/program/configurationfile.h"
#include "examples/launcher/program/wholefile.h"
#include "examples/launcher/values/valuekind.h"
#include "tests/faults/childprocess.h"
#include "tests/faults/systemcalls.h"
#include "tests/launcher/authority.h"
#include "tests/launcher/stage.h"
#include "tests/support/filecontents.h"
#include "tests/support/messagesink.h"
#include "tests/support/restrictions.h"
#include "tests/support/testmain.h"

#include <QNetworkReply>
#include <QUrl>

#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// What the parts of the launcher promise one another, at the edges: where a value is just taken, what is
/// left after something that failed, and what a fault of the system costs.
class tst_LauncherPromises : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueIsTakenUpToItsBounds_data();
    void aValueIsTakenUpToItsBounds();
    void aSecretIsShownAsAMask();
    void aCertificateThatCannotBeUsedReplacesAnother();
    void anExplanationIsForOneAnswer();
    void anAnswerIsCutOffUntilItHasComeWhole_data();
    void anAnswerIsCutOffUntilItHasComeWhole();
    void whatIsHiddenIsNotAsked();
    void aFaultOfTheSystemLeavesAWholeFile();
    void aFileIsReplacedInADirectoryThatCannotBeRead();
    void withoutADirectoryThereIsNoFile();
    void onlyTheLibrarySaysThatAFileIsMalformed_data();
    void onlyTheLibrarySaysThatAFileIsMalformed();
};

namespace {

/// An answer that failed.
class FailedReply : public QNetworkReply
{
public:
    explicit FailedReply(const QUrl &url)
    {
        setUrl(url);
        setError(ConnectionRefusedError, text("Connection refused"));
    }

    void abort() override {}

protected:
    qint64 readData(char *, qint64) override { return -1; }
};

/// An answer without an error, of which so many of ten bytes arrived.
class ArrivedReply : public QNetworkReply
{
public:
    ArrivedReply(const QUrl &url, QNetworkAccessManager::Operation operation, int size)
    {
        setUrl(url);
        setOperation(operation);
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, 200);
        setHeader(QNetworkRequest::ContentLengthHeader, 10);
        new ResponseLimit(this);
        emit downloadProgress(size, 10);
    }

    void abort() override {}

protected:
    qint64 readData(char *, qint64) override { return -1; }
};

void call(QObject *object, const char *slot, QNetworkReply *reply)
{
    if (!QMetaObject::invokeMethod(object, slot, Q_ARG(QNetworkReply *, reply)))
        qFatal("there is no %s()", slot);
}

void sendMessages()
{
    qWarning("of somebody else");
    qWarning("\"Expected more\" ");
    qDebug("\"Expected ':' at line 1 pos 1\" ");
}

void printMessage(QtMsgType type, const QByteArray &text)
{
    std::fprintf(stderr, "%d: %s\n", int(type), text.constData());
}

} // namespace

void tst_LauncherPromises::aValueIsTakenUpToItsBounds_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("expected");

    const struct {
        const char *kind;
        double least;
        double most;
        double step;
    } kinds[] = {
        { "factor", 0.1, 10, 0.0001 },
        { "fraction", 0, 1, 0.0001 },
        { "port", 0, 65535, 1 },
        { "bytes", 0, 9007199254740991.0, 1 },
    };
    for (const auto &kind : kinds) {
        const QByteArray name = kind.kind;
        const auto row = [&](const char *what, const QVariant &value, bool expected) {
            QTest::newRow((name + ": " + what).constData()) << text(kind.kind) << value << expected;
        };
        row("the least", kind.least, true);
        row("the most", kind.most, true);
        row("less", kind.least - kind.step, false);
        row("more", kind.most + kind.step, false);
        row("no number", std::numeric_limits<double>::quiet_NaN(), false);
        row("without end", std::numeric_limits<double>::infinity(), false);
        row("text", text("1"), false);
        row("nothing", QVariant(), false);
        row("an integer", 1, true);
    }
    QTest::newRow("port: a fraction") << text("port") << QVariant(1.5) << false;
    QTest::newRow("bytes: more than 32 bits")
        << text("bytes") << QVariant(Q_INT64_C(5000000000)) << true;
    QTest::newRow("bytes: a fraction") << text("bytes") << QVariant(0.5) << false;
    QTest::newRow("port: 2^16 and one that is open")
        << text("port") << QVariant(65536 + 80) << false;
}

void tst_LauncherPromises::aValueIsTakenUpToItsBounds()
{
    QFETCH(QString, kind);
    QFETCH(QVariant, value);
    QFETCH(bool, expected);
    const struct {
        const char *name;
        const ValueKind &kind;
    } kinds[] = { { "factor", ValueKinds::factor },
                  { "fraction", ValueKinds::fraction },
                  { "port", ValueKinds::port },
                  { "bytes", ValueKinds::bytes } };
    for (const auto &each : kinds) {
        if (kind == text(each.name))
            QCOMPARE(each.kind.accepts(value), expected);
    }
}

void tst_LauncherPromises::aSecretIsShownAsAMask()
{
    QCOMPARE(ValueKinds::secret.shown(text("hush")), text("********"));
}

void tst_LauncherPromises::aCertificateThatCannotBeUsedReplacesAnother()
{
    Authority authority;
    authority.issue("device");
    const QString good = authority.path("device.pem");
    const QString key = authority.path("device.key");
    const QString none = authority.path("none.pem");
    ClientCertificate certificate;

    QCOMPARE(certificate.load(good, key, QString()), QString());
    QVERIFY(!certificate.isEmpty());
    QVERIFY(certificate.load(none, key, QString()).startsWith(text("its certificate ")));
    QVERIFY(certificate.isEmpty());

    QCOMPARE(certificate.load(good, key, QString()), QString());
    QVERIFY(certificate.load(good, none, QString()).startsWith(text("its private key ")));
    QVERIFY(certificate.isEmpty());
}

// The next answer may be at the same place in memory.
void tst_LauncherPromises::anExplanationIsForOneAnswer()
{
    ConfiguredAccess access(nullptr);
    const QUrl url(text("http://tv.example/"));
    FailedReply reply(url);
    const QString words = text("Connection refused");

    call(&access, "noteExcess", &reply);
    call(&access, "watchEnd", &reply);
    const QString explained = access.reason(url, words);
    QVERIFY(explained != words);
    QCOMPARE(access.reason(QUrl(text("http://menu.example/")), words), words);

    call(&access, "watchEnd", &reply);
    QCOMPARE(access.reason(url, words), words);
}

void tst_LauncherPromises::anAnswerIsCutOffUntilItHasComeWhole_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<bool>("isCutOff");

    QTest::newRow("to the question for a page") << int(QNetworkAccessManager::GetOperation) << true;
    QTest::newRow("to one that is answered without a body")
        << int(QNetworkAccessManager::HeadOperation) << false;
}

// The toolkit can take one that is cut off for a whole one.
void tst_LauncherPromises::anAnswerIsCutOffUntilItHasComeWhole()
{
    QFETCH(int, operation);
    QFETCH(bool, isCutOff);
    const QNetworkAccessManager::Operation question = QNetworkAccessManager::Operation(operation);
    const QUrl url(text("http://tv.example/"));
    const QUrl other(text("http://menu.example/"));
    ConfiguredAccess access(nullptr);
    ArrivedReply half(url, question, 5);
    ArrivedReply whole(url, question, 10);
    ArrivedReply another(other, question, 10);

    call(&access, "watchEnd", &half);
    call(&access, "watchEnd", &another);
    QCOMPARE(access.isCutOff(url), isCutOff);
    QVERIFY(!access.isCutOff(other));
    QVERIFY(!access.isCutOff(QUrl()));

    call(&access, "watchEnd", &whole);
    QVERIFY(!access.isCutOff(url));
}

void tst_LauncherPromises::whatIsHiddenIsNotAsked()
{
    Stage stage;
    stage.write("closing.html",
                "<script>onload = function() { setTimeout(function() { close() }, 0) }</script>");
    stage.write("page.html", "<p>");
    stage.configure(Stage::application("kept", text("closing.html"), ", \"CacheWebView\": true")
                    + ", " + Stage::application("tv", text("page.html")));

    const Run run = stage.launch("--screenshot out.png --wait 400 --eval 1 kept tv");

    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("1")));
    QCOMPARE(linesAfter("kept  answers: ", run.out), QStringList());
    QVERIFY(QFile::exists(stage.path("out-tv.png")));
    QVERIFY(!QFile::exists(stage.path("out-kept.png")));
    QCOMPARE(run.status, 0);
}

// The file of the cookies is replaced by it.
void tst_LauncherPromises::aFaultOfTheSystemLeavesAWholeFile()
{
    const TemporaryDir dir;
    const QByteArray folder = QFile::encodeName(QDir(dir.path()).canonicalPath());
    const QString file = dir.filePath(text("cookies"));
    const QByteArray one(5000, '1');
    const QByteArray other(7000, '2');
    const SystemCalls::Fault faults[] = { SystemCalls::Kill, SystemCalls::KillInside,
                                          SystemCalls::Fail, SystemCalls::Interrupt,
                                          SystemCalls::Shorten };
    for (const SystemCalls::Fault fault : faults) {
        const bool isKilled = fault == SystemCalls::Kill || fault == SystemCalls::KillInside;
        int status = -SIGKILL;
        int calls = 0;
        for (int n = 1; status != 99; ++n, ++calls) {
            dir.write(text("cookies"), one);
            const auto write = [&] {
                SystemCalls::plan(fault, n, folder.constData());
                const bool isWritten = WholeFile::replace(file, other).isEmpty();
                return SystemCalls::count() < n ? 99 : isWritten ? 0 : 1;
            };
            status = isKilled ? ChildProcess(write).wait() : write();
            SystemCalls::plan(SystemCalls::None, 1, "");
            const QByteArray found = fileContents(file);
            const QByteArray place = QByteArray::number(int(fault)) + ": " + QByteArray::number(n);
            QVERIFY2(found == one || found == other, place.constData());
            QVERIFY2(isKilled ? status == -SIGKILL || status == 99 : status >= 0,
                     place.constData());
            QVERIFY2(isKilled || found == (status == 1 ? one : other), place.constData());
            QVERIFY2(status == 99 || (status == 1) == (fault == SystemCalls::Fail),
                     place.constData());
        }
        QVERIFY(calls >= 3); // write(), fsync(), rename()
    }
}

// Its new name cannot be synced then, and all else is as usual.
void tst_LauncherPromises::aFileIsReplacedInADirectoryThatCannotBeRead()
{
    const TemporaryDir dir;
    const QByteArray folder = QFile::encodeName(dir.path());
    const QString file = dir.filePath(text("cookies"));
    QCOMPARE(::chmod(folder.constData(), 0333), 0);
    {
        const AsNobody nobody;
        QVERIFY(::open(folder.constData(), O_RDONLY | O_DIRECTORY) < 0);
        QCOMPARE(WholeFile::replace(file, "one"), QString());
        QCOMPARE(WholeFile::replace(file, "other"), QString());
    }
    ::chmod(folder.constData(), 0700);

    QCOMPARE(fileContents(file), QByteArray("other"));
}

void tst_LauncherPromises::withoutADirectoryThereIsNoFile()
{
    const TemporaryDir dir;

    QCOMPARE(WholeFile::replace(dir.filePath(text("none/cookies")), "one"),
             text("No such file or directory"));
    QVERIFY(!QFile::exists(dir.filePath(text("none"))));
}

void tst_LauncherPromises::onlyTheLibrarySaysThatAFileIsMalformed_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("hasHandler");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray handled = "1: of somebody else\n1: \"Expected more\" \n"
                               "0: \"Expected ':' at line 1 pos 1\" \n1: afterwards\n";
    const QByteArray printed = "of somebody else\n\"Expected more\" \n"
                               "\"Expected ':' at line 1 pos 1\" \nafterwards\n";
    QTest::newRow("no mistake") << QByteArray("{}") << true << handled + "[]";
    QTest::newRow("no mistake, no handler") << QByteArray("{}") << false << printed + "[]";
    QTest::newRow("one thing is expected")
        << QByteArray("{\"a\" 1}") << true << handled + "[Expected ':' at line 1 pos 6]";
    QTest::newRow("two things are expected")
        << QByteArray("{\n1}") << true << handled + "[Expected '}', ',' at line 2 pos 3]";
    QTest::newRow("more things are expected")
        << QByteArray("{\"a\":}") << false << printed + "[at line 1 pos 6]";
}

void tst_LauncherPromises::onlyTheLibrarySaysThatAFileIsMalformed()
{
    QFETCH(QByteArray, document);
    QFETCH(bool, hasHandler);
    const TemporaryDir dir;
    const QByteArray file = QFile::encodeName(dir.write(text("AppsConfig.json"), document));
    const QByteArray output = QFile::encodeName(dir.filePath(text("output")));

    ChildProcess reader([&] {
        ::dup2(::open(output.constData(), O_WRONLY | O_CREAT | O_APPEND, 0600), STDERR_FILENO);
        installMessageSink(hasHandler ? printMessage : nullptr);
        qputenv("NUV_APPS_CONFIG_FILE", file);
        SystemCalls::beforeFault = sendMessages;
        SystemCalls::plan(SystemCalls::None, 1, file.constData());
        const QByteArray mistake = ConfigurationFile::read().toUtf8();
        qWarning("afterwards");
        std::fprintf(stderr, "[%s]", mistake.constData());
        return 0;
    });

    QCOMPARE(reader.wait(), 0);
    QTEST(fileContents(dir.filePath(text("output"))), "expected");
}

NUV_TEST_MAIN(tst_LauncherPromises)

#include "tst_launcherpromises.moc"
