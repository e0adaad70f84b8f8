// SPDX-License-Identifier: MIT
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace {

/// Ports that were free a moment ago. The engine listens on every address.
class Ports
{
public:
    Ports()
    {
        QTcpServer servers[2];
        for (int i = 0; i < 2; ++i) {
            servers[i].listen(QHostAddress::Any, 0);
            m_ports[i] = servers[i].serverPort();
        }
    }

    /// `configuration` with the ports instead of %1 and %2.
    QString in(QString configuration) const
    {
        for (int i = 0; i < 2; ++i)
            configuration.replace(QString(text("%%1")).arg(i + 1), QString::number(m_ports[i]));
        return configuration;
    }

    quint16 number(int which) const { return m_ports[which]; }

private:
    quint16 m_ports[2];
};

/// How many pages an inspector at this port offers; -1 when there is none.
int inspectedPages(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (!socket.waitForConnected())
        return -1;
    socket.write("GET / HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (!answer.contains("</html>") && socket.waitForReadyRead())
        answer += socket.readAll();
    return answer.count("?page=");
}

/// A message to an inspector; it has less than 126 bytes, and the mask changes none of them.
QByteArray frame(const QByteArray &message)
{
    return QByteArray("\x81") + char(0x80 | message.size()) + QByteArray(4, '\0') + message;
}

/// What an inspector that is opened now shows of what a page wrote to its console before.
QByteArray earlierConsole(quint16 port, int page)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (!socket.waitForConnected())
        return "no inspector";
    socket.write(
        "GET /devtools/page/" + QByteArray::number(page)
        + " HTTP/1.1\r\nHost: localhost\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
          "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIGtleSBvZiBhIHRlc3Q=\r\n\r\n");
    QByteArray answer;
    while (!answer.contains("\r\n\r\n") && socket.waitForReadyRead())
        answer += socket.readAll();
    socket.write(frame("{\"id\": 1, \"method\": \"Console.enable\"}"));
    while (!answer.contains("\"id\":1") && socket.waitForReadyRead()) // comes after all messages
        answer += socket.readAll();
    return answer;
}

} // namespace

class tst_LauncherInspector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOneInspector_data();
    void thereIsOneInspector();
    void theInspectorKnowsWhatEveryPageWroteBefore_data();
    void theInspectorKnowsWhatEveryPageWroteBefore();
    void aPortInUseIsToldInOneLine();
    void aGlobalPortThatIsNoneIsToldInOneLine();
};

void tst_LauncherInspector::thereIsOneInspector_data()
{
    QTest::addColumn<QString>("global");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<int>("pagesAtFirstPort");
    QTest::addColumn<int>("pagesAtSecondPort");
    QTest::addColumn<QString>("warning");

    const QString none;
    const QString at1 = text(", \"RemoteInspectorPort\": %1");
    const QString at2 = text(", \"RemoteInspectorPort\": %2");
    const QString off = text(", \"RemoteInspectorPort\": 0");
    const QString elsewhere = text("nuv-launcher: two: RemoteInspectorPort = %2 has no effect: the "
                                   "inspector of all applications is at port %1\n");
    QTest::newRow("none") << none << none << none << -1 << -1 << none;
    QTest::newRow("the global one") << at1 << none << none << 2 << -1 << none;
    QTest::newRow("the first application's") << none << at1 << none << 2 << -1 << none;
    QTest::newRow("the first application's before the global one")
        << at2 << at1 << none << 2 << -1 << none;
    QTest::newRow("the later application's where there is no other")
        << none << none << at1 << 2 << -1 << none;
    QTest::newRow("the same for both") << none << at1 << at1 << 2 << -1 << none;
    QTest::newRow("another for the later one") << none << at1 << at2 << 2 << -1 << elsewhere;
    QTest::newRow("another than the global one") << at1 << none << at2 << 2 << -1 << elsewhere;
    QTest::newRow("0 is none") << off << off << none << -1 << -1 << none;
    QTest::newRow("0 leaves the global one") << at1 << off << off << 2 << -1 << none;
}

void tst_LauncherInspector::thereIsOneInspector()
{
    QFETCH(QString, global);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(int, pagesAtFirstPort);
    QFETCH(int, pagesAtSecondPort);
    QFETCH(QString, warning);
    const Ports ports;
    Stage stage;
    const QString configuration = text("{ \"Global\": { \"Version\": 1") + global
        + text(" }, \"Applications\": [ { \"Tag\": \"one\", \"Url\": \"page.html\"") + first
        + text(" }, { \"Tag\": \"two\", \"Url\": \"page.html\"") + second + text(" } ] }");
    stage.write("AppsConfig.json", ports.in(configuration).toLatin1());
    stage.write("page.html", "<script>zarexExt.say('ready')</script>");

    QProcess process;
    stage.start(&process, "one two");
    QByteArray out;
    while (out.count("says: ready") < 2 && process.waitForReadyRead(60000))
        out += process.readAllStandardOutput();
    const int atFirst = inspectedPages(ports.number(0));
    const int atSecond = inspectedPages(ports.number(1));
    process.terminate();
    const Run run = Stage::finish(&process);

    const QStringList told =
        linesAfter("Remote inspector port: ", QString::fromLatin1(out.constData()));
    QCOMPARE(told.join(text(" ")), atFirst < 0 ? QString() : QString::number(ports.number(0)));
    QCOMPARE(run.err, ports.in(warning));
    QCOMPARE(atFirst, pagesAtFirstPort);
    QCOMPARE(atSecond, pagesAtSecondPort);
    QCOMPARE(run.status, 0);
}

void tst_LauncherInspector::theInspectorKnowsWhatEveryPageWroteBefore_data()
{
    QTest::addColumn<QString>("global");
    QTest::addColumn<QString>("second");

    const QString at1 = text(", \"RemoteInspectorPort\": %1");
    QTest::newRow("at the global port") << at1 << QString();
    QTest::newRow("at the port of the second application") << QString() << at1;
}

// The second application opens the third one later.
void tst_LauncherInspector::theInspectorKnowsWhatEveryPageWroteBefore()
{
    if (ToolkitDifferences::isQt4())
        return; // its inspector speaks an older form of the protocol
    QFETCH(QString, global);
    QFETCH(QString, second);
    const Ports ports;
    Stage stage;
    const QString configuration = text("{ \"Global\": { \"Version\": 1") + global
        + text(" }, \"Applications\": [ { \"Tag\": \"one\", \"Url\": \"page.html\" },"
               "{ \"Tag\": \"two\", \"Url\": \"opener.html\"")
        + second + text(" }, { \"Tag\": \"three\", \"Url\": \"page.html\" } ] }");
    stage.write("AppsConfig.json", ports.in(configuration).toLatin1());
    stage.write("page.html", "<script>console.log('early'); zarexExt.say('ready')</script>");
    stage.write("opener.html",
                "<script>console.log('early'); zarexExt.say('ready');"
                "onload = function() { zarexExt.open('three') }</script>");

    QProcess process;
    stage.start(&process, "one two");
    QByteArray out;
    while (out.count("says: ready") < 3 && process.waitForReadyRead(60000))
        out += process.readAllStandardOutput();
    for (int page = 1; page <= 3; ++page) {
        const QByteArray shown = earlierConsole(ports.number(0), page);
        QVERIFY2(shown.contains("\"text\":\"early\""), shown.constData());
    }
    process.terminate();
    QCOMPARE(Stage::finish(&process).status, 0);
}

void tst_LauncherInspector::aPortInUseIsToldInOneLine()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::Any, 0));
    const QString port = QString::number(other.serverPort());
    Stage stage;
    stage.write("AppsConfig.json",
                "{ \"Global\": { \"Version\": 1, \"RemoteInspectorPort\": " + port.toLatin1()
                    + " }, \"Applications\": [ { \"Tag\": \"tv\", \"Url\": \"page.html\" } ] }");
    stage.write("page.html", "<p>");

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.err,
             text("nuv-launcher: RemoteInspectorPort = ") + port
                 + text(" has no effect: the port is in use\n"));
    QVERIFY(!run.out.contains(text("Remote inspector port")));
    QCOMPARE(run.status, 0);
}

void tst_LauncherInspector::aGlobalPortThatIsNoneIsToldInOneLine()
{
    Stage stage;
    stage.write("AppsConfig.json",
                "{ \"Global\": { \"Version\": 1, \"RemoteInspectorPort\": 65536 },"
                "\"Applications\": [ { \"Tag\": \"tv\", \"Url\": \"page.html\" } ] }");
    stage.write("page.html", "<p>");

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.err,
             text("nuv-launcher: RemoteInspectorPort = 65536 cannot be used; it takes an integer "
                  "from 0 to 65535\n"));
    QVERIFY(!run.out.contains(text("Remote inspector port")));
    QCOMPARE(run.status, 0);
}

NUV_TEST_MAIN(tst_LauncherInspector)

#include "tst_launcherinspector.moc"
