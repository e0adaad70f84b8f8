// SPDX-License-Identifier: MIT
#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "tests/settings/randomtrees.h"
#include "tests/settings/referenceformat.h"
#include "tests/settings/unflattened.h"
#include "tests/support/describe.h"
#include "tests/support/filecontents.h"
#include "tests/support/messages.h"
#include "tests/support/restrictions.h"
#include "tests/support/smallstackthread.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QBuffer>
#include <QPoint>
#include <QStringList>
#include <QUrl>
#include <QtDebug>

#include <algorithm>
#include <limits>
#include <random>
#include <thread>
#include <type_traits>

#include <sys/stat.h>

static_assert(std::is_same<decltype(JsonSettingsFormat), QSettings::Format>::value
                  && std::is_convertible<decltype(&readJsonSettings), QSettings::ReadFunc>::value
                  && std::is_convertible<decltype(&writeJsonSettings), QSettings::WriteFunc>::value,
              "the format is made of a handle and two callbacks");

namespace {

/// A device that can neither be read nor written, and counts the attempts.
class FailingDevice : public QIODevice
{
public:
    FailingDevice() : writes(0), attempted(0) { open(ReadWrite | Unbuffered); }

    int writes;
    qint64 attempted; ///< bytes of the last write

protected:
    qint64 readData(char *, qint64) override { return -1; }

    qint64 writeData(const char *, qint64 size) override
    {
        ++writes;
        attempted = size;
        return -1;
    }
};

/// A device that hands out its bytes a few at a time and does not know its size.
class TricklingDevice : public QIODevice
{
public:
    explicit TricklingDevice(const QByteArray &bytes) : m_bytes(bytes)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size(); }
    QByteArray unread() const { return m_bytes; }

protected:
    qint64 readData(char *data, qint64 limit) override
    {
        const int size = int(qMin(qMin(limit, qint64(3)), qint64(m_bytes.size())));
        memcpy(data, m_bytes.constData(), size_t(size));
        m_bytes.remove(0, size);
        return size;
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
};

/// A device that says that it holds more than a byte array of Qt 5 does.
class EndlessDevice : public QIODevice
{
public:
    EndlessDevice() { open(ReadOnly | Unbuffered); }

    qint64 size() const override { return std::numeric_limits<int>::max(); }

protected:
    qint64 readData(char *data, qint64 limit) override
    {
        memset(data, ' ', size_t(limit));
        return limit;
    }

    qint64 writeData(const char *, qint64) override { return -1; }
};

QSettings::SettingsMap settingsMap(const QVariant &object)
{
    const QtCompat::MultiMap members = QtCompat::toMultiMap(object);
    QSettings::SettingsMap map;
    for (QtCompat::MultiMap::const_iterator it = members.begin(); it != members.end(); ++it)
        map.insert(it.key(), it.value());
    return map;
}

QSettings::SettingsMap readBytes(const QByteArray &bytes)
{
    QByteArray copy = bytes;
    QBuffer device(&copy);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    if (!readJsonSettings(device, map))
        qFatal("the read callback reported a failure");
    return map;
}

QByteArray writtenBytes(const QSettings::SettingsMap &map)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(QIODevice::WriteOnly);
    if (!writeJsonSettings(device, map))
        qFatal("the write callback reported a failure");
    return bytes;
}

// What is written of a document that was read, again and again, which must be the same every time.
void copyAgainAndAgain(const QByteArray &document, QByteArray *outcome)
{
    *outcome = document;
    for (int i = 0; i < 50; ++i)
        *outcome = writtenBytes(readBytes(*outcome));
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        qFatal("%s is not there", qPrintable(path));
    return status;
}

int modeOf(const QString &path)
{
    return int(statusOf(path).st_mode & 07777);
}

void writeSetting(const QString &path, const QVariant &value)
{
    QSettings settings(path, JsonSettingsFormat);
    settings.setValue(QLatin1String("key"), value);
}

QByteArray nested(const QByteArray &begin, int depth, const QByteArray &end)
{
    return begin.repeated(depth) + '1' + end.repeated(depth);
}

} // namespace

class tst_JsonSettingsFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isRegisteredOnceWithItsExtension();
    void keysAreCaseSensitive();
    void readsDocumentsAsFlatKeys_data();
    void readsDocumentsAsFlatKeys();
    void readingReplacesKeysAndKeepsTheOthers();
    void readsFromThePositionOfTheDeviceToItsEnd();
    void readsDevicesThatTrickle();
    void syntaxErrorsGiveOneWarningAndLeaveTheMapAlone_data();
    void syntaxErrorsGiveOneWarningAndLeaveTheMapAlone();
    void goodDocumentsGiveNoMessage();
    void flattenContinuesUnderThePrefixAndCutsItBack_data();
    void flattenContinuesUnderThePrefixAndCutsItBack();
    void flattenEqualsThePlainRecursion();
    void longArraysAreFlattenedLikeTheirElements_data();
    void longArraysAreFlattenedLikeTheirElements();
    void writesFlatKeysAsDocument_data();
    void writesFlatKeysAsDocument();
    void unflattenSetsOneValue_data();
    void unflattenSetsOneValue();
    void unflattenLeavesACopyOfTheTreeAlone();
    void unflattenEqualsThePlainRecursion();
    void unflattenEqualsThePlainRecursionInAnyOrder();
    void documentsSurviveTheRoundTrip_data();
    void documentsSurviveTheRoundTrip();
    void numbersTooLargeAreWrittenAsTheyWereRead();
    void failingDevicesAreNoFailure();
    void mapsOfCallersAreWrittenInto();
    void emptyFilesAreReadWithoutMessage();
    void filesBeyondAllByteArraysAreEmpty();
    void malformedFilesReadAsFilesWithoutKeys();
    void settingsReadFiles();
    void settingsWriteNewFiles();
    void settingsWriteValuesOfOtherTypes();
    void settingsChangeFilesAndWriteThemBack();
    void writingKeepsOrReplacesTheFile();
    void writingKeepsPermissions_data();
    void writingKeepsPermissions();
    void newFilesHaveThePermissionsOfTheProcess();
    void writingGoesThroughLinks();
    void writingLeavesNothingElseBehind();
    void writingNeedsPermissionForTheFileOrItsFolder();
    void fullDisksCutTheFile_data();
    void fullDisksCutTheFile();
    void theCodecForCStringsReadsTextButNotNames();
    void theWarningIsWhatTheDebugStreamOfQt4Writes_data();
    void theWarningIsWhatTheDebugStreamOfQt4Writes();
    void deepDocumentsNeedLittleStack_data();
    void deepDocumentsNeedLittleStack();
    void whatIsBeforeASyntaxErrorMayBeDeep();
    void whatIsDroppedMayBeDeep_data();
    void whatIsDroppedMayBeDeep();
    void manyKeysTakeTimeInProportion_data();
    void manyKeysTakeTimeInProportion();
    void namesThatDifferInOneCharacterStayApart();
    void threadsDoNotInteract();
};

void tst_JsonSettingsFormat::isRegisteredOnceWithItsExtension()
{
    // The toolkit counts its formats up from the first, so the next one tells how many there are.
    static const QSettings::Format next =
        QSettings::registerFormat(QLatin1String("other"), readJsonSettings, writeJsonSettings);
    QCOMPARE(int(JsonSettingsFormat), int(QSettings::CustomFormat1));
    QCOMPARE(int(next), int(QSettings::CustomFormat2));

    const TemporaryDir folder;
    QSettings::setPath(JsonSettingsFormat, QSettings::UserScope, folder.path());
    const QSettings settings(JsonSettingsFormat, QSettings::UserScope, QLatin1String("maker"),
                             QLatin1String("launcher"));
    QCOMPARE(settings.fileName(), folder.filePath(QLatin1String("maker/launcher.json")));
}

void tst_JsonSettingsFormat::keysAreCaseSensitive()
{
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("keys.json"), "{\"Key\": 1, \"key\": 2}");

    const QSettings settings(path, JsonSettingsFormat);

    QCOMPARE(describe(settings.value(QLatin1String("Key"))), QByteArray("int 1"));
    QCOMPARE(describe(settings.value(QLatin1String("key"))), QByteArray("int 2"));
    QVERIFY(!settings.contains(QLatin1String("KEY")));
}

// Rows where the prefix is not what the nesting of the document would make it.
static void addDocumentsWithSeparatorsInKeys()
{
    QTest::newRow("a separator in a key leaves its first part in the prefix")
        << QByteArray("{\"x/y\": 1, \"z\": 2}") << QByteArray("\"x/y\" = int 1\n\"x/z\" = int 2\n");
    QTest::newRow("two separators in a key leave two parts")
        << QByteArray("{\"u/v/w\": 1, \"z\": 2}")
        << QByteArray("\"u/v/w\" = int 1\n\"u/v/z\" = int 2\n");
    QTest::newRow("the prefix grows with every such key")
        << QByteArray("{\"a/b\": 1, \"c/d\": 2, \"e\": 3}")
        << QByteArray("\"a/b\" = int 1\n\"a/c/d\" = int 2\n\"a/c/e\" = int 3\n");
    QTest::newRow("the end of the object takes away one part only")
        << QByteArray("{\"o\": {\"x/y\": 1}, \"p\": 2}")
        << QByteArray("\"o/p\" = int 2\n\"o/x/y\" = int 1\n");
    QTest::newRow("a separator in a key of an array's element moves the elements after it")
        << QByteArray("{\"l\": [1, {\"x/y\": 2}, 3]}")
        << QByteArray("\"l/1\" = int 1\n\"l/2/3\" = int 3\n\"l/2/x/y\" = int 2\n"
                      "\"l/size\" = int 3\n");
    QTest::newRow("and so in an array of more than nine elements")
        << QByteArray("[{\"x/y\": 0}, 1, 2, 3, 4, 5, 6, 7, 8, 9]")
        << QByteArray("\"1/10\" = int 9\n\"1/2\" = int 1\n\"1/3\" = int 2\n\"1/4\" = int 3\n"
                      "\"1/5\" = int 4\n\"1/6\" = int 5\n\"1/7\" = int 6\n\"1/8\" = int 7\n"
                      "\"1/9\" = int 8\n\"1/x/y\" = int 0\n\"size\" = int 10\n");
    QTest::newRow("in the second element of more than nine")
        << QByteArray("[0, {\"x/y\": 1}, 2, 3, 4, 5, 6, 7, 8, 9]")
        << QByteArray("\"1\" = int 0\n\"2/10\" = int 9\n\"2/3\" = int 2\n\"2/4\" = int 3\n"
                      "\"2/5\" = int 4\n\"2/6\" = int 5\n\"2/7\" = int 6\n\"2/8\" = int 7\n"
                      "\"2/9\" = int 8\n\"2/x/y\" = int 1\n\"size\" = int 10\n");
    QTest::newRow("deep inside an array of more than nine elements")
        << QByteArray("[0, 1, 2, 3, 4, 5, 6, 7, 8, [[{\"/\": 9}]], 10]")
        << QByteArray("\"1\" = int 0\n\"10/1/1//\" = int 9\n\"10/1/size\" = int 1\n"
                      "\"10/11\" = int 10\n\"10/size\" = int 1\n\"2\" = int 1\n\"3\" = int 2\n"
                      "\"4\" = int 3\n\"5\" = int 4\n\"6\" = int 5\n\"7\" = int 6\n\"8\" = int 7\n"
                      "\"9\" = int 8\n\"size\" = int 11\n");
}

void tst_JsonSettingsFormat::readsDocumentsAsFlatKeys_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("objects nest by path") << QByteArray("{\"a\": 1, \"b\": {\"c\": true}}")
                                          << QByteArray("\"a\" = int 1\n\"b/c\" = bool true\n");
    QTest::newRow("an array has a size and elements from 1")
        << QByteArray("{\"list\": [10, 20]}")
        << QByteArray("\"list/1\" = int 10\n\"list/2\" = int 20\n\"list/size\" = int 2\n");
    QTest::newRow("an empty array has a size only")
        << QByteArray("{\"list\": []}") << QByteArray("\"list/size\" = int 0\n");
    QTest::newRow("an empty object has no key")
        << QByteArray("{\"a\": {}, \"b\": {\"c\": {}}}") << QByteArray();
    QTest::newRow("an empty object next to other members")
        << QByteArray("{\"a\": {}, \"b\": 2}") << QByteArray("\"b\" = int 2\n");
    QTest::newRow("an empty object in an array counts")
        << QByteArray("[{}, 2]") << QByteArray("\"2\" = int 2\n\"size\" = int 2\n");
    QTest::newRow("an empty root object") << QByteArray("{}") << QByteArray();
    QTest::newRow("an empty root array") << QByteArray("[]") << QByteArray("\"size\" = int 0\n");
    QTest::newRow("arrays and objects inside arrays")
        << QByteArray("{\"a\": [[1], {\"k\": \"v\"}]}")
        << QByteArray("\"a/1/1\" = int 1\n\"a/1/size\" = int 1\n\"a/2/k\" = string \"v\"\n"
                      "\"a/size\" = int 2\n");
    QTest::newRow("a root array") << QByteArray("[\"x\", null]")
                                  << QByteArray("\"1\" = string \"x\"\n\"2\" = invalid\n"
                                                "\"size\" = int 2\n");
    QTest::newRow("a root number") << QByteArray("42") << QByteArray("\"\" = int 42\n");
    QTest::newRow("a root string") << QByteArray("\"x\"") << QByteArray("\"\" = string \"x\"\n");
    QTest::newRow("a root null") << QByteArray("null") << QByteArray("\"\" = invalid\n");
    QTest::newRow("null is stored as an invalid variant")
        << QByteArray("{\"a\": {\"b\": null}}") << QByteArray("\"a/b\" = invalid\n");
    QTest::newRow("values keep their types")
        << QByteArray("{\"a\": 2147483648, \"b\": 1.0, \"c\": 0.5, \"d\": \"\", \"e\": false, "
                      "\"f\": 99999999999999999999}")
        << QByteArray("\"a\" = qlonglong 2147483648\n\"b\" = double 1\n\"c\" = double 0.5\n"
                      "\"d\" = string \"\"\n\"e\" = bool false\n\"f\" = double 1e+20\n");
    QTest::newRow("positions are decimal and sort as text")
        << QByteArray("[0,1,2,3,4,5,6,7,8,9,10]")
        << QByteArray("\"1\" = int 0\n\"10\" = int 9\n\"11\" = int 10\n\"2\" = int 1\n"
                      "\"3\" = int 2\n\"4\" = int 3\n\"5\" = int 4\n\"6\" = int 5\n"
                      "\"7\" = int 6\n\"8\" = int 7\n\"9\" = int 8\n\"size\" = int 11\n");
    addDocumentsWithSeparatorsInKeys();
    QTest::newRow("an empty key") << QByteArray("{\"\": 1, \"a\": {\"\": 2}}")
                                  << QByteArray("\"\" = int 1\n\"a/\" = int 2\n");
    QTest::newRow("a lone separator as key")
        << QByteArray("{\"/\": 1, \"a\": 2}") << QByteArray("\"/\" = int 1\n\"/a\" = int 2\n");
    QTest::newRow("of a duplicate scalar the earlier stays")
        << QByteArray("{\"a\": 1, \"a\": 2}") << QByteArray("\"a\" = int 1\n");
    QTest::newRow("duplicate objects merge")
        << QByteArray("{\"a\": {\"x\": 1, \"y\": 1}, \"a\": {\"y\": 2, \"z\": 2}}")
        << QByteArray("\"a/x\" = int 1\n\"a/y\" = int 1\n\"a/z\" = int 2\n");
    QTest::newRow("a longer later array leaves elements beyond the size of the earlier one")
        << QByteArray("{\"a\": [1], \"a\": [7, 8, 9]}")
        << QByteArray("\"a/1\" = int 1\n\"a/2\" = int 8\n\"a/3\" = int 9\n\"a/size\" = int 1\n");
    QTest::newRow("a duplicate of another kind leaves both")
        << QByteArray("{\"a\": 1, \"a\": {\"b\": 2}}")
        << QByteArray("\"a\" = int 1\n\"a/b\" = int 2\n");
    QTest::newRow("a key named size")
        << QByteArray("{\"size\": 2}") << QByteArray("\"size\" = int 2\n");
    QTest::newRow("bytes above 127 are single characters")
        << QByteArray("{\"\xc3\xa9\": \"\xe2\x82\xac\", \"\\u20ac\": 1}")
        << QByteArray("\"<c3><a9>\" = string \"<e2><82><ac>\"\n\"<20ac>\" = int 1\n");
}

void tst_JsonSettingsFormat::readsDocumentsAsFlatKeys()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, lines);

    const Messages messages;
    const QSettings::SettingsMap map = readBytes(json);

    QCOMPARE(describeLines(map), lines);
    QCOMPARE(messages.count(), 0);
}

void tst_JsonSettingsFormat::readingReplacesKeysAndKeepsTheOthers()
{
    QByteArray json = "{\"a\": 1, \"c\": [5]}";
    QBuffer device(&json);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    map.insert(QLatin1String("a"), QLatin1String("old"));
    map.insert(QLatin1String("b"), QLatin1String("kept"));
    map.insert(QLatin1String("c/size"), 9);

    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(describeLines(map),
             QByteArray("\"a\" = int 1\n\"b\" = string \"kept\"\n\"c/1\" = int 5\n"
                        "\"c/size\" = int 1\n"));
}

void tst_JsonSettingsFormat::readsFromThePositionOfTheDeviceToItsEnd()
{
    QByteArray bytes = "garbage{\"a\": 1}";
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    device.seek(7);
    QSettings::SettingsMap map;

    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(describeLines(map), QByteArray("\"a\" = int 1\n"));
    QVERIFY(device.atEnd());
}

void tst_JsonSettingsFormat::readsDevicesThatTrickle()
{
    TricklingDevice device("{\"a\": [1, 2], \"b\": \"text\"}  ");
    QSettings::SettingsMap map;

    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(describeLines(map),
             QByteArray("\"a/1\" = int 1\n\"a/2\" = int 2\n\"a/size\" = int 2\n"
                        "\"b\" = string \"text\"\n"));
    QCOMPARE(device.unread(), QByteArray());
}

void tst_JsonSettingsFormat::syntaxErrorsGiveOneWarningAndLeaveTheMapAlone_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("warning");

    QTest::newRow("no bytes") << QByteArray() << QByteArray("\" at line 1 pos 0\" ");
    QTest::newRow("white space") << QByteArray(" \n ") << QByteArray("\" at line 2 pos 3\" ");
    QTest::newRow("one expected token")
        << QByteArray("{\"a\" 1}") << QByteArray("\"Expected ':' at line 1 pos 6\" ");
    QTest::newRow("two expected tokens")
        << QByteArray("[1 2]") << QByteArray("\"Expected ']', ',' at line 1 pos 4\" ");
    QTest::newRow("many expected tokens")
        << QByteArray("[1,]") << QByteArray("\" at line 1 pos 4\" ");
    QTest::newRow("a trailing comma")
        << QByteArray("{\"a\":1,}") << QByteArray("\"Expected 'string' at line 1 pos 8\" ");
    QTest::newRow("a complete value in front") << QByteArray("{\"a\": 1} 2")
                                               << QByteArray("\"Expected 'end of file' at line 1 "
                                                             "pos 10\" ");
    QTest::newRow("an error on the third line")
        << QByteArray("{\n\n\"a\" 1}") << QByteArray("\"Expected ':' at line 3 pos 8\" ");
    QTest::newRow("a byte-order mark")
        << QByteArray("\xef\xbb\xbf{}") << QByteArray("\" at line 1 pos 0\" ");
}

void tst_JsonSettingsFormat::syntaxErrorsGiveOneWarningAndLeaveTheMapAlone()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, warning);
    QBuffer device(&json);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    map.insert(QLatin1String("a"), QLatin1String("kept"));

    const Messages messages;
    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(messages.count(), 1);
    QCOMPARE(int(messages.type(0)), int(QtWarningMsg));
    QCOMPARE(messages.text(0), warning);
    QCOMPARE(describeLines(map), QByteArray("\"a\" = string \"kept\"\n"));
}

void tst_JsonSettingsFormat::goodDocumentsGiveNoMessage()
{
    const Messages messages;
    writtenBytes(readBytes("{\"a\": [null, {\"b/c\": \"\\u20ac\"}], \"size\": 1}"));
    QCOMPARE(messages.count(), 0);
}

void tst_JsonSettingsFormat::flattenContinuesUnderThePrefixAndCutsItBack_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("prefixBehind");

    const QString none;
    QTest::newRow("the root") << none << QByteArray("{\"a\": 1}") << QByteArray("\"a\" = int 1\n")
                              << none;
    QTest::newRow("a scalar") << QString(QLatin1String("p/q/")) << QByteArray("1")
                              << QByteArray("\"p/q\" = int 1\n") << QString(QLatin1String("p/"));
    QTest::newRow("an object") << QString(QLatin1String("p/q/")) << QByteArray("{\"a\": 1}")
                               << QByteArray("\"p/q/a\" = int 1\n") << QString(QLatin1String("p/"));
    QTest::newRow("an empty object") << QString(QLatin1String("p/q/")) << QByteArray("{}")
                                     << QByteArray() << QString(QLatin1String("p/"));
    QTest::newRow("an array") << QString(QLatin1String("p/")) << QByteArray("[1]")
                              << QByteArray("\"p/1\" = int 1\n\"p/size\" = int 1\n") << none;
    QTest::newRow("an empty array") << QString(QLatin1String("p/")) << QByteArray("[]")
                                    << QByteArray("\"p/size\" = int 0\n") << none;
    QTest::newRow("a prefix of one separator")
        << QString(QLatin1String("/")) << QByteArray("1") << QByteArray("\"\" = int 1\n") << none;
    QTest::newRow("a key with a separator")
        << QString(QLatin1String("p/")) << QByteArray("{\"a/b\":1}")
        << QByteArray("\"p/a/b\" = int 1\n") << QString(QLatin1String("p/"));
}

void tst_JsonSettingsFormat::flattenContinuesUnderThePrefixAndCutsItBack()
{
    QFETCH(QString, prefix);
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, lines);
    QFETCH(QString, prefixBehind);
    QString error;
    QVariant tree = parseJson(json, &error);

    QSettings::SettingsMap map;
    flattenVariant(prefix, map, tree);

    QCOMPARE(describeLines(map), lines);
    QCOMPARE(prefix, prefixBehind);
}

void tst_JsonSettingsFormat::flattenEqualsThePlainRecursion()
{
    RandomTrees anyKeys(20110503);
    RandomTrees plainKeys(20110507, RandomTrees::KeysWithoutSeparator);
    for (int i = 0; i < 4000; ++i) {
        const QVariant tree = i % 2 ? anyKeys.tree() : plainKeys.tree();
        QString prefix;
        QString expectedPrefix;
        if (i % 8 >= 6)
            prefix = expectedPrefix = QLatin1String(i % 16 >= 14 ? "some/where" : "some/where/");
        QSettings::SettingsMap map;
        QSettings::SettingsMap expected;

        QVariant usedUp = tree;

        flattenVariant(prefix, map, usedUp);
        referenceFlatten(expectedPrefix, expected, tree);

        if (describeLines(map) != describeLines(expected))
            qWarning("tree %d: %s", i, describe(tree).constData());
        QCOMPARE(describeLines(map), describeLines(expected));
        QCOMPARE(prefix, expectedPrefix);
    }
}

void tst_JsonSettingsFormat::longArraysAreFlattenedLikeTheirElements_data()
{
    QTest::addColumn<int>("size");
    for (int size :
         { 0, 1, 8, 9, 10, 11, 19, 20, 89, 90, 98, 99, 100, 101, 109, 110, 999, 1000, 1234 })
        QTest::newRow(QByteArray::number(size).constData()) << size;
}

// The positions as strings sort otherwise than the positions: 10 comes before 2.
void tst_JsonSettingsFormat::longArraysAreFlattenedLikeTheirElements()
{
    QFETCH(int, size);
    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(i % 3 ? QVariant(QVariantList() << i) : QVariant(i));
    for (const char *key : { "a", "a/b" }) {
        QtCompat::MultiMap members;
        members.insert(QLatin1String(key), list);
        members.insert(QLatin1String("z"), list);
        const QVariant tree = QtCompat::toVariant(members);
        QString prefix;
        QString expectedPrefix;
        QSettings::SettingsMap map;
        QSettings::SettingsMap expected;

        QVariant usedUp = tree;

        flattenVariant(prefix, map, usedUp);
        referenceFlatten(expectedPrefix, expected, tree);

        QCOMPARE(describeLines(map), describeLines(expected));
        QCOMPARE(prefix, expectedPrefix);
    }
}

// Rows for what else a size can be, and for what is left out of an array.
static void addOddSizes()
{
    QTest::newRow("size as a string that is a number")
        << QByteArray("{\"a/size\": \"2\", \"a/1\": 1}")
        << QByteArray("{\n    \"a\":\n    [\n        1,\n        null\n    ]\n}");
    QTest::newRow("size as any other text") << QByteArray("{\"a/size\": \"two\", \"a/1\": 1}")
                                            << QByteArray("{\n    \"a\":\n    [\n\n    ]\n}");
    QTest::newRow("size null") << QByteArray("{\"a/size\": null, \"a/1\": 1}")
                               << QByteArray("{\n    \"a\":\n    [\n\n    ]\n}");
    QTest::newRow("size below zero") << QByteArray("{\"a/size\": -1, \"a/1\": 1}")
                                     << QByteArray("{\n    \"a\":\n    [\n\n    ]\n}");
    QTest::newRow("size as a double is rounded")
        << QByteArray("{\"a/size\": 1.5, \"a/1\": 1}")
        << QByteArray("{\n    \"a\":\n    [\n        1,\n        null\n    ]\n}");
    QTest::newRow("size true is one") << QByteArray("{\"a/size\": true, \"a/1\": 1}")
                                      << QByteArray("{\n    \"a\":\n    [\n        1\n    ]\n}");
    QTest::newRow("Size is a name like any other")
        << QByteArray("{\"a/Size\": 1, \"a/1\": 1}")
        << QByteArray("{\n    \"a\":\n    {\n        \"1\":1,\n        \"Size\":1\n    }\n}");
    // 4294967297 is 1 where it is cut to 32 bits, as is 18446744073709551617 to 64.
    QTest::newRow("numbers that no position can have are dropped")
        << QByteArray("{\"a/size\": 1, \"a/2147483648\": 5, \"a/4294967297\": 5, "
                      "\"a/18446744073709551617\": 5}")
        << QByteArray("{\n    \"a\":\n    [\n        null\n    ]\n}");
    QTest::newRow("numbers above the size and with leading zeros are dropped")
        << QByteArray(
               "{\"a/size\": 2, \"a/1\": 1, \"a/02\": 5, \"a/+2\": 5, \"a/0\": 5, \"a/3\": 5}")
        << QByteArray("{\n    \"a\":\n    [\n        1,\n        null\n    ]\n}");
}

void tst_JsonSettingsFormat::writesFlatKeysAsDocument_data()
{
    // The keys and values are those of a JSON object; a key is written as it is, separators included.
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray("{}") << QByteArray("null");
    QTest::newRow("one key") << QByteArray("{\"a\": 1}") << QByteArray("{\n    \"a\":1\n}");
    QTest::newRow("paths nest") << QByteArray("{\"a\": 1, \"b/c\": true, \"b/d/e\": \"x\"}")
                                << QByteArray("{\n    \"a\":1,\n    \"b\":\n    {\n"
                                              "        \"c\":true,\n        \"d\":\n        {\n"
                                              "            \"e\":\"x\"\n        }\n    }\n}");
    QTest::newRow("a missing element becomes null")
        << QByteArray("{\"a/size\": 3, \"a/1\": \"p\", \"a/3\": \"r\"}")
        << QByteArray(
               "{\n    \"a\":\n    [\n        \"p\",\n        null,\n        \"r\"\n    ]\n}");
    QTest::newRow("what sorts before size is dropped")
        << QByteArray("{\"a/size\": 1, \"a/1\": 1, \"a/name\": \"n\"}")
        << QByteArray("{\n    \"a\":\n    [\n        1\n    ]\n}");
    QTest::newRow("what sorts after size wipes the array")
        << QByteArray("{\"a/size\": 1, \"a/1\": 1, \"a/type\": \"t\"}")
        << QByteArray("{\n    \"a\":\n    {\n        \"type\":\"t\"\n    }\n}");
    QTest::newRow("a path after size wipes the array, too")
        << QByteArray("{\"a/size\": 1, \"a/1\": 1, \"a/type/x\": \"t\"}")
        << QByteArray("{\n    \"a\":\n    {\n        \"type\":\n        {\n"
                      "            \"x\":\"t\"\n        }\n    }\n}");
    QTest::newRow("a path below size wipes the array and is an object")
        << QByteArray("{\"a/size\": 1, \"a/1\": 1, \"a/size/1\": 2}")
        << QByteArray("{\n    \"a\":\n    {\n        \"size\":\n        {\n"
                      "            \"1\":2\n        }\n    }\n}");
    QTest::newRow("size at the root makes the document an array")
        << QByteArray("{\"size\": 2}") << QByteArray("[\n    null,\n    null\n]");
    QTest::newRow("size at the root drops the names in front")
        << QByteArray("{\"size\": 1, \"1\": {\"x\": 1}, \"a/b\": 2}")
        << QByteArray("[\n    {\n        \"x\":1\n    }\n]");
    QTest::newRow("an object takes the place of a scalar")
        << QByteArray("{\"a\": 1, \"a/b\": 2}")
        << QByteArray("{\n    \"a\":\n    {\n        \"b\":2\n    }\n}");
    QTest::newRow("keys between a scalar and its path")
        << QByteArray("{\"a\": 1, \"a b\": 2, \"a-b\": 3, \"a/b\": 4, \"a0\": 5}")
        << QByteArray("{\n    \"a\":\n    {\n        \"b\":4\n    },\n    \"a b\":2,\n"
                      "    \"a-b\":3,\n    \"a0\":5\n}");
    addOddSizes();
    QTest::newRow("more than nine elements come back in their order")
        << QByteArray("{\"1\":1,\"2\":2,\"3\":3,\"4\":4,\"5\":5,\"6\":6,\"7\":7,\"8\":8,\"9\":9,"
                      "\"10\":10,\"11\":11,\"size\":11}")
        << QByteArray("[\n    1,\n    2,\n    3,\n    4,\n    5,\n    6,\n    7,\n    8,\n    9,\n"
                      "    10,\n    11\n]");
    QTest::newRow("an array inside an array")
        << QByteArray("{\"a/size\": 1, \"a/1/size\": 1, \"a/1/1\": 7}")
        << QByteArray("{\n    \"a\":\n    [\n        [\n            7\n        ]\n    ]\n}");
    QTest::newRow("empty components") << QByteArray("{\"\": 1, \"/\": 2, \"a/\": 3}")
                                      << QByteArray("{\n    \"\":\n    {\n        \"\":2\n    },\n"
                                                    "    \"a\":\n    {\n        \"\":3\n    }\n}");
    QTest::newRow("lists and objects as values")
        << QByteArray("{\"a\": [1, []], \"b\": {\"c/d\": 1, \"size\": 2}}")
        << QByteArray("{\n    \"a\":\n    [\n        1,\n        [\n\n        ]\n    ],\n"
                      "    \"b\":\n    {\n        \"c/d\":1,\n        \"size\":2\n    }\n}");
    QTest::newRow("a path goes on below an object that is a value")
        << QByteArray("{\"a\": {\"x\": 1}, \"a/y\": 2}")
        << QByteArray("{\n    \"a\":\n    {\n        \"x\":1,\n        \"y\":2\n    }\n}");
    QTest::newRow("scalars of every kind")
        << QByteArray("{\"a\": 0.5, \"b\": 3.0, \"c\": 5000000000, \"d\": null, \"e\": false, "
                      "\"f\": \"\\u00e9\\t\\\"\"}")
        << QByteArray("{\n    \"a\":0.5,\n    \"b\":3,\n    \"c\":5000000000,\n    \"d\":null,\n"
                      "    \"e\":false,\n    \"f\":\"\\u00e9\\t\\\"\"\n}");
}

void tst_JsonSettingsFormat::writesFlatKeysAsDocument()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, bytes);
    QString error;
    const QSettings::SettingsMap map = settingsMap(parseJson(entries, &error));
    QCOMPARE(error, QString());

    QCOMPARE(writtenBytes(map), bytes);
}

void tst_JsonSettingsFormat::unflattenSetsOneValue_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("result");

    QTest::newRow("in nothing") << QByteArray("null") << QString(QLatin1String("a"))
                                << QByteArray("1") << QByteArray("{\"a\": int 1}");
    QTest::newRow("next to others")
        << QByteArray("{\"b\": 2}") << QString(QLatin1String("a")) << QByteArray("1")
        << QByteArray("{\"a\": int 1, \"b\": int 2}");
    QTest::newRow("instead of another") << QByteArray("{\"a\": 2}") << QString(QLatin1String("a"))
                                        << QByteArray("null") << QByteArray("{\"a\": invalid}");
    QTest::newRow("in a scalar") << QByteArray("5") << QString(QLatin1String("a/b"))
                                 << QByteArray("1") << QByteArray("{\"a\": {\"b\": int 1}}");
    QTest::newRow("in an array") << QByteArray("[5]") << QString(QLatin1String("1"))
                                 << QByteArray("1") << QByteArray("{\"1\": int 1}");
    QTest::newRow("below an array")
        << QByteArray("{\"a\": [5], \"b\": 1}") << QString(QLatin1String("a/2/c"))
        << QByteArray("1") << QByteArray("{\"a\": {\"2\": {\"c\": int 1}}, \"b\": int 1}");
    QTest::newRow("the empty key")
        << QByteArray("null") << QString() << QByteArray("1") << QByteArray("{\"\": int 1}");
    QTest::newRow("size below a path")
        << QByteArray("{\"a\": {\"1\": 5, \"x\": 6}}") << QString(QLatin1String("a/size"))
        << QByteArray("2") << QByteArray("{\"a\": [int 5, invalid]}");
    QTest::newRow("size of an array empties it")
        << QByteArray("[5, 6]") << QString(QLatin1String("size")) << QByteArray("1")
        << QByteArray("[invalid]");
    QTest::newRow("of a duplicate the last in the text is replaced")
        << QByteArray("{\"a\": 1, \"a\": 2}") << QString(QLatin1String("a")) << QByteArray("3")
        << QByteArray("{\"a\": int 3, \"a\": int 1}");
    QTest::newRow("of a duplicate element the last in the text counts")
        << QByteArray("{\"1\": 1, \"1\": 2}") << QString(QLatin1String("size")) << QByteArray("1")
        << QByteArray("[int 2]");
}

void tst_JsonSettingsFormat::unflattenSetsOneValue()
{
    QFETCH(QByteArray, node);
    QFETCH(QString, key);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, result);
    QString error;

    const QVariant tree = unflattened(parseJson(node, &error), key, parseJson(value, &error));

    QCOMPARE(error, QString());
    QCOMPARE(describe(tree), result);
}

void tst_JsonSettingsFormat::unflattenLeavesACopyOfTheTreeAlone()
{
    QString error;
    const QVariant node = parseJson("{\"a\": {\"1\": [1, 2], \"x\": {\"y\": 3}}}", &error);
    const QByteArray before = describe(node);

    unflattened(node, QLatin1String("a/size"), 1);
    unflattened(node, QLatin1String("a/x/y/z"), 1);
    unflattened(node, QLatin1String("a/1/size"), 1);

    QCOMPARE(describe(node), before);
}

void tst_JsonSettingsFormat::unflattenEqualsThePlainRecursion()
{
    RandomTrees random(20110504);
    for (int i = 0; i < 1000; ++i) {
        const QSettings::SettingsMap map = random.settingsMap();
        QVariant tree = i % 4 == 3 ? random.tree() : QVariant();
        QVariant expected = tree;
        Unflattener unflattener(tree);
        for (QSettings::SettingsMap::const_iterator it = map.begin(); it != map.end(); ++it) {
            unflattener.set(it.key(), it.value());
            expected = referenceUnflatten(expected, it.key(), it.value());
            if (describe(tree) != describe(expected))
                qWarning("map %d at %s: %s", i, describeText(it.key()).constData(),
                         describeLines(map).constData());
            QCOMPARE(describe(tree), describe(expected));
        }
        if (i % 4 != 3)
            QCOMPARE(writtenBytes(map), JsonWriter::serialize(expected, 4, 0));
    }
}

// What one key has left open is in the way of another, which a map's order never shows.
void tst_JsonSettingsFormat::unflattenEqualsThePlainRecursionInAnyOrder()
{
    RandomTrees random(20260711);
    std::mt19937 engine(20260711);
    for (int i = 0; i < 1000; ++i) {
        const QSettings::SettingsMap map = random.settingsMap();
        QStringList keys = map.keys() + map.keys();
        std::shuffle(keys.begin(), keys.end(), engine);
        QVariant tree = random.tree();
        QVariant expected = tree;
        Unflattener unflattener(tree);
        for (int k = 0; k < keys.size(); ++k) {
            const QVariant value = map.value(keys.at(k));
            unflattener.set(keys.at(k), value);
            expected = referenceUnflatten(expected, keys.at(k), value);
            QCOMPARE(describe(tree), describe(expected));
        }
    }
}

void tst_JsonSettingsFormat::documentsSurviveTheRoundTrip_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("objects, arrays and scalars")
        << QByteArray("{\"b\":[true,{\"c\":\"x\"},[],[[2.5]]],\"a\":null}")
        << QByteArray("{\n    \"a\":null,\n    \"b\":\n    [\n        true,\n        {\n"
                      "            \"c\":\"x\"\n        },\n        [\n\n        ],\n        [\n"
                      "            [\n                2.5\n            ]\n        ]\n    ]\n}");
    QTest::newRow("a root array") << QByteArray("[3,[4]]")
                                  << QByteArray("[\n    3,\n    [\n        4\n    ]\n]");
    QTest::newRow("an empty root array") << QByteArray("[]") << QByteArray("[\n\n]");
    QTest::newRow("text outside of ASCII")
        << QByteArray("{\"\\u20ac\":\"\\ud83d\\ude00\"}")
        << QByteArray("{\n    \"\\u20ac\":\"\\ud83d\\ude00\"\n}");
    QTest::newRow("a key named size comes back as an array")
        << QByteArray("{\"size\":2}") << QByteArray("[\n    null,\n    null\n]");
    QTest::newRow("empty objects are lost")
        << QByteArray("{\"a\":{},\"b\":[{},1]}")
        << QByteArray("{\n    \"b\":\n    [\n        null,\n        1\n    ]\n}");
    QTest::newRow("a scalar root comes back under the empty key")
        << QByteArray("7") << QByteArray("{\n    \"\":7\n}");
    QTest::newRow("a separator in a key comes back as objects")
        << QByteArray("{\"x/y\":1,\"z\":2}")
        << QByteArray("{\n    \"x\":\n    {\n        \"y\":1,\n        \"z\":2\n    }\n}");
}

void tst_JsonSettingsFormat::documentsSurviveTheRoundTrip()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, written);

    const QByteArray once = writtenBytes(readBytes(json));

    QCOMPARE(once, written);
    QCOMPARE(writtenBytes(readBytes(once)), written);
}

// An infinity has no form in JSON: the file that is written then does not read back.
void tst_JsonSettingsFormat::numbersTooLargeAreWrittenAsTheyWereRead()
{
    const double number = ToolkitDifferences::overflownNumber();
    const QSettings::SettingsMap map = readBytes("{\"a\": 1e400}");

    QCOMPARE(describeLines(map), "\"a\" = " + describe(number) + '\n');
    QCOMPARE(writtenBytes(map),
             QByteArray(number > 0 ? "{\n    \"a\":inf\n}" : "{\n    \"a\":0\n}"));

    const Messages messages;
    const QSettings::SettingsMap behind = readBytes(writtenBytes(map));
    QCOMPARE(messages.count(), number > 0 ? 1 : 0);
    QCOMPARE(behind.size(), number > 0 ? 0 : 1);
}

void tst_JsonSettingsFormat::failingDevicesAreNoFailure()
{
    FailingDevice device;
    QSettings::SettingsMap map;
    map.insert(QLatin1String("a"), 1);

    QVERIFY(writeJsonSettings(device, map));
    QCOMPARE(device.writes, 1);
    QCOMPARE(int(device.attempted), int(strlen("{\n    \"a\":1\n}")));

    const Messages messages;
    QVERIFY(readJsonSettings(device, map));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.text(0), QByteArray("\" at line 1 pos 0\" "));
    QCOMPARE(describeLines(map), QByteArray("\"a\" = int 1\n"));
}

void tst_JsonSettingsFormat::mapsOfCallersAreWrittenInto()
{
    QVariantMap inner;
    inner.insert(QLatin1String("y"), 1);
    QVariantMap map;
    map.insert(QLatin1String("x"), inner);
    map.insert(QLatin1String("y"), inner);
    QSettings::SettingsMap settings;
    settings.insert(QLatin1String("a"), map);
    settings.insert(QLatin1String("a/x/z"), 2);
    settings.insert(QLatin1String("a/y/y"), 3);

    QCOMPARE(JsonWriter::serializeCompact(unflattened(settings)),
             QByteArray("{\"a\":{\"x\":{\"y\":1,\"z\":2},\"y\":{\"y\":3}}}"));
    QCOMPARE(describe(map), QByteArray("{\"x\": {\"y\": int 1}, \"y\": {\"y\": int 1}}"));
}

// Its places would not fit into an int. Not tried with Qt 4.
void tst_JsonSettingsFormat::filesBeyondAllByteArraysAreEmpty()
{
    if (ToolkitDifferences::isQt4())
        return;
    EndlessDevice device;
    QSettings::SettingsMap map;
    const Messages messages;

    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(map.size(), QSettings::SettingsMap().size());
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.text(0), QByteArray("\" at line 1 pos 0\" "));
}

void tst_JsonSettingsFormat::emptyFilesAreReadWithoutMessage()
{
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("empty.json"), QByteArray());

    // The toolkit does not call the callback for a file without bytes.
    const Messages messages;
    const QSettings settings(path, JsonSettingsFormat);

    QCOMPARE(settings.allKeys().size(), 0);
    QCOMPARE(int(settings.status()), int(QSettings::NoError));
    QCOMPARE(messages.count(), 0);
}

void tst_JsonSettingsFormat::malformedFilesReadAsFilesWithoutKeys()
{
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("malformed.json"), "{\"a\": 1,\n \"b\" 2}");

    const Messages messages;
    const QSettings settings(path, JsonSettingsFormat);

    QCOMPARE(settings.allKeys().size(), 0);
    QCOMPARE(int(settings.status()), int(QSettings::NoError));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(int(messages.type(0)), int(QtWarningMsg));
    QCOMPARE(messages.text(0), QByteArray("\"Expected ':' at line 2 pos 15\" "));
}

void tst_JsonSettingsFormat::settingsReadFiles()
{
    const TemporaryDir folder;
    const QString path = folder.write(
        QLatin1String("read.json"),
        "{\"list\": [{\"name\": \"p\"}, {\"name\": null}, {}], \"group\": {\"on\": true, "
        "\"deep\": {\"n\": 5}}, \"top\": 1.5}");

    QSettings settings(path, JsonSettingsFormat);

    QCOMPARE(int(settings.status()), int(QSettings::NoError));
    QCOMPARE(settings.allKeys().join(QLatin1String(" ")),
             QString(QLatin1String("group/deep/n group/on list/1/name list/2/name list/size top")));
    QCOMPARE(settings.childGroups().join(QLatin1String(" ")), QString(QLatin1String("group list")));
    QCOMPARE(settings.childKeys().join(QLatin1String(" ")), QString(QLatin1String("top")));

    settings.beginGroup(QLatin1String("group"));
    QCOMPARE(describe(settings.value(QLatin1String("on"))), QByteArray("bool true"));
    QCOMPARE(describe(settings.value(QLatin1String("deep/n"))), QByteArray("int 5"));
    settings.endGroup();

    QCOMPARE(settings.beginReadArray(QLatin1String("list")), 3);
    settings.setArrayIndex(0);
    QCOMPARE(describe(settings.value(QLatin1String("name"))), QByteArray("string \"p\""));
    settings.setArrayIndex(1);
    QCOMPARE(describe(settings.value(QLatin1String("name"))), QByteArray("invalid"));
    settings.setArrayIndex(2);
    QVERIFY(!settings.contains(QLatin1String("name")));
    settings.endArray();
}

void tst_JsonSettingsFormat::settingsWriteNewFiles()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("written.json"));

    QSettings settings(path, JsonSettingsFormat);
    settings.setValue(QLatin1String("text"), QString(QChar(0xe9)));
    settings.beginGroup(QLatin1String("group"));
    settings.setValue(QLatin1String("number"), 7);
    settings.endGroup();
    settings.beginWriteArray(QLatin1String("list"));
    for (int i = 0; i < 2; ++i) {
        settings.setArrayIndex(i);
        settings.setValue(QLatin1String("at"), i);
    }
    settings.endArray();
    settings.sync();

    QCOMPARE(int(settings.status()), int(QSettings::NoError));
    QCOMPARE(fileContents(path),
             QByteArray("{\n    \"group\":\n    {\n        \"number\":7\n    },\n    \"list\":\n"
                        "    [\n        {\n            \"at\":0\n        },\n        {\n"
                        "            \"at\":1\n        }\n    ],\n    \"text\":\"\\u00e9\"\n}"));
}

// A launcher can store what no document holds.
void tst_JsonSettingsFormat::settingsWriteValuesOfOtherTypes()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("types.json"));
    {
        QSettings settings(path, JsonSettingsFormat);
        settings.setValue(QLatin1String("address"), QUrl(QLatin1String("http://tv.example/")));
        settings.setValue(QLatin1String("bytes"), QByteArray("a\n"));
        settings.setValue(QLatin1String("character"), QChar(0xe9));
        settings.setValue(QLatin1String("letter"), QChar('A'));
        settings.setValue(QLatin1String("long"), QVariant::fromValue(-5L));
        settings.setValue(QLatin1String("none"), QStringList());
        settings.setValue(QLatin1String("point"), QPoint(1, 2));
        settings.setValue(QLatin1String("strings"), QStringList(QLatin1String("b")));
        settings.setValue(QLatin1String("unsigned"), 4294967295u);
    }

    // Qt 4 makes no string of a long.
    QCOMPARE(fileContents(path),
             QByteArray("{\n    \"address\":\"http://tv.example/\",\n    \"bytes\":\"a\\n\",\n"
                        "    \"character\":\\u00e9,\n    \"letter\":A,\n    \"long\":")
                 + ToolkitDifferences::either("", "-5")
                 + QByteArray(",\n    \"none\":\n    [\n\n    ],\n    \"point\":,\n"
                              "    \"strings\":\n    [\n        \"b\"\n    ],\n"
                              "    \"unsigned\":4294967295\n}"));
}

void tst_JsonSettingsFormat::settingsChangeFilesAndWriteThemBack()
{
    const TemporaryDir folder;
    const QString path = folder.write(
        QLatin1String("changed.json"),
        "{\"list\": [1, 2], \"keep\": {\"a\": null}, \"drop\": {\"b\": 2}, \"change\": \"old\"}");

    {
        QSettings settings(path, JsonSettingsFormat);
        settings.setValue(QLatin1String("change"), false);
        settings.setValue(QLatin1String("list/3"), 3);
        settings.setValue(QLatin1String("list/size"), 3);
        settings.remove(QLatin1String("drop"));
    }

    QCOMPARE(
        fileContents(path),
        QByteArray("{\n    \"change\":false,\n    \"keep\":\n    {\n        \"a\":null\n    },\n"
                   "    \"list\":\n    [\n        1,\n        2,\n        3\n    ]\n}"));
    QSettings again(path, JsonSettingsFormat);
    QCOMPARE(again.beginReadArray(QLatin1String("list")), 3);
    again.endArray();
    QCOMPARE(describe(again.value(QLatin1String("change"))), QByteArray("bool false"));
    QVERIFY(!again.contains(QLatin1String("drop/b")));
}

// Qt 4 empties the file and writes into it; Qt 5 writes a new one and gives it the name.
void tst_JsonSettingsFormat::writingKeepsOrReplacesTheFile()
{
    const bool isReplaced = ToolkitDifferences::replacesWrittenFiles();
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("a.json"), "{\"key\":1}");
    const QString otherName = folder.filePath(QLatin1String("b.json"));
    QCOMPARE(::link(QFile::encodeName(path).constData(), QFile::encodeName(otherName).constData()),
             0);
    QFile opened(path);
    QVERIFY(opened.open(QIODevice::ReadOnly));
    const struct stat before = statusOf(path);

    writeSetting(path, 2);

    const QByteArray older("{\"key\":1}");
    const QByteArray newer("{\n    \"key\":2\n}");
    QCOMPARE(fileContents(path), newer);
    QCOMPARE(statusOf(path).st_ino == before.st_ino, !isReplaced);
    QCOMPARE(int(statusOf(path).st_nlink), isReplaced ? 1 : 2);
    // So whoever holds the file by another name, or open, sees this:
    QCOMPARE(fileContents(otherName), isReplaced ? older : newer);
    QCOMPARE(opened.readAll(), isReplaced ? older : newer);
}

void tst_JsonSettingsFormat::writingKeepsPermissions_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("for the owner alone") << 0600;
    QTest::newRow("for the group as well") << 0660;
    QTest::newRow("for everyone, and a program") << 0777;
}

void tst_JsonSettingsFormat::writingKeepsPermissions()
{
    QFETCH(int, mode);
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("a.json"), "{\"key\":1}");
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode_t(mode)), 0);

    writeSetting(path, 2);

    QCOMPARE(fileContents(path), QByteArray("{\n    \"key\":2\n}"));
    QCOMPARE(modeOf(path), mode);
}

void tst_JsonSettingsFormat::newFilesHaveThePermissionsOfTheProcess()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("a.json"));

    const mode_t before = ::umask(027);
    writeSetting(path, 2);
    ::umask(before);

    QCOMPARE(modeOf(path), 0640);
}

void tst_JsonSettingsFormat::writingGoesThroughLinks()
{
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("a.json"), "{\"key\":1}");
    const QString link = folder.filePath(QLatin1String("link.json"));
    QVERIFY(QFile::link(path, link));

    writeSetting(link, 2);

    QVERIFY(S_ISLNK(statusOf(link).st_mode));
    QVERIFY(S_ISREG(statusOf(path).st_mode));
    QCOMPARE(fileContents(path), QByteArray("{\n    \"key\":2\n}"));
}

void tst_JsonSettingsFormat::writingLeavesNothingElseBehind()
{
    const TemporaryDir folder;

    writeSetting(folder.filePath(QLatin1String("a.json")), 1);
    writeSetting(folder.filePath(QLatin1String("a.json")), 2);

    const QDir::Filters everything =
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(folder.path()).entryList(everything).join(QLatin1String(" ")),
             QString(QLatin1String("a.json")));
}

void tst_JsonSettingsFormat::writingNeedsPermissionForTheFileOrItsFolder()
{
    const bool isReplaced = ToolkitDifferences::replacesWrittenFiles();
    const TemporaryDir folder;
    const QByteArray folderName = QFile::encodeName(folder.path());
    const QString path = folder.write(QLatin1String("a.json"), "{\"key\":1}");
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0666), 0);
    QCOMPARE(::chmod(folderName.constData(), 0555), 0);
    QSettings settings(path, JsonSettingsFormat);
    settings.setValue(QLatin1String("key"), 2);

    {
        const AsNobody nobody;
        settings.sync();
    }
    ::chmod(folderName.constData(), 0755);

    QCOMPARE(int(settings.status()), int(isReplaced ? QSettings::AccessError : QSettings::NoError));
    QCOMPARE(fileContents(path), QByteArray(isReplaced ? "{\"key\":1}" : "{\n    \"key\":2\n}"));
}

void tst_JsonSettingsFormat::fullDisksCutTheFile_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("isNoticed");

    // Qt 5 notices when the new file takes no byte at all, and keeps the old one then.
    QTest::newRow("room for nothing") << 0 << ToolkitDifferences::replacesWrittenFiles();
    QTest::newRow("room for a part") << 50000 << false;
}

void tst_JsonSettingsFormat::fullDisksCutTheFile()
{
    QFETCH(int, room);
    QFETCH(bool, isNoticed);
    const TemporaryDir folder;
    const QString path = folder.write(QLatin1String("a.json"), "{\"key\":1}");
    QSettings settings(path, JsonSettingsFormat);
    settings.setValue(QLatin1String("key"), QString(100000, QLatin1Char('x')));

    {
        const FileSizeLimit limit(static_cast<rlim_t>(room));
        settings.sync();
    }

    const QByteArray whole = "{\n    \"key\":\"" + QByteArray(100000, 'x') + "\"\n}";
    const QByteArray left = isNoticed ? QByteArray("{\"key\":1}") : whole.left(room);
    QVERIFY(fileContents(path) == left);
    QCOMPARE(int(settings.status()), int(isNoticed ? QSettings::AccessError : QSettings::NoError));
}

void tst_JsonSettingsFormat::theCodecForCStringsReadsTextButNotNames()
{
    const ToolkitDifferences::CodecForCStrings installed(
        ToolkitDifferences::MovingCodec::instance());

    const QSettings::SettingsMap map = readBytes("{\"l\": [1, \"a\\u0061\"]}");

    QCOMPARE(describeLines(map),
             QByteArray(ToolkitDifferences::either(
                 "\"<46c>/1\" = int 1\n\"<46c>/2\" = string \"<461>a\"\n\"<46c>/size\" = int 2\n",
                 "\"l/1\" = int 1\n\"l/2\" = string \"aa\"\n\"l/size\" = int 2\n")));
    // The name that makes an array is no text of the file, so the array is written as one.
    QCOMPARE(writtenBytes(map),
             QByteArray(ToolkitDifferences::either(
                 "{\n    \"\\u046c\":\n    [\n        1,\n        \"\\u0461a\"\n    ]\n}",
                 "{\n    \"l\":\n    [\n        1,\n        \"aa\"\n    ]\n}")));
}

void tst_JsonSettingsFormat::theWarningIsWhatTheDebugStreamOfQt4Writes_data()
{
    QTest::addColumn<QByteArray>("codec");

    QTest::newRow("no codec for C strings") << QByteArray();
    QTest::newRow("UTF-8") << QByteArray("UTF-8");
    QTest::newRow("a codec that moves ASCII") << QByteArray("moving");
}

void tst_JsonSettingsFormat::theWarningIsWhatTheDebugStreamOfQt4Writes()
{
    QFETCH(QByteArray, codec);
    ToolkitDifferences::MovingCodec::instance();
    const ToolkitDifferences::CodecForCStrings installed(codec.constData());

    const Messages messages;
    readBytes("{\"a\" 1}");
    qWarning() << QString(QLatin1String("Expected ':' at line 1 pos 6"));

    QCOMPARE(messages.count(), 2);
    const QByteArray streamed = messages.text(1);
    // Qt 5 leaves out the last space of its stream.
    QCOMPARE(messages.text(0), ToolkitDifferences::either(streamed, streamed + ' '));
}

void tst_JsonSettingsFormat::deepDocumentsNeedLittleStack_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("keys");
    QTest::addColumn<int>("longestKey");

    const int depth = 3000;
    QTest::newRow("objects") << nested("{\"a\":", depth, "}") << 1 << 2 * depth - 1;
    QTest::newRow("arrays") << nested("[", depth, "]") << depth + 1 << 2 * depth + 2;
    QTest::newRow("both") << nested("[{\"k\":", depth / 2, "}]") << depth / 2 + 1 << 2 * depth;
}

void tst_JsonSettingsFormat::deepDocumentsNeedLittleStack()
{
    QFETCH(QByteArray, json);
    QFETCH(int, keys);
    QFETCH(int, longestKey);
    // Flat keys only, here as in the thread: the toolkit would free a deep tree by recursion.
    QSettings::SettingsMap map;
    QSettings::SettingsMap mapBehind;

    runOnSmallStack([&] {
        map = readBytes(json);
        mapBehind = readBytes(writtenBytes(map));
    });

    QCOMPARE(map.size(), keys);
    int longest = 0;
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        longest = qMax(longest, it.key().size());
    QCOMPARE(longest, longestKey);
    QVERIFY(mapBehind == map);
}

// The parser returns a whole document that something follows, and nothing takes it apart then.
void tst_JsonSettingsFormat::whatIsBeforeASyntaxErrorMayBeDeep()
{
    const QByteArray json = nested("[", 100000, "]") + "x";
    QSettings::SettingsMap map;
    const Messages messages;

    runOnSmallStack([&] { map = readBytes(json); });

    QCOMPARE(map.size(), 0);
    QCOMPARE(messages.count(), 1);
}

void tst_JsonSettingsFormat::whatIsDroppedMayBeDeep_data()
{
    QTest::addColumn<QString>("deepPath");
    QTest::addColumn<QString>("nextKey");
    QTest::addColumn<QString>("lastKey");
    QTest::addColumn<QByteArray>("written");

    const QString steps = QString(QLatin1String("/1")).repeated(100000);
    QTest::newRow("an array that is wiped")
        << QLatin1Char('a') + steps << QString(QLatin1String("a/size"))
        << QString(QLatin1String("a/t"))
        << QByteArray("{\n    \"a\":\n    {\n        \"t\":1\n    }\n}");
    QTest::newRow("an entry that is no element")
        << QLatin1String("a/b") + steps << QString(QLatin1String("a/size"))
        << QString(QLatin1String("b"))
        << QByteArray("{\n    \"a\":\n    [\n        null\n    ],\n    \"b\":1\n}");
}

void tst_JsonSettingsFormat::whatIsDroppedMayBeDeep()
{
    QFETCH(QString, deepPath);
    QFETCH(QString, nextKey);
    QFETCH(QString, lastKey);
    QSettings::SettingsMap map;
    map.insert(deepPath, 1);
    map.insert(nextKey, 1);
    map.insert(lastKey, 1);
    QByteArray written;

    runOnSmallStack([&] { written = writtenBytes(map); });

    QTEST(written, "written");
}

void tst_JsonSettingsFormat::manyKeysTakeTimeInProportion_data()
{
    QTest::addColumn<QString>("keyFormat");
    QTest::addColumn<bool>("isArray");

    QTest::newRow("members of one object") << QString(QLatin1String("%1")) << false;
    QTest::newRow("objects in one array") << QString(QLatin1String("list/%1/name")) << true;
}

// Where a container is copied at every change, this takes minutes.
void tst_JsonSettingsFormat::manyKeysTakeTimeInProportion()
{
    QFETCH(QString, keyFormat);
    QFETCH(bool, isArray);
    const int count = 100000;
    QSettings::SettingsMap map;
    for (int i = 1; i <= count; ++i)
        map.insert(keyFormat.arg(i), i);
    if (isArray)
        map.insert(QLatin1String("list/size"), count);

    const QSettings::SettingsMap behind = readBytes(writtenBytes(map));

    QCOMPARE(behind.size(), map.size());
    QVERIFY(behind == map);
}

// Names that come again and again are looked for by a few of their characters.
void tst_JsonSettingsFormat::namesThatDifferInOneCharacterStayApart()
{
    const QString plain(40, QLatin1Char('b'));
    for (int size = 1; size <= plain.size(); ++size) {
        for (int i = 0; i < size; ++i) {
            QSettings::SettingsMap map;
            for (const char other : { 'a', 'b', 'c', 'b', 'a', '\xe2' }) {
                const QString name = plain.left(size).replace(i, 1, QLatin1Char(other));
                map.insert(QString::number(map.size()) + QLatin1Char('/') + name, int(other));
            }

            QCOMPARE(readBytes(writtenBytes(map)), map);
        }
    }
}

void tst_JsonSettingsFormat::threadsDoNotInteract()
{
    const QByteArray plain("{\n    \"a\":\n    [\n        1,\n        2.5\n    ]\n}");
    const QByteArray withSeparator("{\n    \"a\":\n    {\n        \"b\":\"x\"\n    }\n}");
    QByteArray outcomes[3];
    std::thread first(copyAgainAndAgain, plain, outcomes);
    std::thread second(copyAgainAndAgain, QByteArray("{\"a/b\": \"x\"}"), outcomes + 1);
    std::thread third(copyAgainAndAgain, plain, outcomes + 2);
    first.join();
    second.join();
    third.join();

    QCOMPARE(outcomes[0], plain);
    QCOMPARE(outcomes[1], withSeparator);
    QCOMPARE(outcomes[2], plain);
}

NUV_TEST_MAIN(tst_JsonSettingsFormat)

#include "tst_jsonsettingsformat.moc"
