// SPDX-License-Identifier: MIT
#include "tests/support/filecontents.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/documents/templates.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/text/spelling.h"

#include <QProcess>

#include <cerrno>
#include <random>

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>

/// How commands are called: where the file goes, what is said of a name that is none, and what is
/// explained.
class tst_Calls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theFileIsInOnePlace_data();
    void theFileIsInOnePlace();
    void aNameThatIsNoneIsTold_data();
    void aNameThatIsNoneIsTold();
    void namesAreAsFarAsTheFewestSlipsBetweenThem();
    void theChosenFileMayBeOneThatCannotBeLoaded_data();
    void theChosenFileMayBeOneThatCannotBeLoaded();
    void helpIsACommand();
    void theVersionIsThatOfTheProgramForEveryCommand();
    void everyPlaceIsExplained();
    void aKeyOfTwoSectionsIsExplainedForBoth();
    void rulesAreExplainedWithTheRightFile();
    void everyTemplateIsPrinted();
    void checkNamesTheKeysThatAPartWasWrittenOf();
    void showNamesWhatIsNotUsed();
    void whatIsInNoSinglePlaceIsShownWithoutIt_data();
    void whatIsInNoSinglePlaceIsShownWithoutIt();
    void completesWhatMayComeNext_data();
    void completesWhatMayComeNext();
    void completesTheRulesThatCanBeIgnored();
    void completesTheFirstWordWithoutOne();
    void completesNothingIntoAFullOutput();
    void theChoiceOfTheFileIsTold_data();
    void theChoiceOfTheFileIsTold();
    void aVariableThatNamesNothingIsAWarning_data();
    void aVariableThatNamesNothingIsAWarning();
    void aVariableWithANameInUtf8IsExplained();
    void aFileThatIsTooLargeIsNotRead();
    void aFileThatIsNotReadToItsEndIsNotFormatted_data();
    void aFileThatIsNotReadToItsEndIsNotFormatted();
    void aFileOfAnotherUserBecomesOnesOwn_data();
    void aFileOfAnotherUserBecomesOnesOwn();
    void listsAreShown();
    void diffShowsWhatDiffersInMeaning_data();
    void diffShowsWhatDiffersInMeaning();
    void diffReadsWhatTheShellMakesOfACommand();
    void aPipeThatIsOpenAlreadyIsRead_data();
    void aPipeThatIsOpenAlreadyIsRead();
    void aFullOutputIsToldOnce();
    void withTooManyOpenFilesNothingIsTakenForTheContent();

private:
    ChildCall::Result call(const QString &line) const;
    ChildCall::Result callWithVariable(const QByteArray &file, const QString &line) const;
    QByteArray completed(const QString &line) const;

    TemporaryDir m_folder;
};

namespace {

QByteArray moreThanIsLookedAt()
{
    QByteArray members;
    for (int i = 0; i <= Findings::Limit; ++i)
        members += "\"_comment" + QByteArray::number(i) + "\": \"\xe9\", ";
    return members;
}

} // namespace

// The standard error comes with the output.
ChildCall::Result tst_Calls::call(const QString &line) const
{
    return ChildCall::run([&] {
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
        Output output;
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return Program::run(QStringList(QLatin1String("nuv-apps-config")) + words, output);
    });
}

ChildCall::Result tst_Calls::callWithVariable(const QByteArray &file, const QString &line) const
{
    qputenv("NUV_APPS_CONFIG_FILE", file);
    const ChildCall::Result result = call(line);
    qunsetenv("NUV_APPS_CONFIG_FILE");
    return result;
}

void tst_Calls::initTestCase()
{
    qunsetenv("NUV_APPS_CONFIG_FILE");
    const auto file = [this](const char *name, const QByteArray &applications) {
        m_folder.write(QLatin1String(name),
                       "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ " + applications
                           + " ] }");
    };
    file("AppsConfig.json",
         "{ \"Tag\": \"tv\", \"Scale\": 1.5, \"UseWebGL\": true }, { \"Tag\": \"menu\" }, "
         "{ \"Tag\": \"menu-2\" }");
    file("other.json", "{ \"Tag\": \"other\", \"Scale\": 2.5 }");
    file("numbers.json",
         "{ \"Tag\": \"small\", \"Scale\": -1e999 }, { \"Tag\": \"large\", \"Scale\": 1e999 }");
    file("integer.json", "{ \"Tag\": \"tv\", \"Scale\": 1 }");
    file("double.json", "{ \"Tag\": \"tv\", \"Scale\": 1.0 }");
    file("lists.json",
         "{ \"Tag\": \"tv\", \"Scale\": 1, \"GrantBroadcastAccessRightDomains\": "
         "[ { \"Domain\": \"a.example\" }, { \"Domain\": \"b.example\" } ] }");
    file("ignored.json",
         "{ \"Tag\": \"tv\", \"Url\": \"http://tv.example/\", \"Scale\": 1, \"Scale\": 02, "
         "\"_comment check\": \"ignore duplicate-key, leading-zero\" }");
    file("tv.json", "{ \"Tag\": \"tv\", \"Scale\": 3.5 }");
    file("half.json", "{ \"Tag\": \"tv\", \"Scale\": 0.5 }");
    file("odd.json", "{ \"Tag\": \"tv\", \"Scale\": 9007199254740993 }");
    file("even.json", "{ \"Tag\": \"tv\", \"Scale\": 9007199254740992.0 }");
    file("secret.json", "{ \"Tag\": \"tv\", \"HttpProxy\": \"me:secret@proxy.example:80\" }");
    file("signs.json",
         "{ \"Tag\": \"\\ud83d\\ude00\" }, { \"Tag\": \"\\ude00\" }, { \"Tag\": \"a\\ude00\" }, "
         "{ \"Tag\": \"\\ud83d\" }, { \"Tag\": \"\\ud83da\" }");
    file("lines.json", "{ \"Tag\": \"tv\\nmenu\" }, { \"Tag\": \"tv\" }");
    QByteArray many = "{ \"Tag\": \"0\" }";
    for (int i = 1; i <= 10; ++i)
        many += ", { \"Tag\": \"" + QByteArray::number(i) + "\" }";
    file("many.json", many);
    m_folder.write(QLatin1String("broken.json"), "{ \"Global\": { \"Version\": 1 }, }");
    m_folder.write(QLatin1String("deep.json"), QByteArray(50000, '[') + QByteArray(50000, ']'));
    QVERIFY(QDir::setCurrent(m_folder.path()));
}

void tst_Calls::theFileIsInOnePlace_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString(QLatin1String(line)) << QByteArray(expected);
    };
    row("list", "tv\nmenu\nmenu-2\n");
    row("list other.json", "other\n");
    row("list -f other.json", "other\n");
    row("list other.json other", "Scale\n");
    row("list -f other.json other", "Scale\n");
    row("list AppsConfig.json tv", "Scale\nUseWebGL\n");
    row("get tv Scale", "1.5\n");
    row("get other.json other Scale", "2.5\n");
    row("get -f other.json other Scale", "2.5\n");
    row("get tv.json tv Scale", "3.5\n");
    row("get numbers.json small Scale", "-inf\n");
    row("get numbers.json large Scale", "inf\n");
    row("get lists.json tv GrantBroadcastAccessRightDomains", "a.example\nb.example\n");
    row("diff integer.json double.json", "");
    row("check ignored.json",
        "nothing found in 1 file\nthe launcher will see 1 of 1 application\n");
    row("list --format json signs.json",
        "[\n    \"\xf0\x9f\x98\x80\",\n    \"\\ude00\",\n    \"a\\ude00\",\n    \"\\ud83d\",\n"
        "    \"\\ud83da\"\n]\n");
    row("keys other.json",
        "Applications/1/Scale = 2.5  (double)\nApplications/1/Tag = \"other\"  (string)\n"
        "Applications/size = 1  (int)\nGlobal/Version = 1  (int)\n");
}

void tst_Calls::theFileIsInOnePlace()
{
    QFETCH(QString, line);
    const ChildCall::Result result = call(line);
    QTEST(result.output, "expected");
    QCOMPARE(result.exitStatus(), 0);

    if (!line.startsWith(QLatin1String("list other")))
        return;
    QString shown = line;
    shown.replace(0, 4, QLatin1String("show"));
    QVERIFY(call(shown).output.startsWith("File: other.json (named on the command line)\n"));
    QVERIFY(call(shown).output.contains("Application \"other\""));
}

void tst_Calls::aNameThatIsNoneIsTold_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *line, int status, const char *expected) {
        QTest::newRow(line) << QString(QLatin1String(line)) << status
                            << "nuv-apps-config: " + QByteArray(expected) + '\n';
    };
    row("show tv", 2,
        "tv: No such file or directory; it is an application of AppsConfig.json, and the file "
        "comes "
        "before the tag");
    row("show nothing", 2, "nothing: No such file or directory");
    row("show other.json AppsConfig.json", 1,
        "other.json has no application \"AppsConfig.json\"; \"AppsConfig.json\" is a file, and the "
        "file comes before the tag");
    row("get other.json other", 1,
        "AppsConfig.json has no application \"other.json\"; \"other.json\" is a file, and the file "
        "comes before the tag");
    row("show AppsConfig.json mneu", 1,
        "AppsConfig.json has no application \"mneu\"; did you mean \"menu\"?");
    row("show AppsConfig.json men", 1,
        "AppsConfig.json has no application \"men\"; did you mean \"menu\" or \"menu-2\"?");
    row("show AppsConfig.json nothing", 1,
        "AppsConfig.json has no application \"nothing\"; it has tv, menu, menu-2");
    row("show many.json nothing", 1, "many.json has no application \"nothing\"");
    row("list other.json nothing", 1, "other.json has no application \"nothing\"; it has other");
    row("get tv Scael", 1, "there is no key \"Scael\"; did you mean \"Scale\"?");
    row("get tv WebGL", 1, "there is no key \"WebGL\"; did you mean \"UseWebGL\"?");
    row("get tv ShowChrome", 1, "tv has no value for ShowChrome");
    row("explain Proxy", 1,
        "there is no key and no rule \"Proxy\"; did you mean \"HttpProxy\" or "
        "\"unusable-proxy\"?");
    row("template kisok", 1, "there is no template \"kisok\"; did you mean \"kiosk\"?");
    row("template x", 1,
        "there is no template \"x\"; there are minimal, set-top-box, kiosk, hotel-television, "
        "development, all");
    row("help chekc", 2, "there is no command \"chekc\"; did you mean \"check\"?");
    row("list a.json b c", 2, "usage: nuv-apps-config list [FILE [TAG]]");
    row("keys a.json b.json", 2, "usage: nuv-apps-config keys [FILE]");
    row("keys -f a.json b.json", 2, "usage: nuv-apps-config keys [FILE]");
    row("get tv", 2, "usage: nuv-apps-config get [FILE] TAG KEY");
    row("get a b c d", 2, "usage: nuv-apps-config get [FILE] TAG KEY");
}

void tst_Calls::aNameThatIsNoneIsTold()
{
    QFETCH(QString, line);
    QFETCH(int, status);
    const ChildCall::Result result = call(line);
    QTEST(result.output, "expected");
    QCOMPARE(result.exitStatus(), status);
}

void tst_Calls::theChosenFileMayBeOneThatCannotBeLoaded_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *file, const char *line, int status, const char *expected) {
        QTest::addRow("%s, %s", file, line)
            << QByteArray(file) << QString(QLatin1String(line)) << status << QByteArray(expected);
    };
    row("deep.json", "list", 1,
        "deep.json: the document is nested so deeply that its flat keys fill the memory");
    row("deep.json", "list tv", 2, "tv: No such file or directory");
    row(".", "list", 2, ".: a directory");
    row(".", "list tv", 2, "tv: No such file or directory");
}

void tst_Calls::theChosenFileMayBeOneThatCannotBeLoaded()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, line);
    QFETCH(int, status);
    QFETCH(QByteArray, expected);
    const ChildCall::Result result = callWithVariable(file, line);
    QCOMPARE(result.output, "nuv-apps-config: " + expected + '\n');
    QCOMPARE(result.exitStatus(), status);
}

// A letter that is changed, added or removed, or swapped with its neighbour; without a table.
static int fewestSlips(const QString &a, const QString &b)
{
    if (a.isEmpty() || b.isEmpty())
        return a.size() + b.size();
    int fewest = fewestSlips(a.mid(1), b.mid(1)) + (a.at(0) != b.at(0));
    fewest = qMin(fewest, 1 + qMin(fewestSlips(a.mid(1), b), fewestSlips(a, b.mid(1))));
    const bool isSwapped = a.size() > 1 && b.size() > 1 && a.at(0) == b.at(1) && a.at(1) == b.at(0);
    return isSwapped ? qMin(fewest, 1 + fewestSlips(a.mid(2), b.mid(2))) : fewest;
}

void tst_Calls::namesAreAsFarAsTheFewestSlipsBetweenThem()
{
    std::mt19937 engine(1);
    const auto word = [&engine] {
        QString letters;
        for (int length = int(engine() % 6); length > 0; --length)
            letters += QLatin1Char("abc"[engine() % 3]);
        return letters;
    };
    for (int i = 0; i < 500; ++i) {
        const QString a = word();
        const QString b = word();
        const int limit = int(engine() % 6);
        QVERIFY2(Spelling::distance(a, b, limit) == qMin(fewestSlips(a, b), limit + 1),
                 qPrintable(a + QLatin1Char(' ') + b));
    }
}

void tst_Calls::helpIsACommand()
{
    const auto output = [this](const char *line) { return call(QLatin1String(line)).output; };
    QCOMPARE(output("help"), output("--help"));
    for (const Command &command : Commands::all()) {
        const QByteArray name = command.name;
        QCOMPARE(output("help " + name), output(name + " --help"));
        QVERIFY(output("help " + name).startsWith("Usage: nuv-apps-config " + name));
    }
}

void tst_Calls::theVersionIsThatOfTheProgramForEveryCommand()
{
    const QByteArray version = call(QLatin1String("--version")).output;
    QVERIFY(version.startsWith("nuv-apps-config "));
    for (const Command &command : Commands::all())
        QCOMPARE(call(QLatin1String(command.name) + QLatin1String(" --version")).output, version);
}

void tst_Calls::everyPlaceIsExplained()
{
    const QByteArray all = call(QLatin1String("explain")).output;
    for (const Property &property : Properties::all()) {
        const QString places = Properties::place(property);
        QVERIFY2(all.contains("\n  " + places.toUtf8() + '\n'), property.key);
        for (QString place : places.split(QLatin1String(" and "))) {
            for (const char *index : { "[]", "[0]", "[17]", "" }) {
                QString asked = place;
                asked.replace(QLatin1String("[]"), QLatin1String(index));
                const ChildCall::Result result = call(QLatin1String("explain ") + asked);
                QCOMPARE(result.exitStatus(), 0);
                QVERIFY2(result.output.contains("\n  place:         " + places.toUtf8() + '\n'),
                         qPrintable(asked));
            }
        }
    }
    for (const Rule &rule : Rules::all())
        QVERIFY2(all.contains("\n  " + QByteArray(rule.id) + ' '), rule.id);
    QCOMPARE(call(QLatin1String("explain Global.Version")).output.count("place:"), 1);
}

// What is given as the right file has not got the mistake.
void tst_Calls::aKeyOfTwoSectionsIsExplainedForBoth()
{
    const QByteArray output = call(QLatin1String("explain Certificate")).output;
    const int global = output.indexOf("  place:         Global.Certificate\n");
    QVERIFY(global > 0);
    QVERIFY(output.indexOf("\n\nCertificate\n") > global);
    QVERIFY(output.indexOf("  place:         Applications[].Certificate\n") > global);
}

void tst_Calls::rulesAreExplainedWithTheRightFile()
{
    int corrected = 0;
    for (const Rule &rule : Rules::all()) {
        const QByteArray output = call(QLatin1String("explain ") + QLatin1String(rule.id)).output;
        const QByteArray title = "\nThe same file, corrected:\n\n";
        const int at = output.indexOf(title);
        if (at < 0)
            continue;
        const QByteArray right = output.mid(at + title.size());
        const auto analysis = analyse(QLatin1String("right"), right, QString(QLatin1String("/")));
        QVERIFY2(!analysis->findings.has(rule.id), rule.id);
        QVERIFY2(output.left(at).contains("\nA file in which it is found:\n\n"), rule.id);
        ++corrected;
    }
    QVERIFY2(corrected > 40, QByteArray::number(corrected).constData());
}

void tst_Calls::everyTemplateIsPrinted()
{
    QCOMPARE(call(QLatin1String("template")).output, Templates::text(QLatin1String("minimal")));
    for (const QString &name : Templates::names()) {
        QCOMPARE(call(QLatin1String("template ") + name).output, Templates::text(name));
        const auto analysis =
            analyse(name, Templates::text(name),
                    QString(QLatin1String(SOURCE_FOLDER "/examples/configurations")));
        for (const Finding &finding : analysis->findings.all()) // the paths of a device of its own
            QVERIFY2(qstrcmp(finding.rule, "certificate-missing") == 0, finding.rule);
    }
}

void tst_Calls::checkNamesTheKeysThatAPartWasWrittenOf()
{
    m_folder.write(
        QLatin1String("part.json"),
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n{ \"Tag\": \"tv\", \"Url\": "
        "\"about:blank\", \"WebGL\": true,\n\"Opacity\": 1,\n\"Offline\": true,\n\"Use\": 1 } ] }");
    const QByteArray output = call(QLatin1String("check part.json")).output;
    for (const char *hint : { "\"WebGL\" [unknown-key]", "hint: there is \"UseWebGL\"\n",
                              "hint: there is \"WindowOpacity\"\n",
                              "hint: there is \"UseOfflineStorageDatabase\" and ",
                              "hint: there is \"UserAgent\" and \"UserScript\" and "
                              "\"UseTransparentBackground\" and \"UseGraphicsView\" and "
                              "\"UseCompositing\"\n" })
        QVERIFY2(output.contains(hint), output.constData());
}

// Of a file that is read, what its findings say that is not used or not there; of any other the errors.
void tst_Calls::showNamesWhatIsNotUsed()
{
    const QList<QByteArray> named = {
        "no-tag",           "duplicate-tag",      "duplicate-key", "unknown-key",
        "misplaced-key",    "null-value",         "plain-domain",  "needs-certificate",
        "no-domain",        "slash-in-key",       "no-version",    "top-level-certificate",
        "unusable-version", "not-an-object",      "empty-file",    "missing-file",
        "missing-here",     "certificate-missing"
    };
    for (const Rule &rule : Rules::all()) {
        const QByteArray sample = Rules::sample(rule);
        m_folder.write(QLatin1String("sample.json"), sample);
        const auto analysis = analyse(QLatin1String("sample"), sample, m_folder.path());
        if (!analysis->findings.has(rule.id) || analysis->findings.has("not-text"))
            continue; // it takes another file, too, or nothing of it is shown
        const bool isRead = !analysis->findings.hasSyntaxError();
        const bool isNamed = isRead ? named.contains(rule.id) : rule.severity == Severity::Error;
        const QByteArray output = call(QLatin1String("show sample.json")).output;
        QVERIFY2(output.contains('[' + QByteArray(rule.id) + "]\n") == isNamed, rule.id);
    }
}

void tst_Calls::whatIsInNoSinglePlaceIsShownWithoutIt_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<bool>("hasPlace");
    const QByteArray odd = moreThanIsLookedAt();
    const QByteArray tag = "\"Tag\": \"tv\", \"Scale\": 1.5";
    const QByteArray list = "\"Applications\": [ { " + tag + " } ]";
    QTest::newRow("in the list") << list << true;
    QTest::newRow("in an object") << QByteArray("\"Applications\": { \"size\": 1, \"1\": { " + tag
                                                + " } }")
                                  << false;
    QTest::newRow("in the second of two lists")
        << QByteArray("\"Applications\": [ {} ], " + list) << false;
    QTest::newRow("with two tags") << QByteArray(list).replace("{ ", "{ \"Tag\": {}, ") << false;
    QTest::newRow("in a list that check does not come to") << odd + list << false;
    QTest::newRow("in an object that check does not come to")
        << QByteArray(list).replace("{ ", "{ " + odd + "\"X\": 1 }, { ") << false;
    QTest::newRow("with a tag that check does not come to")
        << QByteArray(list).replace("{ ", "{ " + odd) << false;
}

void tst_Calls::whatIsInNoSinglePlaceIsShownWithoutIt()
{
    QFETCH(QByteArray, members);
    QFETCH(bool, hasPlace);
    m_folder.write(QLatin1String("places.json"),
                   "{ \"Global\": { \"Version\": 1 }, " + members + " }");
    const QByteArray text = call(QLatin1String("show places.json")).output;
    const QByteArray json = call(QLatin1String("show --format json places.json")).output;
    QVERIFY2(text.contains(hasPlace
                               ? "\nApplication \"tv\" (1:49)\n    Scale = 1.5  (double, 1:73)\n"
                               : "\nApplication \"tv\"\n    Scale = 1.5  (double)\n"),
             text.constData());
    QCOMPARE(json.contains("\"tag\": \"tv\",\n            \"line\": 1"), hasPlace);
    QCOMPARE(json.contains("\"type\": \"double\",\n                    \"line\": 1"), hasPlace);
}

void tst_Calls::completesWhatMayComeNext_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString(QLatin1String(line)) << QByteArray(expected);
    };
    row("", "check show list get keys explain schema template fmt diff help ");
    row("-", "--help --version ");
    row("show -", "--file --format --root --reveal --help ");
    row("check --format ", "text json sarif github ");
    row("show --format ", "text json ");
    row("show --format=", "--format=text --format=json ");
    row("check --fail-on=no", "--fail-on=error --fail-on=warning --fail-on=note ");
    row("show --file ", ":files ");
    row("check --root ", ":directories ");
    row("check --root=", ":directories ");
    row("check ", ":files ");
    row("check a.json ", ":files ");
    row("check --fix ", ":files ");
    row("check --nothing ", ":files ");
    row("check --format json ", ":files ");
    row("check --fail-on ", "error warning note ");
    row("--format ", "text json sarif github ");
    row("fmt ", ":files ");
    row("diff a.json ", ":files ");
    row("schema ", "");
    row("list lines.json ", "tv ");
    row("list broken.json ", "");
    row("list none.json ", "");
    row("show ", ":files ");
    row("show other.json ", "other ");
    row("show AppsConfig.json tv ", "tv menu menu-2 ");
    row("show -f other.json ", "other ");
    row("show --file=other.json other ", "other ");
    row("list other.json ", "other ");
    row("list other.json other ", "");
    row("keys ", ":files ");
    row("keys other.json ", "");
    row("get ", ":files tv menu menu-2 ");
    row("get tv ", "Scale UseWebGL ");
    row("get menu ", "");
    row("get other.json ", "other ");
    row("get other.json other ", "Scale ");
    row("get -f other.json ", "other ");
    row("get -f other.json other ", "Scale ");
    row("get none.json tv ", "");
    row("template ", "minimal set-top-box kiosk hotel-television development all ");
    row("template all ", "");
    row("help ", "check show list get keys explain schema template fmt diff help ");
    row("nothing ", "check show list get keys explain schema template fmt diff help ");
}

// The words, without what the shells show beside them.
QByteArray tst_Calls::completed(const QString &line) const
{
    const QStringList words = line.split(QLatin1Char(' '));
    const ChildCall::Result result = ChildCall::run([&] {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        Output output;
        return Program::run(QStringList(QLatin1String("nuv-apps-config"))
                                << QLatin1String("__complete") << words,
                            output);
    });
    QByteArray names;
    for (const QByteArray &candidate : result.output.split('\n'))
        names += candidate.isEmpty() ? QByteArray() : candidate.split('\t').first() + ' ';
    return result.exitStatus() == 0 ? names : "status " + QByteArray::number(result.exitStatus());
}

void tst_Calls::completesWhatMayComeNext()
{
    QFETCH(QString, line);
    QTEST(completed(line), "expected");
}

void tst_Calls::completesTheRulesThatCanBeIgnored()
{
    QByteArray expected;
    for (const Rule &rule : Rules::all())
        expected += Rules::canBeIgnored(rule) ? QByteArray(rule.id) + ' ' : QByteArray();
    QCOMPARE(completed(QLatin1String("check --ignore ")), expected);
}

void tst_Calls::completesTheFirstWordWithoutOne()
{
    QVERIFY(call(QLatin1String("__complete")).output.startsWith("check\tsay what is wrong"));
}

void tst_Calls::completesNothingIntoAFullOutput()
{
    const ChildCall::Result result = ChildCall::run([] {
        ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        Output output;
        return Program::run(QStringList() << QLatin1String("nuv-apps-config")
                                          << QLatin1String("__complete") << QString(),
                            output);
    });
    QCOMPARE(result.exitStatus(), 2);
}

void tst_Calls::theChoiceOfTheFileIsTold_data()
{
    QTest::addColumn<QString>("line");
    for (const char *format : { "text", "json", "sarif", "github" })
        QTest::newRow(format) << QLatin1String("check --format ") + QLatin1String(format);
}

void tst_Calls::theChoiceOfTheFileIsTold()
{
    QFETCH(QString, line);
    QVERIFY(
        call(line).output.contains("in the working directory, as NUV_APPS_CONFIG_FILE is not set"));
    QVERIFY(callWithVariable("", line).output.contains(
        "in the working directory, as NUV_APPS_CONFIG_FILE is empty"));
}

void tst_Calls::aVariableThatNamesNothingIsAWarning_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("said");
    const auto row = [](const char *options, int status, const char *said) {
        QTest::newRow(options) << QString(QLatin1String(options)) << status << QByteArray(said);
    };
    row("", 1, "\n4 warnings in 1 file\n");
    row("--fail-on error", 0, "\n4 warnings in 1 file\n");
    row("--format json --fail-on error", 0, "\"warnings\": 4");
    row("--format json", 1, "\"errors\": 0");
    row("--format sarif --fail-on error", 0, "\"executionSuccessful\": true");
    row("--format github", 1, "::warning file=AppsConfig.json,title=variable-names-nothing::");
}

void tst_Calls::aVariableThatNamesNothingIsAWarning()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, said);
    const ChildCall::Result result =
        callWithVariable("none.json", QLatin1String("check ") + options);
    QVERIFY2(result.output.contains(said), result.output.constData());
    QTEST(result.exitStatus(), "status");
}

void tst_Calls::aVariableWithANameInUtf8IsExplained()
{
    const QByteArray name = "caf\xc3\xa9.json";
    const QString path = QString::fromUtf8(name);
    if (QFile::encodeName(path) != name)
        return; // in a locale of Latin-1 the library finds the file
    m_folder.write(path, "{}");
    QCOMPARE(
        callWithVariable(name, QLatin1String("list")).output,
        QByteArray("nuv-apps-config: AppsConfig.json: warning: NUV_APPS_CONFIG_FILE names "
                   "caf\xc3\x83\xc2\xa9.json, which does not exist (the library reads the name "
                   "as Latin-1), so the library reads this file instead\ntv\nmenu\nmenu-2\n"));
}

void tst_Calls::aFileThatIsTooLargeIsNotRead()
{
    QFile file(QLatin1String("large.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize((qint64(256) << 20) + 1)); // without a block of its own
    const ChildCall::Result result = call(QLatin1String("list large.json"));
    file.remove();
    QCOMPARE(result.output,
             QByteArray("nuv-apps-config: large.json: larger than 256 MiB, which is no "
                        "configuration\n"));
    QCOMPARE(result.exitStatus(), 2);
}

void tst_Calls::aFileThatIsNotReadToItsEndIsNotFormatted_data()
{
    QTest::addColumn<QString>("line");
    for (const char *line : { "fmt long.json", "fmt --sort long.json", "fmt --write long.json" })
        QTest::newRow(line) << QString(QLatin1String(line));
}

void tst_Calls::aFileThatIsNotReadToItsEndIsNotFormatted()
{
    QFETCH(QString, line);
    const QByteArray bytes = "{ " + moreThanIsLookedAt() + "\"a\": 1, \"a\": 2 }";
    const QString file = m_folder.write(QLatin1String("long.json"), bytes);
    const ChildCall::Result result = call(line);
    QCOMPARE(result.output,
             QByteArray("nuv-apps-config: long.json: not touched, because it was not read to its "
                        "end; see check\n"));
    QCOMPARE(result.exitStatus(), 1);
    QCOMPARE(fileContents(file), bytes);
}

void tst_Calls::aFileOfAnotherUserBecomesOnesOwn_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("groupAfter");
    QTest::newRow("and keeps a group that one is in") << 8765 << 8765;
    QTest::newRow("and leaves any other group") << 9876 << 5678;
}

// Who may write into it and into its directory may replace it, but only root gives a file away.
void tst_Calls::aFileOfAnotherUserBecomesOnesOwn()
{
    QFETCH(int, group);
    if (::geteuid() != 0)
        return; // only root has files of others
    const QByteArray path =
        QFile::encodeName(m_folder.write(QLatin1String("foreign.json"), "{\"a\":1}"));
    QCOMPARE(::chown(path.constData(), 4321, gid_t(group)), 0);
    QCOMPARE(::chmod(path.constData(), 0666), 0);
    QCOMPARE(::chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
    const ChildCall::Result result = ChildCall::run([] {
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
        const gid_t further = 8765;
        if (::setgroups(1, &further) != 0 || ::setgid(5678) != 0 || ::setuid(1234) != 0)
            return -1;
        Output output;
        return Program::run(QStringList()
                                << QLatin1String("nuv-apps-config") << QLatin1String("fmt")
                                << QLatin1String("--write") << QLatin1String("foreign.json"),
                            output);
    });
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitStatus(), 0);
    QCOMPARE(fileContents(QString::fromLocal8Bit(path)), QByteArray("{\n    \"a\": 1\n}\n"));
    struct stat status;
    QCOMPARE(::stat(path.constData(), &status), 0);
    QCOMPARE(int(status.st_uid), 1234);
    QTEST(int(status.st_gid), "groupAfter");
    QCOMPARE(int(status.st_mode & 07777), 0666);
}

void tst_Calls::listsAreShown()
{
    const QByteArray shown = "GrantBroadcastAccessRightDomains = [\"a.example\", \"b.example\"]";
    QVERIFY(call(QLatin1String("show lists.json")).output.contains(shown + "  (list, "));
    const ChildCall::Result result = call(QLatin1String("diff integer.json lists.json"));
    QCOMPARE(result.output, "+ tv: " + shown + '\n');
    QCOMPARE(result.exitStatus(), 1);
}

void tst_Calls::diffShowsWhatDiffersInMeaning_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString(QLatin1String(line)) << QByteArray(expected);
    };
    row("diff integer.json half.json", "- tv: Scale = 1\n+ tv: Scale = 0.5\n");
    row("diff odd.json even.json",
        "- tv: Scale = 9007199254740993\n+ tv: Scale = 9007199254740992\n");
    row("diff integer.json secret.json",
        "+ tv: HttpProxy = \"me:********@proxy.example:80\"\n- tv: Scale = 1\n");
    row("diff --reveal integer.json secret.json",
        "+ tv: HttpProxy = \"me:secret@proxy.example:80\"\n- tv: Scale = 1\n");
}

void tst_Calls::diffShowsWhatDiffersInMeaning()
{
    QFETCH(QString, line);
    const ChildCall::Result result = call(line);
    QTEST(result.output, "expected");
    QCOMPARE(result.exitStatus(), 1);
}

void tst_Calls::diffReadsWhatTheShellMakesOfACommand()
{
    QProcess shell;
    shell.start(QLatin1String("bash"),
                QStringList() << QLatin1String("-c")
                              << QLatin1String(PROGRAM " diff <(cat tv.json) <(cat other.json)"));
    QVERIFY(shell.waitForFinished());
    const QByteArray output = shell.readAllStandardOutput();
    QVERIFY2(output.contains("- tv: Scale = 3.5\n") && output.contains("+ other: Scale = 2.5\n"),
             output + shell.readAllStandardError());
    QCOMPARE(shell.exitCode(), 1);
}

void tst_Calls::aPipeThatIsOpenAlreadyIsRead_data()
{
    QTest::addColumn<QString>("folder");
    for (const char *folder : { "/dev/fd/", "/proc/self/fd/" })
        QTest::newRow(folder) << QString(QLatin1String(folder));
}

// As some shells pass what they make of <(COMMAND).
void tst_Calls::aPipeThatIsOpenAlreadyIsRead()
{
    QFETCH(QString, folder);
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    ChildCall::writeAll(ends[1], fileContents(m_folder.filePath(QLatin1String("other.json"))));
    ::close(ends[1]);
    const ChildCall::Result result =
        call(QLatin1String("list ") + folder + QString::number(ends[0]));
    ::close(ends[0]);
    QCOMPARE(result.output, QByteArray("other\n"));
}

// Each file is written when it is done.
void tst_Calls::aFullOutputIsToldOnce()
{
    const ChildCall::Result result = ChildCall::run([] {
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
        ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        Output output;
        return Program::run(QStringList()
                                << QLatin1String("nuv-apps-config") << QLatin1String("check")
                                << QLatin1String("tv.json") << QLatin1String("other.json"),
                            output);
    });
    QCOMPARE(result.output,
             "nuv-apps-config: cannot write to the standard output: "
                 + qt_error_string(ENOSPC).toUtf8() + '\n');
    QCOMPARE(result.exitStatus(), 2);
}

void tst_Calls::withTooManyOpenFilesNothingIsTakenForTheContent()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("a sanitizer opens files itself, to see what an address leads to");
#endif
    int listed = 0;
    for (rlim_t spare = 0; spare < 6; ++spare) {
        const ChildCall::Result result = ChildCall::run([spare] {
            ::dup2(STDOUT_FILENO, STDERR_FILENO);
            ::dup2(::open("other.json", O_RDONLY), STDIN_FILENO);
            const int next = ::dup(STDIN_FILENO);
            ::close(next);
            rlimit usual = {};
            ::getrlimit(RLIMIT_NOFILE, &usual);
            const rlimit limit = { rlim_t(next) + spare, usual.rlim_max };
            ::setrlimit(RLIMIT_NOFILE, &limit);
            Output output;
            const int status =
                Program::run(QStringList() << QLatin1String("nuv-apps-config")
                                           << QLatin1String("list") << QLatin1String("-"),
                             output);
            ::setrlimit(RLIMIT_NOFILE, &usual);
            return status;
        });
        const bool isListed = result.output == "other\n" && result.exitStatus() == 0;
        listed += isListed;
        if (isListed)
            continue;
        QCOMPARE(result.output,
                 QByteArray("nuv-apps-config: -: there is not enough memory for this file\n"));
        QCOMPARE(result.exitStatus(), 2);
    }
    QVERIFY(listed > 0);
}

NUV_TEST_MAIN(tst_Calls)
#include "tst_calls.moc"
