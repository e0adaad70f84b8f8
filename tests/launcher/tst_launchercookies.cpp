// SPDX-License-Identifier: MIT
#include "examples/launcher/network/cookiebounds.h"
#include "examples/launcher/network/cookiefile.h"
#include "examples/launcher/network/cookiejar.h"
#include "examples/launcher/program/wholefile.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/output.h"
#include "tests/launcher/stage.h"
#include "tests/support/restrictions.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QNetworkCookie>
#include <QScopedPointer>
#include <QUrl>

#include <cstdio>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray calls; // 's' for a file that is synced, 'd' for a directory, 'r' for a renamed file

bool isDirectory(int descriptor)
{
    struct stat status;
    return ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

// In place of those of the C library, for this program.
extern "C" int fsync(int descriptor)
{
    calls += isDirectory(descriptor) ? 'd' : 's';
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

extern "C" int rename(const char *from, const char *to)
{
    calls += 'r';
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

const char cookiesOfTv[] = ".local/share/nuv-launcher/tag-tv/cookies";

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int lineCount(const QString &fileName)
{
    return contents(fileName).count('\n');
}

QUrl site(int number)
{
    return QUrl(QString(text("http://site%1.example/")).arg(number));
}

void setCookie(CookieJar &jar, const QUrl &url, const QByteArray &line)
{
    jar.setCookiesFromUrl(QNetworkCookie::parseCookies(line), url);
}

QByteArray lasting(int number)
{
    return "name" + QByteArray::number(number) + "=1; max-age=100000";
}

QStringList namesFor(const CookieJar &jar, const QUrl &url)
{
    QStringList names;
    const QList<QNetworkCookie> cookies = jar.cookiesForUrl(url);
    for (int i = 0; i < cookies.size(); ++i)
        names.append(QString::fromLatin1(cookies.at(i).name().constData()));
    return names;
}

/// An application "tv" that keeps its cookies.
QByteArray tv(const QString &url)
{
    return Stage::application("tv", url, ", \"UseDiskCookies\": true");
}

} // namespace

class tst_LauncherCookies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aThousandChangesAreWrittenOnce();
    void aChangeIsWrittenWhileThePageStays();
    void theFileIsSyncedBeforeItTakesItsName();
    void whoIsKilledAtAnyMomentLeavesAWholeFile();
    void whatAKilledProgramLeftIsRemoved();

    void theNewestCookiesOfADomainAreKept();
    void theNewestCookiesOfAllDomainsAreKept();
    void aCookieThatIsTooLargeIsNotTaken_data();
    void aCookieThatIsTooLargeIsNotTaken();
    void expiredCookiesAreNotWrittenAgain();
    void expiredCookiesTakeNoPlace();
    void whatIsKeptIsReadAgain();

    void anAbsurdFileIsToldAndReplaced_data();
    void anAbsurdFileIsToldAndReplaced();
    void aFileThatCannotBeReadIsTold();
    void aFullDiskIsToldOnce();
};

// The time is over for whoever writes a thousand times.
void tst_LauncherCookies::aThousandChangesAreWrittenOnce()
{
    TemporaryDir dir;
    {
        CookieJar jar(dir.filePath(text("cookies")), nullptr);
        calls.clear();
        for (int i = 0; i < 1000; ++i)
            setCookie(jar, site(i), lasting(i));
        QCOMPARE(calls, QByteArray());
    }

    QCOMPARE(calls, QByteArray("srd"));
    QCOMPARE(lineCount(dir.filePath(text("cookies"))), 1000);
}

void tst_LauncherCookies::aChangeIsWrittenWhileThePageStays()
{
    HttpServer server;
    server.serve("/", "<script>zarexExt.say('here')</script>",
                 "Set-Cookie: lasting=1; max-age=100000\r\n");
    Stage stage;
    stage.configure(tv(server.address()));
    QProcess launcher;
    stage.start(&launcher, "tv");

    QVERIFY(Stage::awaitOutput(&launcher, "here"));
    for (int i = 0; i < 600 && contents(stage.path(cookiesOfTv)).isEmpty(); ++i)
        QTest::qWait(100);
    QVERIFY(contents(stage.path(cookiesOfTv)).startsWith("lasting=1;"));
    launcher.kill();
    Stage::finish(&launcher);
    stage.launch("--screenshot out.png tv");

    QCOMPARE(server.requests("/").size(), 2);
    QCOMPARE(server.requests("/").at(1).headers.value("cookie"), QByteArray("lasting=1"));
}

void tst_LauncherCookies::theFileIsSyncedBeforeItTakesItsName()
{
    TemporaryDir dir;
    calls.clear();

    QCOMPARE(WholeFile::replace(dir.filePath(text("file")), "contents"), QString());

    QCOMPARE(calls, QByteArray("srd"));
}

void tst_LauncherCookies::whoIsKilledAtAnyMomentLeavesAWholeFile()
{
    TemporaryDir dir;
    const QString file = dir.filePath(text("file"));
    const QByteArray one(300000, '1');
    const QByteArray other(500000, '2');
    QCOMPARE(WholeFile::replace(file, one), QString());
    std::mt19937 random(4711);
    for (int i = 0; i < 100; ++i) {
        const pid_t writer = fork();
        while (writer == 0) {
            WholeFile::replace(file, other);
            WholeFile::replace(file, one);
        }
        usleep(useconds_t(random() % 10000));
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        const QByteArray found = contents(file);
        QVERIFY(found == one || found == other);
    }
}

void tst_LauncherCookies::whatAKilledProgramLeftIsRemoved()
{
    TemporaryDir dir;
    const QString old = dir.write(text("cookies.aBcDeF"), "half");
    const QString fresh = dir.write(text("cookies.FeDcBa"), "of another launcher at work");
    const QString stranger = dir.write(text("cookies.txt"), "somebody else's");
    const timespec longAgo[2] = { { 1000, 0 }, { 1000, 0 } };
    ::utimensat(AT_FDCWD, QFile::encodeName(old).constData(), longAgo, 0);
    ::utimensat(AT_FDCWD, QFile::encodeName(stranger).constData(), longAgo, 0);

    CookieJar jar(dir.filePath(text("cookies")), nullptr);

    QVERIFY(!QFile::exists(old));
    QVERIFY(QFile::exists(fresh));
    QVERIFY(QFile::exists(stranger));
}

void tst_LauncherCookies::theNewestCookiesOfADomainAreKept()
{
    TemporaryDir dir;
    CookieJar jar(dir.filePath(text("cookies")), nullptr);
    setCookie(jar, site(2), lasting(0));
    for (int i = 0; i < CookieBounds::ofOneDomain + 20; ++i)
        setCookie(jar, site(1), lasting(i));
    setCookie(jar, site(1), lasting(20)); // is the newest now

    const QStringList names = namesFor(jar, site(1));
    const int kept = ToolkitDifferences::cookiesOfOneDomain(CookieBounds::ofOneDomain);
    QCOMPARE(names.size(), kept);
    QVERIFY(!names.contains(text("name19")));
    QVERIFY(names.contains(text("name20")) || kept < CookieBounds::ofOneDomain);
    QVERIFY(names.contains(text("name199")));
    QCOMPARE(namesFor(jar, site(2)).size(), 1);
}

void tst_LauncherCookies::theNewestCookiesOfAllDomainsAreKept()
{
    TemporaryDir dir;
    const QString file = dir.filePath(text("cookies"));
    QByteArray lines;
    for (int i = 0; i < CookieBounds::ofAllDomains + 100; ++i)
        lines += "a=1; expires=Fri, 01-Jan-2100 00:00:00 GMT; domain=site" + QByteArray::number(i)
            + ".example; path=/\n";
    dir.write(text("cookies"), lines);
    {
        CookieJar jar(file, nullptr);
        QCOMPARE(namesFor(jar, site(99)).size(), 0);
        QCOMPARE(namesFor(jar, site(100)).size(), 1);
        setCookie(jar, site(0), lasting(0));
        QCOMPARE(namesFor(jar, site(100)).size(), 0);
        QCOMPARE(namesFor(jar, site(0)).size(), 1);
    }
    QCOMPARE(lineCount(file), CookieBounds::ofAllDomains);
}

void tst_LauncherCookies::aCookieThatIsTooLargeIsNotTaken_data()
{
    QTest::addColumn<QByteArray>("cookie");
    QTest::addColumn<int>("taken");

    const int most = CookieBounds::largestContents;
    QTest::newRow("largest value") << "n=" + QByteArray(most - 1, 'v') << 1;
    QTest::newRow("larger value") << "n=" + QByteArray(most, 'v') << 0;
    QTest::newRow("larger name") << QByteArray(most, 'n') + "=v" << 0;
    QTest::newRow("long path") << "n=v; path=/" + QByteArray(2000, 'p') << 0;
}

void tst_LauncherCookies::aCookieThatIsTooLargeIsNotTaken()
{
    QFETCH(QByteArray, cookie);
    QFETCH(int, taken);
    HttpServer server;
    server.serve("/", "<p>", "Set-Cookie: " + cookie + "; max-age=100000\r\n");
    Stage stage;
    stage.configure(tv(server.address()));

    QCOMPARE(stage.launch("--screenshot out.png tv").err, QString());
    QCOMPARE(stage.launch("--screenshot out.png tv").err, QString());

    QCOMPARE(server.requests("/").size(), 2);
    QCOMPARE(server.requests("/").at(1).headers.value("cookie"), taken ? cookie : QByteArray());
    QCOMPARE(lineCount(stage.path(cookiesOfTv)), taken);
}

void tst_LauncherCookies::expiredCookiesAreNotWrittenAgain()
{
    TemporaryDir dir;
    const QString file = dir.write(
        text("cookies"),
        "past=1; expires=Sat, 01-Jan-2000 00:00:00 GMT; domain=site1.example; path=/\n"
        "lasting=1; expires=Fri, 01-Jan-2100 00:00:00 GMT; domain=site1.example; path=/\n");
    {
        Output err(stderr);
        CookieJar jar(file, nullptr);
        QCOMPARE(err.text(), QString());
        setCookie(jar, site(1), "other=1; max-age=100000");
        setCookie(jar, site(1), "session=1");
        setCookie(jar, site(1), "past=1; max-age=-1");
    }

    const QByteArray lines = contents(file);
    QCOMPARE(lines.count('\n'), 2);
    QVERIFY(lines.contains("lasting=1;") && lines.contains("other=1;"));
}

// One can expire while the program runs, after others that last.
void tst_LauncherCookies::expiredCookiesTakeNoPlace()
{
    const QDateTime now = QDateTime::currentDateTime().toUTC();
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < CookieBounds::ofOneDomain + 1; ++i) {
        QNetworkCookie cookie("name" + QByteArray::number(i), "1");
        cookie.setDomain(text("tv.example"));
        cookie.setExpirationDate(now.addSecs(i < CookieBounds::ofOneDomain ? 1 : 0));
        cookies.append(cookie);
    }

    const QList<QNetworkCookie> kept = CookieBounds::applied(cookies, now);
    QCOMPARE(kept.size(), CookieBounds::ofOneDomain);
    QCOMPARE(kept.at(0).name(), QByteArray("name0"));
    QCOMPARE(CookieFile::toLines(cookies, now).count('\n'), CookieBounds::ofOneDomain);
}

// Whatever a server sends.
void tst_LauncherCookies::whatIsKeptIsReadAgain()
{
    // Qt 4 does not read what it wrote where there are quotation marks in it.
    const QByteArray alphabet = QByteArray(ToolkitDifferences::either("", "\""))
        + "abz019=;, \t\\%/.-_\x7f\x80\xc3\xbc\xff";
    const char *const attributes[] = {
        "; HttpOnly", "; secure", "; path=/", "; path=/deep", "; domain=site1.example", ""
    };
    std::mt19937 random(20);
    for (int round = 0; round < 100; ++round) {
        TemporaryDir dir;
        QByteArray before;
        {
            CookieJar jar(dir.filePath(text("cookies")), nullptr);
            for (int i = 0; i < 10; ++i) {
                QByteArray line;
                for (int length = int(random() % 12); length >= 0; --length)
                    line += alphabet.at(int(random() % unsigned(alphabet.size())));
                line += QByteArray::number(i) + "=v; max-age=100000";
                setCookie(jar, site(1), line + attributes[random() % 6] + attributes[random() % 6]);
            }
            const QList<QNetworkCookie> kept =
                jar.cookiesForUrl(QUrl(text("https://site1.example/deep/")));
            for (int i = 0; i < kept.size(); ++i)
                before += kept.at(i).toRawForm() + '\n';
        }
        Output err(stderr);
        const CookieJar jar(dir.filePath(text("cookies")), nullptr);
        QByteArray after;
        const QList<QNetworkCookie> kept =
            jar.cookiesForUrl(QUrl(text("https://site1.example/deep/")));
        for (int i = 0; i < kept.size(); ++i)
            after += kept.at(i).toRawForm() + '\n';
        QCOMPARE(after, before);
        QCOMPARE(err.text(), QString());
    }
}

void tst_LauncherCookies::anAbsurdFileIsToldAndReplaced_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("no cookies") << QByteArray("{ \"a\": 1 }\nnonsense\n\n\xff\n")
                                << text("3 of its lines are not cookies; they are ignored");
    QTest::newRow("one endless line")
        << QByteArray(100000, 'a') << text("1 of its lines are not cookies; they are ignored");
    const QByteArray lasting = "a=1; expires=Fri, 01-Jan-2100 00:00:00 GMT; path=/";
    QTest::newRow("cookies that none would keep") << QByteArray("a=1; domain=tv.example; path=/\n")
            + lasting + "\n" + lasting + "; domain=tv.example" + QByteArray(2000, 'e') + "\n"
            + QByteArray(5000, 'n') + lasting
            + "; domain=tv.example\n" << text("4 of its lines are not cookies; they are ignored");
    QTest::newRow("larger than all cookies")
        << QByteArray("large")
        << text("it has 1000000000 bytes, where cookies have 24576000 at most; it is ignored");
    QTest::newRow("pipe") << QByteArray("pipe") << text("it is not a file; it is ignored");
}

void tst_LauncherCookies::anAbsurdFileIsToldAndReplaced()
{
    QFETCH(QByteArray, kind);
    QFETCH(QString, complaint);
    HttpServer server;
    server.serve("/", "<p>", "Set-Cookie: lasting=1; max-age=100000\r\n");
    Stage stage;
    QVERIFY(QDir(stage.path(".")).mkpath(text(".local/share/nuv-launcher/tag-tv")));
    const QByteArray name = QFile::encodeName(stage.path(cookiesOfTv));
    if (kind == "pipe") {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else {
        stage.write(cookiesOfTv, kind);
        if (kind == "large")
            QCOMPARE(::truncate(name.constData(), 1000000000), 0);
    }
    stage.configure(tv(server.address()));

    const Run first = stage.launch("--screenshot out.png tv");
    const Run second = stage.launch("--screenshot out.png tv");

    QCOMPARE(first.err,
             text("nuv-launcher: ") + stage.path(cookiesOfTv) + text(": ") + complaint
                 + text("\n"));
    QCOMPARE(first.status, 0);
    QCOMPARE(second.err, QString());
    QCOMPARE(server.requests("/").at(1).headers.value("cookie"), QByteArray("lasting=1"));
}

void tst_LauncherCookies::aFileThatCannotBeReadIsTold()
{
    TemporaryDir dir;
    const QString file = dir.write(text("cookies"), "a=1");
    QCOMPARE(::chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0000), 0);
    const AsNobody nobody;

    QCOMPARE(CookieFile::read(file, QDateTime::currentDateTime()).problem,
             text("Permission denied; it is ignored"));
}

void tst_LauncherCookies::aFullDiskIsToldOnce()
{
    TemporaryDir dir;
    const QString file = dir.filePath(text("cookies"));
    CookieJar jar(file, nullptr);
    const Output err(stderr);
    const QString complaint =
        text("nuv-launcher: ") + file + text(": the cookies cannot be kept: File too large\n");
    for (int round = 0; round < 2; ++round) {
        {
            const FileSizeLimit fullDisk(1000); // err is a file, too
            for (int i = 0; i < 3; ++i) {
                setCookie(jar, site(i), QByteArray(1500, char('a' + round)) + "=1; max-age=100000");
                QVERIFY(QMetaObject::invokeMethod(&jar, "write"));
            }
        }
        QCOMPARE(lineCount(file), 3 * round);
        QVERIFY(QMetaObject::invokeMethod(&jar, "write"));
        QCOMPARE(lineCount(file), 3 * round + 3);
    }

    QCOMPARE(err.text(), complaint + complaint);
}

NUV_TEST_MAIN(tst_LauncherCookies)

#include "tst_launchercookies.moc"
