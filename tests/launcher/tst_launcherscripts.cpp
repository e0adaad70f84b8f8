// SPDX-License-Identifier: MIT
#include "examples/launcher/program/standstillwatch.h"
#include "tests/launcher/output.h"
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

/// What scripts of pages can do to a run, and what is told of them.
class tst_LauncherScripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scriptsThatNeverEndAreTold();
    void aStandstillIsToldOnce();
    void aFloodOfQuestionsIsToldOnce();
    void errorsOfTheUserScriptTellFileAndLine();
    void scriptsOfPagesTellFileAndLineBesideAUserScript();
};

// All at once, as each takes its five seconds. With a user the program goes on: it may be the script that
// comes to an end.
void tst_LauncherScripts::scriptsThatNeverEndAreTold()
{
    const struct {
        const char *tag;
        const char *page;
        const char *arguments;
    } runs[] = {
        { "loading", "<script>for (;;);</script>", "--once --timeout 1000" },
        { "later", "<script>onload = function() { setTimeout('for (;;);', 100) }</script>",
          "--once --timeout 1000 --wait 60000" },
        { "asking", "<script>for (;;) { alert(1); confirm(2); prompt(3) }</script>",
          "--screenshot out.png --timeout 1000" },
        { "answering", "<p>", "--once --timeout 1000 --eval for(;;);" },
        { "ending", "<script>onunload = function() { for (;;); }</script>",
          "--once --timeout 1000" },
        { "attended", "<script>for (;;);</script>", "--size 40x40" },
    };
    const int count = int(sizeof runs / sizeof runs[0]);
    Stage stage;
    QByteArray applications;
    for (const auto &run : runs) {
        const QByteArray page = QByteArray(run.tag) + ".html";
        stage.write(page.constData(), run.page);
        applications += (applications.isEmpty() ? "" : ", ")
            + Stage::application(run.tag, QLatin1String(page.constData()));
    }
    stage.configure(applications);
    QProcess launchers[count];
    for (int i = 0; i < count; ++i)
        stage.start(&launchers[i], (QByteArray(runs[i].arguments) + ' ' + runs[i].tag).constData());
    QProcess &attended = launchers[count - 1];
    attended.setReadChannel(QProcess::StandardError);

    QVERIFY(Stage::awaitOutput(&attended, "5000 ms\n"));
    QCOMPARE(attended.state(), QProcess::Running);
    attended.kill();
    for (int i = 0; i < count; ++i) {
        const Run run = Stage::finish(&launchers[i]);
        QCOMPARE(run.err,
                 text("nuv-launcher: ") + text(runs[i].tag)
                     + text(": a script has not come to an end in 5000 ms\n"));
        QCOMPARE(run.status, i == count - 1 ? -1 : 1);
    }
}

// As while a script runs for long and then ends: no event is handled. A watch with more patience says
// when it is long enough.
void tst_LauncherScripts::aStandstillIsToldOnce()
{
    const QString message =
        text("nuv-launcher: tv, news: a script has not come to an end in 100 ms\n");
    const QString later = text("nuv-launcher: all: a script has not come to an end in 300 ms\n");
    const Output err(stderr);
    StandstillWatch watch(100, StandstillWatch::Report);
    StandstillWatch patientWatch(300, StandstillWatch::Report);
    watch.setSuspects(text("tv, news"));
    patientWatch.setSuspects(text("all"));

    while (!err.text().contains(message) || !err.text().contains(later))
        QTest::qSleep(1);
    QCOMPARE(err.text().size(), message.size() + later.size());
    watch.setSuspects(text("tv, news")); // the program is back, until the next standstill
    while (err.text().count(message) < 2)
        QTest::qSleep(1);
    QCOMPARE(err.text().size(), 2 * message.size() + later.size());
}

void tst_LauncherScripts::aFloodOfQuestionsIsToldOnce()
{
    Stage stage;
    stage.write("page.html",
                "<script>for (var i = 0; i < 2000; ++i) alert(i);"
                "zarexExt.say(confirm('sure?') + ' ' + prompt('how?'))</script>");
    stage.configure(Stage::application("tv", text("page.html")));

    const Run run = stage.launch("--once tv");

    const QStringList lines(run.out.split(QLatin1Char('\n')).mid(2));
    QCOMPARE(lines.filter(text("  alert: ")).size(), 10);
    QCOMPARE(QStringList(lines.mid(10)).join(text("\n")),
             text("tv  asks without end; what follows is answered with no\n"
                  "tv  says: false null\n"));
    QCOMPARE(run.status, 0);
}

void tst_LauncherScripts::errorsOfTheUserScriptTellFileAndLine()
{
    Stage stage;
    stage.write("user.js",
                "console.log('hello');\nsetTimeout(function() {\nlater() }, 1);\nnosuch() // end");
    stage.write("wrong.js", "var a = 1;\nvar b = ;");
    stage.write("page.html", "<p>");
    stage.configure(
        Stage::application("tv", text("page.html"), ", \"UserScript\": \"user.js\"") + ", "
        + Stage::application("wrong", text("page.html"), ", \"UserScript\": \"wrong.js\""));

    const Run run = stage.launch("--once --wait 300 tv wrong");

    // The engine of Qt 4 knows no places in a script without a name.
    QCOMPARE(linesAfter("tv  console: ", run.out).join(text("\n")),
             text(ToolkitDifferences::either(
                 "hello\nReferenceError: Can't find variable: nosuch\n"
                 "ReferenceError: Can't find variable: later",
                 "user.js:1: hello\nuser.js:4: ReferenceError: Can't find variable: nosuch\n"
                 "user.js:3: ReferenceError: Can't find variable: later")));
    QCOMPARE(linesAfter("wrong  console: ", run.out).join(text("\n")),
             text(ToolkitDifferences::either("wrong.js:2: SyntaxError: Parse error",
                                             "wrong.js:2: SyntaxError: Unexpected token ';'")));
}

void tst_LauncherScripts::scriptsOfPagesTellFileAndLineBesideAUserScript()
{
    Stage stage;
    stage.write("user.js", "mine = 1");
    stage.write("page.html", "<script>\nconsole.log('hello');\nnosuch()</script>");
    stage.configure(Stage::application("tv", text("page.html"), ", \"UserScript\": \"user.js\""));

    const Run run = stage.launch("--once tv");

    QCOMPARE(linesAfter("tv  console: ", run.out).join(text("\n")),
             text(ToolkitDifferences::either(
                 "page.html:1: hello\nReferenceError: Can't find variable: nosuch",
                 "page.html:2: hello\npage.html:3: ReferenceError: Can't find variable: nosuch")));
}

NUV_TEST_MAIN(tst_LauncherScripts)

#include "tst_launcherscripts.moc"
