// SPDX-License-Identifier: MIT
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/commandline/commands.h"

#include <QSet>

#include <csignal>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

/// One cause has one exit status with every command, as the table of the manual says.
class tst_Outcomes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyCommandEndsWithTheStatusOfTheCause_data();
    void everyCommandEndsWithTheStatusOfTheCause();
    void aReaderThatIsGoneEndsEveryCommandQuietly_data() { eachCommand(); }
    void aReaderThatIsGoneEndsEveryCommandQuietly();
    void anOutputThatCannotBeWrittenIsTrouble_data() { eachCommand(); }
    void anOutputThatCannotBeWrittenIsTrouble();
    void tooLittleMemoryIsTrouble();
    void everyCauseOfTheManualIsTried();

private:
    // Where the standard output goes.
    enum Sink { Nowhere, Full, Closed, NoReader };

    struct Result {
        int status; ///< of waitpid()
        QByteArray errors;
    };

    void eachCommand() const;
    Result run(const QString &call, Sink sink, rlim_t memory = RLIM_INFINITY) const;
    void execute(const QString &call, Sink sink, rlim_t memory) const;

    TemporaryDir m_folder;
    QSet<int> m_tried; ///< the rows of the table of causes
};

namespace {

const char good[] =
    "{\n    \"Applications\": [ { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" } ],\n"
    "    \"Global\": { \"Version\": 1 }\n}\n";

const char *const fileCalls[] = { "check F",
                                  "show -f F",
                                  "list -f F",
                                  "get tv Url -f F",
                                  "keys -f F",
                                  "fmt F",
                                  "diff F good.json",
                                  "diff good.json F",
                                  "check --format json F",
                                  "check --format sarif F",
                                  "check --format github F",
                                  "show --format json -f F",
                                  "fmt -w F" };
const char *const loadingCalls[] = { "check F",         "show -f F", "list -f F",
                                     "get tv Url -f F", "keys -f F", "diff F good.json",
                                     "diff good.json F" };

// One call of every command that prints something.
const char *const everyCommand[] = { "check good.json",
                                     "show -f good.json",
                                     "list -f good.json",
                                     "get tv Url -f good.json",
                                     "keys -f good.json",
                                     "explain Scale",
                                     "explain no-tag",
                                     "schema",
                                     "template",
                                     "fmt good.json",
                                     "diff good.json other.json",
                                     "--help",
                                     "--version",
                                     "check --help",
                                     "check --format json good.json",
                                     "check --format sarif good.json",
                                     "check --fix good.json",
                                     "check --diff broken.json",
                                     "check --format github broken.json",
                                     "show --format json -f good.json",
                                     "list --format json -f good.json",
                                     "keys --format json -f good.json",
                                     "diff --format json good.json other.json" };

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// Which row of the table of causes begins with those words.
int rowOf(const char *cause)
{
    const std::vector<Outcome> &outcomes = Commands::outcomes();
    for (int i = 0; i < int(outcomes.size()); ++i) {
        if (QByteArray(outcomes[size_t(i)].cause).startsWith(cause))
            return i;
    }
    return -1;
}

} // namespace

void tst_Outcomes::initTestCase()
{
    m_folder.write(QLatin1String("good.json"), good);
    m_folder.write(QLatin1String("other.json"), QByteArray(good).replace("1 }", "1.5 }"));
    m_folder.write(QLatin1String("broken.json"), "{ \"Global\": { \"Version\": 1 }, }");
    m_folder.write(QLatin1String("empty.json"), QByteArray());
    m_folder.write(
        QLatin1String("size.json"),
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": { \"size\": 2147483647 } }");
    m_folder.write(QLatin1String("deep.json"), QByteArray(50000, '[') + QByteArray(50000, ']'));
    QVERIFY(QFile::setPermissions(m_folder.write(QLatin1String("locked.json"), good),
                                  QFile::WriteOwner));
    m_folder.write(QLatin1String("twice.json"), "{ \"a\": 1, \"a\": 2 }");
    QVERIFY(QDir(m_folder.path()).mkdir(QLatin1String("folder.json")));
    QCOMPARE(::mkfifo(QFile::encodeName(m_folder.filePath(QLatin1String("pipe.json"))), 0600), 0);
}

// Ends in the program.
void tst_Outcomes::execute(const QString &call, Sink sink, rlim_t memory) const
{
    if (sink == Closed)
        ::close(STDOUT_FILENO);
    else
        ::dup2(::open(sink == Full ? "/dev/full" : "/dev/null", O_WRONLY), STDOUT_FILENO);
    int ends[2];
    if (sink == NoReader && ::pipe(ends) == 0 && ::close(ends[0]) == 0)
        ::dup2(ends[1], STDOUT_FILENO);
    const rlimit limit = { memory, memory };
    ::setrlimit(RLIMIT_AS, &limit);
    // Root reads every file, unless it gives up the two rights to do so.
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    ::unsetenv("NUV_APPS_CONFIG_FILE");
    std::vector<QByteArray> arguments(1, PROGRAM);
    for (const QString &word : words(call))
        arguments.push_back(word.toUtf8());
    std::vector<char *> pointers;
    for (QByteArray &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    if (::chdir(QFile::encodeName(m_folder.path())) == 0)
        ::execv(PROGRAM, pointers.data());
}

tst_Outcomes::Result tst_Outcomes::run(const QString &call, Sink sink, rlim_t memory) const
{
    int errors[2];
    if (::pipe(errors) != 0)
        qFatal("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(errors[1], STDERR_FILENO);
        execute(call, sink, memory);
        ::_exit(99);
    }
    ::close(errors[1]);
    Result result = { 0, ChildCall::readAll(errors[0]) };
    ::close(errors[0]);
    ::waitpid(child, &result.status, 0);
    return result;
}

void tst_Outcomes::everyCommandEndsWithTheStatusOfTheCause_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("call");
    const auto add = [](const char *cause, const QString &call) {
        QTest::newRow(qPrintable(QLatin1String(cause) + QLatin1String(": ") + call))
            << rowOf(cause) << call;
    };
    const auto addFiles = [&](const char *cause, auto &calls, const char *file) {
        for (const char *call : calls)
            add(cause,
                QString(QLatin1String(call))
                    .replace(QLatin1String(" F"), QLatin1Char(' ') + QLatin1String(file)));
    };
    addFiles("The command did", fileCalls, "good.json");
    addFiles("The library reads nothing", fileCalls, "broken.json");
    addFiles("The library reads nothing", fileCalls, "empty.json");
    addFiles("To load the file", loadingCalls, "size.json");
    addFiles("To load the file", loadingCalls, "deep.json");
    for (const char *file : { "none.json", "folder.json", "pipe.json", "locked.json" })
        addFiles("A file that cannot be read", fileCalls, file);
    add("A file that cannot be read", QLatin1String("check good.json none.json broken.json"));
    for (const char *call : { "check", "show", "list", "get tv Url", "keys" })
        add("There is no configuration file", QLatin1String(call));
    for (const char *call :
         { "show Tv -f good.json", "get Tv Url -f good.json", "get tv Scale -f good.json",
           "get tv Nix -f good.json", "explain Nix" })
        add("There is no such tag", QLatin1String(call));
    add("check: a finding", QLatin1String("check twice.json"));
    add("check --diff: something", QLatin1String("check --diff broken.json"));
    add("diff: a difference", QLatin1String("diff good.json other.json"));
    add("fmt: the file has", QLatin1String("fmt --sort twice.json"));
    add("fmt: the file has", QLatin1String("fmt -w --sort twice.json"));
    add("A wrong call", QString());
    add("A wrong call", QLatin1String("nix"));
    add("A wrong call", QLatin1String("fmt -w -"));
    for (const Command &command : Commands::all())
        add("A wrong call", QLatin1String(command.name) + QLatin1String(" --nix"));
}

void tst_Outcomes::everyCommandEndsWithTheStatusOfTheCause()
{
    QFETCH(int, row);
    QFETCH(QString, call);
    QVERIFY(row >= 0);
    m_tried.insert(row);
    const Result result = run(call, Nowhere);
    QVERIFY(WIFEXITED(result.status));
    QCOMPARE(QByteArray::number(WEXITSTATUS(result.status)),
             QByteArray(Commands::outcomes()[size_t(row)].status));
}

void tst_Outcomes::eachCommand() const
{
    QTest::addColumn<QString>("call");
    for (const char *call : everyCommand)
        QTest::newRow(call) << QString(QLatin1String(call));
}

void tst_Outcomes::aReaderThatIsGoneEndsEveryCommandQuietly()
{
    QFETCH(QString, call);
    m_tried.insert(rowOf("The reader of the standard output is gone"));
    const Result result = run(call, NoReader);
    QCOMPARE(result.errors, QByteArray());
    QVERIFY(WIFSIGNALED(result.status));
    QCOMPARE(WTERMSIG(result.status), SIGPIPE);
}

void tst_Outcomes::anOutputThatCannotBeWrittenIsTrouble()
{
    QFETCH(QString, call);
    m_tried.insert(rowOf("A file or the standard output that cannot"));
    for (const Sink sink : { Full, Closed }) {
        const Result result = run(call, sink);
        QVERIFY(WIFEXITED(result.status));
        QCOMPARE(WEXITSTATUS(result.status), 2);
        QVERIFY(result.errors.startsWith("nuv-apps-config: cannot write to the standard output: "));
    }
}

void tst_Outcomes::tooLittleMemoryIsTrouble()
{
    m_tried.insert(rowOf("There is not enough memory"));
#ifdef __SANITIZE_ADDRESS__
    QSKIP("AddressSanitizer takes more memory than any limit leaves");
#endif
    const QByteArray bytes = "[ " + QByteArray("\"x\",").repeated(500000) + "1 ]";
    m_folder.write(QLatin1String("long.json"), bytes);
    const rlim_t memory = 120 << 20;
    for (const char *call : { "check long.json", "show -f long.json", "list -f long.json",
                              "keys -f long.json", "fmt long.json", "diff long.json good.json" }) {
        const Result result = run(QLatin1String(call), Nowhere, memory);
        QVERIFY2(WIFEXITED(result.status) && WEXITSTATUS(result.status) == 2, call);
        QVERIFY2(result.errors.contains("there is not enough memory"), result.errors.constData());
    }
}

void tst_Outcomes::everyCauseOfTheManualIsTried()
{
    for (int i = 0; i < int(Commands::outcomes().size()); ++i)
        QVERIFY2(m_tried.contains(i), Commands::outcomes()[size_t(i)].cause);
}

NUV_TEST_MAIN(tst_Outcomes)
#include "tst_outcomes.moc"
