// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "json/jsonparser.h"
#include "tests/tools/mistakes.h"
#include "tests/tools/randomconfigurations.h"
#include "tests/tools/repairable.h"
#include "tests/tools/wrongbytes.h"
#include "tools/nuv-apps-config/analysis/libraryview.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/report/unifieddiff.h"

#include <QSettings>

#include <algorithm>
#include <cstdlib>

/// What `check --fix` makes of a file: what was meant where only one thing can have been meant, and
/// nothing anywhere else. NUV_REPAIR_FILES=20000 tries that many files, NUV_REPAIR_SEED=7 tries others.
class tst_Repairs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whatIsRepairedReadsAsWasMeant_data();
    void whatIsRepairedReadsAsWasMeant();
    void manyMistakesAtOnceReadAsWasMeant();
    void noBrokenFileIsMadeWorse_data();
    void noBrokenFileIsMadeWorse();
    void repairsBesideAMistakeThatIsLeftAreTheSameWithoutIt();
    void isWritten_data();
    void isWritten();
    void isLeft_data();
    void isLeft();
    void commentsStayWhereTheyBelong_data();
    void commentsStayWhereTheyBelong();
    void theDiffLeadsToTheRepairedFile();
    void tooManyMistakesOnALineAreAllLeft();

private:
    RepairedFile repaired(const QByteArray &bytes) const
    {
        return RepairedFile(
            analyse(QLatin1String("test.json"), bytes, DeviceFiles(m_folder.path())),
            DeviceFiles(m_folder.path()));
    }
    void tryAnyFile(const QByteArray &bytes) const;

    TemporaryDir m_folder;
};

namespace {

typedef QMap<QString, QVariant> Keys;

bool isRead(const QByteArray &bytes)
{
    QString error;
    parseJson(bytes, &error);
    return error.isEmpty();
}

// What the library hands out, without remarks.
Keys readByLibrary(const QByteArray &bytes)
{
    QString error;
    const std::unique_ptr<LibraryView> view = LibraryView::load(bytes, &error);
    Keys keys;
    if (!view || !view->isParsed())
        return keys;
    for (const QString &key : view->settings().allKeys()) {
        if (!key.contains(QLatin1String("_comment")))
            keys.insert(key, view->settings().value(key));
    }
    return keys;
}

QByteArray differing(const Keys &a, const Keys &b)
{
    QByteArray text;
    for (auto i = a.begin(); i != a.end(); ++i) {
        if (!b.contains(i.key()) || b.value(i.key()) != i.value()
            || b.value(i.key()).userType() != i.value().userType())
            text += i.key().toUtf8() + '=' + i.value().toString().toUtf8() + ' ';
    }
    return text;
}

QByteArray describe(const Analysis &analysis)
{
    QByteArray text;
    for (const Finding &finding : analysis.findings.all())
        text += QByteArray(finding.rule) + ": " + finding.text.toUtf8() + '\n';
    return text;
}

// Whether a value is judged that was under a key which nobody knew, or had backslashes in the way.
bool isUncovering(const RepairedFile &file)
{
    const QByteArray rules =
        " unknown-key no-version no-applications no-domain unescaped-backslash control-character "
        "bad-unicode-escape ";
    for (const RepairedFile::Mistake &mistake : file.mistakes()) {
        if (rules.contains(QByteArray(" ") + mistake.rule + ' '))
            return true;
    }
    return false;
}

// Plants mistakes in lines that have two others between them: nearer ones may be taken for one of another
// kind, as may two quotes that are missing. Empty where nothing could be planted.
QByteArray planted(const QByteArray &clean, const QList<Repairable::Kind> &kinds, int most,
                   std::mt19937 &engine, QByteArray *names, int freeLine = -3)
{
    QList<QByteArray> lines = clean.split('\n');
    QList<int> taken = { freeLine };
    for (int tries = 0; tries < 12 * most && taken.size() <= most; ++tries) {
        const Repairable::Kind &kind = kinds.at(int(engine() % unsigned(kinds.size())));
        const int line = int(engine() % unsigned(lines.size() - 2));
        const bool isFree = std::none_of(taken.begin(), taken.end(),
                                         [line](int other) { return std::abs(other - line) < 3; });
        const bool isQuote = QByteArray(kind.name).endsWith("quote");
        if (!isFree || (isQuote && names->contains("quote, ")) || !kind.plant(&lines[line], engine))
            continue;
        taken.append(line);
        *names += QByteArray(kind.name) + ", ";
    }
    return taken.size() == 1 ? QByteArray() : lines.join('\n');
}

QByteArray fileWith(const QByteArray &application)
{
    return "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n{ \"Tag\": \"tv\", "
           "\"Url\": \"http://tv.example/\",\n"
        + application + " } ] }";
}

// The lines of a file, each with its end.
QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines;
    for (int begin = 0; begin < text.size();) {
        const int end = text.indexOf('\n', begin);
        lines.append(text.mid(begin, (end < 0 ? text.size() : end + 1) - begin));
        begin += lines.last().size();
    }
    return lines;
}

// Applies a unified diff as strictly as can be. False where the text is not what it says.
bool isApplied(const QByteArray &diff, const QByteArray &text, QByteArray *result)
{
    const QList<QByteArray> lines = linesOf(text);
    QList<QByteArray> hunks = linesOf(diff).mid(2);
    for (int i = hunks.size() - 1; i > 0; --i) {
        if (hunks.at(i).startsWith('\\')) {
            hunks[i - 1].chop(1);
            hunks.removeAt(i);
        }
    }
    int done = 0;
    for (const QByteArray &hunk : hunks) {
        if (hunk.startsWith("@@ -")) {
            const int begin = hunk.mid(4, hunk.indexOf(',') - 4).toInt() - 1;
            while (done < begin)
                *result += lines.value(done++);
            continue;
        }
        if (hunk.at(0) != '+' && lines.value(done++) != hunk.mid(1))
            return false;
        if (hunk.at(0) != '-')
            *result += hunk.mid(1);
    }
    while (done < lines.size())
        *result += lines.at(done++);
    return true;
}

std::mt19937 seeded(unsigned number)
{
    return std::mt19937(number + unsigned(Amount::given("NUV_REPAIR_SEED", 0)) * 1000);
}

} // namespace

void tst_Repairs::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
    QVERIFY(QDir(m_folder.path()).mkdir(QLatin1String("scripts")));
    m_folder.write(QLatin1String("scripts/tv.js"), "1");
}

void tst_Repairs::whatIsRepairedReadsAsWasMeant_data()
{
    QTest::addColumn<int>("kind");
    for (int i = 0; i < Repairable::kinds().size(); ++i)
        QTest::newRow(Repairable::kinds().at(i).name) << i;
}

// One mistake in a file, in which nothing else may change: the file is as if nobody had ever made it,
// but for the spelling of a string or a number.
void tst_Repairs::whatIsRepairedReadsAsWasMeant()
{
    QFETCH(int, kind);
    std::mt19937 engine = seeded(unsigned(kind));
    const QList<Repairable::Kind> kinds = { Repairable::kinds().at(kind) };
    int tried = 0;
    const int files = Amount::tried("NUV_REPAIR_FILES", 25);
    for (int i = 0; i < 50 * files && tried < files; ++i) {
        const QByteArray clean = Repairable::configuration(engine);
        QByteArray names;
        const QByteArray broken = planted(clean, kinds, 1, engine, &names);
        if (broken.isEmpty() || broken == clean)
            continue;
        ++tried;
        const RepairedFile file = repaired(broken);
        const QByteArray what = broken + "\nbecomes\n" + file.bytes() + '\n' + describe(file.now());
        QVERIFY2(differing(readByLibrary(clean), readByLibrary(file.bytes())).isEmpty(), what);
        QVERIFY2(differing(readByLibrary(file.bytes()), readByLibrary(clean)).isEmpty(), what);
        QVERIFY2(!repaired(file.bytes()).isChanged(), what);
        QCOMPARE(describe(file.now()),
                 describe(*analyse(QString(), clean, DeviceFiles(m_folder.path()))));
    }
    QVERIFY(tried > 0);
}

void tst_Repairs::manyMistakesAtOnceReadAsWasMeant()
{
    std::mt19937 engine = seeded(100);
    int repairs = 0;
    int unread = 0; // for mistakes that hide each other
    for (int i = 0; i < Amount::tried("NUV_REPAIR_FILES", 800); ++i) {
        const QByteArray clean = Repairable::configuration(engine);
        QByteArray names;
        const QByteArray broken =
            planted(clean, Repairable::kinds(), 1 + int(engine() % 6), engine, &names);
        if (broken.isEmpty())
            continue;
        const RepairedFile file = repaired(broken);
        repairs += int(file.mistakes().size());
        const Keys wanted = readByLibrary(clean);
        const Keys keys = readByLibrary(file.bytes());
        const QByteArray what = names + '\n' + broken + "\nbecomes\n" + file.bytes() + '\n'
            + differing(wanted, keys) + "\n" + describe(file.now());
        if (!isRead(file.bytes())) {
            ++unread;
            continue;
        }
        QVERIFY2(differing(wanted, keys).isEmpty() && differing(keys, wanted).isEmpty(), what);
        QVERIFY2(!repaired(file.bytes()).isChanged(), what);
    }
    QVERIFY2(repairs > 100 * unread, QByteArray::number(unread));
}

// Whatever is in a file: bytes that no edit names are the same, the library reads it if it did before,
// no more is wrong with it, and a second time there is nothing to repair.
void tst_Repairs::tryAnyFile(const QByteArray &bytes) const
{
    const RepairedFile file = repaired(bytes);
    QByteArray assembled;
    int end = 0;
    for (const PieceTable::Change &change : file.changes()) {
        QVERIFY(change.begin >= end && change.end >= change.begin && change.end <= bytes.size());
        assembled += bytes.mid(end, change.begin - end) + change.inserted;
        end = change.end;
    }
    assembled += bytes.mid(end);
    QCOMPARE(file.bytes(), assembled);
    QCOMPARE(file.isChanged(), file.bytes() != bytes);
    if (!file.isChanged())
        return;
    const QByteArray what = bytes + "\nbecomes\n" + file.bytes() + '\n' + describe(file.before())
        + "\nbecomes\n" + describe(file.now());
    QVERIFY2(!isRead(bytes) || isRead(file.bytes()), what);
    QVERIFY2(isRead(bytes) != isRead(file.bytes()) || isUncovering(file)
                 || file.now().findings.count(Severity::Error)
                     <= file.before().findings.count(Severity::Error),
             what);
    QVERIFY2(!repaired(file.bytes()).isChanged(), what);
}

void tst_Repairs::noBrokenFileIsMadeWorse_data()
{
    QTest::addColumn<int>("layout");
    QTest::newRow("configurations by chance") << -1;
    for (int i = 0; i < WrongBytes::layouts().size(); ++i)
        QTest::newRow(WrongBytes::layouts().at(i).name) << i;
}

void tst_Repairs::noBrokenFileIsMadeWorse()
{
    QFETCH(int, layout);
    const int files = Amount::tried("NUV_REPAIR_FILES", layout < 0 ? 800 : 40);
    const unsigned seed = unsigned(Amount::given("NUV_REPAIR_SEED", 5));
    if (layout >= 0) {
        for (const WrongBytes::Slip &slip :
             WrongBytes::some(WrongBytes::layouts().at(layout).bytes, seed, files))
            tryAnyFile(slip.bytes);
        return;
    }
    RandomConfigurations configurations(seed);
    for (int i = 0; i < files; ++i)
        tryAnyFile(configurations.next());
}

// With a mistake that a person has to mend first less is repaired. What is, is what would be repaired
// without it, so that nothing is in the way once the person has mended it.
void tst_Repairs::repairsBesideAMistakeThatIsLeftAreTheSameWithoutIt()
{
    std::mt19937 engine = seeded(200);
    int tried = 0;
    for (int i = 0; i < Amount::tried("NUV_REPAIR_FILES", 800); ++i) {
        const QByteArray clean = Repairable::configuration(engine);
        QByteArray names;
        const int line = int(engine() % unsigned(clean.count('\n')));
        const QByteArray unbroken = clean.split('\n').at(line);
        const QByteArray good =
            planted(clean, Repairable::kinds(), 1 + int(engine() % 4), engine, &names, line);
        QList<QByteArray> broken = good.split('\n');
        const int at = broken.indexOf(unbroken);
        if (at < 0 || broken.count(unbroken) > 1 || !WrongBytes::breakLine(&broken[at], engine))
            continue;
        const RepairedFile file = repaired(broken.join('\n'));
        if (!file.isChanged() || isRead(file.bytes()))
            continue;
        QList<QByteArray> mended = file.bytes().split('\n');
        const int now = mended.indexOf(broken.at(at));
        if (now < 0)
            continue; // it is repaired
        ++tried;
        mended[now] = unbroken;
        const RepairedFile second = repaired(mended.join('\n'));
        const Keys wanted = readByLibrary(clean);
        const Keys keys = readByLibrary(second.bytes());
        QVERIFY2(differing(wanted, keys).isEmpty() && differing(keys, wanted).isEmpty(),
                 names + broken.join('\n') + "\nbecomes\n" + file.bytes() + "\nand then\n"
                     + second.bytes() + '\n' + differing(wanted, keys) + differing(keys, wanted));
    }
    QVERIFY(tried > 0);
}

void tst_Repairs::isWritten_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << fileWith(before) << fileWith(after);
    };
    row("a comma after the last entry", "\"Scale\": 2 , ", "\"Scale\": 2  ");
    row("commas before, between and after", ",\"Scale\": 2,, \"UseWebGL\": true,",
        "\"Scale\": 2, \"UseWebGL\": true");
    row("a missing comma", "\"Scale\": 2\n\t\"UseWebGL\": true",
        "\"Scale\": 2,\n\t\"UseWebGL\": true");
    row("a missing comma before a remark", "\"Scale\": 2 // two\n\t\"UseWebGL\": true",
        "\"Scale\": 2, \"_comment\": \"two\",\n\t\"UseWebGL\": true");
    row("a keyword before a remark", "\"UseWebGL\": True # on\n",
        "\"UseWebGL\": true, \"_comment\": \"on\"\n");
    row("a comma after the last entry, before a remark", "\"Scale\": 2,\n/* two */",
        "\"Scale\": 2,\n\"_comment\": \"two\"");
    row("a comma after the last entry, before a remark as in HTML", "\"Scale\": 2,\n<!-- two -->",
        "\"Scale\": 2,\n\"_comment\": \"two\"");
    row("other quotes",
        "'Scale': 2, `UserAgent`: \xe2\x80\x9e"
        "a\xe2\x80\x9c",
        "\"Scale\": 2, \"UserAgent\": \"a\"");
    row("an apostrophe in typographic quotes", "\"UserAgent\": \xe2\x80\x9cit's\xe2\x80\x9d",
        "\"UserAgent\": \"it's\"");
    row("keywords", "\"UseWebGL\": True, \"Scale\": None, \"Frameless\": no",
        "\"UseWebGL\": true, \"Scale\": null, \"Frameless\": false");
    row("switches", "\"UseWebGL\": \"true\", \"Frameless\": \"Off\", \"ShowChrome\": 0",
        "\"UseWebGL\": true, \"Frameless\": false, \"ShowChrome\": false");
    row("keys", "\"use_web_gl\": true, \"FRAMELESS\": true, \"StartMaximised\": true",
        "\"UseWebGL\": true, \"Frameless\": true, \"StartMaximized\": true");
    row("numbers", "\"Scale\": 01,5, \"WindowOpacity\": .5, \"RemoteInspectorPort\": 0x2406",
        "\"Scale\": 1.5, \"WindowOpacity\": 0.5, \"RemoteInspectorPort\": 9222");
    row("a point before an exponent", "\"Scale\": 1.e0", "\"Scale\": 1e0");
    row("units", "\"Scale\": 150, \"WindowOpacity\": 50%, \"RemoteInspectorPort\": \"9222\"",
        "\"Scale\": 1.5, \"WindowOpacity\": 0.5, \"RemoteInspectorPort\": 9222");
    row("a quota in mebibytes",
        "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDefaultQuotaSize\": 5MiB",
        "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDefaultQuotaSize\": 5242880");
    row("digits in groups",
        "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDefaultQuotaSize\": 5_000_000",
        "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDefaultQuotaSize\": 5000000");
    row("a path from a drive on", "\"UserScript\": \"C:\\tv\\user\\new.js\"",
        "\"UserScript\": \"C:\\\\tv\\\\user\\\\new.js\"");
    row("a path with several backslashes", "\"UserScript\": \"tv\\user\\new.js\"",
        "\"UserScript\": \"tv\\\\user\\\\new.js\"");
    row("a path to a file that is there", "\"UserScript\": \"scripts\\tv.js\"",
        "\"UserScript\": \"scripts/tv.js\"");
    row("letters", "\"UserAgent\": \"\xc3\xb6 \xe2\x82\xac\xf0\x9f\x98\x80\"",
        "\"UserAgent\": \"\\u00f6 \\u20ac\\ud83d\\ude00\"");
    row("zeros in front of what is a string", "\"UserAgent\": 007", "\"UserAgent\": \"007\"");
    row("commas, comments and quotes as in JavaScript",
        "'GrantBroadcastAccessRightDomains': [\n{\n'Domain': 'a.example',\n},\n{\n'Domain': "
        "'b.example',\n},\n],\n",
        "\"GrantBroadcastAccessRightDomains\": [\n{\n\"Domain\": \"a.example\"\n},\n{\n"
        "\"Domain\": \"b.example\"\n}\n]\n");
    row("a number as a string", "\"UserAgent\": 1.50", "\"UserAgent\": \"1.50\"");
    row("a key without its last quote at the end of an object", "\"Scale: 2\n", "\"Scale\": 2\n");
    QTest::newRow("a tag that is a number")
        << QByteArray("{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": 7 } ] }")
        << QByteArray(
               "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"7\" } ] }");
    QTest::newRow("what hides all the rest")
        << QByteArray("\xef\xbb\xbf{ \"global\": { \"version\": 1 }, \"aplications\": [ { "
                      "\"tag\": \"a\",\r\n\"scale\": \"99\" } ] }\r\n")
        << QByteArray("{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { "
                      "\"Tag\": \"a\",\r\n\"Scale\": \"99\" } ] }\r\n");
}

void tst_Repairs::isWritten()
{
    QFETCH(QByteArray, before);
    const RepairedFile file = repaired(before);
    QTEST(file.bytes(), "after");
    QVERIFY(!repaired(file.bytes()).isChanged());
}

void tst_Repairs::isLeft_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const QByteArray &application) {
        QTest::newRow(name) << fileWith(application);
    };
    row("megabytes, of which there are two",
        "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDefaultQuotaSize\": 5MB");
    row("a comma that may group digits", "\"Scale\": 1,500");
    row("digits in groups of two", "\"RemoteInspectorPort\": 92_22");
    row("a percentage of a port", "\"RemoteInspectorPort\": 50%");
    row("a number with two points", "\"Scale\": .5.5");
    row("a number without an end", "\"Scale\": Infinity");
    row("a lost point or a zero too many", "\"WindowOpacity\": 05");
    row("an opacity of 255", "\"WindowOpacity\": 255");
    row("a port without its range", "\"RemoteInspectorPort\": 92222");
    row("zeros in front of a key's number", "\"Anything\": 007");
    row("two spellings of one key", "\"scale\": 2, \"SCALE\": 3");
    row("a key that is there as well", "\"Scale\": 2, \"scale\": 3");
    row("a number after a key", "\"Scale2\": 2");
    row("letters in front of a key", "\"xScale\": 2, \"_UseWebGL\": true, \"noFrameless\": true");
    row("letters after a key", "\"UseWebGLx\": true, \"Frameless_\": true");
    row("a key between two others", "\"UseDiskCooche\": true");
    row("a short key with a slip", "\"Uri\": \"http://x/\"");
    row("bytes that are no UTF-8",
        "\"UserAgent\": \"\xc3\xb6\", \"HttpReferrer\": \"http://\xe4/\"");
    row("one backslash in a path", "\"UserScript\": \"scripts\\none.js\"");
    row("a backslash in another string", "\"UserAgent\": \"a\\sb\\tc\"");
    row("a backslash in a key", "\"User\\Script\": \"scripts/tv.js\"");
    row("a path with the number of a letter", "\"UserScript\": \"C:\\tv\\u0041\\new.js\"");
    row("a word for a switch", "\"UseWebGL\": enabled");
    row("words without quotes", "\"UserAgent\": Box 1.0");
    row("yes for a string", "\"UserAgent\": yes");
    row("an apostrophe in single quotes", "\"UserAgent\": 'it's'");
    row("a backslash before a single quote", "\"UserAgent\": 'C:\\'");
    row("a single quote that is not closed", "\"UserAgent\": 'it\n");
    row("a comma on the wrong side of the quote", "\"UserAgent\": \"Box,\"\n\"Scale\": 2");
    row("a comma on the wrong side of the quote of a key", "\"UserAgent\": \"Box\"\n\",Scale\": 2");
    row("a semicolon instead of a colon", "\"Scale\"; 2");
    row("a key in single quotes without a colon", "'Scale' 2");
    row("a colon on the wrong side of the quote", "\"UserAgent\"\":Box\"");
    row("a b that may be the first letter", "\"UserAgent\": b\"ox\"");
    row("a b that may be the last letter", "\"UserAgent\": \"bo\"b");
    row("a comment right after the only quote", "\"UserAgent\": box\"// c\n");
    row("a comment that nobody ended", "/* \"Scale\": 2\n");
    row("a comment of HTML that nobody ended", "<!-- \"Scale\": 2\n");
    row("what may be the rest of an address",
        "\"UserAgent\": 192.168.0.1//start\n, \"UserScript\"://tv.example/\n \"scripts/tv.js\"");
    row("a file of a certificate", "\"Certificate\": \"device.pem\"");
    row("a domain that is a string", "\"GrantBroadcastAccessRightDomains\": [ \"a.example\" ]");
    row("a value that is null", "\"Scale\": null");
    row("a key that appears twice", "\"Scale\": 2, \"Scale\": 3");
    row("a quote in a string", "\"UserAgent\": \"Box \"x\" 1\"");
    QTest::newRow("a missing bracket")
        << QByteArray("{ \"Global\": { \"Version\": 1, \"Applications\": [ ] }");
    QTest::newRow("a version that does not load") << QByteArray(
        "{ \"Global\": { \"Version\": 2 }, \"Applications\": [ { \"Tag\": \"a\" } ] }");
    QTest::newRow("nothing that is missing") << QByteArray("{ \"Global\": { } }");
    QTest::newRow("more comments than are found")
        << "{ \"Global\": { \"Version\": 1 },\n" + QByteArray("// a\n\n").repeated(1100) + "}";
    const QByteArray global = "{ \"Global\": { \"Version\": 1 } ";
    QTest::newRow("a comment at the end that nobody ended") << global + "}\n/* a\n";
    QTest::newRow("a comment of HTML at the end that nobody ended") << global + "}\n<!-- a\n";
    QTest::newRow("a comment whose ends share a sign") << global + "}\n/*/\n";
    QTest::newRow("a comment of HTML whose ends share signs") << global + "}\n<!-->\n";
    QTest::newRow("comments in a list of numbers")
        << global + ", \"_list\": [ 1, // a\n 2 // b\n ] }";
    QTest::newRow("comments around a list") << QByteArray("// a\n[ ]\n// b\n");
    QTest::newRow("another format") << QByteArray("Global:\n  Version: 1,\n");
    QTest::newRow("an empty file") << QByteArray();
}

void tst_Repairs::isLeft()
{
    QFETCH(QByteArray, bytes);
    const RepairedFile file = repaired(bytes);
    QCOMPARE(file.bytes(), bytes);
    QVERIFY(!file.isChanged());
    QVERIFY(!file.now().findings.all().empty());
}

void tst_Repairs::commentsStayWhereTheyBelong_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray global = "\"Global\": { \"Version\": 1 }";
    const auto row = [&](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << QByteArray(before).replace("GLOBAL", global)
                            << QByteArray(after).replace("GLOBAL", global);
    };
    row("before a member", "{\n    // a\n    GLOBAL\n}\n",
        "{\n    \"_comment\": \"a\",\n    GLOBAL\n}\n");
    row("after a member and its comma", "{\r\n  GLOBAL, # a \r\n  \"Applications\": []\r\n}\r\n",
        "{\r\n  GLOBAL, \"_comment\": \"a\", \r\n  \"Applications\": []\r\n}\r\n");
    row("between a member and its comma", "{ GLOBAL /* a */ , \"Applications\": [] }",
        "{ GLOBAL, \"_comment\": \"a\" , \"Applications\": [] }");
    row("after the last member", "{ GLOBAL // a\n  // b\n\n  /* c */\n}",
        "{ GLOBAL, \"_comment\": \"a\",\n  \"_comment2\": \"b\",\n\n  \"_comment3\": \"c\"\n}");
    row("lines that follow each other", "{\n  // a\n  //   b\n  GLOBAL }",
        "{\n  \"_comment\": \"a\\nb\",\n  GLOBAL }");
    row("lines with an empty one between them", "{\n  // a\n\n  // b\n  GLOBAL }",
        "{\n  \"_comment\": \"a\",\n\n  \"_comment2\": \"b\",\n  GLOBAL }");
    row("a comment of several lines", "{\n  /**\n   * a\n   *\n   * b\n   */\n  GLOBAL }",
        "{\n  \"_comment\": \"a\\n\\nb\",\n  GLOBAL }");
    row("next to a remark", "{ \"_comment\": 1, // a\n GLOBAL }",
        "{ \"_comment\": 1, \"_comment2\": \"a\",\n GLOBAL }");
    row("before a value", "{\n  GLOBAL,\n  \"Applications\": /* a */ []\n}",
        "{\n  GLOBAL,\n  \"_comment\": \"a\",\n  \"Applications\": []\n}");
    row("in an empty object", "{ GLOBAL, \"Applications\": [ {/* a */} ] }",
        "{ GLOBAL, \"Applications\": [ {\"_comment\": \"a\"} ] }");
    row("next to an empty object", "{ GLOBAL, \"Applications\": [ { } /* a */, {} ] }",
        "{ GLOBAL, \"Applications\": [ { \"_comment\": \"a\" }, {} ] }");
    row("next to an object without blanks",
        "{ GLOBAL, \"Applications\": [ {\"Tag\":\"x\"} /* a */ ] }",
        "{ GLOBAL, \"Applications\": [ {\"Tag\":\"x\", \"_comment\": \"a\"} ] }");
    row("right after a bracket", "{ GLOBAL, \"Applications\": [/* a */ { \"Tag\": \"x\" } ] }",
        "{ GLOBAL, \"Applications\": [ { \"_comment\": \"a\", \"Tag\": \"x\" } ] }");
    row("between a number and an object", "{ GLOBAL, \"_list\": [ 1, // a\n {} ] }",
        "{ GLOBAL, \"_list\": [ 1,\n { \"_comment\": \"a\" } ] }");
    row("before an element", "{ GLOBAL, \"Applications\": [\n  // a\n  { \"Tag\": \"x\" } ] }",
        "{ GLOBAL, \"Applications\": [\n  { \"_comment\": \"a\", \"Tag\": \"x\" } ] }");
    row("between an element and its comma", "{ GLOBAL, \"Applications\": [ {} /* a */, {} ] }",
        "{ GLOBAL, \"Applications\": [ { \"_comment\": \"a\" }, {} ] }");
    row("after an element, on its line",
        "{ GLOBAL, \"Applications\": [\n  {\n    \"Tag\": \"x\"\n  }, // a\n  {} ] }",
        "{ GLOBAL, \"Applications\": [\n  {\n    \"Tag\": \"x\",\n    \"_comment\": \"a\"\n  },\n"
        "  {} ] }");
    row("around the document", "// a\n{\n  GLOBAL\n}\n// b\n",
        "{\n  \"_comment\": \"a\",\n  GLOBAL,\n  \"_comment2\": \"b\"\n}\n");
    row("before the document, on its line", "/* a */ { GLOBAL }",
        "{ \"_comment\": \"a\", GLOBAL }");
    row("right before the document", "/* a */{ GLOBAL }", "{ \"_comment\": \"a\", GLOBAL }");
    row("an entry that was switched off", "{ GLOBAL,\n // \"Scale\": 2,\n \"Applications\": [] }",
        "{ GLOBAL,\n \"_comment\": \"\\\"Scale\\\": 2,\",\n \"Applications\": [] }");
    row("an empty comment", "{ GLOBAL, //\n \"Applications\": [] }",
        "{ GLOBAL,\n \"Applications\": [] }");
    row("an empty comment before the document", "//\n{ GLOBAL }", "{ GLOBAL }");
    row("an empty comment between a member and its comma",
        "{ GLOBAL //\n // a\n , \"Applications\": [] }",
        "{ GLOBAL,\n \"_comment\": \"a\"\n , \"Applications\": [] }");
    row("letters in Latin-1", "{ GLOBAL, // gr\xfc\n \"Applications\": [] }",
        "{ GLOBAL, \"_comment\": \"gr\\u00fc\",\n \"Applications\": [] }");
    row("letters", "{ GLOBAL, // gr\xc3\xbc\xc3\x9f\xe2\x82\xac\n \"Applications\": [] }",
        "{ GLOBAL, \"_comment\": \"gr\\u00fc\\u00df\\u20ac\",\n \"Applications\": [] }");
}

void tst_Repairs::commentsStayWhereTheyBelong()
{
    QFETCH(QByteArray, before);
    const RepairedFile file = repaired(before);
    QTEST(file.bytes(), "after");
    QVERIFY(isRead(file.bytes()));
    QVERIFY(!repaired(file.bytes()).isChanged());
}

// Where it hides nothing, the diff is one that other programs apply, too.
void tst_Repairs::theDiffLeadsToTheRepairedFile()
{
    std::mt19937 engine = seeded(300);
    int applied = 0;
    for (int i = 0; i < Amount::tried("NUV_REPAIR_FILES", 300); ++i) {
        QByteArray names;
        QByteArray broken = planted(Repairable::configuration(engine), Repairable::kinds(),
                                    1 + int(engine() % 5), engine, &names);
        if (engine() % 3 == 0)
            broken.chop(1); // no line feed at the end
        const RepairedFile file = repaired(broken);
        const QByteArray diff = unifiedDiff(file);
        QCOMPARE(diff.isEmpty(), !file.isChanged());
        if (diff.contains("********"))
            continue;
        ++applied;
        QByteArray result;
        QVERIFY2(isApplied(diff, broken, &result), broken + '\n' + diff);
        QVERIFY2(result == file.bytes(), broken + '\n' + diff + '\n' + result);
    }
    QVERIFY(applied > 0);
}

// Of a line, one mistake after the other is repaired: fifty are too many.
void tst_Repairs::tooManyMistakesOnALineAreAllLeft()
{
    const auto withMistakes = [](int count) {
        QByteArray bytes = "{ \"Global\": { \"Version\": 1";
        for (int i = 0; i < count; ++i)
            bytes += ", \"_" + QByteArray::number(i) + "\" 1";
        return bytes + " } }";
    };
    QVERIFY(!repaired(withMistakes(49)).now().findings.hasSyntaxError());
    for (const int count : { 50, 52 })
        QCOMPARE(repaired(withMistakes(count)).bytes(), withMistakes(count));
}

NUV_TEST_MAIN(tst_Repairs)

#include "tst_repairs.moc"
