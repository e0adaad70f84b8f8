// SPDX-License-Identifier: MIT
#include "examples/launcher/network/configuredaccess.h"
#include "examples/launcher/network/localfiles.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QScopedPointer>
#include <QUrl>

#include <unistd.h>

namespace {

QByteArray picture()
{
    return QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAA"
                                  "AADElEQVR42mP4z8AAAAMBAQD3A0FDAAAAAElFTkSuQmCC");
}

/// A page that makes attempts, each with the address of a file, and tells what came of them. Its last word is
/// "end", once another picture is there or is not: it is asked for when all attempts have told. One that may
/// never tell asks for it by itself.
QByteArray pageWith(const QByteArray &attempts)
{
    return "<script>"
           "var told = {}, begun = 0;"
           "function end(url) { var i = new Image;"
           "  i.onload = i.onerror = function() { zarexExt.say('end') }; i.src = url }"
           "function tell(what, result) { if (told[what] === result) return;"
           "  if (!(what in told) && --begun == 0) end('picture.png?end');"
           "  zarexExt.say(what + ': ' + (told[what] = result)) }"
           "function read(what, url, async) { ++begun; try {"
           "  var r = new XMLHttpRequest; r.open('GET', url, async);"
           "  r.onload = function() { tell(what, r.responseText || 'nothing') };"
           "  r.onerror = function() { tell(what, 'nothing') };"
           "  r.send() } catch (e) { tell(what, 'nothing') } }"
           "function write(what, url) { ++begun; try {"
           "  var r = new XMLHttpRequest; r.open('PUT', url, false); r.send('written');"
           "  tell(what, 'sent') } catch (e) { tell(what, 'nothing') } }"
           "function show(what, url) { ++begun; var i = new Image;"
           "  i.onload = function() { tell(what, 'shown') };"
           "  i.onerror = function() { tell(what, 'nothing') }; i.src = url }"
           "function frame(what, url) { ++begun; var f = document.createElement('iframe');"
           "  f.onload = function() { var t; try { t = f.contentDocument.body.textContent }"
           "    catch (e) {} tell(what, t || 'nothing') };"
           "  f.src = url; document.body.appendChild(f) }"
           "onload = function() { "
        + attempts + " }</script><body>";
}

/// A stage with an application "tv" in a directory of its own, and files in it and next to it.
class House
{
public:
    explicit House(const QByteArray &attempts, const QByteArray &properties = QByteArray())
    {
        QVERIFY(QDir().mkdir(m_stage.path("house")));
        QVERIFY(QDir().mkdir(m_stage.path("house/pages")));
        m_stage.write("house/AppsConfig.json",
                      "{ \"Global\": { \"Version\": 1, \"Note\": \"SECRET\" }, \"Applications\": ["
                          + Stage::application("tv", text("pages/page.html"),
                                               ", \"PrintLoadedUrls\": true" + properties)
                          + "] }");
        m_stage.write("house/pages/page.html", pageWith(attempts));
        m_stage.write("house/pages/text.txt", "SECRET");
        m_stage.write("house/pages/picture.png", picture());
        m_stage.write("house/picture.png", picture());
        m_stage.write("text.txt", "SECRET");
        m_stage.write("picture.png", picture());
    }

    /// Lets the page try all that it wants to.
    Run visit() const
    {
        QProcess process;
        m_stage.start(&process, QStringList(text("tv")), m_stage.path("house"));
        const bool isEnd = Stage::awaitOutput(&process, "tv  says: end\n");
        process.terminate();
        Run run = Stage::finish(&process);
        run.out.remove(text("tv  says: end\n"));
        if (!isEnd)
            run.status = -1;
        return run;
    }

    const Stage &stage() const { return m_stage; }

private:
    Stage m_stage;
};

} // namespace

class tst_LauncherDoors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageFromAFileReadsNoOtherFile_data();
    void aPageFromAFileReadsNoOtherFile();
    void aPageFromAFileShowsWhatIsInItsDirectory();
    void theLaunchersOwnFilesAreNotEvenShown();
    void filesAreOnlyRead();
    void aFileThatIsTooLargeIsNotShown();
    void aPageFromTheWebShowsNoFile();
    void whichFilesCanBeLoaded_data();
    void whichFilesCanBeLoaded();
};

void tst_LauncherDoors::aPageFromAFileReadsNoOtherFile_data()
{
    QTest::addColumn<QByteArray>("attempt");

    QTest::newRow("next to it") << QByteArray("read('it', 'text.txt', true)");
    QTest::newRow("at once") << QByteArray("read('it', 'text.txt', false)");
    QTest::newRow("above it") << QByteArray("read('it', '../../text.txt', true)");
    QTest::newRow("the configuration") << QByteArray("read('it', '../AppsConfig.json', true)");
    QTest::newRow("the whole device") << QByteArray("read('it', 'file:///etc/passwd', true)");
    QTest::newRow("the own host") << QByteArray("read('it', 'file://localhost/etc/passwd', true)");
    QTest::newRow("in a frame") << QByteArray("frame('it', 'text.txt')");
    QTest::newRow("a picture above it") << QByteArray("show('it', '../../picture.png')");
    QTest::newRow("written") << QByteArray("write('it', 'written.txt')");
}

void tst_LauncherDoors::aPageFromAFileReadsNoOtherFile()
{
    QFETCH(QByteArray, attempt);
    const House house(attempt);

    const Run run = house.visit();

    QCOMPARE(said(run), text("it: nothing"));
    QVERIFY(!run.out.contains(text("SECRET")));
    QVERIFY(!QFile::exists(house.stage().path("house/pages/written.txt")));
    QCOMPARE(run.status, 0);
}

void tst_LauncherDoors::aPageFromAFileShowsWhatIsInItsDirectory()
{
    const House house("show('next', 'picture.png'); show('above', '../picture.png')");

    const Run run = house.visit();
    QStringList shown = said(run).split(text("; "));
    shown.sort();

    QCOMPARE(run.status, 0);
    QCOMPARE(shown.join(text("; ")), text("above: shown; next: shown"));
}

void tst_LauncherDoors::theLaunchersOwnFilesAreNotEvenShown()
{
    const House house("frame('configuration', '../AppsConfig.json');"
                      "frame('above', '../../text.txt'); end('picture.png')");

    const Run run = house.visit();

    QCOMPARE(run.status, 0);
    QVERIFY(!run.out.contains(text("SECRET")));
    QVERIFY2(run.out.contains(text("/text.txt: it is not in the directory of the application\n")),
             qPrintable(run.out));
    QVERIFY2(
        run.out.contains(text("/house/AppsConfig.json: no page loads the launcher's own files\n")),
        qPrintable(run.out));
}

// The toolkit would write it, if an engine asked for that.
void tst_LauncherDoors::filesAreOnlyRead()
{
    const TemporaryDir dir;
    const QString file = dir.filePath(text("written.txt"));
    ConfiguredAccess access(nullptr);

    const QScopedPointer<QNetworkReply> reply(
        access.put(QNetworkRequest(QUrl::fromLocalFile(file)), "written"));
    QEventLoop loop;
    QObject::connect(reply.data(), SIGNAL(finished()), &loop, SLOT(quit()));
    loop.exec();

    QCOMPARE(reply->errorString(), text("files are only read"));
    QVERIFY(!QFile::exists(file));
}

void tst_LauncherDoors::aFileThatIsTooLargeIsNotShown()
{
    const House house("show('large', 'large.png')");
    house.stage().write("house/pages/large.png", picture());
    const QByteArray name = QFile::encodeName(house.stage().path("house/pages/large.png"));
    QCOMPARE(::truncate(name.constData(), 40000000), 0);

    const Run run = house.visit();

    QCOMPARE(said(run), text("large: nothing"));
    QVERIFY2(run.out.contains(text("/large.png: its body is larger than 33554432 bytes\n")),
             qPrintable(run.out));
}

void tst_LauncherDoors::aPageFromTheWebShowsNoFile()
{
    const House house("");
    HttpServer server;
    const QByteArray file = "file://" + QFile::encodeName(house.stage().path("picture.png"));
    server.serve(
        "/",
        pageWith("show('picture', '" + file + "'); frame('frame', '" + file + "'); end('/end')"));
    house.stage().write("house/AppsConfig.json",
                        "{ \"Global\": { \"Version\": 1 }, \"Applications\": ["
                            + Stage::application("tv", server.address()) + "] }");

    const Run run = house.visit();
    const QString answers = said(run);

    QCOMPARE(run.status, 0);
    // Qt 4 tells the page nothing at all.
    QVERIFY(answers.contains(text("picture: nothing")) || ToolkitDifferences::isQt4());
    QVERIFY(!answers.contains(text("shown")));
}

void tst_LauncherDoors::whichFilesCanBeLoaded_data()
{
    QTest::addColumn<QString>("home"); // %1 is the directory of all
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("canBeLoaded");

    struct Case {
        const char *name;
        const char *home;
        const char *url;
        bool canBeLoaded;
    };
    const char *const page = "file://%1/house/pages/page.html";
    const char *const elsewhere = "file://%1/other/page.html";
    const Case cases[] = {
        { "the page", page, "file://%1/house/pages/page.html", true },
        { "with a fragment", page, "file://%1/house/pages/page.html?a#b", true },
        { "next to the page", page, "file://%1/house/pages/none.png", true },
        { "above the page", page, "file://%1/house/none.png", true },
        { "the directory", page, "file://%1/house", true },
        { "on the own host", page, "file://localhost%1/house/a", true },
        { "above the directory", page, "file://%1/a", false },
        { "a directory that begins alike", page, "file://%1/house2/a", false },
        { "back and out", page, "file://%1/house/pages/../../a", false },
        { "back and out, encoded", page, "file://%1/house/pages/%2e%2e/%2E%2e/a", false },
        { "the root", page, "file:///", false },
        { "a link to the outside", page, "file://%1/house/out/a", false },
        { "out by a link", page, "file://%1/house/out/../house/a", false },
        { "a link to the inside", page, "file://%1/in/page.html", true },
        { "the configuration", page, "file://%1/house/AppsConfig.json", false },
        { "its link", page, "file://%1/house/link.json", false },
        { "its other name", page, "file://%1/house/hard.json", false },
        { "in a directory that is kept back", page, "file://%1/house/kept/cookies", false },
        { "a directory that is kept back", page, "file://%1/house/kept", false },
        { "from elsewhere, next to the page", elsewhere, "file://%1/other/a", true },
        { "from elsewhere, the house", elsewhere, "file://%1/house/pages/page.html", false },
        { "from the web", "http://tv.example/", "file://%1/house/pages/page.html", false },
        { "from nowhere", "about:blank", "file://%1/house/pages/page.html", false },
        { "no file", "http://tv.example/", "http://tv.example/a", true },
        { "no file, from a file", page, "http://tv.example/a", true },
        { "built in", page, "qrc:/a", true },
    };
    for (const Case &row : cases)
        QTest::newRow(row.name) << text(row.home) << text(row.url) << row.canBeLoaded;
}

void tst_LauncherDoors::whichFilesCanBeLoaded()
{
    QFETCH(QString, home);
    QFETCH(QString, url);
    QFETCH(bool, canBeLoaded);
    const TemporaryDir dir;
    const char *const directories[] = { "house", "house/pages", "house/kept", "house2", "other" };
    for (const char *name : directories)
        QVERIFY(QDir(dir.path()).mkdir(text(name)));
    const QByteArray path = QFile::encodeName(dir.path());
    dir.write(text("house/AppsConfig.json"), "{}");
    dir.write(text("house/pages/page.html"), "<p>");
    QCOMPARE(::symlink("..", (path + "/house/out").constData()), 0);
    QCOMPARE(::symlink("house/pages", (path + "/in").constData()), 0);
    QCOMPARE(::symlink("AppsConfig.json", (path + "/house/link.json").constData()), 0);
    QCOMPARE(::link((path + "/house/AppsConfig.json").constData(),
                    (path + "/house/hard.json").constData()),
             0);
    LocalFiles files;
    files.setBounds(QUrl(home.replace(text("%1"), dir.path())), dir.filePath(text("house")));
    files.keepBack(dir.filePath(text("house/AppsConfig.json")));
    files.keepBack(dir.filePath(text("house/kept")));
    files.keepBack(dir.filePath(text("house/none")));
    files.keepBack(text("/proc/version")); // of another device

    const QByteArray encoded = url.replace(text("%1"), dir.path()).toLatin1();
    QCOMPARE(files.objectionTo(QUrl::fromEncoded(encoded)).isEmpty(), canBeLoaded);
}

NUV_TEST_MAIN(tst_LauncherDoors)

#include "tst_launcherdoors.moc"
