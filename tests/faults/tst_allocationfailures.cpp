// SPDX-License-Identifier: MIT
#include "config/appconfig.h"
#include "config/webappsettings.h"
#include "config/webappsettings_p.h"
#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/varianttree.h"
#include "settings/jsonsettingsformat.h"
#include "tests/faults/allocations.h"
#include "tests/faults/childprocess.h"
#include "tests/faults/opening.h"
#include "tests/json/jsoninput.h"
#include "tests/settings/unflattened.h"
#include "tests/support/configdescription.h"
#include "tests/support/messagesink.h"
#include "tests/support/smallstackthread.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QBuffer>
#include <QHash>
#include <QSettings>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace {

// What a failing allocation is for: the work in the toolkit's constructor, or the one after it.
enum Place { Nowhere, InsideOpening, BehindOpening };

struct PlannedFailure {
    Place place;
    long number;
    Allocations::Duration duration;
};

const PlannedFailure withoutFailure = { Nowhere, 0, Allocations::Once };
PlannedFailure planned = withoutFailure;

void beginAt(Place place)
{
    if (planned.place == place)
        Allocations::failAt(planned.number, planned.duration);
}

void beginInsideOpening(const QString &)
{
    beginAt(InsideOpening);
}

void beginBehindOpening()
{
    beginAt(BehindOpening);
}

const char document[] =
    "{'Global':{'Version':1.5,'RemoteInspectorPort':9222,\n"
    "  'Certificate':{'Path':'device.pem','PrivateKey':'device.key','PassPhrase':'a secret'}},\n"
    " 'Applications':[{'Tag':'tv','Url':'http://tv.example/\\u0041','Scale':1.5,'UseWebGL':true,\n"
    "  'UserAgent':'a name that is long enough to need a block of its own, \\\"quoted\\\"',\n"
    "  'GrantBroadcastAccessRightDomains':[{'Domain':'a.example'},{'Domain':'b.example'}]},\n"
    "  {'Tag':'menu','HttpProxy':'proxy:3128','Numbers':[2147483648,1e400,-0.1234567890123456]}],\n"
    " 'a/"
    "b':{'size':[[],{},null]},'z':1,'a':1,'z':2,'deep':[[[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]]]}";

QVariant documentTree()
{
    return parseJson(json(document), nullptr);
}

QSettings::SettingsMap documentMap()
{
    QSettings::SettingsMap map;
    QString prefix;
    QVariant tree = documentTree();
    flattenVariant(prefix, map, tree);
    return map;
}

// What is done with failing allocations. It begins with all that it needs in place, so that only the
// work itself can fail, and tells its result in words.
class Work
{
public:
    virtual ~Work() {}
    virtual void run() = 0;
    virtual QByteArray result() const = 0;

    // Holds also when run() has thrown.
    virtual bool isSound() const { return true; }
};

class Parsing : public Work
{
public:
    explicit Parsing(const QByteArray &text = json(document)) : m_text(text) {}
    void run() override { m_tree = parseJson(m_text, &m_error); }
    QByteArray result() const override { return describe(m_tree) + m_error.toLatin1(); }

private:
    const QByteArray m_text;
    QVariant m_tree;
    QString m_error;
};

class ParsingWithError : public Parsing
{
public:
    ParsingWithError() : Parsing(json(document).replace(":2,", ";2,")) {}
};

class Flattening : public Work
{
public:
    Flattening() : m_tree(documentTree()) { m_map.insert(QLatin1String("before"), 1); }
    void run() override { flattenVariant(m_prefix, m_map, m_tree); }
    QByteArray result() const override { return describeLines(m_map); }

    // What was there before is still there, and what came is in order.
    bool isSound() const override
    {
        const QList<QString> keys = m_map.keys();
        for (int i = 1; i < keys.size(); ++i) {
            if (!(keys.at(i - 1) < keys.at(i)))
                return false;
        }
        return m_map.value(QLatin1String("before")) == 1;
    }

private:
    QVariant m_tree;
    QSettings::SettingsMap m_map;
    QString m_prefix;
};

class Unflattening : public Work
{
public:
    Unflattening() : m_map(documentMap()), m_before(describeLines(m_map)) {}
    void run() override { m_tree = unflattened(m_map); }
    QByteArray result() const override { return describe(m_tree); }
    bool isSound() const override { return describeLines(m_map) == m_before; }

private:
    const QSettings::SettingsMap m_map;
    const QByteArray m_before;
    QVariant m_tree;
};

// What the toolkit alone does first when one of the copies of a tree is to change.
class CopyingMap : public Work
{
public:
    CopyingMap() : m_map(QtCompat::toMultiMap(documentTree())) {}
    void run() override
    {
        m_copy = m_map;
        m_copy.detach();
    }
    QByteArray result() const override { return describe(QtCompat::toVariant(m_copy)); }

private:
    const QtCompat::MultiMap m_map;
    QtCompat::MultiMap m_copy;
};

// What the toolkit alone does first when one of the copies of a bag is to change.
class CopyingHash : public Work
{
public:
    CopyingHash() : m_key(QLatin1String("Url")) { m_hash.insert(m_key, m_key); }
    void run() override
    {
        m_copy = m_hash;
        m_copy.detach();
    }
    QByteArray result() const override { return m_copy.value(m_key).toString().toLatin1(); }

private:
    const QString m_key;
    QHash<QString, QVariant> m_hash;
    QHash<QString, QVariant> m_copy;
};

// What the toolkit alone does with the one number of the document that needs memory for it.
class ReadingDigits : public Work
{
public:
    ReadingDigits() : m_digits("-0.1234567890123456"), m_number(0) {}
    void run() override { m_number = m_digits.toDouble(); }
    QByteArray result() const override { return QByteArray::number(m_number); }

private:
    const QByteArray m_digits;
    double m_number;
};

class WritingDigits : public Work
{
public:
    void run() override { m_text = QString::number(-0.1234567890123456, 'g', 15); }
    QByteArray result() const override { return m_text.toLatin1(); }

private:
    QString m_text;
};

class SettingInTree : public Work
{
public:
    SettingInTree()
        : m_node(documentTree()),
          m_before(describe(m_node)),
          m_key(QLatin1String("Applications/7/Tag"))
    {
    }
    void run() override { m_tree = unflattened(m_node, m_key, true); }
    QByteArray result() const override { return describe(m_tree); }
    bool isSound() const override { return describe(m_node) == m_before; }

private:
    const QVariant m_node;
    const QByteArray m_before;
    const QString m_key;
    QVariant m_tree;
};

class Writing : public Work
{
public:
    explicit Writing(bool isCompact = false) : m_isCompact(isCompact), m_tree(documentTree()) {}
    void run() override
    {
        m_text = m_isCompact ? JsonWriter::serializeCompact(m_tree)
                             : JsonWriter::serialize(m_tree, 4, 0);
    }
    QByteArray result() const override { return m_text; }

private:
    const bool m_isCompact;
    const QVariant m_tree;
    QByteArray m_text;
};

class WritingCompactly : public Writing
{
public:
    WritingCompactly() : Writing(true) {}
};

class ReadCallback : public Work
{
public:
    explicit ReadCallback(const QByteArray &text = json(document))
    {
        m_device.setData(text);
        m_device.open(QIODevice::ReadOnly);
    }
    void run() override { readJsonSettings(m_device, m_map); }
    QByteArray result() const override { return describeLines(m_map); }

private:
    QBuffer m_device;
    QSettings::SettingsMap m_map;
};

class ReadCallbackWithError : public ReadCallback
{
public:
    ReadCallbackWithError() : ReadCallback("[1,]") {}
};

class WriteCallback : public Work
{
public:
    WriteCallback() : m_map(documentMap()) { m_device.open(QIODevice::WriteOnly); }
    void run() override { writeJsonSettings(m_device, m_map); }
    QByteArray result() const override { return m_device.data(); }

private:
    const QSettings::SettingsMap m_map;
    QBuffer m_device;
};

class FillingBags : public Work
{
public:
    FillingBags() : m_value(QLatin1String("value")) { m_original.setUrl(m_value); }
    void run() override
    {
        m_copy = m_original;
        for (const AppConfigProperty &property : appConfigProperties)
            (m_copy.*property.set)(m_value);
    }
    QByteArray result() const override { return describeConfig(m_copy); }
    bool isSound() const override
    {
        return describeConfig(m_original) == "Url = string \"value\""
            && m_copy.getUrl().toString()
            == QLatin1String(m_copy.getUrl().isValid() ? "value" : "");
    }

private:
    const QVariant m_value;
    AppConfig m_original;
    AppConfig m_copy;
};

QByteArray describeSettings(unsigned int port, const AppConfig &global,
                            const AppConfig &application)
{
    return QByteArray::number(port) + "; " + describeConfig(global) + "; "
        + describeConfig(application);
}

class LookingUp : public Work
{
public:
    LookingUp() : m_tag(QLatin1String("tv")), m_port(0) { getWebAppSettings(); }
    void run() override
    {
        const WebAppSettings *const settings = getWebAppSettings();
        settings->getGlobalRemoteInspectorPort(m_port);
        settings->getGlobalConfig(m_global);
        settings->getAppConfig(m_tag, m_application);
    }
    QByteArray result() const override { return describeSettings(m_port, m_global, m_application); }

private:
    const QString m_tag;
    unsigned int m_port;
    AppConfig m_global;
    AppConfig m_application;
};

class Loading : public Work
{
public:
    ~Loading()
    {
        if (m_loaded)
            delete m_loaded->settings; // of the process's own they are never freed
    }
    void run() override { m_loaded.reset(new WebAppSettingsPrivate); }
    QByteArray result() const override
    {
        return describeSettings(m_loaded->remoteInspectorPort, m_loaded->globalConfig,
                                m_loaded->applications.value(QLatin1String("tv")));
    }

private:
    QScopedPointer<WebAppSettingsPrivate> m_loaded;
};

template<typename T>
Work *make()
{
    return new T;
}

const struct {
    const char *name;
    Work *(*make)();
} works[] = {
    { "parsing", make<Parsing> },
    { "parsing with an error", make<ParsingWithError> },
    { "flattening", make<Flattening> },
    { "unflattening", make<Unflattening> },
    { "the toolkit's copying of a map", make<CopyingMap> },
    { "the toolkit's copying of a hash", make<CopyingHash> },
    { "the toolkit's reading of digits", make<ReadingDigits> },
    { "the toolkit's writing of digits", make<WritingDigits> },
    { "setting in a tree", make<SettingInTree> },
    { "writing", make<Writing> },
    { "writing compactly", make<WritingCompactly> },
    { "read callback", make<ReadCallback> },
    { "read callback with an error", make<ReadCallbackWithError> },
    { "write callback", make<WriteCallback> },
    { "filling bags", make<FillingBags> },
    { "looking up", make<LookingUp> },
    { "loading, once open", make<Loading> },
};

Work *newWork(const QByteArray &name)
{
    for (const auto &work : works) {
        if (name == work.name)
            return work.make();
    }
    qFatal("no such work: %s", name.constData());
    return nullptr;
}

void addDurations()
{
    QTest::addColumn<int>("duration");
    QTest::newRow("once") << int(Allocations::Once);
    QTest::newRow("from then on") << int(Allocations::FromThenOn);
}

void passOver(QtMsgType, const QByteArray &) {}

enum Outcome { Succeeded, Survived, Threw, WrongResult, Unsound, Leaked };

// One attempt with the planned failure. Survived is a right result although an allocation failed.
Outcome attempt(const QByteArray &name, const QByteArray &expected)
{
    const long before = Allocations::live();
    Outcome outcome = Succeeded;
    {
        const QScopedPointer<Work> work(newWork(name));
        beginAt(Nowhere);
        try {
            work->run();
        } catch (const std::exception &) {
            outcome = Threw;
        }
        if (Allocations::succeed() && outcome == Succeeded)
            outcome = Survived;
        if (outcome != Threw && work->result() != expected)
            outcome = WrongResult;
        else if (!work->isSound())
            outcome = Unsound;
    }
    return Allocations::live() <= before ? outcome : Leaked;
}

QByteArray resultWithoutFailure(const QByteArray &name)
{
    const QScopedPointer<Work> work(newWork(name));
    work->run();
    return work->result();
}

struct Sweep {
    int points, exceptions, withoutEffect, leaks;
    long firstFault; ///< where the result was wrong or something damaged, 0 for nowhere
};

// Lets one allocation after the other fail, until all is done without.
Sweep sweep(const QByteArray &name, Allocations::Duration duration)
{
    Sweep result = Sweep();
    const QByteArray expected = resultWithoutFailure(name);
    planned.place = name == "loading, once open" ? BehindOpening : Nowhere;
    planned.duration = duration;
    Outcome outcome = Threw;
    for (planned.number = 1; outcome != Succeeded; ++planned.number) {
        outcome = attempt(name, expected);
        result.points += outcome != Succeeded ? 1 : 0;
        result.exceptions += outcome == Threw ? 1 : 0;
        result.withoutEffect += outcome == Survived ? 1 : 0;
        result.leaks += outcome == Leaked ? 1 : 0;
        if (outcome == WrongResult || outcome == Unsound) {
            result.firstFault = planned.number;
            break;
        }
    }
    planned = withoutFailure;
    return result;
}

// Where the toolkit may lose blocks of its own, and how often it comes there. It loses what it has copied
// of a map when it cannot copy all of it, and so does Qt 6 with a hash; Qt 4 loses what it has of a number between digits and double.
// The read callback reads this document twice, since it is not a plain one.
const struct {
    const char *work;
    const char *partOfTheToolkit;
    int times;
} lossyWorks[] = {
    { "the toolkit's copying of a map", "the toolkit's copying of a map", 1 },
    { "setting in a tree", "the toolkit's copying of a map", 1 },
    { "the toolkit's copying of a hash", "the toolkit's copying of a hash", 1 },
    { "filling bags", "the toolkit's copying of a hash", 1 },
    { "the toolkit's reading of digits", "the toolkit's reading of digits", 1 },
    { "parsing", "the toolkit's reading of digits", 1 },
    { "parsing with an error", "the toolkit's reading of digits", 1 },
    { "read callback", "the toolkit's reading of digits", 1 },
    { "the toolkit's writing of digits", "the toolkit's writing of digits", 1 },
    { "writing", "the toolkit's writing of digits", 3 },
    { "writing compactly", "the toolkit's writing of digits", 3 },
    { "write callback", "the toolkit's writing of digits", 3 },
};

int leaksOfTheToolkit(const QByteArray &name, Allocations::Duration duration)
{
    for (const auto &lossy : lossyWorks) {
        if (name == lossy.work)
            return lossy.times * sweep(lossy.partOfTheToolkit, duration).leaks;
    }
    return 0;
}

// What makes a deep tree, and frees it.
typedef void (*DeepWork)();

const int deep = 50000;

void parseDeeply()
{
    static const QByteArray text =
        json("[{'a':").repeated(deep) + "1" + QByteArray("}]").repeated(deep);
    QVariant tree = parseJson(text, nullptr);
    VariantTree::dispose(tree);
}

void unflattenDeeply()
{
    QSettings::SettingsMap map;
    map.insert(QString(QLatin1String("a/1/")).repeated(deep) + QLatin1Char('b'), 1);
    QVariant tree = unflattened(map);
    VariantTree::dispose(tree);
}

enum { FirstThrew = 1, NothingLeaked = 2, SecondIsRight = 4, NothingFailed = 8 };

// Asks twice for the process's settings, the first time with the planned failure, and tells what came
// of it.
int askTwice(const QByteArray &expected)
{
    int outcome = 0;
    const long before = Allocations::live();
    try {
        getWebAppSettings();
    } catch (const std::exception &) {
        outcome |= FirstThrew;
    }
    outcome |= Allocations::succeed() ? 0 : NothingFailed;
    // The toolkit gives up a file that it kept, too, when it lacks the memory to keep it on.
    outcome |= Allocations::live() <= before ? NothingLeaked : 0;
    planned = withoutFailure;
    LookingUp lookups;
    lookups.run();
    return outcome | (lookups.result() == expected ? SecondIsRight : 0);
}

// Asks once, with the planned failure inside of the toolkit's constructor.
int askOnce()
{
    int outcome = 0;
    try {
        getWebAppSettings();
    } catch (const std::exception &) {
        outcome |= FirstThrew;
    }
    return outcome | (Allocations::succeed() ? 0 : NothingFailed);
}

} // namespace

Q_DECLARE_METATYPE(DeepWork)

/// Everything that the library does, with the n-th allocation failing, for every n until all is done.
class tst_AllocationFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void failuresInsideOfOpeningAreTheToolkits();
    void afterAFirstRequestThatFailedTheNextSucceeds_data();
    void afterAFirstRequestThatFailedTheNextSucceeds();
    void failuresAreExceptionsOrHaveNoEffect_data();
    void failuresAreExceptionsOrHaveNoEffect();
    void whatAnExceptionLeavesBehindMayBeDeep_data();
    void whatAnExceptionLeavesBehindMayBeDeep();
    void whatAFailedFlatteningLeavesMayBeDeep();
    void whatSomebodyElseHoldsIsNotCopiedToBeFreed_data();
    void whatSomebodyElseHoldsIsNotCopiedToBeFreed();
    void theDocumentIsGoneWhenItsKeysAreMade();

private:
    TemporaryDir m_folder;
};

void tst_AllocationFailures::initTestCase()
{
    const QString path = m_folder.write(QLatin1String("apps.json"), json(document));
    qputenv("NUV_APPS_CONFIG_FILE", QFile::encodeName(path));
    Opening::before = beginInsideOpening;
    Opening::behind = beginBehindOpening;
}

void tst_AllocationFailures::cleanup()
{
    planned = withoutFailure;
    installMessageSink(nullptr);
}

// What comes of them is up to the toolkit, so it is told and not judged, as long as it comes to an end.
// Each attempt is a process of its own, since most of them crash.
void tst_AllocationFailures::failuresInsideOfOpeningAreTheToolkits()
{
    planned.place = InsideOpening;
    int exceptions = 0;
    int crashes = 0;
    int withoutEffect = 0;
    int outcome = 0;
    for (planned.number = 1; outcome != NothingFailed; ++planned.number) {
        outcome = ChildProcess(askOnce).wait();
        QVERIFY2(outcome != -SIGALRM, QByteArray::number(int(planned.number)).constData());
        exceptions += outcome == FirstThrew ? 1 : 0;
        crashes += outcome < 0 ? 1 : 0;
        withoutEffect += outcome == 0 ? 1 : 0;
    }
    const long points = planned.number - 2;
    std::printf("opening: %ld points, %d exceptions, %d crashes, %d without effect\n", points,
                exceptions, crashes, withoutEffect);
    QVERIFY(points > 0);
}

void tst_AllocationFailures::afterAFirstRequestThatFailedTheNextSucceeds_data()
{
    addDurations();
}

void tst_AllocationFailures::afterAFirstRequestThatFailedTheNextSucceeds()
{
    QFETCH(int, duration);
    const QByteArray expected = resultWithoutFailure("loading, once open");
    planned.place = BehindOpening;
    planned.duration = Allocations::Duration(duration);
    int exceptions = 0;
    int ends = 0;
    int outcome = 0;
    for (planned.number = 1; !(outcome & NothingFailed); ++planned.number) {
        outcome = ChildProcess([&] { return askTwice(expected); }).wait();
        if (outcome == -SIGABRT && ToolkitDifferences::endsWithoutMemory()) {
            ++ends;
            outcome = 0;
            continue;
        }
        QVERIFY2(outcome >= 0 && (outcome & SecondIsRight),
                 QByteArray::number(outcome).constData());
        QVERIFY2(!(outcome & FirstThrew) || (outcome & NothingLeaked),
                 QByteArray::number(outcome).constData());
        exceptions += outcome & FirstThrew ? 1 : 0;
    }
    std::printf("first request, failing %s: %ld points, %d exceptions\n", QTest::currentDataTag(),
                planned.number - 2, exceptions);
    QVERIFY(exceptions > 0);
    QCOMPARE(ends > 0, ToolkitDifferences::endsWithoutMemory());
}

void tst_AllocationFailures::failuresAreExceptionsOrHaveNoEffect_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("duration");
    for (const auto &work : works) {
        const QByteArray name = work.name;
        if (work.make == make<Loading> && ToolkitDifferences::endsWithoutMemory())
            continue;
        QTest::newRow(work.name) << name << int(Allocations::Once);
        QTest::newRow((name + ", from then on").constData())
            << name << int(Allocations::FromThenOn);
    }
}

void tst_AllocationFailures::failuresAreExceptionsOrHaveNoEffect()
{
    QFETCH(QByteArray, name);
    QFETCH(int, duration);
    installMessageSink(passOver);

    const Sweep swept = sweep(name, Allocations::Duration(duration));

    std::printf("%s: %d points, %d exceptions, %d without effect, %d leaks\n",
                QTest::currentDataTag(), swept.points, swept.exceptions, swept.withoutEffect,
                swept.leaks);
    QCOMPARE(int(swept.firstFault), 0);
    QCOMPARE(swept.leaks, leaksOfTheToolkit(name, Allocations::Duration(duration)));
}

void tst_AllocationFailures::whatAnExceptionLeavesBehindMayBeDeep_data()
{
    QTest::addColumn<DeepWork>("work");
    QTest::newRow("parsing") << DeepWork(parseDeeply);
    QTest::newRow("unflattening") << DeepWork(unflattenDeeply);
}

// The later the failure comes, the deeper is the tree that is to be freed, and the toolkit would free
// it by recursion.
void tst_AllocationFailures::whatAnExceptionLeavesBehindMayBeDeep()
{
    QFETCH(DeepWork, work);
    long lastFailure = 0;
    bool leaked = false;

    runOnSmallStack([&] {
        work();
        bool failed = true;
        for (long number = 1; failed; number *= 2) {
            const long before = Allocations::live();
            Allocations::failAt(number, Allocations::Once);
            try {
                work();
            } catch (const std::bad_alloc &) {
                lastFailure = number;
            }
            failed = Allocations::succeed();
            leaked = leaked || Allocations::live() > before;
        }
    });

    QVERIFY2(lastFailure > deep, QByteArray::number(int(lastFailure)).constData());
    QVERIFY(!leaked);
}

void tst_AllocationFailures::whatAFailedFlatteningLeavesMayBeDeep()
{
    const QByteArray text = json("{'a':").repeated(deep) + "1" + QByteArray("}").repeated(deep);
    int failures = 0;
    bool leaked = false;

    runOnSmallStack([&] {
        bool failed = true;
        for (long number = 1; failed; ++number) {
            const long before = Allocations::live();
            QVariant tree = parseJson(text, nullptr);
            {
                QSettings::SettingsMap map;
                Allocations::failAt(number, Allocations::Once);
                try {
                    QString prefix;
                    flattenVariant(prefix, map, tree);
                } catch (const std::bad_alloc &) {
                    ++failures;
                }
                failed = Allocations::succeed();
            }
            VariantTree::dispose(tree);
            leaked = leaked || Allocations::live() > before;
        }
    });

    QVERIFY2(failures > 10, QByteArray::number(failures).constData());
    QVERIFY(!leaked);
}

void tst_AllocationFailures::whatSomebodyElseHoldsIsNotCopiedToBeFreed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("an object") << json("{'a':[1],'b':{'c':2}}");
    QTest::newRow("an array") << json("[[1],{'c':2}]");
}

// The one block is for the list of what is to be freed.
void tst_AllocationFailures::whatSomebodyElseHoldsIsNotCopiedToBeFreed()
{
    QFETCH(QByteArray, text);
    const QVariant holder = parseJson(text, nullptr);
    const QByteArray before = describe(holder);
    QVariant copy = holder;

    Allocations::failAt(2, Allocations::Once);
    VariantTree::dispose(copy);
    const bool isCopied = Allocations::succeed();

    QVERIFY(!isCopied);
    QVERIFY(!copy.isValid());
    QCOMPARE(describe(holder), before);
}

// Of an array whose keys need more memory than the document, which has that many blanks.
static long peakOfReading(int blanks)
{
    QByteArray members = "1";
    for (int i = 0; i < 600; ++i)
        members += ",1";
    QBuffer device;
    device.setData("{\"" + QByteArray(1000, 'k') + "\":[" + members + QByteArray(blanks, ' ')
                   + "]}");
    QSettings::SettingsMap map;
    if (!device.open(QIODevice::ReadOnly))
        return -1;
    Allocations::startPeak();
    readJsonSettings(device, map);
    return map.size() == 602 ? Allocations::peak() : -1;
}

void tst_AllocationFailures::theDocumentIsGoneWhenItsKeysAreMade()
{
    const int blanks = 1 << 19;
    const long peak = peakOfReading(0);
    QVERIFY(peak > 2 * blanks); // the toolkit may read into memory of twice the size
    QVERIFY2(peakOfReading(blanks) < peak + blanks / 2, QByteArray::number(int(peak)).constData());
}

NUV_TEST_MAIN(tst_AllocationFailures)

#include "tst_allocationfailures.moc"
