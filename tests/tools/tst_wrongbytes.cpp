// SPDX-License-Identifier: MIT
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "json/jsonparser.h"
#include "tests/tools/mistakes.h"
#include "tests/tools/wrongbytes.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <QSet>

#include <algorithm>

/// One wrong byte is one mistake, and gives about one finding, on its line.
class tst_WrongBytes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void oneWrongByteGivesAboutOneFinding_data();
    void oneWrongByteGivesAboutOneFinding();
    void severalWrongBytesAreFoundEachOnItsLine();
    void saysWhatTheFileIs_data();
    void saysWhatTheFileIs();
    void saysTheCauseAndTheRemedy_data();
    void saysTheCauseAndTheRemedy();
    void saysWhatBecomesOfADuplicate_data();
    void saysWhatBecomesOfADuplicate();
    void saysWhereTheOtherVersionIs();
    void manyCommentsInARowAreNotTheEnd();
    void theRestOfALongFileChangesNothing_data();
    void theRestOfALongFileChangesNothing();
    void afterTooManySlipsTheOthersAreStillErrors_data();
    void afterTooManySlipsTheOthersAreStillErrors();

private:
    TemporaryDir m_folder;
};

namespace {

const char conflict[] = "{ \"Global\": { \"Version\": 1 },\n<<<<<<< ours\n"
                        "\"Applications\": [ { \"Tag\": \"a\", \"Url\": \"http://a.example/\" } ]\n"
                        "||||||| before\n\"Applications\": [ { \"Tag\": \"0\" } ]\n=======\n"
                        "\"Applications\": [ { \"Tag\": \"b\" } ]\n>>>>>>> theirs\n}\n";

// What the findings of many files with one wrong byte each come to.
struct Tally {
    int files = 0; ///< with findings
    int findings = 0;
    int atMostThree = 0;
    int rejected = 0; ///< by the library
    int onLine = 0; ///< of these, with an error of the syntax on the line of the wrong byte

    void add(const Analysis &analysis, const WrongBytes::Slip &slip);
};

void Tally::add(const Analysis &analysis, const WrongBytes::Slip &slip)
{
    const std::vector<Finding> &all = analysis.findings.all();
    const int line = analysis.source.place(slip.offset).line;
    const bool isOnLine = std::any_of(all.begin(), all.end(), [&](const Finding &finding) {
        return Rules::isSyntaxError(finding.rule)
            && analysis.source.place(finding.offset).line == line;
    });
    const bool isRejected = analysis.findings.hasSyntaxError();
    files += !all.empty();
    findings += int(all.size());
    atMostThree += !all.empty() && all.size() <= 3;
    rejected += isRejected;
    onLine += isRejected && isOnLine;
}

// With the remedy instead of the place.
QByteArray describe(const Analysis &analysis, bool isRemedyShown)
{
    QByteArray text;
    for (const Finding &finding : analysis.findings.all()) {
        const Place place = analysis.source.place(finding.offset);
        if (isRemedyShown)
            text += finding.rule + QByteArray(": ") + finding.text.toLatin1()
                + (finding.hint.isEmpty() ? QByteArray() : "; " + finding.hint.toLatin1());
        else
            text += QByteArray::number(place.line) + ':' + QByteArray::number(place.column) + ' '
                + finding.rule + ": " + finding.text.toLatin1() + '\n';
    }
    return text;
}

bool isRejected(const QByteArray &bytes)
{
    QString error;
    parseJson(bytes, &error);
    return !error.isEmpty();
}

// No two errors of the syntax share a line.
bool hasOneErrorALine(const Analysis &analysis)
{
    QSet<int> lines;
    for (const Finding &finding : analysis.findings.all()) {
        const int line = analysis.source.place(finding.offset).line;
        if (Rules::isSyntaxError(finding.rule) && lines.contains(line))
            return false;
        if (Rules::isSyntaxError(finding.rule))
            lines.insert(line);
    }
    return true;
}

} // namespace

void tst_WrongBytes::initTestCase()
{
    const QString samples =
        QLatin1String(SOURCE_FOLDER "/tools/nuv-apps-config/samples/certificates/");
    for (const char *name : { "device.pem", "device.key" }) {
        const QString target = m_folder.filePath(QLatin1String(name));
        QVERIFY(QFile::copy(samples + QLatin1String(name), target));
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner));
    }
}

void tst_WrongBytes::oneWrongByteGivesAboutOneFinding_data()
{
    QTest::addColumn<int>("layout");
    for (int i = 0; i < WrongBytes::layouts().size(); ++i)
        QTest::newRow(WrongBytes::layouts().at(i).name) << i;
}

// More of them with NUV_SLIPS: the number for each layout.
void tst_WrongBytes::oneWrongByteGivesAboutOneFinding()
{
    QFETCH(int, layout);
    const QByteArray clean = WrongBytes::layouts().at(layout).bytes;
    const int count = qMax(250, qgetenv("NUV_SLIPS").toInt());
    Tally tally;
    for (const WrongBytes::Slip &slip : WrongBytes::some(clean, 20241105u, count)) {
        const auto analysis = analyse(QLatin1String("test"), slip.bytes, m_folder.path());
        QVERIFY2(analysis->findings.hasSyntaxError() == isRejected(slip.bytes), slip.bytes);
        QVERIFY2(hasOneErrorALine(*analysis), slip.bytes);
        tally.add(*analysis, slip);
    }
    qInfo("%d findings in %d files, at most three in %d; on the line of the byte in %d of %d",
          tally.findings, tally.files, tally.atMostThree, tally.onLine, tally.rejected);
    QVERIFY(tally.files > count / 2);
    QVERIFY(tally.findings <= 1.3 * tally.files);
    QVERIFY(tally.atMostThree >= 0.98 * tally.files);
    QVERIFY(tally.onLine >= 0.96 * tally.rejected);
}

void tst_WrongBytes::severalWrongBytesAreFoundEachOnItsLine()
{
    const int mistakes = 5;
    const QByteArray clean = WrongBytes::layouts().at(2).bytes;
    const QList<QByteArray> lines = clean.split('\n');
    std::mt19937 engine(4);
    int found = 0;
    const int files = 60;
    for (int file = 0; file < files; ++file) {
        QSet<int> expected;
        QList<QByteArray> broken = lines;
        while (expected.size() < mistakes) {
            const int line = int(engine() % unsigned(lines.size() / 8)) * 8 + 4;
            if (line < lines.size() && !expected.contains(line)
                && WrongBytes::breakLine(&broken[line], engine))
                expected.insert(line);
        }
        const auto analysis = analyse(QLatin1String("test"), broken.join('\n'), m_folder.path());
        for (const Finding &finding : analysis->findings.all()) {
            if (Rules::isSyntaxError(finding.rule))
                expected.remove(analysis->source.place(finding.offset).line - 1);
        }
        found += mistakes - expected.size();
    }
    qInfo("%d of %d", found, files * mistakes);
    QVERIFY(found >= 0.98 * files * mistakes);
}

void tst_WrongBytes::saysWhatTheFileIs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray clean = WrongBytes::layouts().at(1).bytes;
    const auto row = [](const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << bytes << QByteArray(expected);
    };
    row("gzip", QByteArray("\x1f\x8b\x08\x00\x00\x00", 6),
        "1:1 other-format: this is a compressed file: gzip\n");
    row("zip", QByteArray("PK\x03\x04\x14\x00\x00\x00\x08\x00", 10),
        "1:1 other-format: this is a compressed file: zip\n");
    row("bzip2", "BZh91AY&SY\xbd\x8c", "1:1 other-format: this is a compressed file: bzip2\n");
    row("xz",
        QByteArray("\xfd"
                   "7zXZ\x00\x00\x04",
                   8),
        "1:1 other-format: this is a compressed file: xz\n");
    row("zstd", "\x28\xb5\x2f\xfd\x04\x58", "1:1 other-format: this is a compressed file: zstd\n");
    row("a page", "<!DOCTYPE html>\n<html><body>404</body></html>\n",
        "1:1 other-format: this is an HTML page\n");
    row("a page without its type", "<html>\n<body>404</body>\n</html>\n",
        "1:1 other-format: this is an HTML page\n");
    row("XML", "<?xml version=\"1.0\"?>\n<Global/>\n", "1:1 other-format: this is XML\n");
    row("YAML", "# of the device\nGlobal:\n  Version: 1\n", "1:1 other-format: this is YAML\n");
    row("a document of YAML", "---\nGlobal:\n  Version: 1\n", "1:1 other-format: this is YAML\n");
    row("YAML with its version", "%YAML 1.2\n---\nGlobal:\n", "1:1 other-format: this is YAML\n");
    row("a key without quotes, and a comma", "Version: 1,\n",
        "1:1 missing-opening-bracket: a { is missing here\n");
    row("words in brackets", "[tv]\n[menu]\n",
        "1:4 missing-comma: a comma belongs here, not ]\n"
        "2:2 unquoted-text: a string without quotes\n"
        "3:1 missing-closing-bracket: a ] is missing here: the [ of line 1, column 1 is never "
        "closed\n");
    row("one line with a number", "1 {}\n",
        "1:1 unexpected-token: this cannot be here\n1:3 no-version: \"Global\" with the version is "
        "missing, so no application is loaded\n1:3 no-applications: there are no applications\n");
    row("an INI file", "[Global]\nVersion=1\n", "1:1 other-format: this is an INI file\n");
    const char javaScript[] = "1:1 other-format: this is JavaScript\n";
    row("a variable", "var config = " + clean, javaScript);
    row("a module", "module.exports = " + clean, javaScript);
    row("an export", "export default " + clean, javaScript);
    row("a call", "callback(" + clean + ");\n", javaScript);
    row("a block of Markdown", "```json\n" + clean + "```\n",
        "1:1 other-format: this is a block of Markdown\n");
    row("a quotation", "> " + QByteArray(clean).replace("\n", "\n> "),
        "1:1 other-format: this is a quotation of a mail\n");
    row("a listing", "1 {\n2   \"Global\": {\n3     \"Version\": 1\n4   }\n5 }\n",
        "1:1 other-format: this is a listing with line numbers\n");
    row("escaped quotes", QByteArray(clean).replace('"', "\\\""),
        "1:1 other-format: this is JSON with escaped quotes\n");
    row("UTF-16", QByteArray("\xff\xfe{\0}\0", 6),
        "1:1 not-text: this is a binary file, or one in UTF-16\n");
    const char utf16[] = "1:1 not-text: this is a binary file, or one in UTF-16\n";
    row("UTF-16 with other letters than Latin ones",
        "\xff\xfe" + QByteArray("\x2d\x4e").repeated(100), utf16);
    row("UTF-16 of the other order with such", "\xfe\xff" + QByteArray("\x4e\x2d").repeated(100),
        utf16);
    row("nothing but zeros", QByteArray(300, '\0'),
        "1:1 not-text: this is a binary file, or one in UTF-16\n");
    row("zeros at the end", clean + QByteArray(300, '\0'),
        "67:1 nul-bytes: 300 NUL bytes end the file\n");
    row("cut off in a string", clean.left(clean.indexOf("home.example", 1200) + 4),
        "49:15 cut-off: the file ends in the middle: 3 brackets are open\n");
    row("cut off after a comma", clean.left(clean.indexOf(",\n", 1200) + 1),
        "42:39 cut-off: the file ends in the middle: 4 brackets are open\n");
    row("an end that is in a comment",
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n{ \"Tag\": \"a\",\n"
        "\"Url\": \"about:blank\" // the start } ] }",
        "3:21 cut-off: the file ends in the middle: 3 brackets are open\n");
    row("a semicolon after the end",
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n"
        "{ \"Tag\": \"a\", \"Url\": \"http://a.example/\" } ]\n};\n",
        "3:2 unexpected-token: this cannot be here\n");
    const auto around = [](const QByteArray &before, const QByteArray &scale) {
        return "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n{ \"Tag\": \"a\",\n" + before
            + "\"Scale\": " + scale + ",\n\"Url\": \"http://a.example/\" } ] }\n";
    };
    for (const char *marker : { "<<<<<<< ours\n", "=======\n", ">>>>>>> theirs\n" })
        row(marker, around(marker, "1"), "3:1 merge-conflict: a line that a merge left\n");
    row("a line of a conflict before the document", ">>>>>>> theirs\n" + around(QByteArray(), "1"),
        "1:1 merge-conflict: a line that a merge left\n");
    row("a conflict without its last line",
        around("<<<<<<< ours\n\"Frameless\": true,\n=======\n", "1"),
        "3:1 merge-conflict: a line that a merge left\n"
        "5:1 merge-conflict: a line that a merge left\n");
    row("an HTML comment", around("<!-- \"old\": 1\n -->", "1"),
        "3:1 comment: this file cannot hold comments\n");
    row("a comment without its end", around("/* old\n", "1"),
        "3:1 comment: this file cannot hold comments\n");
    for (const char *value :
         { "${SCALE}", "$(scale)", "$SCALE", "@SCALE@", "%SCALE%", "<the scale>" })
        row(value, around(QByteArray(), value),
            "3:10 unexpected-token: a placeholder that nothing was put in for\n");
    row("a conflict",
        "{ \"Global\": { \"Version\": 1 },\n<<<<<<< ours\n"
        "\"Applications\": [ { \"Tag\": \"a\", \"Url\": \"http://a.example/\" } ]\n=======\n"
        "\"Applications\": [ { \"Tag\": \"b\" } ]\n>>>>>>> theirs\n}\n",
        "2:1 merge-conflict: a merge left two versions of these lines\n");
    row("a conflict before one with what both began with",
        "<<<<<<< ours\n=======\n>>>>>>> theirs\n" + QByteArray(conflict),
        "1:1 merge-conflict: a merge left two versions of these lines\n"
        "5:1 merge-conflict: a merge left two versions of these lines\n");
    row("a conflict with what both began with", conflict,
        "2:1 merge-conflict: a merge left two versions of these lines\n");
}

void tst_WrongBytes::saysWhatTheFileIs()
{
    QFETCH(QByteArray, bytes);
    QTEST(describe(*analyse(QLatin1String("test"), bytes, m_folder.path()), false), "expected");
}

void tst_WrongBytes::saysTheCauseAndTheRemedy_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *member, const char *expected) {
        QTest::newRow(member) << QByteArray(member) << QByteArray(expected);
    };
    row("\"Scale\": +1.5",
        "odd-number: JSON does not write a number like this; the library reads 1.5; write 1.5");
    row("\"Scale\": 5.",
        "odd-number: JSON does not write a number like this; the library reads 5; write 5");
    row("\"Scale\": .5", "bad-number: a number cannot begin with a point; write 0.5");
    row("\"Scale\": .5.5", "bad-number: a number cannot begin with a point; write digits alone");
    row("\"Scale\": 1-2",
        "odd-number: this is not a number; the library reads 0; one number belongs here; put it in "
        "quotes if a string is meant");
    row("\"Scale\": 1,5", "bad-number: a number has a point, not a comma; write 1.5");
    row("\"Scale\": 01.5",
        "leading-zero: a number that begins with 0; the library reads 1.5; write 1.5");
    row("\"Scale\": NaN", "bad-number: JSON has no NaN; write a number, or remove the key");
    row("\"Scale\": Infinity",
        "bad-number: JSON has no Infinity; write a number, or remove the key");
    row("\"RemoteInspectorPort\": 0x2406", "bad-number: 0x2406 is not a number; write 9222");
    row("\"OfflineStorageDefaultQuotaSize\": 5MB",
        "bad-number: 5MB is not a number; write 5242880");
    row("\"OfflineStorageDefaultQuotaSize\": 1.1k",
        "bad-number: 1.1k is not a number; write digits alone");
    row("\"OfflineStorageDefaultQuotaSize\": 9000000G",
        "bad-number: 9000000G is not a number; write digits alone");
    row("\"RemoteInspectorPort\": 0xffffffffffffffffff",
        "bad-number: 0xffffffffffffffffff is not a number; write digits alone");
    row("\"OfflineStorageDefaultQuotaSize\": 1_048_576",
        "bad-number: 1_048_576 is not a number; write 1048576");
    const QByteArray nines(400, '9');
    QTest::newRow("more percent than a number can have")
        << "\"Scale\": " + nines + '%'
        << "bad-number: " + nines + "% is not a number; write digits alone"
            + "lost-digits: more digits than an integer can have; the library reads inf";
    row("\"UseWebGL\": tru", "wrong-keyword: this word is not known; write true");
    row("\"UseWebGL\": flase", "wrong-keyword: this word is not known; write false");
    row("\"UserAgent\", \"Box\"", "missing-colon: a colon belongs here, not ,");
    row("\"UserAgent\"; \"Box\"", "missing-colon: a colon belongs here, not ;");
    row("\"UserAgent\": \"a \"b\" c\"",
        "unescaped-quote: this quote ends the string; write \\\" for a quote inside a string");
    row("\"UserAgent\": \"Box'", "missing-opening-quote: a quote belongs here, not '");
    row("\"UserAgent\": \"Box\\\"",
        "unterminated-string: the backslash makes the closing quote a part of the string; write "
        "\\\\ "
        "for a backslash");
    row("\"Certificate\": { \"Path\": \"device.pem\" };",
        "unexpected-token: this cannot be here; remove it");
    row("\"UserAgent\": \"Box\" // x",
        "comment: this file cannot hold comments; remove it, or write it as the value of a key "
        "that "
        "begins with _comment");
    row("\"UserAgent\": 'Box'",
        "single-quotes: a string in single quotes; use the straight double quote, \"");
    row("\"_comment\": \"\\uzzzz\"",
        "bad-unicode-escape: \\u takes the four bytes after it, and they are not hexadecimal "
        "digits; "
        "write two backslashes for one");
    row("\"UserAgent\": Box", "unquoted-text: a string without quotes; write it in double quotes");
    row("\"UserAgent\":",
        "missing-value: a key without a value; remove the key, or give it a value");
}

void tst_WrongBytes::saysTheCauseAndTheRemedy()
{
    QFETCH(QByteArray, member);
    const QByteArray bytes = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": "
                             "\"tv\", \"Url\": \"http://tv.example/\",\n"
        + member + "\n} ] }\n";
    QTEST(describe(*analyse(QLatin1String("test"), bytes, m_folder.path()), true), "expected");
}

void tst_WrongBytes::saysWhatBecomesOfADuplicate_data()
{
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *first, const char *later, const char *expected) {
        QTest::addRow("%s and %s", first, later)
            << "{ \"a\": " + QByteArray(first) + ", \"a\": " + later + " }"
            << QLatin1String("the key \"a\" appears twice in one object: ")
                + QLatin1String(expected);
    };
    const char *const objects = "the two objects are merged, and the earlier values survive";
    const char *const arrays =
        "the two arrays are merged element by element, and the earlier size survives";
    const char *const both = "the flat settings get the keys of both";
    const char *const one = "the earlier value survives, this one is lost";
    row("{ \"b\": 1 }", "{ \"b\": 2 }", objects);
    row("[ 1 ]", "[ 2 ]", arrays);
    row("{ \"b\": 1 }", "[ 1 ]", both);
    row("{ \"b\": 1 }", "1", both);
    row("[ 1 ]", "{ \"b\": 1 }", both);
    row("[ 1 ]", "1", both);
    row("1", "{ \"b\": 1 }", both);
    row("1", "[ 1 ]", both);
    row("1", "2", one);
}

void tst_WrongBytes::saysWhatBecomesOfADuplicate()
{
    QFETCH(QByteArray, values);
    const auto analysis = analyse(QLatin1String("test"), values, m_folder.path());
    QStringList texts;
    for (const Finding &finding : analysis->findings.all()) {
        if (qstrcmp(finding.rule, "duplicate-key") == 0)
            texts += finding.text;
    }
    QTEST(texts.join(QLatin1Char('\n')), "expected");
}

void tst_WrongBytes::saysWhereTheOtherVersionIs()
{
    const auto analysis = analyse(QLatin1String("test"), conflict, m_folder.path());
    QStringList remarks;
    for (const Remark &remark : analysis->findings.all().front().remarks)
        remarks += QString::number(analysis->source.place(remark.offset).line) + QLatin1String(": ")
            + remark.text;
    QCOMPARE(remarks.join(QLatin1Char('\n')),
             QString(QLatin1String("6: the other version begins here\n8: and ends here")));
}

// Of more than a thousand comments not all are kept; a file with two slips goes on after them.
void tst_WrongBytes::manyCommentsInARowAreNotTheEnd()
{
    const QByteArray bytes = "{ \"Global\" { \"Version\": 1 },\n"
        + QByteArray("// c\n").repeated(1100) + "\"Applications\" [] }\n";
    QList<QByteArray> lines =
        describe(*analyse(QString(), bytes, m_folder.path()), false).split('\n');
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QByteArray &line) { return line.contains(" comment: "); }),
                lines.end());
    QCOMPARE(lines.join('\n'),
             QByteArray("1:11 missing-colon: a colon is missing after the key\n"
                        "1102:15 missing-colon: a colon is missing after the key\n"));
}

void tst_WrongBytes::theRestOfALongFileChangesNothing_data()
{
    QTest::addColumn<QByteArray>("member");
    const auto row = [](const char *name, const QByteArray &member) {
        QTest::newRow(name) << member;
    };
    row("no comma", "\"Scale\": 2 \"Frameless\": true");
    row("no colon", "\"Scale\" 2");
    row("no quote at the end", "\"UserAgent\": \"Box");
    row("a bracket too many", "\"Scale\": 2 ]");
    row("no closing bracket",
        "\"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"a.example\" }");
    row("no closing brace",
        "\"GrantBroadcastAccessRightDomains\": [\n{\n\"Domain\": \"a.example\"\n]");
    row("no comma after a long string",
        "\"_comment\": \"" + QByteArray(70000, 'x') + "\" \"Scale\": 2");
    row("a long tail of a number", "\"Scale\": 1" + QByteArray(300, '%'));
}

// A change is tried on a part of the file only.
void tst_WrongBytes::theRestOfALongFileChangesNothing()
{
    QFETCH(QByteArray, member);
    const auto found = [&](int applications) {
        QByteArray bytes =
            "{\n\"Global\": { \"Version\": 1 },\n\"Applications\": [\n{\n\"Tag\": \"a\",\n"
            "\"Url\": \"http://a.example/\",\n"
            + member + "\n}";
        for (int i = 0; i < applications; ++i)
            bytes += ",\n{ \"Tag\": \"" + QByteArray::number(i)
                + "\", \"Url\": \"http://a.example/\", \"UserAgent\": \"a rather long one\" }";
        return describe(*analyse(QString(), bytes + "\n]\n}\n", m_folder.path()), false);
    };
    const QByteArray expected = found(1);
    QVERIFY(!expected.isEmpty());
    QCOMPARE(found(1000), expected);
}

void tst_WrongBytes::afterTooManySlipsTheOthersAreStillErrors_data()
{
    QTest::addColumn<QByteArray>("slip");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("rest");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("last");
    QTest::newRow("conflicts") << QByteArray(
        "<<<<<<< a\n\"_\": 1,\n=======\n\"_\": 2,\n>>>>>>> b\n")
                               << 30 << QByteArray("") << QByteArray("merge-conflict")
                               << QByteArray("unexpected-token");
    QTest::newRow("numbers with units") << QByteArray("\"_\": 5MB,\n") << 60 << QByteArray("")
                                        << QByteArray("bad-number") << QByteArray("missing-comma");
    QTest::newRow("numbers with units, in a large file")
        << QByteArray("\"_\": 5MB,\n") << 45 << QByteArray(1000000, ' ') << QByteArray("bad-number")
        << QByteArray("missing-comma");
}

// What was meant by them nobody looks for any more, and a value that is missing is not judged.
void tst_WrongBytes::afterTooManySlipsTheOthersAreStillErrors()
{
    QFETCH(QByteArray, slip);
    QFETCH(int, count);
    QFETCH(QByteArray, rest);
    const QByteArray slips = "{\n" + slip.repeated(count);
    const QByteArray bytes = slips
        + "\"Global\": {\n\"Version\":\n},\n\"Applications\": [ { \"Tag\": \"a\", \"Url\":\n} ] }\n"
        + rest;
    const auto analysis = analyse(QString(), bytes, m_folder.path());
    QList<QByteArray> among;
    QByteArray after;
    for (const Finding &finding : analysis->findings.all()) {
        if (finding.offset >= slips.size())
            after += finding.rule + QByteArray(" ");
        else if (Rules::isSyntaxError(finding.rule))
            among.append(finding.rule);
    }
    QTEST(among.first(), "first");
    QTEST(among.last(), "last");
    QCOMPARE(after, QByteArray("missing-value missing-value "));
}

NUV_TEST_MAIN(tst_WrongBytes)
#include "tst_wrongbytes.moc"
