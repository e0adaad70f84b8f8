// SPDX-License-Identifier: MIT
#include "tests/launcher/authority.h"
#include "tests/launcher/stage.h"
#include "tests/launcher/tlsserver.h"
#include "tests/support/testmain.h"

#include <QSslSocket>

namespace {

/// Notes who introduced themselves, also where the client wants nothing of this server then: nobody
/// vouches for it.
class NotingServer : public TlsServer
{
    Q_OBJECT

public:
    explicit NotingServer(const Authority &authority)
        : TlsServer(authority.path("CA.pem"), authority.path("server.pem"),
                    authority.path("server.key"))
    {
    }

    QStringList noted;

protected:
    void begin(QTcpSocket *socket) override
    {
        connect(socket, SIGNAL(encrypted()), SLOT(note()));
        static_cast<QSslSocket *>(socket)->setProtocol(
            ToolkitDifferences::tlsWithEarlyIntroduction());
        TlsServer::begin(socket);
    }

private Q_SLOTS:
    void note() { noted << clientOf(qobject_cast<QTcpSocket *>(sender())); }
};

/// This launcher leaves to its user where it is shown.
class SmallStage : public Stage
{
public:
    SmallStage() { set("QT_QPA_PLATFORM", text("offscreen")); }
};

void end(QProcess *process)
{
    process->kill();
    process->waitForFinished();
}

QByteArray certificate(const Authority &authority, const char *file, const char *key)
{
    return ", \"Certificate\": { \"Path\": \"" + authority.path(file).toLatin1()
        + "\", \"PrivateKey\": \"" + authority.path(key).toLatin1() + "\" }";
}

} // namespace

class tst_SmallLauncher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itShowsThePageThatItShipsWith();
    void itStaysOpenWhenThePageHasLoaded();
    void aRelativeAddressIsBesideTheConfiguration();
    void itFailsWhereThereIsNothingToShow_data();
    void itFailsWhereThereIsNothingToShow();
    void theCertificateIsPresented();
    void nothingIsAskedForWithoutTheCertificate_data();
    void nothingIsAskedForWithoutTheCertificate();
};

void tst_SmallLauncher::itShowsThePageThatItShipsWith()
{
    SmallStage stage;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);

    stage.start(&process, QStringList(), text(EXAMPLE));

    QVERIFY(Stage::awaitOutput(&process, "the page says: hello, box-1\n"));
    end(&process);
}

void tst_SmallLauncher::itStaysOpenWhenThePageHasLoaded()
{
    SmallStage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html",
                "<script>onload = function() { setTimeout(function() {"
                "zarexExt.say(document.hidden ? 'hidden' : 'shown') }, 300) }</script>");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);

    stage.start(&process, QStringList(), stage.path("."));

    QVERIFY(Stage::awaitOutput(&process, "the page says: shown\n"));
    QCOMPARE(process.state(), QProcess::Running);
    end(&process);
}

void tst_SmallLauncher::aRelativeAddressIsBesideTheConfiguration()
{
    SmallStage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.set("NUV_APPS_CONFIG_FILE", stage.path("AppsConfig.json"));
    stage.write("page.html", "<script>zarexExt.say(location.pathname)</script>");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);

    stage.start(&process, QStringList(), text("/"));

    QVERIFY(Stage::awaitOutput(&process,
                               ("the page says: " + stage.path("page.html").toUtf8()).constData()));
    end(&process);
}

void tst_SmallLauncher::itFailsWhereThereIsNothingToShow_data()
{
    QTest::addColumn<QByteArray>("application");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no page") << QByteArray("{ \"Tag\": \"tv\", \"Url\": \"none.html\" }")
                             << text("the page does not load: ");
    QTest::newRow("no server") << QByteArray(
        "{ \"Tag\": \"tv\", \"Url\": \"http://127.0.0.1:1/\" }")
                               << text("the page does not load: ");
    QTest::newRow("no application") << QByteArray("{ \"Tag\": \"radio\", \"Url\": \"page.html\" }")
                                    << text("there is no application \"tv\"");
}

void tst_SmallLauncher::itFailsWhereThereIsNothingToShow()
{
    QFETCH(QByteArray, application);
    QFETCH(QString, reason);
    SmallStage stage;
    stage.configure(application);

    const Run run = stage.launch(QStringList(), stage.path("."));

    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(reason), qPrintable(run.err));
    QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
}

void tst_SmallLauncher::theCertificateIsPresented()
{
    Authority authority;
    authority.issue("server");
    authority.issue("device");
    NotingServer server(authority);
    SmallStage stage;
    stage.configure(Stage::application("tv", server.address(),
                                       certificate(authority, "device.pem", "device.key")));

    QCOMPARE(stage.launch(QStringList(), stage.path(".")).status, 1); // nobody vouches for it

    QCOMPARE(server.noted, QStringList(text("device")));
}

void tst_SmallLauncher::nothingIsAskedForWithoutTheCertificate_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("key");

    QTest::newRow("no certificate") << text("none.pem") << text("CA.key");
    QTest::newRow("no key") << text("CA.pem") << text("none.key");
    QTest::newRow("key that is none") << text("CA.pem") << text("CA.pem");
    QTest::newRow("certificate that is none") << text("CA.key") << text("CA.key");
}

void tst_SmallLauncher::nothingIsAskedForWithoutTheCertificate()
{
    QFETCH(QString, file);
    QFETCH(QString, key);
    Authority authority;
    HttpServer server;
    server.serve("/", "<p>");
    SmallStage stage;
    stage.configure(Stage::application(
        "tv", server.address(),
        certificate(authority, file.toLatin1().constData(), key.toLatin1().constData())));

    const Run run = stage.launch(QStringList(), stage.path("."));

    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(text("certificate")), qPrintable(run.err));
    QCOMPARE(server.requests().size(), 0);
}

NUV_TEST_MAIN(tst_SmallLauncher)

#include "tst_smalllauncher.moc"
