// SPDX-License-Identifier: MIT
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QFile>

namespace {

/// A page that stores so many bytes in a database, and says how that went.
QByteArray storing(const char *bytes)
{
    return QByteArray("<script>function say(what) { zarexExt.say(what) }"
                      "openDatabase('a', '1', 'a', 1000).transaction(function(t) {"
                      "t.executeSql('CREATE TABLE IF NOT EXISTS a (b)');"
                      "t.executeSql('INSERT INTO a VALUES (?)', [new Array(")
        + bytes
        + ").join('y')])"
          "}, function() { say('too much') }, function() { say('fits') })</script>";
}

} // namespace

/// What pages store, seen by the next start.
class tst_LauncherStorage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void localStorageIsKeptForEachApplication_data();
    void localStorageIsKeptForEachApplication();
    void withoutThePropertyThereIsNoLocalStorage();
    void noDocumentFindsDatabasesUnlessTheyAreOn_data();
    void noDocumentFindsDatabasesUnlessTheyAreOn();
    void anApplicationWithoutDatabasesTakesThemFromNoOther();
    void databasesAreKept();
    void aQuotaHoldsFromItsFirstStart();
};

void tst_LauncherStorage::localStorageIsKeptForEachApplication_data()
{
    QTest::addColumn<QByteArray>("surface");

    QTest::newRow("in a widget") << QByteArray();
    QTest::newRow("in a scene") << QByteArray(", \"UseGraphicsView\": true");
}

// Both are files, and so of one origin.
void tst_LauncherStorage::localStorageIsKeptForEachApplication()
{
    QFETCH(QByteArray, surface);
    Stage stage;
    stage.write("page.html",
                "<script>localStorage.visits = Number(localStorage.visits || 0) + 1;"
                "zarexExt.say(localStorage.visits)</script>");
    const QByteArray properties = ", \"UseLocalStorage\": true" + surface;
    stage.configure(Stage::application("tv", text("page.html"), properties) + ", "
                    + Stage::application("news", text("page.html"), properties));

    // The engine of Qt 4 has one storage for all, and writes it a second after a change.
    const bool isShared = ToolkitDifferences::isQt4();
    const Run first = stage.launch(isShared ? "--once --wait 1500 tv" : "--once tv");
    const Run second = stage.launch(isShared ? "--once --wait 1500 news tv" : "--once news tv");
    const Run third = stage.launch(isShared ? "--once --wait 1500 tv news" : "--once tv news");

    QCOMPARE(said(first), text("1"));
    QCOMPARE(said(second), text(isShared ? "3" : "2"));
    QCOMPARE(said(second, "news"), text(isShared ? "2" : "1"));
    QCOMPARE(said(third), text(isShared ? "4" : "3"));
    QCOMPARE(said(third, "news"), text(isShared ? "5" : "2"));
    QCOMPARE(third.status, 0);
    const QString folders[] = { text(isShared ? "applications" : "tag-tv"),
                                text(isShared ? "applications" : "tag-news") };
    for (const QString &folder : folders) {
        const QString file =
            stage.path(".local/share/nuv-launcher/") + folder + text("/file__0.localstorage");
        QVERIFY2(QFile::exists(file), qPrintable(file));
    }
}

void tst_LauncherStorage::withoutThePropertyThereIsNoLocalStorage()
{
    Stage stage;
    stage.write("page.html", "<script>zarexExt.say(String(window.localStorage))</script>");
    stage.configure(Stage::application("unset", text("page.html")) + ", "
                    + Stage::application("off", text("page.html"), ", \"UseLocalStorage\": false"));

    const Run run = stage.launch("--once unset off");

    QCOMPARE(said(run, "unset"), text("null"));
    QCOMPARE(said(run, "off"), text("null"));
}

void tst_LauncherStorage::noDocumentFindsDatabasesUnlessTheyAreOn_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("kind");

    QTest::newRow("unset") << QByteArray() << text("undefined");
    QTest::newRow("off") << QByteArray(", \"UseOfflineStorageDatabase\": false")
                         << text("undefined");
    QTest::newRow("off, by the other name")
        << QByteArray(", \"OfflineStorageDatabaseEnabled\": false") << text("undefined");
    QTest::newRow("on") << QByteArray(", \"UseOfflineStorageDatabase\": true") << text("function");
    QTest::newRow("on, by the other name")
        << QByteArray(", \"OfflineStorageDatabaseEnabled\": true") << text("function");
}

// The server is known under two names, so that there is a frame of another site.
void tst_LauncherStorage::noDocumentFindsDatabasesUnlessTheyAreOn()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, kind);
    HttpServer server;
    const QByteArray own = server.address("").toLatin1();
    const QByteArray foreign = QByteArray(own).replace("127.0.0.1", "localhost");
    const QByteArray inner = "<script>console.log('%1 is ' + typeof openDatabase)</script>";
    server.serve("/own", QByteArray(inner).replace("%1", "own frame"));
    server.serve("/foreign", QByteArray(inner).replace("%1", "foreign frame"));
    server.serve("/sandbox", QByteArray(inner).replace("%1", "sandbox"));
    server.serve("/next", QByteArray(inner).replace("%1", "next page"));
    server.serve("/",
                 QByteArray(inner).replace("%1", "page")
                     + "<body><iframe src='/own'></iframe><iframe src='" + foreign
                     + "/foreign'></iframe><iframe sandbox='allow-scripts' src='/sandbox'></iframe>"
                       "<iframe srcdoc=\"<script>console.log('srcdoc is ' + typeof openDatabase)"
                       "</script>\"></iframe><script>"
                       "var frame = document.body.appendChild(document.createElement('iframe'));"
                       "console.log('empty frame is ' + typeof frame.contentWindow.openDatabase);"
                       "frame.contentDocument.write('<script>console.log(\"written frame is \" +"
                       "typeof openDatabase)</scr' + 'ipt>'); frame.contentDocument.close();"
                       "onload = function() { location = '/next' }</script>");
    Stage stage;
    stage.configure(Stage::application("tv", server.address(), property));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "next page is "));
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QStringList answers = run.out.split(QLatin1Char('\n')).filter(text(" is "));
    answers.replaceInStrings(QRegExp(text(".*:\\d+: ")), QString());
    answers.sort();
    const char *const documents[] = {
        "empty frame", "foreign frame", "next page", "own frame",
        "page",        "sandbox",       "srcdoc",    "written frame"
    };
    QStringList expected;
    for (const char *document : documents)
        expected << text(document) + text(" is ") + kind;
    if (ToolkitDifferences::isQt4()) // the engine does not know it
        expected.removeAll(text("srcdoc is ") + kind);
    QCOMPARE(answers.join(text("\n")), expected.join(text("\n")));
    QVERIFY2(!run.out.contains(text("Blocked")), qPrintable(run.out));
    QCOMPARE(QFile::exists(stage.path(".local/share/nuv-launcher/databases/Databases.db")), false);
}

// The second one comes after the first has been told of its databases.
void tst_LauncherStorage::anApplicationWithoutDatabasesTakesThemFromNoOther()
{
    HttpServer server;
    server.serve("/", storing("10"));
    server.serve("/other", "<script>zarexExt.say(typeof openDatabase)</script>");
    Stage stage;
    stage.configure(
        Stage::application("tv", server.address(), ", \"UseOfflineStorageDatabase\": true") + ", "
        + Stage::application("other", server.address("/other")));
    QProcess launcher;
    stage.start(&launcher, "tv other");

    QVERIFY(Stage::awaitOutput(&launcher, "other  says: "));
    Stage::awaitOutput(&launcher, "tv  says: ");
    launcher.terminate();
    const Run run = Stage::finish(&launcher);

    QCOMPARE(said(run), text("fits"));
    QCOMPARE(said(run, "other"), text("undefined"));
}

void tst_LauncherStorage::databasesAreKept()
{
    Stage stage;
    stage.write("page.html",
                "<script>var count; openDatabase('a', '1', 'a', 1000).transaction(function(t) {"
                "t.executeSql('CREATE TABLE IF NOT EXISTS a (b)');"
                "t.executeSql('INSERT INTO a VALUES (1)');"
                "t.executeSql('SELECT COUNT(*) AS n FROM a', [], function(t, found) {"
                "count = found.rows.item(0).n }) }, function(e) { zarexExt.say(e.message) },"
                "function() { zarexExt.say(count) })</script>");
    stage.configure(
        Stage::application("tv", text("page.html"), ", \"UseOfflineStorageDatabase\": true"));

    const char *const counts[] = { "1", "2" };
    for (const char *count : counts) {
        QProcess launcher;
        stage.start(&launcher, "tv");
        QVERIFY(Stage::awaitOutput(&launcher, "says: "));
        launcher.terminate();
        QCOMPARE(said(Stage::finish(&launcher)), text(count));
    }
}

// The engine keeps with a site what it was given once.
void tst_LauncherStorage::aQuotaHoldsFromItsFirstStart()
{
    Stage stage;
    stage.write("page.html", storing("200000"));
    const char *const lowered = ToolkitDifferences::either("fits", "too much");
    const struct {
        const char *quota;
        const char *outcome;
    } starts[] = {
        { "150000", "too much" }, { "1000000", "fits" }, { "150000", lowered },
        { "0", lowered },         { "2000000", "fits" }, { "500000", lowered }, // 400000 are in use
    };
    for (const auto &start : starts) {
        stage.configure(Stage::application("tv", text("page.html"),
                                           QByteArray(", \"UseOfflineStorageDatabase\": true,"
                                                      "\"OfflineStorageDefaultQuotaSize\": ")
                                               + start.quota));
        QProcess launcher;
        stage.start(&launcher, "tv");
        QVERIFY(Stage::awaitOutput(&launcher, "says: "));
        launcher.terminate();
        QCOMPARE(said(Stage::finish(&launcher)), text(start.outcome));
    }
}

NUV_TEST_MAIN(tst_LauncherStorage)

#include "tst_launcherstorage.moc"
