// SPDX-License-Identifier: MIT
#include "examples/launcher/program/userfolders.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <sys/stat.h>

namespace {

const QDir::Filters everything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QStringList entries(const QString &path)
{
    return QDir(path).entryList(everything, QDir::Name);
}

int modeOf(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777)
                                                                     : -1;
}

/// An application that keeps all that there is to keep.
QByteArray tv(const HttpServer &server)
{
    return Stage::application("tv", server.address(),
                              ", \"UseDiskCookies\": true, \"UseDiskCache\": true,"
                              "\"UseLocalStorage\": true, \"UseOfflineStorageDatabase\": true,"
                              "\"UseOfflineWebApplicationCache\": true");
}

void serve(HttpServer &server)
{
    server.serve("/",
                 "<script>try { localStorage.a = 1; openDatabase('a', '', 'a', 1000) } catch (e) {}"
                 "zarexExt.say(document.cookie)</script>",
                 "Set-Cookie: lasting=1; max-age=100000\r\nCache-Control: max-age=100000\r\n");
}

} // namespace

class tst_LauncherFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAHomeNothingIsKept_data();
    void withoutAHomeNothingIsKept();
    void aRelativePathInTheEnvironmentIsIgnored();
    void whatIsMadeIsForItsUserOnly();
    void whatWasMadeBeforeIsForItsUserOnly();
    void aDirectoryThatCannotBeMadeIsTold_data();
    void aDirectoryThatCannotBeMadeIsTold();
    void aTagCannotLeaveItsPlace();
};

void tst_LauncherFolders::withoutAHomeNothingIsKept_data()
{
    QTest::addColumn<QString>("home");
    QTest::newRow("unset") << QString();
    QTest::newRow("empty") << text("");
    QTest::newRow("relative") << text("home");
}

void tst_LauncherFolders::withoutAHomeNothingIsKept()
{
    QFETCH(QString, home);
    HttpServer server;
    serve(server);
    Stage stage;
    stage.configure(tv(server));
    stage.set("HOME", home);
    if (home.isNull())
        stage.unset("HOME");
    const QStringList root = entries(text("/"));

    const Run run = stage.launch("--once tv");

    QCOMPARE(entries(text("/")), root);
    QCOMPARE(entries(stage.path(".")), QStringList(text("AppsConfig.json")));
    QCOMPARE(said(run), text("lasting=1"));
    QCOMPARE(run.err,
             text("nuv-launcher: /dev/null/nuv-launcher/tag-tv/cookies: the cookies cannot be "
                  "kept: Not a directory\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherFolders::aRelativePathInTheEnvironmentIsIgnored()
{
    HttpServer server;
    serve(server);
    Stage stage;
    stage.configure(tv(server));
    stage.set("XDG_DATA_HOME", text("data"));
    stage.set("XDG_CACHE_HOME", text("./cache"));

    QCOMPARE(stage.launch("--once tv").err, QString());

    QVERIFY(QFile::exists(stage.path(".local/share/nuv-launcher/tag-tv/cookies")));
    QVERIFY(QFile::exists(stage.path(".cache/nuv-launcher/tag-tv")));
    QVERIFY(!QFile::exists(stage.path("data")));
    QVERIFY(!QFile::exists(stage.path("cache")));
}

void tst_LauncherFolders::whatIsMadeIsForItsUserOnly()
{
    HttpServer server;
    serve(server);
    Stage stage;
    stage.configure(tv(server));
    const mode_t before = ::umask(0);
    const Run run = stage.launch("--once tv");
    ::umask(before);

    QCOMPARE(run.err, QString());
    const char *const made[] = { ".local",
                                 ".local/share",
                                 ".local/share/nuv-launcher",
                                 ".local/share/nuv-launcher/tag-tv",
                                 ".cache",
                                 ".cache/nuv-launcher" };
    for (const char *name : made)
        QCOMPARE(modeOf(stage.path(name)), 0700);
}

void tst_LauncherFolders::whatWasMadeBeforeIsForItsUserOnly()
{
    HttpServer server;
    serve(server);
    Stage stage;
    stage.configure(tv(server));
    const char *const made[] = { ".local", ".local/share", ".local/share/nuv-launcher", ".cache",
                                 ".cache/nuv-launcher" };
    for (const char *name : made) {
        QVERIFY(QDir().mkdir(stage.path(name)));
        ::chmod(QFile::encodeName(stage.path(name)).constData(), 0755);
    }

    QCOMPARE(stage.launch("--once tv").err, QString());

    QCOMPARE(modeOf(stage.path(".local")), 0755); // is not the launcher's own
    QCOMPARE(modeOf(stage.path(".local/share")), 0755);
    QCOMPARE(modeOf(stage.path(".local/share/nuv-launcher")), 0700);
    QCOMPARE(modeOf(stage.path(".cache")), 0755);
    QCOMPARE(modeOf(stage.path(".cache/nuv-launcher")), 0700);
}

void tst_LauncherFolders::aDirectoryThatCannotBeMadeIsTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("problem");

    QTest::newRow("below a device") << text("/dev/null/a") << text("Not a directory");
    QTest::newRow("where the system lets nobody make one")
        << text("/proc/a") << text("No such file or directory");
    QTest::newRow("one whose mode the system keeps")
        << text("/proc/self") << text("Operation not permitted");
}

void tst_LauncherFolders::aDirectoryThatCannotBeMadeIsTold()
{
    QFETCH(QString, path);

    QTEST(UserFolders::make(path), "problem");
}

void tst_LauncherFolders::aTagCannotLeaveItsPlace()
{
    QCOMPARE(UserFolders::dataOf(text("../../etc")),
             UserFolders::data() + text("/tag-..%2F..%2Fetc"));
    QCOMPARE(UserFolders::cacheOf(text("../../etc")),
             UserFolders::cache() + text("/tag-..%2F..%2Fetc"));
}

NUV_TEST_MAIN(tst_LauncherFolders)

#include "tst_launcherfolders.moc"
