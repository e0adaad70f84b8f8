// SPDX-License-Identifier: MIT
#include "settings/jsonsettingsformat.h"
#include "tests/faults/childprocess.h"
#include "tests/support/filecontents.h"
#include "tests/support/restrictions.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QSettings>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include <sys/mman.h>

namespace {

const int KeyCount = 20;

QString keyNumber(int number)
{
    return QString(QLatin1String("group/key%1")).arg(number);
}

// Sets all keys to one value, so that a mixture of two documents shows.
void setAll(QSettings &settings, int value, int textSize)
{
    for (int i = 0; i < KeyCount; ++i)
        settings.setValue(keyNumber(i), value);
    settings.setValue(QLatin1String("text"), QString(textSize, QLatin1Char('x')));
}

void writeAll(const QString &path, int value, int textSize)
{
    QSettings settings(path, JsonSettingsFormat);
    setAll(settings, value, textSize);
}

// The value that all keys have; -1 when one has another, or is not there.
int readAll(const QString &path)
{
    const QSettings settings(path, JsonSettingsFormat);
    const int value = settings.value(keyNumber(0), -1).toInt();
    for (int i = 1; i < KeyCount; ++i) {
        if (settings.value(keyNumber(i), -1).toInt() != value)
            return -1;
    }
    return value;
}

// What a caller can do. The last line of a document is the only one that begins with a brace, since no
// text in it holds a line feed.
bool isWhole(const QString &path)
{
    return fileContents(path).endsWith("\n}");
}

int writeForEver(const QString &path)
{
    for (int value = 2;; ++value)
        writeAll(path, value, 100 + value % 50);
    return 0;
}

/// Counters that this process and its children have in common.
class SharedCounters
{
public:
    SharedCounters()
        : m_counters(static_cast<std::atomic<int> *>(
            ::mmap(nullptr, Size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
        if (m_counters == MAP_FAILED)
            qFatal("no memory can be shared");
    }

    ~SharedCounters() { ::munmap(m_counters, Size); }

    std::atomic<int> &readings() const { return m_counters[0]; }
    std::atomic<int> &mixtures() const { return m_counters[1]; }

private:
    Q_DISABLE_COPY(SharedCounters)

    enum { Size = 2 * sizeof(std::atomic<int>) };
    std::atomic<int> *const m_counters;
};

struct Losses {
    Losses() : cases(0), told(0), kept(0), written(0), cutAndTold(0), cutInSilence(0) {}

    void print(const char *what) const
    {
        std::printf(
            "%s: %d cases, %d told by status(); the old document is kept in %d, the new one "
            "written in %d, cut and told in %d, cut in silence in %d\n",
            what, cases, told, kept, written, cutAndTold, cutInSilence);
    }

    int cases, told, kept, written, cutAndTold, cutInSilence;
};

} // namespace

/// Writing that fails, and readers next to a writer. What is lost is counted and printed.
class tst_OutputFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aFullDiskLosesTheDocument_data();
    void aFullDiskLosesTheDocument();
    void theWriterDoesNotSeeItsLossUnderTheSameName();
    void aKilledWriterLeavesAWholeDocument();
    void readersBesideAWriterSeeWholeDocuments();
    void readersInOtherThreadsSeeWholeDocuments();
};

// The toolkit waits for the disk with every file. A folder in memory does not keep it waiting.
void tst_OutputFailures::initTestCase()
{
    if (::access("/dev/shm", W_OK) == 0)
        qputenv("TMPDIR", "/dev/shm");
}

void tst_OutputFailures::aFullDiskLosesTheDocument_data()
{
    QTest::addColumn<int>("textSize");
    QTest::addColumn<int>("step");
    QTest::newRow("a document of 1 KiB") << 600 << 13;
    QTest::newRow("a document of 40 KiB") << 40000 << 997;
}

// For each room from nothing to enough. Nothing else than the old document, the new one, or a part of
// that may be left.
void tst_OutputFailures::aFullDiskLosesTheDocument()
{
    QFETCH(int, textSize);
    QFETCH(int, step);
    const TemporaryDir folder;
    const QString whole = folder.filePath(QLatin1String("whole.json"));
    writeAll(whole, 2, textSize);
    const QByteArray after = fileContents(whole);
    Losses losses;

    for (int room = 0; room < after.size() + step; room += step) {
        const QString path = folder.filePath(QString::number(room));
        writeAll(path, 1, 0);
        const QByteArray before = fileContents(path);
        bool isTold = false;
        {
            QSettings settings(path, JsonSettingsFormat);
            setAll(settings, 2, textSize);
            const FileSizeLimit limit(static_cast<rlim_t>(room));
            settings.sync();
            isTold = settings.status() != QSettings::NoError;
        }
        const QByteArray left = fileContents(path);
        const bool isCut = left != before && left != after;
        QVERIFY2(!isCut || left == after.left(room), QByteArray::number(room).constData());
        ++losses.cases;
        losses.told += isTold ? 1 : 0;
        losses.kept += left == before ? 1 : 0;
        losses.written += left == after ? 1 : 0;
        losses.cutAndTold += isCut && isTold ? 1 : 0;
        losses.cutInSilence += isCut && !isTold ? 1 : 0;
        QCOMPARE(isWhole(path), !isCut);
    }

    losses.print(QTest::currentDataTag());
    QVERIFY(losses.written >= 1);
    QVERIFY(losses.cutInSilence >= 1);
}

// The toolkit takes a file for what it wrote itself for as long as its size and its time stay as they
// are. Under another name it is read.
void tst_OutputFailures::theWriterDoesNotSeeItsLossUnderTheSameName()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("a.json"));
    const QString link = folder.filePath(QLatin1String("link.json"));
    QVERIFY(QFile::link(path, link));
    {
        const FileSizeLimit limit(500);
        writeAll(path, 1, 600);
    }

    QVERIFY(!isWhole(path));
    QCOMPARE(readAll(path), ToolkitDifferences::either(-1, 1));
    QCOMPARE(readAll(link), -1);
}

// A lock that a killed writer leaves does not keep the next one out, but one that has not been
// written into yet does for half a minute, so each is taken away here.
void tst_OutputFailures::aKilledWriterLeavesAWholeDocument()
{
    const int kills = qMax(100, qgetenv("NUV_KILLS").toInt());
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("a.json"));
    const QString lock = path + QLatin1String(".lock");
    int lost = 0;
    int locks = 0;
    int emptyLocks = 0;
    for (int i = 0; i < kills; ++i) {
        writeAll(path, 1, 100);
        {
            ChildProcess writer([&] { return writeForEver(path); });
            ::usleep(useconds_t(1000 + i * 37 % 10000));
            writer.kill();
        }
        lost += ChildProcess([&] { return readAll(path) > 0 ? 0 : 1; }).wait();
        emptyLocks += QFile::exists(lock) && fileContents(lock).isEmpty() ? 1 : 0;
        locks += QFile::remove(lock) ? 1 : 0;
    }
    const int strays = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size() - 1;
    std::printf("killed writers: %d cases, %d documents lost, %d locks left, %d of them empty, %d "
                "other files left\n",
                kills, lost, locks, emptyLocks, strays);
    QVERIFY(lost == 0 || !ToolkitDifferences::replacesWrittenFiles());
}

// Two processes read while a third one writes, until they have seen enough of its documents.
void tst_OutputFailures::readersBesideAWriterSeeWholeDocuments()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("a.json"));
    writeAll(path, 1, 100);
    const SharedCounters counters;
    const auto read = [&] {
        for (int value = 1; value < 300; value = qMax(value, readAll(path))) {
            ++counters.readings();
            counters.mixtures() += readAll(path) < 0 ? 1 : 0;
        }
        return 0;
    };
    ChildProcess writer([&] { return writeForEver(path); });
    ChildProcess first(read);
    ChildProcess second(read);
    QCOMPARE(first.wait(), 0);
    QCOMPARE(second.wait(), 0);

    const int mixtures = counters.mixtures();
    std::printf("readers next to a writer: %d readings of 300 documents, %d mixed or cut\n",
                int(counters.readings()), mixtures);
    QVERIFY(mixtures == 0 || !ToolkitDifferences::replacesWrittenFiles());
}

void tst_OutputFailures::readersInOtherThreadsSeeWholeDocuments()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("a.json"));
    writeAll(path, 7, 1000);
    std::vector<int> wrong(4, 0);
    std::vector<std::thread> readers;
    for (size_t i = 0; i < wrong.size(); ++i) {
        readers.emplace_back([&wrong, &path, i] {
            for (int n = 0; n < 250; ++n)
                wrong[i] += readAll(path) == 7 ? 0 : 1;
        });
    }
    for (std::thread &reader : readers)
        reader.join();
    std::printf("readers in threads: 1000 readings, %d mixed or cut\n",
                wrong[0] + wrong[1] + wrong[2] + wrong[3]);
    QVERIFY(wrong == std::vector<int>(4, 0));
}

NUV_TEST_MAIN(tst_OutputFailures)

#include "tst_outputfailures.moc"
