// SPDX-License-Identifier: MIT
#include "tests/support/filecontents.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/commands/replacefile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// `check --fix` and `check --diff` as they are called: what they print, their exit status, and what they
/// do to files.
class tst_CheckFix : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void saysWhatIsRepairedAndWhatIsLeft();
    void theStatusIsThatOfWhatIsLeft_data();
    void theStatusIsThatOfWhatIsLeft();
    void otherFormsHoldWhatWasRepairedAndWhatIsLeft();
    void theDiffIsAllThatIsPrinted();
    void theDiffHasTheStatusOfADifference_data();
    void theDiffHasTheStatusOfADifference();
    void theDiffChangesNothing();
    void theDiffShowsNoSecret();
    void theDiffShowsNoSecretThatAKeyWasMadeOf_data();
    void theDiffShowsNoSecretThatAKeyWasMadeOf();
    void theDiffShowsNoControlCharacter();
    void theStandardInputGoesRepairedToTheStandardOutput_data();
    void theStandardInputGoesRepairedToTheStandardOutput();
    void severalFilesAreRepaired();
    void theFileThatTheLibraryWouldPickIsRepaired();
    void modeOwnerAndLinkAreKept();
    void aCleanFileIsNotWritten();
    void whatCannotBeWrittenIsToldAndLeft_data();
    void whatCannotBeWrittenIsToldAndLeft();
    void aFileThatWasChangedMeanwhileIsLeft();
    void aDiffHasNoOtherForm();

private:
    struct Result {
        int status;
        QByteArray output;
        QByteArray errors;
    };

    Result run(const char *call, const QByteArray &input = QByteArray(),
               const std::function<void()> &prepare = std::function<void()>()) const;
    QByteArray contents(const char *name) const;
    struct stat statusOf(const char *name) const;

    TemporaryDir m_folder;
};

namespace {

const char broken[] = "{\n"
                      "    \"Global\": { \"Version\": 1, },\n"
                      "    \"Applications\": [\n"
                      "        { 'Tag': \"tv\", \"url\": \"http://tv.example/\" }\n"
                      "    ]\n"
                      "}\n";
const char mended[] = "{\n"
                      "    \"Global\": { \"Version\": 1 },\n"
                      "    \"Applications\": [\n"
                      "        { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" }\n"
                      "    ]\n"
                      "}\n";

// With an error that nobody can repair, and a warning.
QByteArray withError(QByteArray text)
{
    return text.replace("example/\"", "example/\", \"WindowOpacity\": 255");
}

QByteArray withWarning(QByteArray text)
{
    return text.replace("example/\"", "example/\", \"Nothing\": 255");
}

void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

QStringList words(const char *call)
{
    return (QLatin1String("nuv-apps-config ") + QLatin1String(call)).split(QLatin1Char(' '));
}

} // namespace

void tst_CheckFix::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
    qunsetenv("NUV_APPS_CONFIG_FILE");
}

void tst_CheckFix::init()
{
    for (const QString &name :
         QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        QFile::remove(name);
    m_folder.write(QLatin1String("test.json"), broken);
    m_folder.write(QLatin1String("good.json"), mended);
    m_folder.write(QLatin1String("error.json"), withError(broken));
    m_folder.write(QLatin1String("warning.json"), withWarning(broken));
    m_folder.write(QLatin1String("cut.json"), "{ \"Global\": { \"Version\": 1 }, \"x");
    m_folder.write(QLatin1String("empty.json"), QByteArray());
}

tst_CheckFix::Result tst_CheckFix::run(const char *call, const QByteArray &input,
                                       const std::function<void()> &prepare) const
{
    const QString name = m_folder.filePath(QLatin1String("input"));
    const QString errorName = m_folder.filePath(QLatin1String("errors"));
    m_folder.write(QLatin1String("input"), input);
    m_folder.write(QLatin1String("errors"), QByteArray());
    const ChildCall::Result result = ChildCall::run([&] {
        ::dup2(::open(QFile::encodeName(name).constData(), O_RDONLY), STDIN_FILENO);
        ::dup2(::open(QFile::encodeName(errorName).constData(), O_WRONLY), STDERR_FILENO);
        if (prepare)
            prepare();
        qInstallMessageHandler(dropMessage); // as main() does
        Output output;
        const int status = Program::run(words(call), output);
        std::fflush(stderr);
        return status;
    });
    const Result all = { result.isEnded() ? result.exitStatus() : -1, result.output,
                         contents("errors") };
    QFile::remove(name);
    QFile::remove(errorName);
    return all;
}

QByteArray tst_CheckFix::contents(const char *name) const
{
    return fileContents(m_folder.filePath(QLatin1String(name)));
}

struct stat tst_CheckFix::statusOf(const char *name) const
{
    struct stat status = {};
    ::lstat(QFile::encodeName(m_folder.filePath(QLatin1String(name))).constData(), &status);
    return status;
}

void tst_CheckFix::saysWhatIsRepairedAndWhatIsLeft()
{
    const Result result = run("check --fix error.json");
    QCOMPARE(result.output,
             QByteArray("error.json:2:29: repaired: a comma after the last entry [trailing-comma]\n"
                        "error.json:4:11: repaired: a string in single quotes [single-quotes]\n"
                        "error.json:4:24: repaired: Applications does not know the key \"url\" "
                        "[unknown-key]\n"
                        "error.json:4:70: error: \"WindowOpacity\" must be from 0 to 1 "
                        "[out-of-range]\n"
                        "    4 |         { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\", "
                        "\"WindowOpacity\": 255 }\n"
                        "      |                                                               "
                        "       ^~~\n"
                        "3 mistakes repaired\n"
                        "1 error in 1 file\n"
                        "the launcher will see 1 of 1 application\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 1);
    QCOMPARE(contents("error.json"), withError(mended));

    const Result second = run("check --fix error.json");
    QVERIFY(!second.output.contains("repaired"));
    QCOMPARE(contents("error.json"), withError(mended));
}

void tst_CheckFix::theStatusIsThatOfWhatIsLeft_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("status");
    const auto row = [](const char *call, int status) {
        QTest::newRow(call) << QByteArray(call) << status;
    };
    row("check --fix test.json", 0);
    row("check --fix good.json", 0);
    row("check --fix error.json", 1);
    row("check --fix warning.json", 1);
    row("check --fix --fail-on error warning.json", 0);
    row("check --fix --fail-on error error.json", 1);
    row("check --fix cut.json", 1);
    row("check --fix empty.json", 1);
    row("check --fix none.json", 2);
    row("check --fix test.json none.json error.json", 2);
}

void tst_CheckFix::theStatusIsThatOfWhatIsLeft()
{
    QFETCH(QByteArray, call);
    QTEST(run(call.constData()).status, "status");
}

void tst_CheckFix::otherFormsHoldWhatWasRepairedAndWhatIsLeft()
{
    const Result json = run("check --fix --format json error.json");
    const QJsonValue file = QJsonDocument::fromJson(json.output)[QLatin1String("files")][0];
    QCOMPARE(json.status, 1);
    QCOMPARE(file[QLatin1String("findings")].toArray().size(), 1);
    QCOMPARE(file[QLatin1String("findings")][0][QLatin1String("rule")].toString(),
             QString(QLatin1String("out-of-range")));
    const QJsonArray repaired = file[QLatin1String("repaired")].toArray();
    QCOMPARE(repaired.size(), 3);
    QCOMPARE(QJsonDocument(repaired.at(1).toObject()).toJson(QJsonDocument::Compact),
             QByteArray("{\"column\":11,\"line\":4,\"rule\":\"single-quotes\",\"text\":\"a "
                        "string in single quotes\"}"));
    QVERIFY(!run("check --fix --format json error.json").output.contains("repaired"));

    const Result sarif = run("check --fix --format sarif warning.json");
    const QJsonValue log = QJsonDocument::fromJson(sarif.output)[QLatin1String("runs")][0];
    QCOMPARE(log[QLatin1String("results")].toArray().size(), 1);
    const QJsonValue note =
        log[QLatin1String("invocations")][0][QLatin1String("toolExecutionNotifications")][0];
    QCOMPARE(note[QLatin1String("message")][QLatin1String("text")].toString(),
             QString(QLatin1String("repaired: a comma after the last entry")));
    QCOMPARE(note[QLatin1String("associatedRule")][QLatin1String("id")].toString(),
             QString(QLatin1String("trailing-comma")));
    const QJsonValue region = note[QLatin1String("locations")][0][QLatin1String("physicalLocation")]
                                  [QLatin1String("region")];
    QCOMPARE(region[QLatin1String("startLine")].toInt(), 2);
    QCOMPARE(region[QLatin1String("startColumn")].toInt(), 29);

    const Result github = run("check --fix --format github test.json");
    QCOMPARE(github.output,
             QByteArray("::notice file=test.json,line=2,col=29,title=trailing-comma::repaired: a "
                        "comma after the last entry\n"
                        "::notice file=test.json,line=4,col=11,title=single-quotes::repaired: a "
                        "string in single quotes\n"
                        "::notice file=test.json,line=4,col=24,title=unknown-key::repaired: "
                        "Applications does not know the key \"url\"\n"));
    QCOMPARE(github.status, 0);
}

// As in every output, a line with a mistake and an address may hold a password.
void tst_CheckFix::theDiffIsAllThatIsPrinted()
{
    const Result result = run("check --diff error.json");
    QCOMPARE(result.output,
             QByteArray("--- error.json\n"
                        "+++ error.json\n"
                        "@@ -1,6 +1,6 @@\n"
                        " {\n"
                        "-    \"Global\": { \"Version\": 1, },\n"
                        "+    \"Global\": { \"Version\": 1 },\n"
                        "     \"Applications\": [\n"
                        "-        { ********: ********, ********: ********, "
                        "\"WindowOpacity\": 255 }\n"
                        "+        { ********: ********, ********: ********, "
                        "\"WindowOpacity\": 255 }\n"
                        "     ]\n"
                        " }\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(run("check --diff --fix error.json").output, result.output);
}

void tst_CheckFix::theDiffHasTheStatusOfADifference_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("status");
    const auto row = [](const char *call, int status) {
        QTest::newRow(call) << QByteArray(call) << status;
    };
    row("check --diff test.json", 1);
    row("check --diff good.json", 0);
    row("check --diff good.json test.json", 1);
    row("check --diff --fail-on error warning.json", 1);
    row("check --diff cut.json", 0);
    row("check --diff none.json", 2);
    row("check --diff none.json test.json", 2);
}

void tst_CheckFix::theDiffHasTheStatusOfADifference()
{
    QFETCH(QByteArray, call);
    const Result result = run(call.constData());
    QTEST(result.status, "status");
    QCOMPARE(result.output.isEmpty(), !call.contains("test") && !call.contains("warning"));
    QCOMPARE(result.errors.isEmpty(), !call.contains("none"));
}

void tst_CheckFix::theDiffChangesNothing()
{
    const struct stat before = statusOf("test.json");
    run("check --diff test.json");
    run("check --fix --diff test.json");
    QCOMPARE(contents("test.json"), QByteArray(broken));
    QCOMPARE(statusOf("test.json").st_ino, before.st_ino);
}

void tst_CheckFix::theDiffShowsNoSecret()
{
    const QByteArray secret = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ {\n"
                              "'Tag': \"tv\", // the pass phrase is S3cret!\n"
                              "\"Certificate\": { \"Path\": \"a.pem\",\n"
                              "'PassPhrase': 'S3cret!',\n"
                              "},\n"
                              "\"HttpProxy\": 'usr:S3cret!@h:80',\n"
                              "} ] }\n";
    const Result result = run("check --diff -", secret);
    QCOMPARE(result.status, 1);
    QVERIFY2(!result.output.contains("cret"), result.output);
    QCOMPARE(result.output,
             QByteArray("--- <stdin>\n+++ <stdin>\n@@ -1,7 +1,7 @@\n"
                        " { \"Global\": { \"Version\": 1 }, \"Applications\": [ {\n"
                        "-********: ********, ********\n"
                        "+********: ********, ********\n"
                        " \"Certificate\": { \"Path\": \"a.pem\",\n"
                        "-'PassPhrase': ********\n"
                        "+\"PassPhrase\": ********\n"
                        " },\n"
                        "-\"HttpProxy\": ********\n"
                        "+\"HttpProxy\": ********\n"
                        " } ] }\n"));
    const QByteArray others[] = {
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ {// \"Certificate\": { "
        "\"_comment\": \", \"S3cret! opens it\" },\n\"Tag\": \"tv\" } ] }\n",
        "{\"Global\":{\"Version\":1},\"Applications\":[{\"Tag\":\"tv\",\"pass_phrase\": \": "
        "\"\"S3cret!,Certificate\":{\"Path\":\"b.pem\"},\"Scale\":1.5}]}",
    };
    for (const QByteArray &other : others) {
        const Result diff = run("check --diff -", other);
        QCOMPARE(diff.status, 1);
        QVERIFY2(!diff.output.contains("cret"), diff.output);
    }
    const Result repaired = run("check --fix -", secret);
    QVERIFY2(repaired.output.contains("\"PassPhrase\": \"S3cret!\""), repaired.output);
    QVERIFY2(!repaired.errors.contains("cret"), repaired.errors);
}

void tst_CheckFix::theDiffShowsNoSecretThatAKeyWasMadeOf_data()
{
    QTest::addColumn<QByteArray>("passPhrase");
    QTest::addColumn<QByteArray>("remark");
    QTest::newRow("as it is") << QByteArray("S3cret!") << QByteArray("S3cret!");
    QTest::newRow("with other escapes") << QByteArray("a\\u0022b\\u0022c") << QByteArray("a\"b\"c");
}

void tst_CheckFix::theDiffShowsNoSecretThatAKeyWasMadeOf()
{
    QFETCH(QByteArray, passPhrase);
    QFETCH(QByteArray, remark);
    const QByteArray output =
        run("check --diff -",
            "{ \"Global\": { \"Version\": 1, \"Certificate\": { \"Path\": \"a.pem\", "
            "\"PassPhrase\": "
            "\"" + passPhrase
                + "\" } },\n\"Applications\": [ { \"Tag\": \"tv\" } ]\n}\n// " + remark + "\n")
            .output;
    QVERIFY2(
        output.contains("\n+\"Applications\": [ { \"Tag\": \"tv\" } ]********\n+********\n }\n"),
        output);
}

void tst_CheckFix::theDiffShowsNoControlCharacter()
{
    const Result result =
        run("check --diff -",
            "{ \"Global\": { \"Version\": 1, },\r\n\"_comment\": \"\x1b[2J\xc2\x9b\"\r\n}");
    QVERIFY2(result.output.contains("-{ \"Global\": { \"Version\": 1, },\r\n"), result.output);
    QVERIFY2(!result.output.contains('\x1b') && !result.output.contains("\xc2\x9b"), result.output);
    QVERIFY2(result.output.contains("\\u001b[2J"), result.output);
}

void tst_CheckFix::theStandardInputGoesRepairedToTheStandardOutput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<int>("status");
    QTest::newRow("repaired") << QByteArray(broken) << QByteArray(mended) << 0;
    QTest::newRow("without a mistake") << QByteArray(mended) << QByteArray(mended) << 0;
    QTest::newRow("with an error that is left") << withError(broken) << withError(mended) << 1;
    const QByteArray cut = "{ \"Global\": { \"Version\": 1 }, \"x";
    QTest::newRow("nothing to repair") << cut << cut << 1;
    QTest::newRow("empty") << QByteArray() << QByteArray() << 1;
}

// As a filter does: the report is on the standard error.
void tst_CheckFix::theStandardInputGoesRepairedToTheStandardOutput()
{
    QFETCH(QByteArray, input);
    const Result result = run("check --fix -", input);
    QTEST(result.output, "output");
    QTEST(result.status, "status");
    QVERIFY2(result.errors.contains(" in 1 file\n"), result.errors);
    const Result full =
        run("check --fix -", input, [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    QCOMPARE(full.status, input.isEmpty() ? 1 : 2);
}

void tst_CheckFix::severalFilesAreRepaired()
{
    const Result result = run("check --fix test.json cut.json error.json");
    QCOMPARE(contents("test.json"), QByteArray(mended));
    QCOMPARE(contents("error.json"), withError(mended));
    QVERIFY2(result.output.contains("6 mistakes repaired\n"), result.output);
}

void tst_CheckFix::theFileThatTheLibraryWouldPickIsRepaired()
{
    QVERIFY(QFile::rename(QLatin1String("test.json"), QLatin1String("AppsConfig.json")));
    const Result result = run("check --fix");
    QVERIFY2(result.output.startsWith("File: AppsConfig.json (in the working directory"),
             result.output);
    QCOMPARE(result.status, 0);
    QCOMPARE(contents("AppsConfig.json"), QByteArray(mended));
}

void tst_CheckFix::modeOwnerAndLinkAreKept()
{
    const QByteArray path = QFile::encodeName(m_folder.filePath(QLatin1String("test.json")));
    QCOMPARE(::chmod(path.constData(), 0604), 0);
    if (::geteuid() == 0)
        QCOMPARE(::chown(path.constData(), 1234, 5678), 0);
    QCOMPARE(::symlink("test.json", "link.json"), 0);
    const struct stat before = statusOf("test.json");
    QCOMPARE(run("check --fix link.json").status, 0);
    QVERIFY(S_ISLNK(statusOf("link.json").st_mode));
    QCOMPARE(contents("test.json"), QByteArray(mended));
    const struct stat after = statusOf("test.json");
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(QDir().entryList(QStringList(QLatin1String("*.json.*"))), QStringList());
}

void tst_CheckFix::aCleanFileIsNotWritten()
{
    const struct stat before = statusOf("good.json");
    QCOMPARE(run("check --fix good.json").status, 0);
    const struct stat after = statusOf("good.json");
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
}

void tst_CheckFix::whatCannotBeWrittenIsToldAndLeft_data()
{
    QTest::addColumn<int>("cause");
    QTest::newRow("a file that is only for reading") << 0;
    QTest::newRow("a folder that is only for reading") << 1;
    QTest::newRow("a disk without room") << 2;
}

void tst_CheckFix::whatCannotBeWrittenIsToldAndLeft()
{
    QFETCH(int, cause);
    const QByteArray large = QByteArray(broken).replace(
        "\"url\"", "\"_comment\": \"" + QByteArray(8192, 'x') + "\", \"url\"");
    m_folder.write(QLatin1String("test.json"), large);
    const Result result = run("check --fix test.json", QByteArray(), [cause] {
        const rlimit limit = { 1024, 1024 };
        if (cause == 0 && (::chmod("test.json", 0444) != 0 || ::chmod(".", 0777) != 0))
            ::_exit(99);
        if (cause == 1 && ::chmod(".", 0555) != 0)
            ::_exit(99);
        std::signal(SIGXFSZ, SIG_IGN);
        if (cause == 2 && ::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            ::_exit(99);
        if (cause < 2 && ::geteuid() == 0 && ::setuid(65534) != 0) // root may write everything
            ::_exit(99);
    });
    QCOMPARE(::chmod(".", 0755), 0);
    QCOMPARE(contents("test.json"), large);
    QVERIFY2(result.status == 2, result.output + result.errors);
    QVERIFY2(result.errors.startsWith("nuv-apps-config: test.json: "), result.errors);
    QCOMPARE(result.errors.count('\n'), 1);
    QVERIFY2(!result.output.contains("repaired"), result.output);
    QVERIFY2(result.output.contains("[trailing-comma]"), result.output);
    QCOMPARE(QDir().entryList(QStringList(QLatin1String("*.json.*"))), QStringList());
}

void tst_CheckFix::aFileThatWasChangedMeanwhileIsLeft()
{
    QString error;
    QVERIFY(!replaceFile(QLatin1String("test.json"), mended, "{ }", &error));
    QCOMPARE(error, QString(QLatin1String("it was changed meanwhile, and is not touched")));
    QCOMPARE(contents("test.json"), QByteArray(broken));
    error.clear();
    QVERIFY(replaceFile(QLatin1String("test.json"), broken, mended, &error));
    QCOMPARE(error, QString());
    QCOMPARE(contents("test.json"), QByteArray(mended));
    QVERIFY(QFile::remove(QLatin1String("test.json")));
    QVERIFY(!replaceFile(QLatin1String("test.json"), mended, "{ }", &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!QFile::exists(QLatin1String("test.json")));
}

void tst_CheckFix::aDiffHasNoOtherForm()
{
    const Result result = run("check --diff --format json test.json");
    QCOMPARE(result.status, 2);
    QCOMPARE(result.errors, QByteArray("nuv-apps-config: --diff has no other form than its own\n"));
}

NUV_TEST_MAIN(tst_CheckFix)

#include "tst_checkfix.moc"
