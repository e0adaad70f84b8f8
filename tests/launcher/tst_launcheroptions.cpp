// SPDX-License-Identifier: MIT
#include "examples/launcher/program/options.h"
#include "examples/launcher/effects/viewsettings.h"
#include "tests/launcher/httpserver.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRegExp>
#include <QStringList>

namespace {

QString contents(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll().constData())
                                            : QString();
}

/// In one line, with single spaces.
QString flat(const QString &words)
{
    return words.simplified();
}

/// A manual page as it is read: without its requests and escapes.
QString asRead(QString manual)
{
    manual.replace(QLatin1String("\\-"), QLatin1String("-"));
    manual.remove(QRegExp(QLatin1String("\\\\f[BIR]")));
    manual.remove(QRegExp(QLatin1String("(^|\n)\\.(TP|PP|SH|TH|BR)[^\n]*")));
    return flat(manual);
}

/// An option of the help: its name, its value, and its words.
struct Entry {
    QString name;
    QString value;
    QString words;
};

QList<Entry> entriesOfHelp()
{
    QList<Entry> entries;
    const QStringList lines = Options::helpText().split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        if (line.startsWith(QLatin1String("  --"))) {
            const QStringList head = line.left(22).simplified().split(QLatin1Char(' '));
            entries.append(Entry { head.at(0), head.value(1), line.mid(22) });
        } else if (line.startsWith(QString(22, QLatin1Char(' ')))) {
            entries.last().words += QLatin1Char(' ') + line.trimmed();
        }
    }
    return entries;
}

} // namespace

class tst_LauncherOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongCommandLinesAreRejected_data();
    void wrongCommandLinesAreRejected();
    void aWrongCommandLineIsToldInOneLine();
    void aValueCanFollowAnEqualsSign_data();
    void aValueCanFollowAnEqualsSign();
    void whatFollowsTwoHyphensIsATag();
    void theShortOptionForTheHelpIsKnown();
    void theVersionIsShown();
    void theHelpNamesTheOptionsThatAreAccepted();
    void theManualSaysWhatTheHelpSays();
    void theDocumentationShowsTheTable();

    void onceEndsWhenThePagesHaveLoaded();
    void everyPageIsAsked();
    void aScriptThatFailsIsToldInOneLine_data();
    void aScriptThatFailsIsToldInOneLine();
    void answersAreGivenAfterTheWait();
    void aPageThatNeverAnswersIsGivenUp();
    void aPageThatLoadedInTimeIsNotGivenUp();
    void aPageThatIsOpenedMeanwhileIsWaitedFor();
    void pagesAreAskedOnce();
    void aPictureThatWasNotTakenIsAFailure();
    void nobodyIsAskedWhereTheLauncherEndsByItself();
};

void tst_LauncherOptions::wrongCommandLinesAreRejected_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("problem");

    QTest::newRow("unknown option") << text("--fast tv") << text("unknown option --fast");
    QTest::newRow("unknown short option") << text("tv -x") << text("unknown option -x");
    QTest::newRow("unknown option with a value")
        << text("--fast=secret tv") << text("unknown option --fast");
    QTest::newRow("value of an option that takes none")
        << text("--once=1 tv") << text("--once takes no value");
    QTest::newRow("value of the help") << text("--help=all") << text("--help takes no value");
    QTest::newRow("empty value of an option that takes none")
        << text("--once= tv") << text("--once takes no value");
    QTest::newRow("no option after two hyphens") << text("--") << text("no application is named");
    QTest::newRow("no tag") << text("--size 10x10") << text("no application is named");
    QTest::newRow("no file") << text("tv --screenshot") << text("--screenshot needs FILE");
    QTest::newRow("no size") << text("tv --size") << text("--size needs WxH");
    QTest::newRow("no time") << text("tv --wait") << text("--wait needs MS");
    QTest::newRow("no limit") << text("tv --timeout") << text("--timeout needs MS");
    QTest::newRow("no script") << text("tv --eval") << text("--eval needs SCRIPT");
    QTest::newRow("limit of nothing")
        << text("tv --timeout 0") << text("--timeout needs a number of milliseconds, not 0");

    const QString size = text("--size needs WIDTHxHEIGHT, as in 1280x720, not ");
    const char *const sizes[] = {
        "big", "10", "x", "10x", "0x10", "10x-1", "10x10x10", "20000x10"
    };
    for (const char *value : sizes)
        QTest::newRow((QByteArray("size ") + value).constData())
            << text("tv --size ") + text(value) << size + text(value);
    const QString time = text("--wait needs a number of milliseconds, not ");
    const char *const times[] = { "long", "-1", "1.5", "99999999999" };
    for (const char *value : times)
        QTest::newRow((QByteArray("wait ") + value).constData())
            << text("tv --wait ") + text(value) << time + text(value);
}

void tst_LauncherOptions::wrongCommandLinesAreRejected()
{
    QFETCH(QString, arguments);
    QFETCH(QString, problem);

    QCOMPARE(Options().parse(arguments.split(QLatin1Char(' '))), problem);
}

void tst_LauncherOptions::aWrongCommandLineIsToldInOneLine()
{
    Stage stage;

    const Run run = stage.launch("--fast tv");

    QCOMPARE(run.err, text("nuv-launcher: unknown option --fast; see nuv-launcher --help\n"));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
}

// Every option that takes a value, as the help lists them.
void tst_LauncherOptions::aValueCanFollowAnEqualsSign_data()
{
    QTest::addColumn<QString>("option");

    const QList<Entry> entries = entriesOfHelp();
    for (int i = 0; i < entries.size(); ++i) {
        if (!entries.at(i).value.isEmpty())
            QTest::newRow(entries.at(i).name.toLatin1().constData()) << entries.at(i).name;
    }
}

void tst_LauncherOptions::aValueCanFollowAnEqualsSign()
{
    QFETCH(QString, option);
    const char *const values[] = { "10x20", "1500", "a=b", "", "-", "--once", "tv" };

    for (const char *value : values) {
        Options apart;
        Options joined;
        const QString problem =
            apart.parse(QStringList() << text("tv") << option << text(value) << text("more"));

        QCOMPARE(joined.parse(QStringList()
                              << text("tv") << option + text("=") + text(value) << text("more")),
                 problem);
        QCOMPARE(joined.size, apart.size);
        QCOMPARE(joined.timeout, apart.timeout);
        QCOMPARE(joined.ofLayer, apart.ofLayer);
        QCOMPARE(joined.tags, apart.tags);
    }
}

void tst_LauncherOptions::whatFollowsTwoHyphensIsATag()
{
    Options options;

    QCOMPARE(options.parse(QString(text("--once tv -- --help -- -h")).split(QLatin1Char(' '))),
             QString());

    QCOMPARE(options.tags, QString(text("tv --help -- -h")).split(QLatin1Char(' ')));
    QVERIFY(!options.help);
}

void tst_LauncherOptions::theShortOptionForTheHelpIsKnown()
{
    Stage stage;

    const Run run = stage.launch("-h");

    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, Options::helpText());
}

void tst_LauncherOptions::theVersionIsShown()
{
    Stage stage;

    const Run run = stage.launch("--version");

    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    QVERIFY2(run.out.startsWith(text("nuv-launcher " LAUNCHER_VERSION " (Qt ") + text(qVersion())),
             qPrintable(run.out));
    QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
}

void tst_LauncherOptions::theHelpNamesTheOptionsThatAreAccepted()
{
    Stage stage;

    const Run run = stage.launch("--help");

    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, Options::helpText());
    QVERIFY(run.out.startsWith(text("Usage: nuv-launcher [OPTIONS] TAG...\n")));
    QVERIFY(run.out.contains(text("Exit status: 0 ")));
    QStringList names;
    const QList<Entry> entries = entriesOfHelp();
    for (int i = 0; i < entries.size(); ++i) {
        names << entries.at(i).name;
        const QString problem = Options().parse(QStringList(entries.at(i).name));
        const QString needed = entries.at(i).name + text(" needs ") + entries.at(i).value;
        QVERIFY(!problem.startsWith(text("unknown")));
        QCOMPARE(problem == needed, !entries.at(i).value.isEmpty());
    }
    QCOMPARE(names.join(text(" ")),
             text("--screenshot --eval --once --wait --size --timeout --properties --version "
                  "--help"));
    const QStringList lines = run.out.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i)
        QVERIFY2(lines.at(i).size() <= 80, qPrintable(lines.at(i)));
}

void tst_LauncherOptions::theManualSaysWhatTheHelpSays()
{
    const QString source = contents(text(LAUNCHER_FOLDER "/nuv-launcher.1"));
    const QString manual = asRead(source);

    const QList<Entry> entries = entriesOfHelp();
    for (int i = 0; i < entries.size(); ++i) {
        const Entry &entry = entries.at(i);
        const QString words = flat(entry.name + text(" ") + entry.value + text(" ") + entry.words);
        QVERIFY2(manual.contains(words), qPrintable(words));
    }
    QCOMPARE(source.count(text("\n.TP\n\\fB\\-\\-")), entries.size());
    QStringList paragraphs = Options::helpText().split(text("\n\n"));
    paragraphs.removeFirst(); // how it is used
    for (int i = 0; i < paragraphs.size(); ++i) {
        const QString words = flat(paragraphs.at(i)).remove(text("Exit status: "));
        if (!words.startsWith(text("--")))
            QVERIFY2(manual.contains(words), qPrintable(words));
    }
}

void tst_LauncherOptions::theDocumentationShowsTheTable()
{
    Stage stage;

    const Run run = stage.launch("--properties");

    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, ViewSettings::description());
    QCOMPARE(run.out.count(QLatin1Char('\n')), 2 + 42);
    QVERIFY2(contents(text(LAUNCHER_FOLDER "/../../docs/launcher.md"))
                 .contains(text("\n\n") + run.out + text("\n")),
             "docs/launcher.md has another table than nuv-launcher --properties");
}

void tst_LauncherOptions::onceEndsWhenThePagesHaveLoaded()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" },"
                    "{ \"Tag\": \"bad\", \"Url\": \"none.html\" }");
    stage.write("page.html", "<script>onload = function() { zarexExt.say('loaded') }</script>");

    const Run good = stage.launch("--once tv");
    const Run bad = stage.launch("--once tv bad");

    QCOMPARE(good.err, QString());
    QCOMPARE(said(good), text("loaded"));
    QCOMPARE(good.status, 0);
    QCOMPARE(said(bad), text("loaded"));
    QCOMPARE(bad.status, 1);
}

void tst_LauncherOptions::everyPageIsAsked()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"one\", \"Url\": \"one.html\" },"
                    "{ \"Tag\": \"two\", \"Url\": \"two.html\" }");
    stage.write("one.html", "<title>first</title>");
    stage.write("two.html", "<title>second</title>");

    const Run run = stage.launch("--once --eval document.title one two");

    QCOMPARE(linesAfter("one  answers: ", run.out), QStringList(text("\"first\"")));
    QCOMPARE(linesAfter("two  answers: ", run.out), QStringList(text("\"second\"")));
}

void tst_LauncherOptions::aScriptThatFailsIsToldInOneLine_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("reason");

    QTest::newRow("unknown name") << text("nosuch")
                                  << text("ReferenceError: Can't find variable: nosuch");
    QTest::newRow("no script") << text("1+") << QString(ToolkitDifferences::scriptTooShort());
    QTest::newRow("thrown") << text("throw('a\\nb')") << text("a?b");
}

void tst_LauncherOptions::aScriptThatFailsIsToldInOneLine()
{
    QFETCH(QString, script);
    QFETCH(QString, reason);
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");

    const Run run = stage.launch((text("--once --eval ") + script + text(" tv")).toLatin1());

    QCOMPARE(run.err, text("nuv-launcher: tv: the script failed: ") + reason + text("\n"));
    QVERIFY(!run.out.contains(text("answers")));
    QCOMPARE(run.status, 1);
}

void tst_LauncherOptions::answersAreGivenAfterTheWait()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html",
                "<script>late = 'too early';"
                "onload = function() { setTimeout(\"late = 'now'\", 50) }</script>");

    const Run run = stage.launch("--once --wait 400 --eval late tv");

    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("\"now\"")));
}

void tst_LauncherOptions::aPageThatNeverAnswersIsGivenUp()
{
    HttpServer server;
    server.ignore("/");
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" },"
                    "{ \"Tag\": \"silent\", \"Url\": \""
                    + server.address().toLatin1() + "\" }");
    stage.write("page.html", "<p>");

    const Run run = stage.launch("--screenshot out.png --timeout 300 --eval 1 silent tv");

    QCOMPARE(run.err,
             text("nuv-launcher: silent: the page ") + server.address()
                 + text(" has not loaded after 300 ms\n"));
    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("1")));
    QVERIFY(QFile::exists(stage.path("out-tv.png")));
    QVERIFY(!QFile::exists(stage.path("out-silent.png")));
    QCOMPARE(run.status, 1);
}

void tst_LauncherOptions::aPageThatLoadedInTimeIsNotGivenUp()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html", "<p>");

    const Run run = stage.launch("--once --timeout 2000 --wait 2200 --eval 1 tv");

    QCOMPARE(run.err, QString());
    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("1")));
    QCOMPARE(run.status, 0);
}

void tst_LauncherOptions::aPageThatIsOpenedMeanwhileIsWaitedFor()
{
    HttpServer server;
    server.ignore("/");
    Stage stage;
    stage.configure(Stage::application("tv", text("page.html")) + ", "
                    + Stage::application("silent", server.address()));
    stage.write("page.html",
                "<script>onload = function() { setTimeout(function() { zarexExt.open('silent') }, "
                "0) }</script>");

    const Run run = stage.launch("--once --wait 500 --timeout 800 --eval 1 tv");

    QCOMPARE(run.err,
             text("nuv-launcher: silent: the page ") + server.address()
                 + text(" has not loaded after 800 ms\n"));
    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("1")));
    QCOMPARE(run.status, 1);
}

// The second application is opened while the first one waits for the answers; both have them then. What
// the last timer says comes after all others.
void tst_LauncherOptions::pagesAreAskedOnce()
{
    Stage stage;
    stage.configure(Stage::application("tv", text("page.html")) + ", "
                    + Stage::application("news", text("news.html")));
    stage.write("page.html",
                "<script>onload = function() { setTimeout(function() { zarexExt.open('news') }, "
                "0) }</script>");
    stage.write("news.html",
                "<script>onload = function() { setTimeout(function() { zarexExt.say('later') }, "
                "700) }</script>");
    QProcess process;
    stage.start(&process, "--wait 300 --eval 1 tv");

    QVERIFY(Stage::awaitOutput(&process, "news  says: later\n"));
    process.terminate();
    const Run run = Stage::finish(&process);

    QCOMPARE(linesAfter("tv  answers: ", run.out), QStringList(text("1")));
    QCOMPARE(linesAfter("news  answers: ", run.out), QStringList(text("1")));
    QCOMPARE(run.status, 0);
}

// The page closes its window before the time for it has come.
void tst_LauncherOptions::aPictureThatWasNotTakenIsAFailure()
{
    Stage stage;
    stage.configure(Stage::application("tv", text("page.html")));
    stage.write("page.html",
                "<script>onload = function() { setTimeout(function() { close() }, 0) }</script>");

    const Run run = stage.launch("--screenshot out.png --wait 60000 tv");

    QVERIFY(!QFile::exists(stage.path("out.png")));
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 1);
}

void tst_LauncherOptions::nobodyIsAskedWhereTheLauncherEndsByItself()
{
    Stage stage;
    stage.configure("{ \"Tag\": \"tv\", \"Url\": \"page.html\" }");
    stage.write("page.html",
                "<script>alert('hello'); said = [confirm('Sure?'), prompt('Who?', 'me')]"
                "</script>");

    const Run run = stage.launch("--once --eval said tv");

    const QString expected = text("tv  alert: hello\n"
                                  "tv  asks, and is told no: Sure?\n"
                                  "tv  asks, and is told nothing: Who?\n"
                                  "tv  answers: [false,null]\n");
    QVERIFY2(run.out.endsWith(expected), qPrintable(run.out));
    QCOMPARE(run.status, 0);
}

NUV_TEST_MAIN(tst_LauncherOptions)

#include "tst_launcheroptions.moc"
