// SPDX-License-Identifier: MIT
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cerrno>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// The program as it is called: its output, its exit status, and what it does to files.
class tst_Program : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatIsWrongWhereAndWhy();
    void exitStatusTellsTheOutcome_data();
    void exitStatusTellsTheOutcome();
    void picksTheFileThatTheLibraryWould();
    void namesBothPlacesWhereThereIsNoFile();
    void checksTheStandardInput();
    void countsOverManyFiles();
    void coloursOnlyWhereTheyAreWanted();
    void reportsAsJson();
    void reportsAsSarif();
    void reportsForGithub();
    void reportsFilesThatCannotBeReadInEveryForm_data();
    void reportsFilesThatCannotBeReadInEveryForm();
    void endsWithTheEffect_data();
    void endsWithTheEffect();
    void secretsAreMaskedInEveryOutput_data();
    void secretsAreMaskedInEveryOutput();
    void secretsAreShownWhenAskedFor();
    void showsWhatTheLauncherSees();
    void showsWhatWasSkipped();
    void aBinaryFileIsNoFileWithoutKeys();
    void showsAsJson();
    void listsTheTags();
    void getsOneValue();
    void listsTheFlatKeys();
    void explainsKeysAndRules();
    void formatsAsTheLibraryWrites();
    void formattingRefusesWhatItWouldLose_data();
    void formattingRefusesWhatItWouldLose();
    void formattingKeepsModeAndLink();
    void formattingKeepsOwnerAndGroup();
    void formattingSaysWhyItCannotWrite();
    void aSmallFileNeedsLittleMemory();
    void tellsWhatDiffersInMeaning();
    void wrongCallsAreTold_data();
    void wrongCallsAreTold();
    void waitsForNoPipe();
    void tellsAFileThatCannotBeRead();
    void refusesToLoadWhatTakesMinutes_data();
    void refusesToLoadWhatTakesMinutes();
    void survivesOddFiles_data();
    void survivesOddFiles();
    void survivesAnOutputThatCannotBeWritten_data();
    void survivesAnOutputThatCannotBeWritten();
    void aClosedOutputIsNotTakenByTheFile();
    void checksTenThousandApplicationsInSeconds();
    void needsNeitherDisplayNorNetwork();

private:
    struct Result {
        int status;
        QByteArray output;
        QByteArray errors;
    };

    Result run(const QStringList &arguments, const QByteArray &input = QByteArray(),
               const QStringList &environment = QStringList()) const;
    Result shell(const QByteArray &command) const;
    QString write(const QByteArray &bytes) const
    {
        return m_folder.write(QLatin1String("test.json"), bytes);
    }

    TemporaryDir m_folder;
};

namespace {

// A file of 100 MB takes half a minute without optimisation.
#ifdef NDEBUG
const int LongLine = 32 << 20;
#else
const int LongLine = 1 << 20;
#endif

const char clean[] =
    "{\n"
    "    \"Global\": { \"Version\": 1, \"RemoteInspectorPort\": 9222 },\n"
    "    \"Applications\": [\n"
    "        { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\", \"Scale\": 1.5 },\n"
    "        { \"Tag\": \"menu\", \"Url\": \"about:blank\", \"UseWebGL\": false }\n"
    "    ]\n"
    "}\n";

// Of the processor: a machine with other work takes longer.
double secondsOfChildren()
{
    rusage usage;
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

QStringList words(const char *text)
{
    return QString(QLatin1String(text)).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

tst_Program::Result tst_Program::run(const QStringList &arguments, const QByteArray &input,
                                     const QStringList &environment) const
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove(QLatin1String("NUV_APPS_CONFIG_FILE"));
    variables.remove(QLatin1String("NO_COLOR"));
    for (const QString &setting : environment)
        variables.insert(setting.section(QLatin1Char('='), 0, 0),
                         setting.section(QLatin1Char('='), 1));
    process.setProcessEnvironment(variables);
    process.setWorkingDirectory(m_folder.path());
    process.start(QLatin1String(PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return Result { -1, process.readAllStandardOutput(), process.readAllStandardError() };
    return Result { process.exitCode(), process.readAllStandardOutput(),
                    process.readAllStandardError() };
}

tst_Program::Result tst_Program::shell(const QByteArray &command) const
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start(QLatin1String("/bin/sh"),
                  QStringList(QLatin1String("-c")) << QString::fromUtf8(command));
    process.waitForFinished(60000);
    return Result { process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                    process.readAllStandardOutput(), process.readAllStandardError() };
}

void tst_Program::saysWhatIsWrongWhereAndWhy()
{
    write("{ \"Global\": { \"Version\": 1 },\n"
          "  \"Applications\": [ { \"Tag\": \"tv\", \"url\": \"x\" }, ] }\n");
    const Result result = run(words("check test.json"));
    QCOMPARE(result.output,
             QByteArray("test.json:2:36: warning: Applications does not know the key \"url\" "
                        "[unknown-key]\n"
                        "    2 |   \"Applications\": [ { \"Tag\": \"tv\", \"url\": \"x\" }, ] }\n"
                        "      |                                    ^~~~~\n"
                        "        hint: did you mean \"Url\"? Keys are compared with their case\n"
                        "test.json:2:48: error: a comma after the last entry [trailing-comma]\n"
                        "    2 |   \"Applications\": [ { \"Tag\": \"tv\", \"url\": \"x\" }, ] }\n"
                        "      |                                                ^\n"
                        "        hint: remove it\n"
                        "1 error, 1 warning in 1 file\n"
                        "nothing is read of this file: the library stops at the syntax error in "
                        "line 2\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors, QByteArray());
}

void tst_Program::exitStatusTellsTheOutcome_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("status");
    const QByteArray warning = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [] }";
    const QByteArray note =
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"a\", "
        "\"Url\": \"about:blank\", \"Scale\": null } ] }";
    const QString onError = QLatin1String("--fail-on error");
    QTest::newRow("clean") << QByteArray(clean) << QString() << 0;
    QTest::newRow("a note") << note << QString() << 0;
    QTest::newRow("a warning") << warning << QString() << 1;
    QTest::newRow("a warning, failing on errors") << warning << onError << 0;
    QTest::newRow("an error, failing on errors") << QByteArray("{}") << onError << 1;
    QTest::newRow("a syntax error") << QByteArray("{") << QString() << 1;
    QTest::newRow("an empty file") << QByteArray() << QString() << 1;
}

void tst_Program::exitStatusTellsTheOutcome()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, options);
    write(bytes);
    const Result result =
        run(words("check test.json") + options.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QTEST(result.status, "status");
}

void tst_Program::picksTheFileThatTheLibraryWould()
{
    TemporaryDir other;
    const QString named = other.write(QLatin1String("named.json"), "{}");
    const QString fallback = m_folder.write(QLatin1String("AppsConfig.json"), clean);
    const Result first = run(words("check"), QByteArray(),
                             QStringList(QLatin1String("NUV_APPS_CONFIG_FILE=") + named));
    const Result second =
        run(words("check"), QByteArray(), words("NUV_APPS_CONFIG_FILE=/nowhere/AppsConfig.json"));
    const Result third =
        run(words("show"), QByteArray(), words("NUV_APPS_CONFIG_FILE=/nowhere/AppsConfig.json"));
    const Result unset = run(words("check"));
    QFile::remove(fallback);
    QVERIFY2(first.output.startsWith("File: " + named.toUtf8()
                                     + " (named by NUV_APPS_CONFIG_FILE)\n" + named.toUtf8()
                                     + ":1:1: error: "),
             first.output.constData());
    QCOMPARE(second.status, 1);
    QCOMPARE(second.output,
             QByteArray("File: AppsConfig.json (in the working directory, as NUV_APPS_CONFIG_FILE "
                        "names /nowhere/AppsConfig.json, which does not exist)\n"
                        "AppsConfig.json: warning: NUV_APPS_CONFIG_FILE names "
                        "/nowhere/AppsConfig.json, which does not exist, so the library reads this "
                        "file instead [variable-names-nothing]\n"
                        "1 warning in 1 file\n"
                        "the launcher will see 2 of 2 applications\n"));
    QCOMPARE(unset.output,
             QByteArray("File: AppsConfig.json (in the working directory, as NUV_APPS_CONFIG_FILE "
                        "is not set)\nnothing found in 1 file\n"
                        "the launcher will see 2 of 2 applications\n"));
    QVERIFY(third.errors.contains("which does not exist, so the library reads this file instead"));
    QVERIFY(third.output.startsWith("File: AppsConfig.json (in the working directory, as "
                                    "NUV_APPS_CONFIG_FILE names /nowhere/AppsConfig.json, which "
                                    "does not exist)\n"));
}

void tst_Program::namesBothPlacesWhereThereIsNoFile()
{
    const Result result =
        run(words("check"), QByteArray(), words("NUV_APPS_CONFIG_FILE=/nowhere/a.json"));
    QCOMPARE(result.status, 2);
    QVERIFY(result.output.contains("/nowhere/a.json, which does not exist"));
    QVERIFY(result.output.contains("no AppsConfig.json in "
                                   + QDir(m_folder.path()).canonicalPath().toUtf8()));
    QVERIFY(result.output.contains("[no-file]"));
    QCOMPARE(run(words("show")).status, 2);
}

void tst_Program::checksTheStandardInput()
{
    const Result result = run(words("check -"), "{} x");
    QVERIFY(result.output.contains("<stdin>:1:4: error: "));
    QCOMPARE(result.status, 1);
    QCOMPARE(run(words("list --file -"), clean).output, QByteArray("tv\nmenu\n"));
}

void tst_Program::countsOverManyFiles()
{
    m_folder.write(QLatin1String("a.json"), clean);
    m_folder.write(QLatin1String("b.json"), "{");
    m_folder.write(QLatin1String("c.json"), "[1,]");
    const Result result = run(words("check a.json b.json c.json"));
    QVERIFY2(result.output.endsWith(" in 3 files\n"), result.output.constData());
    QCOMPARE(run(words("check a.json none.json b.json")).status, 2);
}

void tst_Program::coloursOnlyWhereTheyAreWanted()
{
    write("{");
    QVERIFY(!run(words("check test.json")).output.contains('\033'));
    QVERIFY(run(words("check --color always test.json")).output.contains("\033[1;31merror"));
    QVERIFY(!run(words("check --color never test.json")).output.contains('\033'));
}

void tst_Program::reportsAsJson()
{
    write("{ \"Global\": { \"Version\": 2 }, \"Applications\": [ { \"Tag\": \"a\", "
          "\"Url\": \"about:blank\" }, { \"Tag\": \"a\" } ] }");
    const Result result = run(words("check --format json test.json"));
    const QJsonObject root = QJsonDocument::fromJson(result.output).object();
    QCOMPARE(root.value(QLatin1String("errors")).toInt(), 2);
    const QJsonObject file = root.value(QLatin1String("files")).toArray().at(0).toObject();
    QCOMPARE(file.value(QLatin1String("file")).toString(), QString(QLatin1String("test.json")));
    const QJsonObject finding = file.value(QLatin1String("findings")).toArray().at(0).toObject();
    QCOMPARE(finding.value(QLatin1String("rule")).toString(),
             QString(QLatin1String("unusable-version")));
    QCOMPARE(finding.value(QLatin1String("line")).toInt(), 1);
    QCOMPARE(finding.value(QLatin1String("column")).toInt(), 26);
    const QJsonObject later = file.value(QLatin1String("findings")).toArray().at(1).toObject();
    QCOMPARE(later.value(QLatin1String("remarks")).toArray().size(), 1);
}

void tst_Program::reportsAsSarif()
{
    write("{ \"Global\": { \"Version\": 2 }, \"Applications\": [ { \"Tag\": \"a\" } ] }");
    const Result result = run(words("check --format sarif test.json"));
    const QJsonObject root = QJsonDocument::fromJson(result.output).object();
    QCOMPARE(root.value(QLatin1String("version")).toString(), QString(QLatin1String("2.1.0")));
    const QJsonObject log = root.value(QLatin1String("runs")).toArray().at(0).toObject();
    const QJsonObject found = log.value(QLatin1String("results")).toArray().at(0).toObject();
    QCOMPARE(found.value(QLatin1String("ruleId")).toString(),
             QString(QLatin1String("unusable-version")));
    QCOMPARE(found.value(QLatin1String("level")).toString(), QString(QLatin1String("error")));
    const QJsonObject place = found.value(QLatin1String("locations"))
                                  .toArray()
                                  .at(0)
                                  .toObject()
                                  .value(QLatin1String("physicalLocation"))
                                  .toObject();
    QCOMPARE(
        place.value(QLatin1String("region")).toObject().value(QLatin1String("startColumn")).toInt(),
        26);
}

void tst_Program::reportsForGithub()
{
    write("[1,]");
    const Result result = run(words("check --format github test.json"));
    QVERIFY2(
        result.output.contains("::error file=test.json,line=1,col=3,title=trailing-comma::a comma "
                               "after the last entry%0Ahint: remove it\n"),
        result.output.constData());
}

void tst_Program::reportsFilesThatCannotBeReadInEveryForm_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("JSON") << QString(QLatin1String("json"))
                          << QByteArray("\"rule\": \"unreadable-file\"");
    QTest::newRow("SARIF") << QString(QLatin1String("sarif"))
                           << QByteArray("\"ruleId\": \"unreadable-file\"");
    QTest::newRow("GitHub") << QString(QLatin1String("github"))
                            << QByteArray("::error file=%252.json,title=unreadable-file::No such");
}

void tst_Program::reportsFilesThatCannotBeReadInEveryForm()
{
    QFETCH(QString, form);
    QFETCH(QByteArray, expected);
    m_folder.write(QLatin1String("good.json"), clean);
    const Result result = run(words("check good.json %2.json --format") << form);
    QCOMPARE(result.status, 2);
    QVERIFY2(result.output.contains(expected), result.output.constData());
    QVERIFY(result.output.contains("No such file or directory"));
    if (form == QLatin1String("sarif"))
        QVERIFY(result.output.contains("\"executionSuccessful\": false"));
}

void tst_Program::endsWithTheEffect_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("effect");
    const QByteArray begin = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [";
    QTest::newRow("all of them") << QByteArray(clean)
                                 << QByteArray("the launcher will see 2 of 2 applications");
    QTest::newRow("a single one") << begin + "{ \"Tag\": \"a\" } ] }"
                                  << QByteArray("the launcher will see 1 of 1 application");
    QTest::newRow("one without a tag, one twice")
        << begin + "{ \"Tag\": \"a\" }, { }, { \"Tag\": \"a\" } ] }"
        << QByteArray("the launcher will see 1 of 3 applications");
    QTest::newRow("no application")
        << begin + "] }"
        << QByteArray("the launcher will see no application, for there is none in the file");
    QTest::newRow("another version")
        << QByteArray(clean).replace("1,", "2,")
        << QByteArray("the launcher will see none of 2 applications, for only versions from 1 to "
                      "below 2 are loaded");
    QTest::newRow("a syntax error")
        << begin + "\n{ \"Tag\": \"a\\\n\" },\n ] }"
        << QByteArray(
               "nothing is read of this file: the library stops at the syntax error in line 3");
    QTest::newRow("an empty file")
        << QByteArray() << QByteArray("nothing is read of this file: it is empty");
    QTest::newRow("a file in UTF-16")
        << QByteArray("\xff\xfe{\0}\0", 6)
        << QByteArray("nothing is read of this file: it is not text that the library can read");
    QTest::newRow("a file that takes minutes")
        << QByteArray("{ \"Global\": { \"Version\": 1 }, \"Applications/size\": 2147483647 }")
        << QByteArray("what the launcher will see was not tried: a key \"size\" would keep the "
                      "loader busy for minutes; see check");
}

void tst_Program::endsWithTheEffect()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, effect);
    write(bytes);
    const QByteArray alone = run(words("check test.json")).output;
    QVERIFY2(alone.endsWith(" in 1 file\n" + effect + '\n'), alone.constData());
    const QByteArray one = run(words("check test.json test.json")).output;
    QVERIFY2(one.contains("\ntest.json: " + effect + '\n')
                 || one.startsWith("test.json: " + effect + '\n'),
             one.constData());
    const QByteArray json = run(words("check --format json test.json")).output;
    QCOMPARE(QJsonDocument::fromJson(json)
                 .object()
                 .value(QLatin1String("files"))
                 .toArray()
                 .at(0)
                 .toObject()
                 .value(QLatin1String("effect"))
                 .toString()
                 .toUtf8(),
             effect);
}

void tst_Program::secretsAreMaskedInEveryOutput_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::newRow("as it should be") << QByteArray("\"PassPhrase\": \"geheim\"");
    QTest::newRow("with a mistake") << QByteArray("\"PassPhrase\": 'geheim'");
}

// tst_secrets makes other mistakes, without a process for each call.
void tst_Program::secretsAreMaskedInEveryOutput()
{
    QFETCH(QByteArray, member);
    write("{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"tv\",\n"
          "\"Certificate\": { \"Path\": \"tv.pem\", \"PrivateKey\": \"tv.key\", "
          + member + " } } ] }\n");
    m_folder.write(QLatin1String("other.json"), clean);
    for (const char *call :
         { "check test.json", "check --format json test.json", "check --format sarif test.json",
           "check --format github test.json", "show --file test.json",
           "show --format json --file test.json", "keys --file test.json",
           "keys --format json --file test.json", "diff test.json other.json",
           "diff --format json other.json test.json", "list --file test.json" }) {
        const Result result = run(words(call));
        QVERIFY2(result.status >= 0, call);
        QVERIFY2(!(result.output + result.errors).contains("geheim"),
                 QByteArray(call) + ":\n" + result.output + result.errors);
    }
}

void tst_Program::secretsAreShownWhenAskedFor()
{
    write(
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"tv\", \"Certificate\": "
        "{ \"Path\": \"tv.pem\", \"PrivateKey\": \"tv.key\", \"PassPhrase\": \"geheim\" } } ] }");
    QVERIFY(run(words("show --file test.json")).output.contains("CertPassPhrase = \"********\""));
    QVERIFY(run(words("show --reveal --file test.json"))
                .output.contains("CertPassPhrase = \"geheim\""));
    QVERIFY(run(words("keys --reveal --file test.json")).output.contains("geheim"));
    QCOMPARE(run(words("get tv PassPhrase --file test.json")).output, QByteArray("geheim\n"));
    QVERIFY(run(words("fmt test.json")).output.contains("\"geheim\""));
}

void tst_Program::showsWhatTheLauncherSees()
{
    write(clean);
    const Result result = run(words("show --file test.json"));
    QCOMPARE(result.output,
             QByteArray("File: test.json (named on the command line)\n"
                        "Version: 1 (applications are loaded)\n"
                        "Remote inspector port: 9222\n"
                        "Global certificate: not set\n"
                        "\nApplication \"tv\" (4:9)\n"
                        "    Url   = \"http://tv.example/\"  (string, 4:31)\n"
                        "    Scale = 1.5  (double, 4:62)\n"
                        "\nApplication \"menu\" (5:9)\n"
                        "    Url      = \"about:blank\"  (string, 5:33)\n"
                        "    UseWebGL = false  (bool, 5:60)\n"));
    const Result one = run(words("show menu --file test.json"));
    QVERIFY(one.output.contains("\"menu\"") && !one.output.contains("\"tv\""));
    QCOMPARE(run(words("show none --file test.json")).status, 1);
}

void tst_Program::showsWhatWasSkipped()
{
    write("{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n"
          "  { \"Url\": \"x\" },\n"
          "  { \"Tag\": \"a\" }, { \"Tag\": \"a\" } ] }");
    const Result result = run(words("show --file test.json"));
    QVERIFY(result.output.contains("Skipped or lost:\n    2:3: an application without a tag is "
                                   "skipped [no-tag]\n    3:28: another application has the tag"));
    write("{ \"Global\": { \"Version\": 1 }, }");
    QVERIFY(run(words("show --file test.json"))
                .output.contains("Version: 0 (the file has a syntax error"));
}

void tst_Program::aBinaryFileIsNoFileWithoutKeys()
{
    write(QByteArray("\xff\xfe{\0}\0", 6));
    const Result shown = run(words("show --file test.json"));
    QVERIFY2(shown.output.contains("not-text"), shown.output.constData());
    m_folder.write(QLatin1String("other.json"), QByteArray("\xff\xfe[\0]\0", 6));
    QVERIFY(run(words("keys --file test.json")).status != 0);
    QVERIFY(run(words("diff test.json other.json")).status != 0);
}

void tst_Program::showsAsJson()
{
    write(clean);
    const QJsonObject root =
        QJsonDocument::fromJson(run(words("show --format json --file test.json")).output).object();
    QCOMPARE(root.value(QLatin1String("usable")).toBool(), true);
    const QJsonObject tv = root.value(QLatin1String("applications")).toArray().at(0).toObject();
    QCOMPARE(tv.value(QLatin1String("tag")).toString(), QString(QLatin1String("tv")));
    const QJsonObject scale =
        tv.value(QLatin1String("properties")).toObject().value(QLatin1String("Scale")).toObject();
    QCOMPARE(scale.value(QLatin1String("value")).toDouble(), 1.5);
    QCOMPARE(scale.value(QLatin1String("line")).toInt(), 4);
}

void tst_Program::listsTheTags()
{
    write(clean);
    QCOMPARE(run(words("list --file test.json")).output, QByteArray("tv\nmenu\n"));
    QCOMPARE(QJsonDocument::fromJson(run(words("list --format json --file test.json")).output)
                 .array()
                 .size(),
             2);
    write("{ \"Global\": { \"Version\": 2 }, \"Applications\": [ { \"Tag\": \"tv\" } ] }");
    QCOMPARE(run(words("list --file test.json")).output, QByteArray());
}

void tst_Program::getsOneValue()
{
    write(clean);
    QCOMPARE(run(words("get tv Scale --file test.json")).output, QByteArray("1.5\n"));
    QCOMPARE(run(words("get menu UseWebGL --file test.json")).output, QByteArray("false\n"));
    QCOMPARE(run(words("get menu Scale --file test.json")).status, 1);
    QCOMPARE(run(words("get none Scale --file test.json")).status, 1);
}

void tst_Program::listsTheFlatKeys()
{
    write("{ \"a\": { \"x/y\": 1, \"z\": 2 }, \"list\": [ \"p\" ] }");
    QCOMPARE(run(words("keys --file test.json")).output,
             QByteArray("a/list/1 = \"p\"  (string)\na/list/size = 1  (int)\n"
                        "a/x/y = 1  (int)\na/x/z = 2  (int)\n"));
}

void tst_Program::explainsKeysAndRules()
{
    QVERIFY(run(words("explain Scale")).output.contains("a number from 0.1 to 10"));
    QVERIFY(run(words("explain slash-in-key")).output.contains("hides the"));
    const Result result = run(words("explain Scael"));
    QCOMPARE(result.status, 1);
    QVERIFY(result.errors.contains("did you mean \"Scale\"?"));
}

void tst_Program::formatsAsTheLibraryWrites()
{
    write("{\"b\":[1,{}],\"a\":\"\xc3\xa9\"}");
    QCOMPARE(run(words("fmt --sort test.json")).output,
             QByteArray("{\n    \"a\":\"\\u00c3\\u00a9\",\n    \"b\":\n    [\n        1,\n"
                        "        {\n\n        }\n    ]\n}"));
    QCOMPARE(run(words("fmt --sort --write test.json")).status, 0);
    const QByteArray formatted = run(words("fmt --sort test.json")).output;
    QFile file(m_folder.filePath(QLatin1String("test.json")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), formatted);
}

void tst_Program::formattingRefusesWhatItWouldLose_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a syntax error") << QByteArray("{ \"a\": 1, }");
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("a duplicate key") << QByteArray("{ \"a\": 1, \"a\": 2 }");
    QTest::newRow("a duplicate remark") << QByteArray("{ \"_comment\": 1, \"_comment\": 2 }");
    QTest::newRow("an integer of 20 digits") << QByteArray("{ \"a\": 99999999999999999999 }");
    QTest::newRow("a fraction of 17 digits") << QByteArray("{ \"a\": 0.12345678901234567 }");
    QTest::newRow("many levels") << QByteArray(50000, '[') + QByteArray(50000, ']');
    QTest::newRow("a number beyond all") << QByteArray("{ \"a\": 1e999 }");
}

void tst_Program::formattingRefusesWhatItWouldLose()
{
    QFETCH(QByteArray, bytes);
    write(bytes);
    const Result result = run(words("fmt --sort --write test.json"));
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains("not touched"), result.errors.constData());
    QFile file(m_folder.filePath(QLatin1String("test.json")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
}

void tst_Program::formattingKeepsModeAndLink()
{
    const QByteArray target = QFile::encodeName(write("{ \"b\": 1, \"a\": 2 }"));
    const QByteArray link = QFile::encodeName(m_folder.filePath(QLatin1String("link.json")));
    QCOMPARE(::chmod(target.constData(), 0640), 0);
    QCOMPARE(::symlink("test.json", link.constData()), 0);
    QCOMPARE(run(words("fmt --write link.json")).status, 0);
    struct stat status;
    QCOMPARE(::lstat(link.constData(), &status), 0);
    QVERIFY(S_ISLNK(status.st_mode));
    QCOMPARE(::stat(target.constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0640);
    QCOMPARE(QDir(m_folder.path()).entryList(QStringList(QLatin1String("*.json.*"))),
             QStringList());
}

void tst_Program::formattingKeepsOwnerAndGroup()
{
    if (::geteuid() != 0)
        return; // only root can give a file away
    const QByteArray path = QFile::encodeName(write("{ \"b\": 1, \"a\": 2 }"));
    QCOMPARE(::chown(path.constData(), 1234, 5678), 0);
    QCOMPARE(run(words("fmt --write test.json")).status, 0);
    struct stat status;
    QCOMPARE(::stat(path.constData(), &status), 0);
    QCOMPARE(int(status.st_uid), 1234);
    QCOMPARE(int(status.st_gid), 5678);
}

// A limit of the size, with its signal ignored, is a full disk with another name.
void tst_Program::formattingSaysWhyItCannotWrite()
{
    const QByteArray bytes = "{ \"b\": \"" + QByteArray(8192, 'x') + "\" }";
    const QString path = write(bytes);
    const Result result =
        shell("trap '' XFSZ; ulimit -f 1; '" PROGRAM "' fmt --write test.json 2>&1");
    QCOMPARE(result.status, 2);
    const QByteArray reason = qt_error_string(EFBIG).toLocal8Bit(); // in the language of the locale
    QCOMPARE(result.output, "nuv-apps-config: test.json: " + reason + "\n");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
    QCOMPARE(QDir(m_folder.path()).entryList(QStringList(QLatin1String("*.json.*"))),
             QStringList());
}

// What is only asked for counts on a machine that hands out no more than it has.
void tst_Program::aSmallFileNeedsLittleMemory()
{
#ifndef __SANITIZE_ADDRESS__ // which takes all addresses there are
    write(clean);
    QCOMPARE(shell("ulimit -v 131072; '" PROGRAM "' check test.json 2>&1").status, 0);
#endif
}

void tst_Program::tellsWhatDiffersInMeaning()
{
    m_folder.write(QLatin1String("a.json"), clean);
    m_folder.write(QLatin1String("b.json"),
                   "{ \"Applications\": [ { \"UseWebGL\": true, \"Tag\": \"menu\",\n"
                   "  \"Url\": \"about:blank\" },\n"
                   "  { \"Scale\": 1.5, \"Url\": \"http://tv.example/\", \"Tag\": \"tv\" } ],\n"
                   "  \"Global\": { \"RemoteInspectorPort\": 9222, \"Version\": 1 } }");
    const Result result = run(words("diff a.json b.json"));
    QCOMPARE(result.output, QByteArray("- menu: UseWebGL = false\n+ menu: UseWebGL = true\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(run(words("diff a.json a.json")).status, 0);
}

void tst_Program::wrongCallsAreTold_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const char *call, const char *message) {
        QTest::newRow(name) << QString(QLatin1String(call)) << QByteArray(message);
    };
    row("no command", "", "a command is missing");
    row("an unknown command", "chekc", "did you mean \"check\"?");
    row("an unknown option", "check --frobnicate", "Unknown option 'frobnicate'.");
    row("an option of another command", "check --reveal", "check has no option --reveal");
    row("a wrong choice", "check --format xml", "is one of text|json|sarif|github, not \"xml\"");
    row("a format of another command", "show --format sarif", "is one of text|json, not \"sarif\"");
    row("too few arguments", "get tv", "usage: nuv-apps-config get [FILE] TAG KEY");
    row("too many arguments", "list a b c", "usage: nuv-apps-config list");
    row("a file that does not exist", "check none.json", "none.json: ");
    row("a directory", "check .", ".: a directory");
    row("a device", "check /dev/null", "/dev/null: not a file but a pipe or a device");
}

void tst_Program::wrongCallsAreTold()
{
    QFETCH(QString, call);
    QFETCH(QByteArray, message);
    const Result result = run(call.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(result.status, 2);
    QVERIFY2(result.errors.startsWith("nuv-apps-config: ") && result.errors.contains(message),
             result.errors.constData());
}

void tst_Program::waitsForNoPipe()
{
    const QByteArray pipe = QFile::encodeName(m_folder.filePath(QLatin1String("pipe.json")));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    for (const char *call : { "check pipe.json", "fmt pipe.json", "show --file pipe.json" }) {
        const Result result = run(words(call));
        QCOMPARE(result.status, 2);
        QVERIFY2(result.errors.contains("pipe.json: not a file but a pipe or a device"),
                 result.errors.constData());
    }
}

// Root reads every file, unless it gives up the two rights to do so.
void tst_Program::tellsAFileThatCannotBeRead()
{
    const QByteArray asOthers =
        ::geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search " : "";
    QVERIFY(QFile::setPermissions(write(clean), QFile::WriteOwner));
    const Result result = shell(asOthers + "'" PROGRAM "' check test.json");
    QFile::remove(m_folder.filePath(QLatin1String("test.json")));
    QCOMPARE(result.status, 2);
    QCOMPARE(result.errors, QByteArray("nuv-apps-config: test.json: Permission denied\n"));
}

void tst_Program::refusesToLoadWhatTakesMinutes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray begin = "{ \"Global\": { \"Version\": 1 }, ";
    QTest::newRow("a size") << begin + "\"Applications\": { \"size\": 2147483647 } }";
    QTest::newRow("a size as text") << begin + "\"Applications\": { \"size\": \"2147483647\" } }";
    QTest::newRow("a size after a slash") << begin + "\"Applications/size\": 2147483647 }";
    QTest::newRow("many levels") << QByteArray(50000, '[') + QByteArray(50000, ']');
}

void tst_Program::refusesToLoadWhatTakesMinutes()
{
    QFETCH(QByteArray, bytes);
    write(bytes);
    for (const char *call : { "show --file test.json", "keys --file test.json",
                              "list --file test.json", "diff test.json test.json" })
        QCOMPARE(run(words(call)).status, 1);
}

void tst_Program::survivesOddFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    QByteArray binary;
    for (int i = 0; i < 100000; ++i)
        binary += char(i * 7919 >> 3);
    const QByteArray global = "{\"Global\":{\"Version\":1},\"Applications\":[{\"Tag\":\"a\"}],";
    QTest::newRow("a binary file") << binary << QByteArray("[not-text]");
    QTest::newRow("zeros") << QByteArray(100000, '\0') << QByteArray("[not-text]");
    QTest::newRow("many mistakes")
        << QByteArray("{x:").repeated(50000) << QByteArray("[unquoted-key]");
    QTest::newRow("open brackets")
        << QByteArray(100000, '[') << QByteArray("[missing-closing-bracket]");
    QTest::newRow("a very long line") << global + "\"_comment\":\"" + QByteArray(LongLine, 'x')
            + "\",}" << QByteArray("[trailing-comma]");
    QTest::newRow("steering a terminal")
        << QByteArray("{\"\x1b[2J\": 1}") << QByteArray("\\u001b[2J");
}

void tst_Program::survivesOddFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    write(bytes);
    const Result result = run(words("check test.json"));
    write(QByteArray());
    QCOMPARE(result.status, 1);
    QVERIFY2(result.output.contains(expected), result.output.left(2000).constData());
    QVERIFY(result.output.size() < 200000);
    QVERIFY(!result.output.contains('\x1b'));
}

void tst_Program::survivesAnOutputThatCannotBeWritten_data()
{
    QTest::addColumn<QByteArray>("redirection");
    QTest::newRow("closed") << QByteArray(">&-");
    QTest::newRow("full") << QByteArray(">/dev/full");
    QTest::newRow("closed with the errors") << QByteArray(">&- 2>&-");
}

void tst_Program::survivesAnOutputThatCannotBeWritten()
{
    QFETCH(QByteArray, redirection);
    write(clean);
    QCOMPARE(shell(PROGRAM " check test.json " + redirection).status, 2);
    QCOMPARE(shell(PROGRAM " template " + redirection).status, 2);
}

void tst_Program::aClosedOutputIsNotTakenByTheFile()
{
    write("{ \"b\": 1, \"a\": 2 }");
    QCOMPARE(shell(PROGRAM " fmt --write test.json <&- >&- 2>&-").status, 0);
    QFile file(m_folder.filePath(QLatin1String("test.json")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("{\n    \"b\": 1,\n    \"a\": 2\n}\n"));
}

void tst_Program::checksTenThousandApplicationsInSeconds()
{
    QByteArray bytes = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n";
    for (int i = 0; i < 10000; ++i)
        bytes += (i ? ",\n" : "") + QByteArray("{ \"Tag\": \"app") + QByteArray::number(i)
            + "\", \"Url\": \"http://home.example/\", \"UseWebGL\": true, \"Frameless\": true, "
              "\"Scale\": 1.5, \"UserAgent\": \"Box/1.0\" }";
    write(bytes + "] }\n");
    const double before = secondsOfChildren();
    QCOMPARE(
        run(words("check test.json")).output,
        QByteArray("nothing found in 1 file\nthe launcher will see 10000 of 10000 applications\n"));
    QVERIFY(secondsOfChildren() - before < 10);
}

void tst_Program::needsNeitherDisplayNorNetwork()
{
    const Result result = shell("ldd " PROGRAM);
    const QByteArray qt = "libQt" + QByteArray::number(QT_VERSION_MAJOR);
    QVERIFY(result.output.contains(qt + "Core"));
    for (const QByteArray &library : { qt + "Gui", qt + "Network", QByteArray("WebKit"),
                                       QByteArray("libssl"), QByteArray("libcrypto") })
        QVERIFY2(!result.output.contains(library), library.constData());
}

NUV_TEST_MAIN(tst_Program)
#include "tst_program.moc"
