#include "tests/launcher/authority.h"
#include "tests/launcher/stage.h"
#include "tests/launcher/tlsserver.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QSharedPointer>

namespace {

/// An application "tv" with this first page and these further properties.
QByteArray tv(const QString &url, const QByteArray &properties = QByteArray())
{
    return "{ \"Tag\": \"tv\", \"Url\": \"" + url.toLatin1() + "\"" + properties + " }";
}

} // namespace

class tst_LauncherNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theConfiguredCertificateIsPresented_data();
    void theConfiguredCertificateIsPresented();
    void whereTheCertificateCannotBeUsedNothingIsAskedFor_data();
    void whereTheCertificateCannotBeUsedNothingIsAskedFor();

private:
    /// The value of "Certificate": files of the authority, of which the key may be left out.
    QByteArray certificate(const char *file, const char *key = nullptr,
                           const char *passPhrase = nullptr) const;
    void trustAuthority(Stage *stage) const;

    Authority m_authority;
    QSharedPointer<TlsServer> m_server;
};

void tst_LauncherNetwork::initTestCase()
{
    m_authority.issue("server");
    m_authority.issue("device");
    m_authority.issue("other");
    m_authority.issue("curve", "ec -pkeyopt ec_paramgen_curve:prime256v1");
    m_authority.openssl("pkey -in device.key -aes256 -passout pass:hush -out locked.key");
    m_authority.openssl("rsa -in device.key -aes256 -passout pass:hush -traditional -out old.key");
    m_authority.openssl("req -x509 -newkey rsa:2048 -nodes -keyout stranger.key -out stranger.pem "
                        "-subj /CN=stranger");
    m_server = QSharedPointer<TlsServer>(new TlsServer(m_authority.path("CA.pem"),
                                                       m_authority.path("server.pem"),
                                                       m_authority.path("server.key")));
    m_server->serve("/", "<script>zarexExt.say(document.title)</script>");
}

QByteArray tst_LauncherNetwork::certificate(const char *file, const char *key,
                                            const char *passPhrase) const
{
    QString value = QString(text("\"Certificate\": { \"Path\": \"%1\""))
                        .arg(m_authority.path(file));
    if (key)
        value += QString(text(", \"PrivateKey\": \"%1\"")).arg(m_authority.path(key));
    if (passPhrase)
        value += QString(text(", \"PassPhrase\": \"%1\"")).arg(text(passPhrase));
    return (value + text(" }")).toLatin1();
}

void tst_LauncherNetwork::trustAuthority(Stage *stage) const
{
    stage->set("SSL_CERT_FILE", m_authority.path("CA.pem"));
}

void tst_LauncherNetwork::theConfiguredCertificateIsPresented_data()
{
    QTest::addColumn<QByteArray>("global");
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QString>("client");

    const QByteArray none;
    QFile both(m_authority.path("both.pem"));
    QFile::copy(m_authority.path("device.pem"), both.fileName());
    QFile key(m_authority.path("device.key"));
    QVERIFY(both.open(QIODevice::Append) && key.open(QIODevice::ReadOnly));
    both.write(key.readAll());
    both.close();

    const QByteArray device = certificate("device.pem", "device.key");
    const QByteArray other = certificate("other.pem", "other.key");
    QTest::newRow("RSA key") << none << device << text("device");
    QTest::newRow("EC key") << none << certificate("curve.pem", "curve.key") << text("curve");
    QTest::newRow("key with a pass phrase")
        << none << certificate("device.pem", "locked.key", "hush") << text("device");
    QTest::newRow("key with a pass phrase, in the older form")
        << none << certificate("device.pem", "old.key", "hush") << text("device");
    QTest::newRow("both in one file") << none << certificate("both.pem") << text("device");
    QTest::newRow("the global one, without one of its own") << device << none << text("device");
    QTest::newRow("its own, beside the global one") << device << other << text("other");
}

void tst_LauncherNetwork::theConfiguredCertificateIsPresented()
{
    QFETCH(QByteArray, global);
    QFETCH(QByteArray, own);
    QFETCH(QString, client);
    Stage stage;
    trustAuthority(&stage);
    stage.write("AppsConfig.json",
                "{ \"Global\": { \"Version\": 1" + (global.isEmpty() ? global : ", " + global)
                    + " }, \"Applications\": [ "
                    + tv(m_server->address(), own.isEmpty() ? own : ", " + own) + " ] }");
    m_server->forget();

    const Run run = stage.launch("--screenshot out.png tv");

    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(m_server->requests("/").size(), 1);
    QCOMPARE(m_server->requests("/").at(0).client, client);
    QVERIFY(!run.out.contains(text("hush")));
}

void tst_LauncherNetwork::whereTheCertificateCannotBeUsedNothingIsAskedFor_data()
{
    QTest::addColumn<QByteArray>("configured");
    QTest::addColumn<QString>("message"); // %1 is the folder, %2 the server

    const QString its = text("its private key %1/");
    const QString perhaps = text("the page %2 does not load: Connection closed");
    QTest::newRow("no certificate file")
        << certificate("none.pem", "device.key")
        << text("its certificate %1/none.pem cannot be read: No such file or directory");
    QTest::newRow("certificate that is none") << certificate("names", "device.key")
                                              << text("its certificate %1/names is none in PEM form");
    QTest::newRow("no key file") << certificate("device.pem", "none.key")
                                 << its + text("none.key cannot be read: No such file or directory");
    QTest::newRow("key that is none")
        << certificate("device.pem", "names")
        << its + text("names holds no private key of a known kind in PEM form");
    QTest::newRow("no pass phrase") << certificate("device.pem", "locked.key")
                                    << its + text("locked.key needs a pass phrase");
    QTest::newRow("wrong pass phrase") << certificate("device.pem", "locked.key", "hush!")
                                       << its + text("locked.key does not open with its pass phrase");
    QTest::newRow("wrong pass phrase for the older form")
        << certificate("device.pem", "old.key", "hush!")
        << its + text("old.key does not open with its pass phrase");
    QTest::newRow("key of another certificate")
        << certificate("device.pem", "other.key")
        << text("...; ") + its + text("other.key does not belong to its certificate %1/device.pem");
    QTest::newRow("key of another kind")
        << certificate("device.pem", "curve.key")
        << text("...; ") + its + text("curve.key does not belong to its certificate %1/device.pem");
    QTest::newRow("RSA key for an EC certificate")
        << certificate("curve.pem", "device.key")
        << text("...; ") + its + text("device.key does not belong to its certificate %1/curve.pem");
    QTest::newRow("certificate of another authority")
        << certificate("stranger.pem", "stranger.key")
        << perhaps
            + text("; perhaps the server does not accept its certificate %1/stranger.pem");
    QTest::newRow("no certificate") << QByteArray("\"Scale\": 1") << perhaps;
}

// Three dots stand for the words of the TLS library.
void tst_LauncherNetwork::whereTheCertificateCannotBeUsedNothingIsAskedFor()
{
    QFETCH(QByteArray, configured);
    QFETCH(QString, message);
    Stage stage;
    trustAuthority(&stage);
    stage.configure(tv(m_server->address(), ", " + configured));
    m_server->forget();

    const Run run = stage.launch("--screenshot out.png tv");

    message.replace(text("%1"), QFileInfo(m_authority.path("CA.pem")).path());
    message.replace(text("%2"), m_server->address());
    QString err = run.err;
    if (message.startsWith(text("...")))
        err.replace(err.indexOf(text("the page")), err.lastIndexOf(QLatin1Char(';')) - err.indexOf(text("the page")), text("..."));
    QCOMPARE(err, text("nuv-launcher: tv: ") + message + text("\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_server->requests().size(), 0);
    QVERIFY(!QFile::exists(stage.path("out.png")));
    QVERIFY(!(run.out + run.err).contains(text("hush")));
}

NUV_TEST_MAIN(tst_LauncherNetwork)

#include "tst_launchernetwork.moc"
