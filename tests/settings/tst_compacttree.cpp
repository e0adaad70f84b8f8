#include "settings/compacttree.h"

#include "json/jsonlexer.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "settings/backwardflattener.h"
#include "settings/jsonsettingsformat.h"
#include "tests/settings/randomtrees.h"
#include "tests/settings/referenceformat.h"
#include "tests/support/describe.h"
#include "tests/support/messages.h"
#include "tests/support/testmain.h"

#include <QBuffer>
#include <QStringList>

#include <algorithm>
#include <climits>

namespace {

/// Whether the document can be held; it must be one.
bool isPlain(const QByteArray &json)
{
    CompactTree tree;
    JsonLexer lexer(json);
    JsonDriver<CompactTree> driver(&tree);
    if (!driver.parse(&lexer))
        qFatal("no document: %s", json.constData());
    return tree.isPlain();
}

/// A map that already holds keys, some of them those of the documents.
QSettings::SettingsMap filledMap()
{
    QSettings::SettingsMap map;
    map.insert(QLatin1String("a"), QLatin1String("there before"));
    map.insert(QLatin1String("a/size"), 7);
    map.insert(QLatin1String("other"), 8);
    return map;
}

void read(QByteArray json, QSettings::SettingsMap &map)
{
    QBuffer device(&json);
    device.open(QIODevice::ReadOnly);
    if (!readJsonSettings(device, map))
        qFatal("the read callback reported a failure");
}

/// Through a tree of variants, step by step. Returns the message of a syntax error.
QByteArray readPlainly(const QByteArray &json, QSettings::SettingsMap &map)
{
    QString error;
    const QVariant tree = parseJson(json, &error);
    if (!error.isEmpty())
        return "\"" + error.toLocal8Bit() + "\" ";
    QString prefix;
    referenceFlatten(prefix, map, tree);
    return QByteArray();
}

} // namespace

/// Reading documents into flat keys, with and without a tree of variants in between.
class tst_CompactTree : public QObject
{
    Q_OBJECT

private slots:
    void holdsPlainDocuments_data();
    void holdsPlainDocuments();
    void readsWhatTheTreeOfVariantsGives_data();
    void readsWhatTheTreeOfVariantsGives();
    void endsAtEveryErrorAsTheTreeOfVariantsDoes();
    void readsLongArrays_data();
    void readsLongArrays();
    void positionsDescendAsText_data();
    void positionsDescendAsText();
    void positionsEndAtTheLargestNumber();
};

void tst_CompactTree::holdsPlainDocuments_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("isHeld");

    QTest::newRow("a scalar") << QByteArray("1") << true;
    QTest::newRow("different keys") << QByteArray("{\"b\":1,\"a\":[2,{\"b\":3}]}") << true;
    QTest::newRow("the same key in different objects")
        << QByteArray("{\"a\":{\"a\":1},\"b\":{\"a\":2}}") << true;
    QTest::newRow("keys that differ in case") << QByteArray("{\"a\":1,\"A\":2}") << true;
    QTest::newRow("a separator in a value") << QByteArray("{\"a\":\"x/y\"}") << true;
    QTest::newRow("a separator in a key") << QByteArray("{\"a\":1,\"x/y\":2,\"z\":3}") << false;
    QTest::newRow("a separator deep inside") << QByteArray("[[{\"a\":{\"/\":[]}}],1]") << false;
    QTest::newRow("an escaped separator") << QByteArray("{\"x\\u002fy\":2}") << false;
    QTest::newRow("a key that comes twice at once") << QByteArray("{\"a\":1,\"a\":1}") << false;
    QTest::newRow("a key that comes twice")
        << QByteArray("{\"a\":1,\"c\":2,\"b\":3,\"a\":4}") << false;
    QTest::newRow("a key that comes twice, once escaped")
        << QByteArray("{\"a\":1,\"b\":2,\"\\u0061\":3}") << false;
    QTest::newRow("an empty key that comes twice") << QByteArray("[{\"\":1,\"\":{}},{}]") << false;
}

void tst_CompactTree::holdsPlainDocuments()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, isHeld);

    QCOMPARE(isPlain(json), isHeld);
}

void tst_CompactTree::readsWhatTheTreeOfVariantsGives_data()
{
    QTest::addColumn<bool>("withSeparators");
    QTest::addColumn<int>("depth");

    QTest::newRow("flat documents without separators in their keys") << false << 1;
    QTest::newRow("deep documents without separators in their keys") << false << 5;
    QTest::newRow("flat documents with any keys") << true << 1;
    QTest::newRow("deep documents with any keys") << true << 5;
}

void tst_CompactTree::readsWhatTheTreeOfVariantsGives()
{
    QFETCH(bool, withSeparators);
    QFETCH(int, depth);
    RandomTrees random(20110505,
                       withSeparators ? RandomTrees::AnyKeys : RandomTrees::KeysWithoutSeparator);
    int plainDocuments = 0;
    const int documents = 2000;
    for (int i = 0; i < documents; ++i) {
        QByteArray json = i % 2 ? JsonWriter::serialize(random.tree(depth), 2, 0)
                                : JsonWriter::serializeCompact(random.tree(depth));
        if (i % 3 == 0)
            json.replace('/', "\\u002F");
        QSettings::SettingsMap map = i % 5 ? QSettings::SettingsMap() : filledMap();
        QSettings::SettingsMap expected = map;

        read(json, map);
        readPlainly(json, expected);

        if (describeLines(map) != describeLines(expected))
            qWarning("document %d: %s", i, json.constData());
        QCOMPARE(describeLines(map), describeLines(expected));
        plainDocuments += isPlain(json);
    }
    // Both ways were taken.
    QVERIFY(plainDocuments > documents / 20);
    QVERIFY(plainDocuments < documents);
}

void tst_CompactTree::endsAtEveryErrorAsTheTreeOfVariantsDoes()
{
    RandomTrees random(20110506);
    int errors = 0;
    for (int i = 0; i < 200; ++i) {
        const QByteArray json = JsonWriter::serializeCompact(random.tree(4)).left(60);
        for (int size = 0; size <= json.size(); ++size) {
            QSettings::SettingsMap map = filledMap();
            QSettings::SettingsMap expected = map;

            const Messages messages;
            read(json.left(size), map);
            const QByteArray warning = readPlainly(json.left(size), expected);

            QCOMPARE(messages.count(), warning.isEmpty() ? 0 : 1);
            QCOMPARE(messages.count() ? messages.text(0) : QByteArray(), warning);
            QCOMPARE(describeLines(map), describeLines(expected));
            errors += messages.count();
        }
    }
    QVERIFY(errors > 1000);
}

void tst_CompactTree::readsLongArrays_data()
{
    QTest::addColumn<int>("size");

    for (int size : { 9, 10, 11, 99, 100, 101, 1234 })
        QTest::newRow(QByteArray::number(size).constData()) << size;
}

void tst_CompactTree::readsLongArrays()
{
    QFETCH(int, size);
    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(i % 3 ? QVariant(QVariantList() << i) : QVariant(i));
    const QByteArray json = JsonWriter::serializeCompact(list);
    QSettings::SettingsMap map;
    QSettings::SettingsMap expected;

    read(json, map);
    readPlainly(json, expected);

    QVERIFY(isPlain(json));
    QCOMPARE(describeLines(map), describeLines(expected));
}

void tst_CompactTree::positionsDescendAsText_data()
{
    QTest::addColumn<int>("count");

    for (int count :
         { 0, 1, 8, 9, 10, 11, 19, 20, 89, 90, 98, 99, 100, 101, 109, 110, 999, 1000, 1001, 12345 })
        QTest::newRow(QByteArray::number(count).constData()) << count;
}

void tst_CompactTree::positionsDescendAsText()
{
    QFETCH(int, count);
    QStringList expected;
    for (int i = 1; i <= count; ++i)
        expected.prepend(QString::number(i));
    std::sort(expected.begin(), expected.end());
    std::reverse(expected.begin(), expected.end());

    QStringList texts;
    QStringList numbers;
    for (BackwardPositions positions(count); positions.stepBack();) {
        texts.append(QString(positions.name().text, positions.name().size));
        numbers.append(QString::number(positions.index() + 1));
    }

    QCOMPARE(texts, expected);
    QCOMPARE(numbers, expected);
}

void tst_CompactTree::positionsEndAtTheLargestNumber()
{
    BackwardPositions positions(INT_MAX);

    // 999999999, and not one of ten digits, for there is none that begins so.
    QVERIFY(positions.stepBack());
    QCOMPARE(positions.index(), 999999999 - 1);
}

NUV_TEST_MAIN(tst_CompactTree)

#include "tst_compacttree.moc"
