// SPDX-License-Identifier: MIT
#include "json/jsonparser.h"

#include "tests/json/jsoninput.h"
#include "tests/json/plainreader.h"
#include "tests/support/describe.h"
#include "tests/support/testmain.h"

/// Holds the parser against a second reading of the same dialect.
class tst_PlainReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheDialect_data();
    void readsTheDialect();
    void stopsAtItsBound();
    void everyShortSequenceOfTokensIsReadTheSame();
    void everyShortSequenceOfBytesIsReadTheSame();
    void everyEscapeAndNumberOfThreeBytesIsReadTheSame();
    void damagedDocumentsAreReadTheSame();
};

namespace {

QByteArray described(const QVariant &tree, const QString &error)
{
    return describe(tree) + " (" + error.toLatin1() + ')';
}

QByteArray plainReading(const QByteArray &text)
{
    const PlainReader reader(text);
    return described(reader.tree(), reader.error());
}

QByteArray reading(const QByteArray &text)
{
    const ExactBlock block(text);
    QString error;
    const QVariant tree = parseJson(block.bytes(), &error);
    return described(tree, error);
}

bool isReadTheSame(const QByteArray &text)
{
    if (reading(text) == plainReading(text))
        return true;
    qWarning("%s: %s, plainly %s", qPrintable(QString::fromLatin1(text.toHex())),
             reading(text).constData(), plainReading(text).constData());
    return false;
}

// Counts the sequences of up to `length` of the pieces that the two readers read differently.
int countDifferences(const QList<QByteArray> &pieces, int length, const QByteArray &begin = "")
{
    int differences = isReadTheSame(begin) ? 0 : 1;
    for (int i = 0; length > 0 && i < pieces.size(); ++i)
        differences += countDifferences(pieces, length - 1, begin + pieces.at(i));
    return differences;
}

} // namespace

void tst_PlainReader::readsTheDialect_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("outcome");
    const auto row = [](const char *name, const char *text, const char *outcome) {
        QTest::newRow(name) << json(text) << QByteArray(outcome);
    };

    row("an object", "{'a':1,'b':[true,null]}", "{\"a\": int 1, \"b\": [bool true, invalid]} ()");
    row("a key twice", "{'a':1,'a':2}", "{\"a\": int 2, \"a\": int 1} ()");
    row("a leading comma", "[,1]", "[int 1] ()");
    row("a leading comma in an object", "{,'a':1}", "{\"a\": int 1} ()");
    row("a lone b", "[b1]", "[int 1] ()");
    row("numbers", "[2147483648,99999999999999999999,1-2,1.5]",
        "[qlonglong 2147483648, double 1e+20, double 0, double 1.5] ()");
    row("escapes", "'\\u00e9\\q\\n\\u00'", "string \"<e9>q<a>u00\" ()");
    row("nothing", "", "invalid ( at line 1 pos 0)");
    row("an open brace", "{", "invalid (Expected '}', ',' at line 1 pos 1)");
    row("no colon", "{'a' 1}", "invalid (Expected ':' at line 1 pos 6)");
    row("no comma", "[1 2]", "invalid (Expected ']', ',' at line 1 pos 4)");
    row("a trailing comma", "[1,]", "invalid ( at line 1 pos 4)");
    row("a trailing comma in an object", "{'a':1,}", "invalid (Expected 'string' at line 1 pos 8)");
    row("more after the root", "1\n2", "int 1 (Expected 'end of file' at line 2 pos 3)");
    row("an open string", "'abc", "invalid ( at line 1 pos 4)");
    row("a byte that begins nothing", "[/]", "invalid (Expected ']', ',' at line 1 pos 1)");
}

void tst_PlainReader::readsTheDialect()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, outcome);

    QCOMPARE(plainReading(text), outcome);
    QCOMPARE(reading(text), outcome);
}

void tst_PlainReader::stopsAtItsBound()
{
    const int bound = PlainReader::DeepestLevel;

    QVERIFY(!PlainReader(QByteArray(bound, '[') + QByteArray(bound, ']')).isTooDeep());
    QVERIFY(PlainReader(QByteArray(bound + 1, '[')).isTooDeep());
}

void tst_PlainReader::everyShortSequenceOfTokensIsReadTheSame()
{
    const QList<QByteArray> tokens = QList<QByteArray>() << "\"k\""
                                                         << "7 "
                                                         << "{"
                                                         << "}"
                                                         << "["
                                                         << "]"
                                                         << ":"
                                                         << ","
                                                         << "true "
                                                         << "/";

    QCOMPARE(countDifferences(tokens, 5), 0);
}

void tst_PlainReader::everyShortSequenceOfBytesIsReadTheSame()
{
    QList<QByteArray> bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(QByteArray(1, char(byte)));

    QCOMPARE(countDifferences(bytes, 2), 0);
}

void tst_PlainReader::everyEscapeAndNumberOfThreeBytesIsReadTheSame()
{
    QList<QByteArray> bytes;
    const QByteArray alphabet = "\\u0fFg -+.eE19\"x";
    for (int i = 0; i < alphabet.size(); ++i)
        bytes.append(alphabet.mid(i, 1));

    QCOMPARE(countDifferences(bytes, 3, "\"\\u0"), 0);
    QCOMPARE(countDifferences(bytes, 3, "-1"), 0);
    QCOMPARE(countDifferences(bytes, 3, "214748364"), 0);
}

void tst_PlainReader::damagedDocumentsAreReadTheSame()
{
    const QByteArray document = json("{'Global':{'Version':1.0,'RemoteInspectorPort':9222},\n"
                                     " 'Applications':[{'Tag':'a\\u0041\\n','Scale':-1e3},\n"
                                     "  {'Tag':null,'Url':'\\\\'},{},[],[false,true]]}\n");
    const QByteArray alphabet = "{}[]:,\"\\/bu0e-. \ntfn";
    Random random(20);
    int differences = 0;

    for (int i = 0; i < 20000; ++i) {
        QByteArray damaged = document;
        for (int changes = random.below(4); changes >= 0; --changes)
            damaged[random.below(damaged.size())] = random.oneOf(alphabet);
        damaged.truncate(random.below(4) == 0 ? random.below(damaged.size()) : damaged.size());
        differences += isReadTheSame(damaged) ? 0 : 1;
    }

    QCOMPARE(differences, 0);
}

NUV_TEST_MAIN(tst_PlainReader)

#include "tst_plainreader.moc"
