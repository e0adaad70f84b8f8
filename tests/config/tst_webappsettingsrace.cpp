// SPDX-License-Identifier: MIT
#include "config/webappsettings.h"

#include "tests/support/configdescription.h"
#include "tests/support/messagesink.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "global/qtcompat.h"

#include <QProcess>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <unistd.h>

// The instance is made once in a process, so every race is a process of its own: this program
// again, with the name of the race as its argument.

namespace {

/// Lets two threads go at the same moment.
class StartingLine
{
public:
    StartingLine() : m_missing(2) {}

    void wait()
    {
        --m_missing;
        while (m_missing > 0)
            std::this_thread::yield();
    }

private:
    std::atomic<int> m_missing;
};

/// What a thread was given.
struct Given {
    WebAppSettings *settings;
    unsigned int port;
    AppConfig application;
    bool hasApplication;
};

void ask(Given &given)
{
    given.port = 0;
    given.settings = getWebAppSettings();
    given.settings->getGlobalRemoteInspectorPort(given.port);
    given.hasApplication = given.settings->getAppConfig(QLatin1String("tv"), given.application);
}

bool isGoodFile(const Given &given)
{
    return given.port == 900 && given.hasApplication
        && describeConfig(given.application) == "Url = string \"u\"";
}

// Both threads call as close together as two threads can.
int raceWithBothAtOnce()
{
    StartingLine line;
    Given first;
    Given second;
    std::thread other([&] {
        line.wait();
        ask(second);
    });
    line.wait();
    ask(first);
    other.join();
    return first.settings == second.settings && isGoodFile(first) && isGoodFile(second) ? 0 : 1;
}

/// The second thread of raceIntoTheReading().
struct Latecomer {
    std::thread thread;
    std::atomic<bool> isAsking;
    std::atomic<bool> isAnswered;
    Given given;
};

Latecomer *latecomer = nullptr;
const char *latecomersFolder = nullptr;
bool wasAnsweredEarly = false;

// Runs in the middle of the reading, as the file in the working directory has a syntax error. From
// here on a second reading would find a good file.
void startLatecomer(QtMsgType, const QByteArray &)
{
    if (::chdir(latecomersFolder) != 0)
        std::abort();
    latecomer->thread = std::thread([] {
        latecomer->isAsking = true;
        ask(latecomer->given);
        latecomer->isAnswered = true;
    });
    while (!latecomer->isAsking)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    wasAnsweredEarly = latecomer->isAnswered;
}

// The second thread calls while the first one reads the file, and must wait for it.
int raceIntoTheReading(const char *folder)
{
    latecomersFolder = folder;
    latecomer = new Latecomer;
    latecomer->isAsking = false;
    latecomer->isAnswered = false;
    installMessageSink(startLatecomer);
    const WebAppSettings *settings = getWebAppSettings();
    installMessageSink(nullptr);
    if (!latecomer->thread.joinable())
        return 2; // no message, no race
    latecomer->thread.join();
    const bool isOneReading = latecomer->given.settings == settings && latecomer->given.port == 0
        && !latecomer->given.hasApplication && !wasAnsweredEarly;
    delete latecomer;
    return isOneReading ? 0 : 1;
}

const char goodFile[] = "{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 900}, "
                        "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"u\"}]}";

} // namespace

class tst_WebAppSettingsRace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoThreadsGetOneInstance();
    void aThreadWaitsForTheReadingOfAnother();

private:
    QByteArray race(const QString &workingDirectory, const QStringList &arguments);
};

// The output of a race is empty when all went well; a thread sanitizer reports there, too.
QByteArray tst_WebAppSettingsRace::race(const QString &workingDirectory,
                                        const QStringList &arguments)
{
    ::unsetenv("NUV_APPS_CONFIG_FILE");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(workingDirectory);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return "no normal end: " + process.readAll();
    if (process.exitCode() != 0)
        return "exit code " + QByteArray::number(process.exitCode()) + ": " + process.readAll();
    return process.readAll();
}

void tst_WebAppSettingsRace::twoThreadsGetOneInstance()
{
    const TemporaryDir folder;
    folder.write(QLatin1String("AppsConfig.json"), goodFile);

    for (int i = 0; i < 20; ++i)
        QCOMPARE(race(folder.path(), QStringList(QLatin1String("--both-at-once"))), QByteArray());
}

void tst_WebAppSettingsRace::aThreadWaitsForTheReadingOfAnother()
{
    const TemporaryDir malformed;
    malformed.write(QLatin1String("AppsConfig.json"), "{\"Global\" {}}");
    const TemporaryDir good;
    good.write(QLatin1String("AppsConfig.json"), goodFile);

    QCOMPARE(
        race(malformed.path(), QStringList(QLatin1String("--into-the-reading")) << good.path()),
        QByteArray());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "--both-at-once") == 0)
        return raceWithBothAtOnce();
    if (argc == 3 && qstrcmp(argv[1], "--into-the-reading") == 0)
        return raceIntoTheReading(argv[2]);
    tst_WebAppSettingsRace test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_webappsettingsrace.moc"
