// SPDX-License-Identifier: MIT
#include "examples/launcher/network/tlscompat.h"
#include "examples/launcher/network/trustedauthorities.h"
#include "tests/launcher/authority.h"
#include "tests/launcher/stage.h"
#include "tests/launcher/tlsserver.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QSharedPointer>

namespace {

const char noKnownKey[] = "holds no private key of a known kind in PEM form";

/// A server that has the first word.
class GreetingServer : public HttpServer
{
protected:
    void begin(QTcpSocket *socket) override
    {
        socket->write("220 mail.example\r\n");
        socket->disconnectFromHost();
    }
};

/// What the launcher wrote about one application.
QStringList toldOf(const char *application, const QString &err)
{
    return linesAfter(("nuv-launcher: " + QByteArray(application) + ": ").constData(), err);
}

} // namespace

class tst_LauncherCertificate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theConfiguredCertificateIsPresented_data();
    void theConfiguredCertificateIsPresented();
    void anApplicationWithoutOneUsesTheGlobalOne();
    void whereItCannotBeUsedNothingIsAskedFor_data();
    void whereItCannotBeUsedNothingIsAskedFor();
    void theWordsOfAServerThatRefusesAreShown();
    void theChainOfTheFileIsPresented();
    void onlyTheConfiguredServersSeeTheCertificate_data();
    void onlyTheConfiguredServersSeeTheCertificate();
    void aServerThatMayNotSeeTheCertificateIsExplained();
    void aServerThatSpeaksWithoutTlsIsExplained();
    void theErrorPageSaysWhyThereIsNoSecureConnection();
    void theErrorPageSaysWhyTheCertificateCannotBeUsed();

    void aServerThatNobodyVouchesForIsNotShown();
    void authoritiesThatCannotBeAddedAreTold_data();
    void authoritiesThatCannotBeAddedAreTold();
    void theAuthoritiesOfTheSystemStayInForce();

    void aDocumentWithoutTlsIsNotAnswered();
    void applicationsShareNothing();

private:
    /// The property "Certificate", with files of the authority, of which the key may be left out.
    QByteArray certificate(const char *file, const char *key = nullptr,
                           const char *passPhrase = nullptr) const;
    QByteArray ownCertificate(const char *file, const char *key = nullptr,
                              const char *passPhrase = nullptr) const;
    void trustAuthority(Stage *stage) const;

    Authority m_authority;
    QSharedPointer<TlsServer> m_server;
};

void tst_LauncherCertificate::initTestCase()
{
    m_authority.issue("server");
    m_authority.issue("device");
    m_authority.issue("other");
    m_authority.issue("curve", "ec -pkeyopt ec_paramgen_curve:prime256v1");
    m_authority.openssl("pkey -in device.key -aes256 -passout pass:hush -out locked.key");
    m_authority.openssl("rsa -in device.key -aes256 -passout pass:hush -traditional -out old.key");
    m_authority.openssl("req -x509 -newkey rsa:2048 -nodes -keyout stranger.key -out stranger.pem "
                        "-subj /CN=stranger");
    m_authority.join("device.pem", "device.key", "both.pem");
    m_server = QSharedPointer<TlsServer>(new TlsServer(m_authority.path("CA.pem"),
                                                       m_authority.path("server.pem"),
                                                       m_authority.path("server.key")));
    m_server->serve("/", "<p>");
}

QByteArray tst_LauncherCertificate::certificate(const char *file, const char *key,
                                                const char *passPhrase) const
{
    QString value =
        QString(text("\"Certificate\": { \"Path\": \"%1\"")).arg(m_authority.path(file));
    if (key)
        value += QString(text(", \"PrivateKey\": \"%1\"")).arg(m_authority.path(key));
    if (passPhrase)
        value += QString(text(", \"PassPhrase\": \"%1\"")).arg(text(passPhrase));
    return (value + text(" }")).toLatin1();
}

/// To follow other properties.
QByteArray tst_LauncherCertificate::ownCertificate(const char *file, const char *key,
                                                   const char *passPhrase) const
{
    return ", " + certificate(file, key, passPhrase);
}

void tst_LauncherCertificate::trustAuthority(Stage *stage) const
{
    stage->set("SSL_CERT_FILE", m_authority.path("CA.pem"));
}

// Every row is an application of its own; all are opened by one launch. So below.
void tst_LauncherCertificate::theConfiguredCertificateIsPresented_data()
{
    QTest::addColumn<QString>("clients");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("output");

    struct Case {
        const char *name;
        QByteArray certificate;
        const char *client;
    };
    const Case cases[] = {
        { "RSA key", ownCertificate("device.pem", "device.key"), "device" },
        { "EC key", ownCertificate("curve.pem", "curve.key"), "curve" },
        { "key with a pass phrase", ownCertificate("device.pem", "locked.key", "hush"), "device" },
        { "the same in the older form", ownCertificate("device.pem", "old.key", "hush"), "device" },
        { "both in one file", ownCertificate("both.pem"), "device" },
    };
    Applications applications;
    for (const Case &row : cases) {
        const QByteArray path =
            QByteArray("/") + row.client + QByteArray::number(int(&row - cases));
        m_server->serve(path.constData(), "<p>");
        applications.add(row.name, m_server->address(path.constData()), row.certificate);
    }
    Stage stage;
    trustAuthority(&stage);
    const Run run = stage.launch(applications);
    const QString unreadable =
        QString(text("its private key %1 %2")).arg(m_authority.path("curve.key"), text(noKnownKey));
    for (const Case &row : cases) {
        const QByteArray path =
            QByteArray("/") + row.client + QByteArray::number(int(&row - cases));
        const bool isUsable =
            ToolkitDifferences::readsKeysOfCurves() || qstrcmp(row.client, "curve") != 0;
        QTest::newRow(row.name) << m_server->clients(path.constData()).join(text(" "))
                                << (isUsable ? text(row.client) : QString())
                                << toldOf(row.name, run.err).join(text("; "))
                                << (isUsable ? QString() : unreadable) << run.out + run.err;
    }
}

void tst_LauncherCertificate::theConfiguredCertificateIsPresented()
{
    QFETCH(QString, clients);
    QFETCH(QString, client);
    QFETCH(QString, told);
    QFETCH(QString, message);
    QFETCH(QString, output);

    QCOMPARE(clients, client);
    QCOMPARE(told, message);
    QVERIFY(!output.contains(text("hush")));
}

void tst_LauncherCertificate::anApplicationWithoutOneUsesTheGlobalOne()
{
    m_server->serve("/without", "<p>");
    m_server->serve("/with", "<p>");
    Stage stage;
    trustAuthority(&stage);
    stage.write("AppsConfig.json",
                "{ \"Global\": { \"Version\": 1"
                    + ownCertificate("device.pem", "locked.key", "hush")
                    + " }, \"Applications\": [ "
                    + Stage::application("without", m_server->address("/without")) + ", "
                    + Stage::application("with", m_server->address("/with"),
                                         ownCertificate("other.pem", "other.key"))
                    + " ] }");

    const Run run = stage.launch("--screenshot out.png without with");

    QCOMPARE(run.err, QString());
    QCOMPARE(m_server->clients("/without").join(text(" ")), text("device"));
    QCOMPARE(m_server->clients("/with").join(text(" ")), text("other"));
}

void tst_LauncherCertificate::whereItCannotBeUsedNothingIsAskedFor_data()
{
    QTest::addColumn<QString>("message"); // %1 is the folder, %2 the server
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<int>("requests");

    struct Case {
        const char *name;
        QByteArray certificate;
        const char *message;
    };
    const Case cases[] = {
        { "no certificate file", ownCertificate("none.pem", "device.key"),
          "its certificate %1/none.pem cannot be read: No such file or directory" },
        { "certificate that is none", ownCertificate("names", "device.key"),
          "its certificate %1/names is none in PEM form" },
        { "no key file", ownCertificate("device.pem", "none.key"),
          "its private key %1/none.key cannot be read: No such file or directory" },
        { "key that is none", ownCertificate("device.pem", "names"),
          "its private key %1/names holds no private key of a known kind in PEM form" },
        { "no key in the file of the certificate", ownCertificate("device.pem"),
          "its private key %1/device.pem holds no private key of a known kind in PEM form" },
        { "no pass phrase", ownCertificate("device.pem", "locked.key"),
          "its private key %1/locked.key needs a pass phrase" },
        { "wrong pass phrase", ownCertificate("device.pem", "locked.key", "hush!"),
          "its private key %1/locked.key does not open with its pass phrase" },
        { "wrong pass phrase for the older form", ownCertificate("device.pem", "old.key", "hush!"),
          "its private key %1/old.key does not open with its pass phrase" },
        { "key of another certificate", ownCertificate("device.pem", "other.key"),
          "; its private key %1/other.key does not belong to its certificate %1/device.pem" },
        { "key of another kind", ownCertificate("device.pem", "curve.key"),
          ToolkitDifferences::readsKeysOfCurves()
              ? "; its private key %1/curve.key does not belong to its certificate %1/device.pem"
              : "its private key %1/curve.key holds no private key of a known kind in PEM form" },
        { "RSA key for an EC certificate", ownCertificate("curve.pem", "device.key"),
          "; its private key %1/device.key does not belong to its certificate %1/curve.pem" },
        { "certificate of another authority", ownCertificate("stranger.pem", "stranger.key"),
          "the page %2 does not load: Connection closed; perhaps the server does not accept its "
          "certificate %1/stranger.pem" },
        { "no certificate", QByteArray(), "the page %2 does not load: Connection closed" },
    };
    Applications applications;
    for (const Case &row : cases)
        applications.add(row.name, m_server->address(), row.certificate);
    Stage stage;
    trustAuthority(&stage);
    m_server->forget();
    const Run run = stage.launch(applications);
    const QString folder = QFileInfo(m_authority.path("CA.pem")).path();
    for (const Case &row : cases)
        QTest::newRow(row.name) << text(row.message)
                                       .replace(text("%1"), folder)
                                       .replace(text("%2"), m_server->address())
                                << toldOf(row.name,
                                          QString(run.err).replace(text("hush"), text("SECRET")))
                                << m_server->requests().size();
}

// What is before a semicolon are the words of the TLS library.
void tst_LauncherCertificate::whereItCannotBeUsedNothingIsAskedFor()
{
    QFETCH(QString, message);
    QFETCH(QStringList, told);
    QFETCH(int, requests);

    QCOMPARE(told.size(), 1);
    QCOMPARE(message.startsWith(QLatin1Char(';')) ? told.at(0).right(message.size()) : told.at(0),
             message);
    QCOMPARE(requests, 0);
}

// openssl is a server that says why, where the toolkit's only closes.
void tst_LauncherCertificate::theWordsOfAServerThatRefusesAreShown()
{
    QProcess server;
    server.setWorkingDirectory(QFileInfo(m_authority.path("CA.pem")).path());
    server.start(
        text("openssl"),
        text("s_server -accept 127.0.0.1:0 -cert server.pem -key server.key -CAfile CA.pem "
             "-Verify 1 -verify_return_error -www")
            .split(QLatin1Char(' ')));
    QByteArray greeting;
    while (!greeting.contains("ACCEPT") && server.waitForReadyRead())
        greeting += server.readAllStandardOutput();
    const QString address =
        text("https://") + text(greeting.mid(greeting.indexOf("127.")).trimmed().constData());
    Stage stage;
    trustAuthority(&stage);
    stage.configure(
        Stage::application("tv", address, ownCertificate("stranger.pem", "stranger.key")));

    const Run run = stage.launch("--screenshot out.png tv");

    server.kill();
    server.waitForFinished();
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(text("nuv-launcher: tv: the page ") + address),
             qPrintable(run.err));
    QVERIFY2(run.err.contains(ToolkitDifferences::refusalByCertificate()
                              + text("; perhaps the server does not accept its certificate ")),
             qPrintable(run.err));
}

// The server knows the authority at the root alone.
void tst_LauncherCertificate::theChainOfTheFileIsPresented()
{
    m_authority.issueInBetween("between", "below");
    m_authority.join("below.pem", "between.pem", "chain.pem");
    m_server->serve("/chain", "<p>");
    Stage stage;
    trustAuthority(&stage);
    stage.configure(Stage::application("tv", m_server->address("/chain"),
                                       ownCertificate("chain.pem", "below.key")));

    const Run run = stage.launch("--once tv");

    // Qt 4 presents the first certificate alone.
    QCOMPARE(run.status, ToolkitDifferences::either(1, 0));
    QCOMPARE(m_server->clients("/chain").join(text(" ")),
             text(ToolkitDifferences::either("", "below")));
}

void tst_LauncherCertificate::onlyTheConfiguredServersSeeTheCertificate_data()
{
    QTest::addColumn<QByteArray>("domains");
    QTest::addColumn<QString>("client");

    QTest::newRow("host of Url") << QByteArray() << QString();
    QTest::newRow("granted domain")
        << QByteArray(", \"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"")
            + ToolkitDifferences::otherLocalHost().latin1() + "\" } ]"
        << text("device");
    QTest::newRow("another domain")
        << QByteArray(", \"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"host\" } ]")
        << QString();
}

// The other is known by another name.
void tst_LauncherCertificate::onlyTheConfiguredServersSeeTheCertificate()
{
    QFETCH(QByteArray, domains);
    QFETCH(QString, client);
    TlsServer own(m_authority.path("CA.pem"), m_authority.path("server.pem"),
                  m_authority.path("server.key"));
    TlsServer other(m_authority.path("CA.pem"), m_authority.path("server.pem"),
                    m_authority.path("server.key"));
    own.demandNothing();
    other.demandNothing();
    const QByteArray foreign =
        other.address()
            .replace(ToolkitDifferences::trustedLocalHost(), ToolkitDifferences::otherLocalHost())
            .toLatin1();
    own.serve("/",
              "<img src='" + foreign + "picture'><iframe src='" + foreign + "frame'></iframe>");
    other.serve("/picture", "");
    other.serve("/frame", "<p>");
    Stage stage;
    trustAuthority(&stage);
    stage.configure(Stage::application("tv", own.address(),
                                       ownCertificate("device.pem", "device.key") + domains));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(other.awaitRequests("/picture") && other.awaitRequests("/frame"));
    launcher.terminate();

    QCOMPARE(Stage::finish(&launcher).err, QString());
    QCOMPARE(own.clients("/").join(text(" ")), text("device"));
    QCOMPARE(other.clients("/picture"), QStringList(client));
    QCOMPARE(other.clients("/frame"), QStringList(client));
}

void tst_LauncherCertificate::aServerThatMayNotSeeTheCertificateIsExplained()
{
    TlsServer other(m_authority.path("CA.pem"), m_authority.path("server.pem"),
                    m_authority.path("server.key"));
    const QByteArray foreign =
        other.address()
            .replace(ToolkitDifferences::trustedLocalHost(), ToolkitDifferences::otherLocalHost())
            .toLatin1();
    m_server->serveBytes(
        "/away", "HTTP/1.1 302 Found\r\nLocation: " + foreign + "\r\nContent-Length: 0\r\n\r\n");
    Stage stage;
    trustAuthority(&stage);
    stage.configure(Stage::application("tv", m_server->address("/away"),
                                       ownCertificate("device.pem", "device.key")));

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(text("; perhaps the server demands a certificate, which is only for "
                                   "the host of Url and the granted domains")),
             qPrintable(run.err));
}

void tst_LauncherCertificate::aServerThatSpeaksWithoutTlsIsExplained()
{
    GreetingServer server;
    const QString address = server.address().replace(text("http:"), text("https:"));
    Stage stage;
    stage.configure(Stage::application("tv", address, ownCertificate("device.pem", "device.key")));

    const Run run = stage.launch("--once tv");

    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.endsWith(text("; perhaps the server does not accept its certificate ")
                              + m_authority.path("device.pem") + text("\n")),
             qPrintable(run.err));
}

void tst_LauncherCertificate::theErrorPageSaysWhyThereIsNoSecureConnection()
{
    TlsServer server(m_authority.path("CA.pem"), m_authority.path("server.pem"),
                     m_authority.path("server.key"));
    server.demandNothing();
    Stage stage;
    stage.configure(Stage::application("tv", server.address(), ", \"EnableShowErrorPage\": true"));

    const Run run = stage.launch("--once --eval document.getElementById('reason').textContent tv");

    const QStringList answers = linesAfter("tv  answers: ", run.out);
    QVERIFY2(answers.join(text(" ")).contains(text("; the server's certificate is not trusted: ")),
             qPrintable(run.out + run.err));
    QCOMPARE(run.status, 1);
}

void tst_LauncherCertificate::theErrorPageSaysWhyTheCertificateCannotBeUsed()
{
    Stage stage;
    stage.configure(Stage::application(
        "tv", m_server->address(), ", \"EnableShowErrorPage\": true" + ownCertificate("none.pem")));
    m_server->forget();

    const Run run = stage.launch("--once --eval document.getElementById('reason').textContent tv");

    const QString reason =
        QString(text("its certificate %1 cannot be read: No such file or directory"))
            .arg(m_authority.path("none.pem"));
    QCOMPARE(linesAfter("tv  answers: ", run.out).join(text(" ")),
             text("\"") + reason + text("\""));
    QCOMPARE(run.err, text("nuv-launcher: tv: ") + reason + text("\n"));
    QCOMPARE(m_server->requests().size(), 0);
}

// Whoever is between could have written it.
void tst_LauncherCertificate::aDocumentWithoutTlsIsNotAnswered()
{
    HttpServer plain;
    plain.serve("/", "<script>console.log('plain: ' + typeof zarexExt)</script>");
    m_server->serve("/home",
                    "<script>zarexExt.say('secure'); onload = function() { location = '"
                        + plain.address().toLatin1() + "' }</script>");
    Stage stage;
    trustAuthority(&stage);
    stage.configure(Stage::application("tv", m_server->address("/home"),
                                       ownCertificate("device.pem", "device.key")));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "plain: "));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QCOMPARE(said(run), text("secure"));
    QVERIFY(run.out.contains(text("plain: undefined")));
}

void tst_LauncherCertificate::aServerThatNobodyVouchesForIsNotShown()
{
    Stage stage;
    stage.configure(
        Stage::application("tv", m_server->address(), ownCertificate("device.pem", "device.key")));
    m_server->forget();

    const Run run = stage.launch("--screenshot out.png tv");

    QVERIFY2(run.err.contains(text("; the server's certificate is not trusted: ")),
             qPrintable(run.err));
    QCOMPARE(run.status, 1);
    QCOMPARE(m_server->requests().size(), 0);
}

void tst_LauncherCertificate::authoritiesThatCannotBeAddedAreTold_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("problem");

    QTest::newRow("missing") << text("none.pem") << text("No such file or directory");
    QTest::newRow("no certificate")
        << text("AppsConfig.json") << text("no certificate in PEM form is in it");
}

void tst_LauncherCertificate::authoritiesThatCannotBeAddedAreTold()
{
    QFETCH(QString, file);
    QFETCH(QString, problem);
    Stage stage;
    stage.write("page.html", "<p>");
    stage.configure(Stage::application("tv", text("page.html")));
    stage.set("SSL_CERT_FILE", file);

    const Run run = stage.launch("--screenshot out.png tv");

    QCOMPARE(run.err,
             text("nuv-launcher: SSL_CERT_FILE names ") + file + text(": ") + problem + text("\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherCertificate::theAuthoritiesOfTheSystemStayInForce()
{
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    qputenv("SSL_CERT_FILE", QFile::encodeName(m_authority.path("CA.pem")));
    QCOMPARE(TrustedAuthorities::addFromEnvironment(), QString());
    qputenv("SSL_CERT_FILE", "");
    const QList<QSslCertificate> trusted =
        QSslConfiguration::defaultConfiguration().caCertificates();
    QSslConfiguration::setDefaultConfiguration(before);

    QList<QSslCertificate> expected = TlsCompat::systemAuthorities();
    expected += QSslCertificate::fromPath(m_authority.path("CA.pem"));
    QCOMPARE(trusted.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY(trusted.contains(expected.at(i)));
}

// Two of them ask one server at the same time.
void tst_LauncherCertificate::applicationsShareNothing()
{
    m_server->serve("/both",
                    "<script src='both.js'></script>"
                    "<script>zarexExt.say(document.cookie)</script>");
    m_server->serve("/both.js", "document.cookie = 'a=' + zarexExt.application() + ';max-age=1000'",
                    "Cache-Control: max-age=100000\r\n");
    m_server->forget();
    const char *const tags[] = { "device", "other" };
    Applications applications;
    for (const char *tag : tags) {
        const QByteArray name = tag;
        applications.add(
            tag, m_server->address("/both"),
            ", \"UseDiskCache\": true, \"UseDiskCookies\": true"
                + ownCertificate((name + ".pem").constData(), (name + ".key").constData()));
    }
    Stage stage;
    trustAuthority(&stage);

    for (int start = 0; start < 2; ++start) {
        const Run run = stage.launch(applications);
        QCOMPARE(run.err, QString());
        QCOMPARE(said(run, "device"), text("a=device"));
        QCOMPARE(said(run, "other"), text("a=other"));
    }

    QStringList clients = m_server->clients("/both.js");
    clients.sort();
    QCOMPARE(clients.join(text(" ")), text("device other"));
    for (int i = 0; i < m_server->requests("/both").size(); ++i) {
        const HttpRequest request = m_server->requests("/both").at(i);
        QCOMPARE(text(request.headers.value("cookie").constData()),
                 i < 2 ? QString() : text("a=") + request.client);
    }
}

NUV_TEST_MAIN(tst_LauncherCertificate)

#include "tst_launchercertificate.moc"
