// SPDX-License-Identifier: MIT
#include "config/webappsettings.h"
#include "config/webappsettings_p.h"
#include "global/qtcompat.h"
#include "settings/jsonsettingsformat.h"
#include "tests/faults/childprocess.h"
#include "tests/faults/opening.h"
#include "tests/json/jsoninput.h"
#include "tests/support/configdescription.h"
#include "tests/support/messages.h"
#include "tests/support/restrictions.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include <QBuffer>
#include <QScopedPointer>
#include <QSettings>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <ctime>
#include <new>

#include <sys/stat.h>

/// What happens to the file between the loader's look for it and the toolkit's opening it.
typedef void (*FileChange)(const QString &path);

Q_DECLARE_METATYPE(FileChange)

namespace {

const char document[] =
    "{'Global':{'Version':1,'RemoteInspectorPort':9222,'Certificate':{'Path':'device.pem'}},\n"
    " 'Applications':[{'Tag':'tv','Url':'http://tv.example/','Scale':1.5},\n"
    "                 {'Tag':'menu','UseWebGL':false}]}\n";

/// Hands out `piece` bytes at a time, and after `good` bytes reports an error or an end.
class FaultyDevice : public QIODevice
{
public:
    enum Behind { End, Error };

    FaultyDevice(const QByteArray &bytes, int good, int piece, Behind behind)
        : m_bytes(bytes.left(good)), m_piece(piece), m_behind(behind)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 limit) override
    {
        if (m_bytes.isEmpty())
            return m_behind == Error ? -1 : 0;
        const int size = int(qMin(limit, qint64(qMin(m_piece, m_bytes.size()))));
        std::memcpy(data, m_bytes.constData(), size_t(size));
        m_bytes.remove(0, size);
        return size;
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    const int m_piece;
    const Behind m_behind;
};

QByteArray readFrom(QIODevice &device)
{
    QSettings::SettingsMap map;
    if (!readJsonSettings(device, map))
        qFatal("the read callback reported a failure");
    return describeLines(map);
}

QByteArray readWhole(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return readFrom(device);
}

// The configuration that the loader finds, in a few words, and "none" without a file.
QByteArray loaded()
{
    const WebAppSettingsPrivate state;
    const QScopedPointer<QSettings> settings(state.settings);
    if (!settings)
        return "none";
    return "status " + QByteArray::number(int(settings->status())) + ", "
        + (state.isUsable() ? "usable, " : "not usable, ")
        + QByteArray::number(state.applications.size()) + " applications";
}

const char complete[] = "status 0, usable, 2 applications";
const char withoutKeys[] = "status 0, not usable, 0 applications";
const char withoutAccess[] = "status 1, not usable, 0 applications";

void stays(const QString &) {}

void vanishes(const QString &path)
{
    QFile::remove(path);
}

void isEmptied(const QString &path)
{
    QFile::resize(path, 0);
}

void isCut(const QString &path)
{
    QFile::resize(path, 60);
}

void grow(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(bytes) != bytes.size())
        qFatal("the file does not grow");
}

void growsByBlanks(const QString &path)
{
    grow(path, QByteArray(100000, ' '));
}

void growsByADocument(const QString &path)
{
    grow(path, "{}");
}

void becomesAFolder(const QString &path)
{
    QFile::remove(path);
    QDir().mkdir(path);
}

void becomesUnreadable(const QString &path)
{
    QFile::setPermissions(path, QFile::Permissions());
}

void isOpenedWithoutMemory(const QString &)
{
    throw std::bad_alloc();
}

bool firstRequestFails()
{
    try {
        getWebAppSettings();
    } catch (const std::bad_alloc &) {
        return true;
    }
    return false;
}

} // namespace

/// Reading that fails, and files that are not what they were a moment before.
class tst_InputFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void readingThatEndsEarlyGivesAllOrNothing_data();
    void readingThatEndsEarlyGivesAllOrNothing();
    void shortReadsLoseNothing();
    void aRootOfOneNumberMayBeCutUnseen();
    void filesCutAtAnyByteGiveAllOrNothing();
    void filesMayChangeBeforeTheyAreOpened_data();
    void filesMayChangeBeforeTheyAreOpened();
    void aRequestIsAnsweredAfterOneThatLackedMemory();
    void devicesHoldNoConfiguration_data();
    void devicesHoldNoConfiguration();
    void aPipeIsWaitedForAndNotRead();
    void permissionsDecideWhatIsLoaded_data();
    void permissionsDecideWhatIsLoaded();
    void theLargestCountDoesNotOverflow();
    void applicationsAreCountedToTheEndOfTheirSize();

private:
    QString writeConfiguration(const QByteArray &bytes)
    {
        // The toolkit knows a file that it has read by its name and time.
        static int number = 0;
        const QString path = m_folder.filePath(QString::number(++number));
        const AsNobody nobody;
        m_folder.write(QString::number(number), bytes);
        qputenv("NUV_APPS_CONFIG_FILE", QFile::encodeName(path));
        return path;
    }

    TemporaryDir m_folder;
};

// The changes are those of somebody without the rights of root.
void tst_InputFailures::initTestCase()
{
    QCOMPARE(::chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
}

void tst_InputFailures::cleanup()
{
    Opening::before = nullptr;
}

void tst_InputFailures::readingThatEndsEarlyGivesAllOrNothing_data()
{
    QTest::addColumn<int>("behind");
    QTest::newRow("end of file") << int(FaultyDevice::End);
    QTest::newRow("read error") << int(FaultyDevice::Error);
}

void tst_InputFailures::readingThatEndsEarlyGivesAllOrNothing()
{
    QFETCH(int, behind);
    const QByteArray text = json(document);
    const QByteArray whole = readWhole(text);
    int readAll = 0;
    int readNothing = 0;

    for (int good = 0; good <= text.size(); ++good) {
        for (int piece : { 1, 7, INT_MAX }) {
            FaultyDevice device(text, good, piece, FaultyDevice::Behind(behind));
            const Messages messages;
            const QByteArray lines = readFrom(device);
            const bool isWhole = lines == whole && messages.count() == 0;
            const bool isNothing = lines.isEmpty() && messages.count() == 1;
            QVERIFY2(isWhole || isNothing, QByteArray::number(good).constData());
            readAll += isWhole ? 1 : 0;
            readNothing += isNothing ? 1 : 0;
        }
    }

    std::printf("reading cut, %s: %d cases, %d gave nothing and a warning, %d all\n",
                QTest::currentDataTag(), readAll + readNothing, readNothing, readAll);
    QCOMPARE(readAll, 3 * 2); // without the last line feed, and with it
}

void tst_InputFailures::shortReadsLoseNothing()
{
    const QByteArray text = json(document) + QByteArray(20000, ' ');
    const QByteArray whole = readWhole(text);
    for (int piece : { 1, 2, 3, 511, 4096, 16384 }) {
        FaultyDevice device(text, text.size(), piece, FaultyDevice::End);
        QCOMPARE(readFrom(device), whole);
    }
}

// The only documents of which a part is a whole one.
void tst_InputFailures::aRootOfOneNumberMayBeCutUnseen()
{
    FaultyDevice device("1234", 2, 1, FaultyDevice::Error);
    const Messages messages;

    QCOMPARE(readFrom(device), QByteArray("\"\" = int 12\n"));
    QCOMPARE(messages.count(), 0);
}

void tst_InputFailures::filesCutAtAnyByteGiveAllOrNothing()
{
    const QByteArray text = json(document);
    int wholes = 0;
    const Messages messages;
    for (int size = 0; size <= text.size(); ++size) {
        writeConfiguration(text.left(size));
        const QByteArray state = loaded();
        QVERIFY2(state == complete || state == withoutKeys, state.constData());
        wholes += state == complete ? 1 : 0;
    }
    std::printf("files cut: %d cases, %d loaded whole, the others not at all\n",
                int(text.size()) + 1, wholes);
    QCOMPARE(wholes, 2);
}

void tst_InputFailures::filesMayChangeBeforeTheyAreOpened_data()
{
    QTest::addColumn<FileChange>("change");
    QTest::addColumn<QByteArray>("state");
    const auto row = [](const char *name, FileChange change, const char *state) {
        QTest::newRow(name) << change << QByteArray(state);
    };
    row("it stays", stays, complete);
    row("it vanishes", vanishes, withoutKeys);
    row("it is emptied", isEmptied, withoutKeys);
    row("it is cut", isCut, withoutKeys);
    row("it grows by blanks", growsByBlanks, complete);
    row("it grows by another document", growsByADocument, withoutKeys);
    row("it becomes a folder", becomesAFolder, withoutAccess);
    row("it may no longer be read", becomesUnreadable, withoutAccess);
}

void tst_InputFailures::filesMayChangeBeforeTheyAreOpened()
{
    QFETCH(FileChange, change);
    QFETCH(QByteArray, state);
    const Messages messages;
    writeConfiguration(json(document));
    Opening::before = change;

    const AsNobody nobody;
    QCOMPARE(loaded(), state);
}

// The process's own settings, which no other test here asks for.
void tst_InputFailures::aRequestIsAnsweredAfterOneThatLackedMemory()
{
    writeConfiguration(json(document));
    Opening::before = isOpenedWithoutMemory;
    QVERIFY(firstRequestFails());

    Opening::before = nullptr;
    unsigned int port = 0;
    QVERIFY(getWebAppSettings()->getGlobalRemoteInspectorPort(port));
    QCOMPARE(port, 9222u);
}

void tst_InputFailures::devicesHoldNoConfiguration_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("state");
    QTest::newRow("null") << QByteArray("/dev/null") << QByteArray(withoutKeys);
    QTest::newRow("zero") << QByteArray("/dev/zero") << QByteArray(withoutKeys);
    QTest::newRow("a folder") << QByteArray("/") << QByteArray(withoutAccess);
}

void tst_InputFailures::devicesHoldNoConfiguration()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, state);
    qputenv("NUV_APPS_CONFIG_FILE", path);

    const AsNobody nobody; // the toolkit looks whether it could write
    QCOMPARE(loaded(), state);
}

// Opening it ends when somebody opens it for writing, and the toolkit reads nothing from what has no
// size. The writer here fails to open it for as long as nobody waits.
void tst_InputFailures::aPipeIsWaitedForAndNotRead()
{
    const QByteArray path = QFile::encodeName(m_folder.filePath(QLatin1String("pipe")));
    QCOMPARE(::mkfifo(path.constData(), 0644), 0);
    qputenv("NUV_APPS_CONFIG_FILE", path);

    ChildProcess reader([] { return loaded() == withoutKeys ? 0 : 1; });
    int writer = -1;
    while (writer < 0) {
        writer = ::open(path.constData(), O_WRONLY | O_NONBLOCK);
        QVERIFY(writer >= 0 || errno == ENXIO);
        ::usleep(1000);
    }
    const QByteArray text = json(document);
    // The reader may have gone by now, which must not end this process.
    void (*const handler)(int) = std::signal(SIGPIPE, SIG_IGN);
    const ssize_t taken = ::write(writer, text.constData(), size_t(text.size()));
    std::signal(SIGPIPE, handler);
    ::close(writer);

    QVERIFY(taken == text.size() || errno == EPIPE);
    QCOMPARE(reader.wait(), 0);
}

void tst_InputFailures::permissionsDecideWhatIsLoaded_data()
{
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<QByteArray>("state");
    QTest::newRow("may be read") << 0444 << 0755 << QByteArray(complete);
    QTest::newRow("in a folder without a list") << 0444 << 0711 << QByteArray(complete);
    QTest::newRow("may only be written") << 0222 << 0755 << QByteArray(withoutAccess);
    QTest::newRow("may not be touched") << 0000 << 0755 << QByteArray(withoutAccess);
    QTest::newRow("in a closed folder") << 0444 << 0000 << QByteArray("none");
}

void tst_InputFailures::permissionsDecideWhatIsLoaded()
{
    QFETCH(int, fileMode);
    QFETCH(int, folderMode);
    QFETCH(QByteArray, state);
    const TemporaryDir folder;
    const QByteArray folderName = QFile::encodeName(folder.path());
    const QByteArray path =
        QFile::encodeName(folder.write(QLatin1String("a.json"), json(document)));
    qputenv("NUV_APPS_CONFIG_FILE", path);
    QCOMPARE(::chmod(path.constData(), mode_t(fileMode)), 0);
    QCOMPARE(::chmod(folderName.constData(), mode_t(folderMode)), 0);

    // A process of its own gives up the rights of root for good: the toolkit's look for a file goes by
    // the real user.
    ChildProcess reader([&] {
        const bool isNobody = ::geteuid() != 0 || ::setuid(65534) == 0;
        return isNobody && loaded() == state ? 0 : 1;
    });
    QCOMPARE(reader.wait(), 0);
    QCOMPARE(::chmod(folderName.constData(), 0755), 0);
}

// The last step alone, as the toolkit takes it, which names elements by their index and one.
void tst_InputFailures::theLargestCountDoesNotOverflow()
{
    const QString path = writeConfiguration(
        json("{'Applications':{'size':2147483647,'2147483647':{'Tag':'the last'}}}"));
    QSettings settings(path, JsonSettingsFormat);

    const int count = settings.beginReadArray(QLatin1String("Applications"));
    QCOMPARE(count, INT_MAX);
    settings.setArrayIndex(count - 1);
    QCOMPARE(settings.value(QLatin1String("Tag")).toString(), QString(QLatin1String("the last")));
    settings.endArray();
}

// Each element is asked for, and all but two are not there. NUV_ELEMENTS may be as large as 2147483647,
// which takes minutes: more than the toolkit gives a test unless QTEST_FUNCTION_TIMEOUT allows it.
void tst_InputFailures::applicationsAreCountedToTheEndOfTheirSize()
{
    const int count = qMax(100000, qgetenv("NUV_ELEMENTS").toInt());
    const QByteArray size = QByteArray::number(count);
    writeConfiguration(json("{'Global':{'Version':1},'Applications':{'1':{'Tag':'first'},'" + size
                            + "':{'Tag':'last'},'size':" + size + "}}"));

    const std::clock_t start = std::clock();
    const QByteArray state = loaded();
    const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;

    std::printf("a size of %d: loaded in %.1f s of processor time\n", count, seconds);
    QCOMPARE(state, QByteArray(complete));
}

NUV_TEST_MAIN(tst_InputFailures)

#include "tst_inputfailures.moc"
