// SPDX-License-Identifier: MIT
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QProcess>
#include <QStringList>

#include <cstdlib>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// An environment variable that has another value until the end of the block. Its bytes reach a
/// child process as they are, which the toolkit's own environments do not promise.
class Environment
{
public:
    /// Null makes it unset.
    Environment(const char *name, const char *value)
        : m_name(name), m_wasSet(::getenv(name)), m_before(::getenv(name))
    {
        set(value);
    }

    ~Environment() { set(m_wasSet ? m_before.constData() : nullptr); }

private:
    Q_DISABLE_COPY(Environment)

    void set(const char *value)
    {
        if (value)
            ::setenv(m_name, value, 1);
        else
            ::unsetenv(m_name);
    }

    const char *m_name;
    bool m_wasSet;
    QByteArray m_before;
};

/// Counts what happens to a file and to the names in its folder, by whatever process.
class Watch
{
public:
    explicit Watch(const QString &filePath) : m_queue(inotify_init1(IN_NONBLOCK))
    {
        const QByteArray folder = QFile::encodeName(QFileInfo(filePath).path());
        if (inotify_add_watch(m_queue, QFile::encodeName(filePath).constData(), IN_ALL_EVENTS) < 0
            || inotify_add_watch(m_queue, folder.constData(), IN_CREATE | IN_DELETE | IN_MOVE) < 0)
            qFatal("the file cannot be watched");
    }

    ~Watch() { ::close(m_queue); }

    /// The events since the beginning that have one of the bits of `mask`.
    int count(uint32_t mask)
    {
        collect();
        int result = 0;
        for (int i = 0; i < m_masks.size(); ++i)
            result += (m_masks.at(i) & mask) ? 1 : 0;
        return result;
    }

private:
    Q_DISABLE_COPY(Watch)

    void collect()
    {
        alignas(inotify_event) char buffer[4096];
        ssize_t size;
        while ((size = ::read(m_queue, buffer, sizeof buffer)) > 0) {
            const char *at = buffer;
            while (at < buffer + size) {
                const inotify_event *event = reinterpret_cast<const inotify_event *>(at);
                m_masks.append(event->mask);
                at += sizeof(inotify_event) + event->len;
            }
        }
    }

    int m_queue;
    QList<uint32_t> m_masks;
};

const char goodFile[] = "{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 900, "
                        "\"Certificate\": {\"Path\": \"p\"}}, "
                        "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"named\"}]}";
const char defaultFile[] = "{\"Global\": {\"Version\": 1}, "
                           "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"default\"}]}";

/// The probe's arguments for a codec for C strings; none when it is empty.
QStringList withCodec(const QByteArray &codec)
{
    QStringList arguments;
    if (!codec.isEmpty())
        arguments << QLatin1String("--codec-for-c-strings") << QString::fromLatin1(codec);
    return arguments << QLatin1String("tv");
}

const char nothingGiven[] = "port: none\nglobal: \ntv: none\n";
const char goodGiven[] = "port: 900\nglobal: CertPath = string \"p\"\ntv: Url = string \"named\"\n";
const char defaultGiven[] = "port: none\nglobal: \ntv: Url = string \"default\"\n";

} // namespace

class tst_ConfigurationFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isTheOneThatTheVariableNamesOrTheDefault_data();
    void isTheOneThatTheVariableNamesOrTheDefault();
    void isFoundRelativeToTheWorkingDirectory();
    void isNotOpenedWithoutPermission();
    void nameIsReadAsLatin1_data();
    void nameIsReadAsLatin1();
    void textIsReadWithTheCodecForCStrings_data();
    void textIsReadWithTheCodecForCStrings();
    void contentsDecideWhatIsGiven_data();
    void contentsDecideWhatIsGiven();
    void isOpenedOnceForReadingAndNeverChanges();

private:
    struct Outcome {
        int exitCode;
        QByteArray output;
        QByteArray errors;
    };
    Outcome runProbe(const QStringList &arguments = QStringList(QLatin1String("tv"))) const;
    QString work(const char *name) const { return m_work + QLatin1Char('/') + QLatin1String(name); }

    TemporaryDir *m_folder = nullptr;
    QString m_work; ///< the working directory of the probes
};

void tst_ConfigurationFile::init()
{
    m_folder = new TemporaryDir;
    m_work = m_folder->filePath(QLatin1String("work"));
    QDir(m_folder->path()).mkdir(QLatin1String("work"));
    // A process that gave up its rights must be able to reach the files as well.
    ::chmod(QFile::encodeName(m_folder->path()).constData(), 0755);
    ::chmod(QFile::encodeName(m_work).constData(), 0755);
}

void tst_ConfigurationFile::cleanup()
{
    delete m_folder;
}

tst_ConfigurationFile::Outcome tst_ConfigurationFile::runProbe(const QStringList &arguments) const
{
    const Environment pattern("QT_MESSAGE_PATTERN", nullptr);
    const Environment console("QT_FORCE_STDERR_LOGGING", "1");
    QProcess probe;
    probe.setWorkingDirectory(m_work);
    probe.start(QLatin1String(CONFIG_PROBE), arguments);
    Outcome outcome = { -1, QByteArray(), QByteArray() };
    if (!probe.waitForFinished() || probe.exitStatus() != QProcess::NormalExit)
        return outcome;
    outcome.exitCode = probe.exitCode();
    outcome.output = probe.readAllStandardOutput();
    outcome.errors = probe.readAllStandardError();
    return outcome;
}

void tst_ConfigurationFile::isTheOneThatTheVariableNamesOrTheDefault_data()
{
    // The variable's value comes after the directory of the case. "named.json" and the default file
    // differ in what they give.
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("hasDefault");
    QTest::addColumn<QByteArray>("output");

    const QByteArray none;
    QTest::newRow("set, next to a default file")
        << true << QByteArray("/named.json") << true << QByteArray(goodGiven);
    QTest::newRow("set, without a default file")
        << true << QByteArray("/named.json") << false << QByteArray(goodGiven);
    QTest::newRow("unset, with a default file")
        << false << none << true << QByteArray(defaultGiven);
    QTest::newRow("unset, neither file") << false << none << false << QByteArray(nothingGiven);
    QTest::newRow("empty, with a default file") << true << none << true << QByteArray(defaultGiven);
    QTest::newRow("empty, neither file") << true << none << false << QByteArray(nothingGiven);
    QTest::newRow("a missing file, with a default file")
        << true << QByteArray("/missing.json") << true << QByteArray(defaultGiven);
    QTest::newRow("a missing file, neither file")
        << true << QByteArray("/missing.json") << false << QByteArray(nothingGiven);
    QTest::newRow("a file in a missing folder")
        << true << QByteArray("/missing/named.json") << true << QByteArray(defaultGiven);
    QTest::newRow("a dangling link")
        << true << QByteArray("/dangling.json") << true << QByteArray(defaultGiven);
    QTest::newRow("a dangling link, neither file")
        << true << QByteArray("/dangling.json") << false << QByteArray(nothingGiven);
    QTest::newRow("a link") << true << QByteArray("/link.json") << true << QByteArray(goodGiven);
    QTest::newRow("a folder exists and is taken")
        << true << QByteArray("/folder") << true << QByteArray(nothingGiven);
    QTest::newRow("an empty file exists and is taken")
        << true << QByteArray("/empty.json") << true << QByteArray(nothingGiven);
    QTest::newRow("white space around the name belongs to it")
        << true << QByteArray("/named.json ") << true << QByteArray(defaultGiven);
    QTest::newRow("another case") << true << QByteArray("/Named.json") << true
                                  << QByteArray(defaultGiven);
    QTest::newRow("another extension")
        << true << QByteArray("/named.conf") << true << QByteArray(goodGiven);
}

void tst_ConfigurationFile::isTheOneThatTheVariableNamesOrTheDefault()
{
    QFETCH(bool, isSet);
    QFETCH(QByteArray, name);
    QFETCH(bool, hasDefault);
    QFETCH(QByteArray, output);
    const QString named = m_folder->write(QLatin1String("named.json"), goodFile);
    m_folder->write(QLatin1String("named.conf"), goodFile);
    m_folder->write(QLatin1String("empty.json"), QByteArray());
    QDir(m_folder->path()).mkdir(QLatin1String("folder"));
    QVERIFY(QFile::link(named, m_folder->filePath(QLatin1String("link.json"))));
    QVERIFY(QFile::link(m_folder->filePath(QLatin1String("nowhere")),
                        m_folder->filePath(QLatin1String("dangling.json"))));
    if (hasDefault)
        m_folder->write(QLatin1String("work/AppsConfig.json"), defaultFile);

    const QByteArray path =
        name.isEmpty() ? QByteArray() : QFile::encodeName(m_folder->path()) + name;
    const Environment variable("NUV_APPS_CONFIG_FILE", isSet ? path.constData() : nullptr);
    const Outcome outcome = runProbe();

    QCOMPARE(outcome.output, output);
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ConfigurationFile::isFoundRelativeToTheWorkingDirectory()
{
    m_folder->write(QLatin1String("work/here.json"), goodFile);
    m_folder->write(QLatin1String("above.json"), goodFile);
    m_folder->write(QLatin1String("AppsConfig.json"), goodFile);

    {
        const Environment variable("NUV_APPS_CONFIG_FILE", "here.json");
        QCOMPARE(runProbe().output, QByteArray(goodGiven));
    }
    {
        const Environment variable("NUV_APPS_CONFIG_FILE", "../above.json");
        QCOMPARE(runProbe().output, QByteArray(goodGiven));
    }
    {
        // The default file is looked for in the working directory only.
        const Environment variable("NUV_APPS_CONFIG_FILE", "above.json");
        QCOMPARE(runProbe().output, QByteArray(nothingGiven));
    }
}

void tst_ConfigurationFile::isNotOpenedWithoutPermission()
{
    const QString path = m_folder->write(QLatin1String("named.json"), goodFile);
    m_folder->write(QLatin1String("work/AppsConfig.json"), defaultFile);
    const QByteArray name = QFile::encodeName(path);
    QCOMPARE(::chmod(name.constData(), 0), 0);
    const Environment variable("NUV_APPS_CONFIG_FILE", name.constData());

    const QStringList arguments = QStringList(QLatin1String("--as-nobody")) << QLatin1String("tv");
    const Outcome outcome = runProbe(arguments);

    // The file exists, so it is taken and the default is not.
    QCOMPARE(outcome.output, QByteArray(nothingGiven));
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.exitCode, 0);

    // With the permission the same process reads it.
    QCOMPARE(::chmod(name.constData(), 0444), 0);
    QCOMPARE(runProbe(arguments).output, QByteArray(goodGiven));
}

void tst_ConfigurationFile::nameIsReadAsLatin1_data()
{
    QTest::addColumn<QByteArray>("nameOfFile");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<bool>("isFound");

    // The file system's names are UTF-8 here, the variable's bytes are one character each.
    const QByteArray none;
    QTest::newRow("an ASCII name")
        << QByteArray("cafe.json") << QByteArray("cafe.json") << none << true;
    QTest::newRow("a UTF-8 name by its own bytes")
        << QByteArray("caf\xc3\xa9.json") << QByteArray("caf\xc3\xa9.json") << none << false;
    QTest::newRow("a UTF-8 name by its bytes in Latin-1")
        << QByteArray("caf\xc3\xa9.json") << QByteArray("caf\xe9.json") << none << true;
    QTest::newRow("a name that is UTF-8 twice, by UTF-8 bytes")
        << QByteArray("caf\xc3\x83\xc2\xa9.json") << QByteArray("caf\xc3\xa9.json") << none << true;
    QTest::newRow("a name outside of Latin-1")
        << QByteArray("\xe2\x82\xac.json") << QByteArray("\xe2\x82\xac.json") << none << false;

    // Qt 4 reads the name with the codec for C strings, all its bytes at once.
    const bool isQt4 = ToolkitDifferences::isQt4();
    QTest::newRow("a UTF-8 name, with the codec of UTF-8")
        << QByteArray("caf\xc3\xa9.json") << QByteArray("caf\xc3\xa9.json") << QByteArray("UTF-8")
        << isQt4;
    QTest::newRow("a UTF-8 name by its bytes in Latin-1, with the codec of UTF-8")
        << QByteArray("caf\xc3\xa9.json") << QByteArray("caf\xe9.json") << QByteArray("UTF-8")
        << !isQt4;
    QTest::newRow("a Cyrillic name, with a codec of one byte a letter")
        << QByteArray("\xd0\xb0.json") << QByteArray("\xc1.json") << QByteArray("KOI8-R") << isQt4;
}

void tst_ConfigurationFile::nameIsReadAsLatin1()
{
    QFETCH(QByteArray, nameOfFile);
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, codec);
    QFETCH(bool, isFound);
    const Environment locale("LC_ALL", "C.UTF-8");
    const Environment value("NUV_APPS_CONFIG_FILE", variable.constData());

    const QByteArray path = QFile::encodeName(m_work) + '/' + nameOfFile;
    FILE *file = std::fopen(path.constData(), "w");
    QVERIFY(file);
    std::fputs(goodFile, file);
    std::fclose(file);
    const QByteArray output = runProbe(withCodec(codec)).output;
    ::unlink(path.constData()); // by its bytes: this process may have another idea of names

    QCOMPARE(output, QByteArray(isFound ? goodGiven : nothingGiven));
}

void tst_ConfigurationFile::textIsReadWithTheCodecForCStrings_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("textWithQt4");
    QTest::addColumn<QByteArray>("textWithQt5");

    const QByteArray none;
    QTest::newRow("none") << none << QByteArray("caf\xc3\xa9") << QByteArray("caf<c3><a9>")
                          << QByteArray("caf<c3><a9>");
    QTest::newRow("UTF-8 takes each byte of a letter for a mistake")
        << QByteArray("UTF-8") << QByteArray("caf\xc3\xa9") << QByteArray("caf<fffd><fffd>")
        << QByteArray("caf<c3><a9>");
    QTest::newRow("an escape needs no codec") << QByteArray("UTF-8") << QByteArray("caf\\u00e9")
                                              << QByteArray("caf<e9>") << QByteArray("caf<e9>");
    QTest::newRow("one byte a letter")
        << QByteArray("KOI8-R") << QByteArray("\xc1") << QByteArray("<430>") << QByteArray("<c1>");
}

void tst_ConfigurationFile::textIsReadWithTheCodecForCStrings()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, textWithQt4);
    QFETCH(QByteArray, textWithQt5);
    m_folder->write(QLatin1String("work/AppsConfig.json"),
                    QByteArray(goodFile).replace("named", bytes));
    const Environment variable("NUV_APPS_CONFIG_FILE", nullptr);

    const Outcome outcome = runProbe(withCodec(codec));

    const QByteArray text = ToolkitDifferences::either(textWithQt4, textWithQt5);
    QCOMPARE(outcome.output, QByteArray(goodGiven).replace("named", text));
    QCOMPARE(outcome.errors, QByteArray());
}

void tst_ConfigurationFile::contentsDecideWhatIsGiven_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");

    const QByteArray nothing = nothingGiven;
    QTest::newRow("a good file") << QByteArray(goodFile) << QByteArray(goodGiven) << QByteArray();
    QTest::newRow("no bytes") << QByteArray() << nothing << QByteArray();
    QTest::newRow("an empty object") << QByteArray("{}") << nothing << QByteArray();
    QTest::newRow("a scalar") << QByteArray("1") << nothing << QByteArray();
    QTest::newRow("white space only")
        << QByteArray("\n") << nothing << QByteArray("\" at line 2 pos 1\" \n");
    QTest::newRow("a byte-order mark") << "\xef\xbb\xbf" + QByteArray(goodFile) << nothing
                                       << QByteArray("\" at line 1 pos 0\" \n");
    QTest::newRow("a missing colon") << QByteArray("{\"Global\" {}}") << nothing
                                     << QByteArray("\"Expected ':' at line 1 pos 11\" \n");
    QTest::newRow("bytes after the document")
        << goodFile + QByteArray(" x") << nothing
        << QByteArray("\"Expected 'end of file' at line 1 pos ")
            + QByteArray::number(int(sizeof goodFile) + 1) + "\" \n";
    QTest::newRow("version 2 gives the global section only")
        << QByteArray(goodFile).replace("\"Version\": 1", "\"Version\": 2")
        << QByteArray("port: none\nglobal: CertPath = string \"p\"\ntv: none\n") << QByteArray();
    QTest::newRow("two global sections both count")
        << QByteArray("{\"Global\": {\"Version\": 1}, \"Global\": {\"RemoteInspectorPort\": 7, "
                      "\"Version\": 2}, \"Applications\": [{\"Tag\": \"tv\"}]}")
        << QByteArray("port: 7\nglobal: \ntv: \n") << QByteArray();
}

void tst_ConfigurationFile::contentsDecideWhatIsGiven()
{
    QFETCH(QByteArray, contents);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    m_folder->write(QLatin1String("work/AppsConfig.json"), contents);
    const Environment variable("NUV_APPS_CONFIG_FILE", nullptr);

    const Outcome outcome = runProbe();

    QCOMPARE(outcome.output, output);
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ConfigurationFile::isOpenedOnceForReadingAndNeverChanges()
{
    const QString path = m_folder->write(QLatin1String("work/AppsConfig.json"), goodFile);
    const Environment variable("NUV_APPS_CONFIG_FILE", nullptr);

    Watch watch(path);
    const Outcome outcome = runProbe(QStringList(QLatin1String("tv")) << QLatin1String("radio"));

    QCOMPARE(outcome.output, QByteArray(goodGiven) + "radio: none\n");
    QCOMPARE(watch.count(IN_OPEN), 1);
    QCOMPARE(watch.count(IN_CLOSE_NOWRITE), 1);
    QCOMPARE(watch.count(IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF),
             0);
    QCOMPARE(watch.count(IN_CREATE | IN_DELETE | IN_MOVE), 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray(goodFile));
}

NUV_TEST_MAIN(tst_ConfigurationFile)

#include "tst_configurationfile.moc"
