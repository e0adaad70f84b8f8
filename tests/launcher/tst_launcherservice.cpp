// SPDX-License-Identifier: MIT
#include "examples/launcher/program/servicemanager.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QFile>

#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// What a service manager listens on: a path, or "@" and a name.
class NotifySocket
{
public:
    explicit NotifySocket(const QString &name)
        : m_descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        const QByteArray path = QFile::encodeName(name);
        sockaddr_un address;
        std::memset(&address, 0, sizeof address);
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
        if (path.startsWith('@'))
            address.sun_path[0] = '\0';
        const socklen_t length =
            socklen_t(offsetof(sockaddr_un, sun_path)) + socklen_t(path.size());
        if (bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), length) != 0)
            qFatal("no socket at %s", path.constData());
    }

    ~NotifySocket() { close(m_descriptor); }

    /// All messages since the last call.
    QStringList taken() const
    {
        QStringList messages;
        char buffer[256];
        ssize_t length = recv(m_descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        while (length >= 0) {
            messages << QString::fromLatin1(buffer, int(length));
            length = recv(m_descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        }
        return messages;
    }

private:
    Q_DISABLE_COPY(NotifySocket)

    int m_descriptor;
};

void end(QProcess *process)
{
    process->kill();
    process->waitForFinished();
}

/// Where a stage is not alone on the machine.
QString abstractName()
{
    return QString(text("@nuv-launcher-test-%1")).arg(getpid());
}

} // namespace

class tst_LauncherService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itTellsThatItIsReady_data();
    void itTellsThatItIsReady();
    void itIsNotReadyWhereNothingWasOpened();
    void itTellsThatItIsAliveTwiceInTheTimeThatItHas();
    void aBlockedUserInterfaceGivesNoSignOfLife();
    void whoAsksThisProcessIsTold();
    void nobodyHearsAboutLifeWhoDidNotAsk_data();
    void nobodyHearsAboutLifeWhoDidNotAsk();
    void aSocketThatCannotBeReachedChangesNothing_data();
    void aSocketThatCannotBeReachedChangesNothing();

    void theJournalIsToldHowBadALineIs();
    void nobodyElseIsToldHowBadALineIs_data();
    void nobodyElseIsToldHowBadALineIs();
};

void tst_LauncherService::itTellsThatItIsReady_data()
{
    QTest::addColumn<bool>("isAbstract");

    QTest::newRow("at a path") << false;
    QTest::newRow("at a name in no file system") << true;
}

void tst_LauncherService::itTellsThatItIsReady()
{
    QFETCH(bool, isAbstract);
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");
    const QString name = isAbstract ? abstractName() : stage.path("notify");
    const NotifySocket manager(name);
    stage.set("NOTIFY_SOCKET", name);

    QCOMPARE(stage.launch("--once tv").status, 0);

    QCOMPARE(manager.taken(), QStringList(text("READY=1")));
}

void tst_LauncherService::itIsNotReadyWhereNothingWasOpened()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    const NotifySocket manager(stage.path("notify"));
    stage.set("NOTIFY_SOCKET", stage.path("notify"));

    QCOMPARE(stage.launch("radio").status, 1);

    QCOMPARE(manager.taken(), QStringList());
}

void tst_LauncherService::itTellsThatItIsAliveTwiceInTheTimeThatItHas()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");
    const NotifySocket manager(stage.path("notify"));
    stage.set("NOTIFY_SOCKET", stage.path("notify"));
    stage.set("WATCHDOG_USEC", text("1000000"));

    // At 0 s, 0.5 s, 1 s, 1.5 s and 2 s; a busy machine may lose one. Once in the time would be three.
    QCOMPARE(stage.launch("--once --wait 2400 tv").status, 0);

    QStringList messages = manager.taken();
    QCOMPARE(messages.takeFirst(), text("READY=1"));
    QVERIFY2(messages.size() >= 4, qPrintable(messages.join(text(" "))));
    QCOMPARE(messages.count(text("WATCHDOG=1")), messages.size());
}

void tst_LauncherService::aBlockedUserInterfaceGivesNoSignOfLife()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html",
                "<script>onload = function() { setTimeout(function() {"
                "zarexExt.say('blocks'); var end = Date.now() + 1000; while (Date.now() < end);"
                "zarexExt.say('is free') }, 300) }</script>");
    const NotifySocket manager(stage.path("notify"));
    stage.set("NOTIFY_SOCKET", stage.path("notify"));
    stage.set("WATCHDOG_USEC", text("40000"));
    QProcess process;
    stage.start(&process, "tv");
    QVERIFY(Stage::awaitOutput(&process, "says: blocks"));
    QVERIFY(manager.taken().contains(text("WATCHDOG=1")));

    // What was taken before the next words were heard was sent before them.
    QStringList whileBlocked;
    bool isFree = false;
    while (!isFree && process.state() == QProcess::Running) {
        const QStringList taken = manager.taken();
        process.waitForReadyRead(10);
        isFree = process.peek(process.bytesAvailable()).contains("is free");
        if (!isFree)
            whileBlocked += taken;
    }

    QVERIFY(isFree);
    QCOMPARE(whileBlocked, QStringList());
    end(&process);
}

void tst_LauncherService::whoAsksThisProcessIsTold()
{
    const NotifySocket socket(abstractName());
    qputenv("NOTIFY_SOCKET", abstractName().toLatin1());
    qputenv("WATCHDOG_USEC", "40000");
    qputenv("WATCHDOG_PID", QByteArray::number(qint64(getpid())));
    ServiceManager manager;
    QVERIFY(qgetenv("NOTIFY_SOCKET").isEmpty() && qgetenv("WATCHDOG_PID").isEmpty());

    manager.tellReady();

    QCOMPARE(socket.taken().join(text(" ")), text("READY=1 WATCHDOG=1"));
}

void tst_LauncherService::nobodyHearsAboutLifeWhoDidNotAsk_data()
{
    QTest::addColumn<QString>("patience");
    QTest::addColumn<QString>("process");

    QTest::newRow("no time") << QString() << QString();
    QTest::newRow("time of nothing") << text("0") << QString();
    QTest::newRow("time that is no number") << text("soon") << QString();
    QTest::newRow("negative time") << text("-40000") << QString();
    QTest::newRow("another process was asked") << text("40000") << text("1");
}

void tst_LauncherService::nobodyHearsAboutLifeWhoDidNotAsk()
{
    QFETCH(QString, patience);
    QFETCH(QString, process);
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");
    const NotifySocket manager(stage.path("notify"));
    stage.set("NOTIFY_SOCKET", stage.path("notify"));
    stage.set("WATCHDOG_USEC", patience);
    stage.set("WATCHDOG_PID", process);

    QCOMPARE(stage.launch("--once --wait 200 tv").status, 0);

    QCOMPARE(manager.taken(), QStringList(text("READY=1")));
}

void tst_LauncherService::aSocketThatCannotBeReachedChangesNothing_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("nobody listens") << text("/nowhere/notify");
    QTest::newRow("relative") << text("notify");
    QTest::newRow("empty") << QString();
    QTest::newRow("only the sign of an abstract name") << text("@");
    QTest::newRow("another kind of address") << text("vsock:2:1234");
    QTest::newRow("too long") << text("/") + QString(500, QLatin1Char('x'));
}

void tst_LauncherService::aSocketThatCannotBeReachedChangesNothing()
{
    QFETCH(QString, name);
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");
    stage.set("NOTIFY_SOCKET", name);
    stage.set("WATCHDOG_USEC", text("40000"));

    const Run run = stage.launch("--once --wait 100 tv");

    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

namespace {

/// Runs the launcher with an unusable value and a missing application, its errors in a file whose
/// identity is the value of JOURNAL_STREAM; returns what is in the file then.
QString errors(const QString &identity)
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\", \"Scale\": 0 }");
    stage.write("page.html", "<script>zarexExt.open('radio')</script>");
    stage.write("errors", "");
    struct stat file;
    if (stat(QFile::encodeName(stage.path("errors")).constData(), &file) != 0)
        return text("no file");
    QString stream = identity;
    stream.replace(text("DEVICE"), QString::number(quint64(file.st_dev)));
    stream.replace(text("INODE"), QString::number(quint64(file.st_ino)));
    stage.set("JOURNAL_STREAM", stream);
    QProcess process;
    process.setStandardErrorFile(stage.path("errors"), QIODevice::Append);
    stage.start(&process, "--once tv");
    Stage::finish(&process);
    QFile written(stage.path("errors"));
    return written.open(QIODevice::ReadOnly) ? QString::fromLatin1(written.readAll().constData())
                                             : text("unreadable");
}

} // namespace

void tst_LauncherService::theJournalIsToldHowBadALineIs()
{
    const QStringList lines = errors(text("DEVICE:INODE")).split(QLatin1Char('\n'));

    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0),
             text("<4>nuv-launcher: tv: Scale = 0 cannot be used; it takes a number from 0.1 to "
                  "10"));
    QVERIFY2(lines.at(1).startsWith(text("<3>nuv-launcher: AppsConfig.json has no application")),
             qPrintable(lines.at(1)));
}

void tst_LauncherService::nobodyElseIsToldHowBadALineIs_data()
{
    QTest::addColumn<QString>("identity");

    QTest::newRow("no journal") << QString();
    QTest::newRow("another stream") << text("DEVICE:0");
    QTest::newRow("another device") << text("0:INODE");
    QTest::newRow("more than that") << text("DEVICE:INODE:1");
    QTest::newRow("no numbers") << text("a:b");
}

void tst_LauncherService::nobodyElseIsToldHowBadALineIs()
{
    QFETCH(QString, identity);

    const QStringList lines = errors(identity).split(QLatin1Char('\n'));

    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).startsWith(text("nuv-launcher: tv: Scale")));
    QVERIFY(lines.at(1).startsWith(text("nuv-launcher: AppsConfig.json")));
}

NUV_TEST_MAIN(tst_LauncherService)

#include "tst_launcherservice.moc"
