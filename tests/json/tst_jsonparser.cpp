// SPDX-License-Identifier: MIT
#include "json/jsonparser.h"

#include "global/qtcompat.h"
#include "json/jsonlexer.h"
#include "json/varianttree.h"
#include "tests/json/jsoninput.h"
#include "tests/support/describe.h"
#include "tests/support/smallstackthread.h"
#include "tests/support/testmain.h"

#include <thread>

namespace {

const int Million = 1000000;

QVariant parseExactly(const QByteArray &text, QString *error)
{
    const ExactBlock block(text);
    return parseJson(block.bytes(), error);
}

void row(const char *name, const QByteArray &text, const QByteArray &outcome)
{
    QTest::newRow(name) << text << outcome;
}

// One level of a nested document: how it opens, and how many entries it has with the one that it is
// opened for, which is its last element or its "a".
struct Level {
    char letter;
    const char *opening;
    bool isObject;
    int size;
};

// Each uses up another number of the parser's stack slots.
const Level levels[] = { { 'A', "[", false, 1 },       { 'O', "{'a':", true, 1 },
                         { 'B', "[0,", false, 2 },     { 'P', "{'z':0,'a':", true, 2 },
                         { 'C', "[,", false, 1 },      { 'Q', "{,'a':", true, 1 },
                         { 'D', "[[],{},", false, 3 }, { 'R', "{'':{'':1},'a':", true, 2 } };

const Level &levelOf(char letter)
{
    const Level *level = levels;
    while (level->letter != letter)
        ++level;
    return *level;
}

// The levels from the outermost: `outer`, and `inner` again and again after it.
QByteArray lettersOf(const QByteArray &outer, const QByteArray &inner, int depth)
{
    return (outer + inner.repeated(depth)).left(depth);
}

QByteArray nestedText(const QByteArray &letters, const QByteArray &innermost)
{
    QByteArray opening;
    QByteArray closing;
    for (int i = 0; i < letters.size(); ++i) {
        opening += levelOf(letters.at(i)).opening;
        closing += levelOf(letters.at(letters.size() - 1 - i)).isObject ? '}' : ']';
    }
    return json(opening.constData()) + innermost + closing;
}

const QVariant *child(const QVariant &node, const Level &level)
{
    if (level.isObject) {
        if (!VariantTree::isMap(node) || VariantTree::map(node).size() != level.size)
            return nullptr;
        return &VariantTree::map(node).constFind(QLatin1String("a")).value();
    }
    if (!VariantTree::isList(node) || VariantTree::list(node).size() != level.size)
        return nullptr;
    return &VariantTree::list(node).last();
}

// What `root` holds in the end, null when it does not have these levels.
const QVariant *innermost(const QVariant &root, const QByteArray &letters)
{
    const QVariant *node = &root;
    for (int i = 0; i < letters.size() && node; ++i)
        node = child(*node, levelOf(letters.at(i)));
    return node;
}

// Empty when the document with these levels reads as what it says.
QByteArray failureOfNesting(const QByteArray &letters, const QByteArray &inner)
{
    QString error;
    QVariant root = parseExactly(nestedText(letters, inner), &error);
    const VariantTree::Disposer disposer(root);
    const QVariant *const node = innermost(root, letters);
    if (error.isEmpty() && node && describe(*node) == inner)
        return QByteArray();
    return letters + " around " + inner + ": " + error.toLatin1();
}

// How many containers stand in one another, each as the first entry of the one around it.
int depthOf(const QVariant &root)
{
    int depth = 0;
    for (const QVariant *node = &root;; ++depth) {
        if (VariantTree::isList(*node) && !VariantTree::list(*node).isEmpty())
            node = &VariantTree::list(*node).first();
        else if (VariantTree::isMap(*node) && !VariantTree::map(*node).isEmpty())
            node = &VariantTree::map(*node).constBegin().value();
        else
            return VariantTree::isList(*node) || VariantTree::isMap(*node) ? depth + 1 : depth;
    }
}

QByteArray arrays(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

QByteArray objects(int depth)
{
    return json("{'a':").repeated(depth) + "{}" + QByteArray(depth, '}');
}

// A member as text, and the same in a map that plain insertions make.
void addMember(QByteArray &text, QtCompat::MultiMap &map, const QByteArray &key, int number,
               bool isNested)
{
    const QByteArray value = QByteArray::number(number);
    text += (text.isEmpty() ? "" : ",") + json("'") + key + json("':");
    text += isNested ? json("{'z':") + value + json(",'a':0}") : value;
    QVariant &slot = QtCompat::insertMulti(map, QString::fromLatin1(key));
    if (!isNested) {
        slot = number;
        return;
    }
    QtCompat::MultiMap inner;
    inner.insert(QLatin1String("z"), number);
    inner.insert(QLatin1String("a"), 0);
    slot = QtCompat::toVariant(inner);
}

QByteArray commaAfter(const QByteArray &text)
{
    return text.isEmpty() ? text : text + ',';
}

// A value as text, and in `tree` as plain insertions make it.
QByteArray randomDocument(Random &random, int depth, QVariant &tree);

QByteArray randomArray(Random &random, int depth, QVariant &tree)
{
    QByteArray text;
    QVariantList list;
    for (int count = random.below(5); count > 0; --count) {
        QVariant element;
        text = commaAfter(text) + randomDocument(random, depth, element);
        list.append(element);
    }
    tree = list;
    return '[' + text + ']';
}

QByteArray randomObject(Random &random, int depth, QVariant &tree)
{
    QByteArray text;
    QtCompat::MultiMap map;
    for (int count = random.below(6); count > 0; --count) {
        const char key = random.oneOf("abc");
        QVariant value;
        text = commaAfter(text) + '"' + key + "\":" + randomDocument(random, depth, value);
        QtCompat::insertMulti(map, QString(QLatin1Char(key))) = value;
    }
    tree = QtCompat::toVariant(map);
    return '{' + text + '}';
}

QByteArray randomDocument(Random &random, int depth, QVariant &tree)
{
    switch (random.below(depth > 0 ? 8 : 4)) {
    case 0:
        tree = QVariant();
        return "null";
    case 1:
        tree = QLatin1String("x\n");
        return "\"x\\n\"";
    case 2:
        tree = true;
        return " true\n";
    case 3:
        tree = random.below(1000);
        return tree.toByteArray();
    case 4:
    case 5:
        return randomArray(random, depth - 1, tree);
    default:
        return randomObject(random, depth - 1, tree);
    }
}

// What parsing `text` again and again gives, which must be the same every time.
void parseAgainAndAgain(const QByteArray &text, QByteArray *outcome)
{
    for (int i = 0; i < 50; ++i) {
        QString error;
        *outcome = describe(parseJson(text, &error));
        *outcome += error.toLatin1();
    }
}

} // namespace

class tst_JsonParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsBecomeTheseTrees_data();
    void documentsBecomeTheseTrees();
    void syntaxErrorsGetTheirExactText_data();
    void syntaxErrorsGetTheirExactText();
    void everyErrorMayGoUnreported();
    void anErrorBehindTheRootKeepsTheRoot_data();
    void anErrorBehindTheRootKeepsTheRoot();
    void anErrorInsideTheRootGivesNothing_data();
    void anErrorInsideTheRootGivesNothing();
    void everyBeginningOfADocumentIsReadSafely();
    void successLeavesTheErrorAlone();
    void theParserTellsItsParts();
    void aParserWithoutErrorHasNoMessage();

    void duplicateKeysAreAllKept();
    void membersEqualPlainInsertions_data();
    void membersEqualPlainInsertions();

    void randomDocumentsEqualPlainInsertions();

    void everyDepthIsRead_data();
    void everyDepthIsRead();
    void tenThousandLevelsAreReadAndFreed_data();
    void tenThousandLevelsAreReadAndFreed();
    void deepDocumentsNeedNoStack_data();
    void deepDocumentsNeedNoStack();
    void aResultThatIsNotTakenMayBeDeep();

    void manyMembersAreRead_data();
    void manyMembersAreRead();
    void manyElementsAreRead();
    void threadsDoNotInteract();
};

void tst_JsonParser::documentsBecomeTheseTrees_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("tree");

    row("string", json("'text'"), json("string 'text'"));
    row("number", "42", "int 42");
    row("long number", "-2147483649", "qlonglong -2147483649");
    row("double", "1e3", "double 1000");
    row("ill-formed number", "1-2", "double 0");
    row("true", "true", "bool true");
    row("false", "false", "bool false");
    row("null", "null", "invalid");
    row("empty string", json("''"), json("string ''"));
    row("empty array", "[]", "[]");
    row("empty object", "{}", "{}");
    row("blanks around", "\n b\t[ ]\r\n", "[]");

    row("array", json("[1,'a',null,[true],{},2.5]"),
        json("[int 1, string 'a', invalid, [bool true], {}, double 2.5]"));
    row("nulls", "[null,null]", "[invalid, invalid]");
    row("null after every kind of value", json("['x',null,1,null,[2],null,{'a':3},null,[,4],null]"),
        json("[string 'x', invalid, int 1, invalid, [int 2], invalid, {'a': int 3}, invalid, [int "
             "4], invalid]"));
    row("null member after every kind",
        json("{'a':'x','b':null,'c':[1],'d':null,'e':{'f':2},'g':null}"),
        json("{'a': string 'x', 'b': invalid, 'c': [int 1], 'd': invalid, 'e': {'f': int 2}, 'g': "
             "invalid}"));
    row("object", json("{'b':1,'a':[{'c':'x'}],'':null}"),
        json("{'': invalid, 'a': [{'c': string 'x'}], 'b': int 1}"));
    row("keys by code unit", json("{'\\u20ac':4,'\xe9':3,'a':2,'B':1}"),
        json("{'B': int 1, 'a': int 2, '<e9>': int 3, '<20ac>': int 4}"));
    row("key with escapes", json("{'a\\/\\'\\u0062':1}"), json("{'a/\"b': int 1}"));
    row("key of the bytes of UTF-8", json("{'\xc3\xa9':1}"), json("{'<c3><a9>': int 1}"));
    row("same key in two objects", json("[{'k':1},{'k':2}]"), json("[{'k': int 1}, {'k': int 2}]"));
    row("b as a blank everywhere", json("b{b'b'b:b[b1bb,b2b]b}b"), json("{'b': [int 1, int 2]}"));

    row("comma first in an array", "[,1]", "[int 1]");
    row("comma first in a longer array", "[,1,2]", "[int 1, int 2]");
    row("comma first in an object", json("{,'a':1}"), json("{'a': int 1}"));
    row("comma first at each level", json("[,{,'a':[,null]}]"), json("[{'a': [invalid]}]"));

    row("duplicate key, newest first", json("{'a':1,'a':2}"), json("{'a': int 2, 'a': int 1}"));
    row("duplicate key in between", json("{'a':1,'b':3,'a':2}"),
        json("{'a': int 2, 'a': int 1, 'b': int 3}"));
    row("duplicate objects", json("{'a':{'x':1},'a':{'y':2}}"),
        json("{'a': {'y': int 2}, 'a': {'x': int 1}}"));
    row("number at the end of the input", "1.5", "double 1.5");
}

void tst_JsonParser::documentsBecomeTheseTrees()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, tree);

    QString error;
    const QVariant result = parseExactly(text, &error);

    QCOMPARE(error, QString());
    QCOMPARE(describe(result), tree);
}

void tst_JsonParser::syntaxErrorsGetTheirExactText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("message");

    row("empty input", "", " at line 1 pos 0");
    row("blanks only", " b \n\t\n ", " at line 3 pos 7");
    row("byte-order mark", "\xef\xbb\xbf{}", " at line 1 pos 0");
    row("no value", "]", " at line 1 pos 1");
    row("unknown byte", "/", " at line 1 pos 0");
    row("unknown word", "nul", " at line 1 pos 3");
    row("capital word", "[1,True]", " at line 1 pos 3");
    row("unknown first element", "[True]", "Expected ']', ',' at line 1 pos 1");
    row("open string", json("'abc"), " at line 1 pos 4");
    row("open string as an element", json("['abc"), "Expected ']', ',' at line 1 pos 5");

    row("no comma in an array", "[1 2]", "Expected ']', ',' at line 1 pos 4");
    row("comma last in an array", "[1,]", " at line 1 pos 4");
    row("comma alone in an array", "[,]", " at line 1 pos 3");
    row("two commas first in an array", "[,,1]", " at line 1 pos 3");
    row("two commas in an array", "[1,,2]", " at line 1 pos 4");
    row("open array", "[", "Expected ']', ',' at line 1 pos 1");
    row("open array after a value", "[1", "Expected ']', ',' at line 1 pos 2");
    row("array closed with a brace", "[1}", "Expected ']', ',' at line 1 pos 3");
    row("colon in an array", json("['a':1]"), "Expected ']', ',' at line 1 pos 5");

    row("no colon", json("{'a' 1}"), "Expected ':' at line 1 pos 6");
    row("key alone", json("{'a'}"), "Expected ':' at line 1 pos 5");
    row("no value after the colon", json("{'a':}"), " at line 1 pos 6");
    row("comma last in an object", json("{'a':1,}"), "Expected 'string' at line 1 pos 8");
    row("comma alone in an object", "{,}", "Expected 'string' at line 1 pos 3");
    row("two commas first in an object", json("{,,'a':1}"), "Expected 'string' at line 1 pos 3");
    row("no comma in an object", json("{'a':1 'b':2}"), "Expected '}', ',' at line 1 pos 10");
    row("number for a key", "{1:2}", "Expected '}', ',' at line 1 pos 2");
    row("number for a later key", json("{'a':1,2:3}"), "Expected 'string' at line 1 pos 8");
    row("open object", "{", "Expected '}', ',' at line 1 pos 1");
    row("open object after a value", json("{'a':1"), "Expected '}', ',' at line 1 pos 6");
    row("object closed with a bracket", json("{'a':1]"), "Expected '}', ',' at line 1 pos 7");

    row("two roots", "1 2", "Expected 'end of file' at line 1 pos 3");
    row("word after the root", "{} x", "Expected 'end of file' at line 1 pos 4");
    row("byte after the root", "[]\n;", "Expected 'end of file' at line 2 pos 3");
    row("on the third line", json("{\n'a':1,\n x}"), "Expected 'string' at line 3 pos 11");
    row("carriage returns are no lines", "[1,\r\r2 3]", "Expected ']', ',' at line 1 pos 8");
    row("line feed in a string is no line", json("['\n'\n1]"), "Expected ']', ',' at line 2 pos 6");
}

void tst_JsonParser::syntaxErrorsGetTheirExactText()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, message);

    QString error;
    parseExactly(text, &error);

    QCOMPARE(error, QString::fromLatin1(message.constData()));
}

void tst_JsonParser::everyErrorMayGoUnreported()
{
    QVERIFY(!parseJson("[1,]", nullptr).isValid());
    QVERIFY(!parseJson("", nullptr).isValid());
    QCOMPARE(describe(parseJson("1 2", nullptr)), QByteArray("int 1"));
    QCOMPARE(describe(parseJson("[1]", nullptr)), QByteArray("[int 1]"));
}

void tst_JsonParser::anErrorBehindTheRootKeepsTheRoot_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("tree");

    row("number", "1 2", "int 1");
    row("object", "{} x", "{}");
    row("array", "[1,2]]", "[int 1, int 2]");
    row("string", json("'a' nul"), json("string 'a'"));
    row("byte", "true#", "bool true");
    row("null", "null ,", "invalid");
}

void tst_JsonParser::anErrorBehindTheRootKeepsTheRoot()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, tree);

    QString error;
    const QVariant result = parseExactly(text, &error);

    QCOMPARE(describe(result), tree);
    QVERIFY(error.startsWith(QLatin1String("Expected 'end of file' at ")));
}

void tst_JsonParser::anErrorInsideTheRootGivesNothing_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("open array") << QByteArray("[1,2");
    QTest::newRow("open object") << json("{'a':1");
    QTest::newRow("comma last") << QByteArray("[1,]");
    QTest::newRow("broken member") << json("{'a':1,'b' 2}");
    QTest::newRow("unknown word") << QByteArray("nothing");
    QTest::newRow("open string") << json("'a");
}

void tst_JsonParser::anErrorInsideTheRootGivesNothing()
{
    QFETCH(QByteArray, text);

    QString error;
    const QVariant result = parseExactly(text, &error);

    QVERIFY(!result.isValid());
    QVERIFY(!error.isEmpty());
}

// Cut after each of its bytes, a document has to end in the middle of everything.
void tst_JsonParser::everyBeginningOfADocumentIsReadSafely()
{
    const QByteArray text =
        json("{'key\\n\\u00e9\\\\':[true,false,null,-12.5e+3,9223372036854775808,"
             "'a longer string without escapes'],'b':{}}");
    for (int size = 0; size < text.size(); ++size) {
        QString error;
        QVERIFY(!parseExactly(text.left(size), &error).isValid());
        QVERIFY(error.endsWith(QString::fromLatin1(" at line 1 pos %1").arg(size)));
    }
    QString error;
    QVERIFY(parseExactly(text, &error).isValid());
    QCOMPARE(error, QString());
}

void tst_JsonParser::successLeavesTheErrorAlone()
{
    QString error = QLatin1String("from before");
    parseJson("[1]", &error);

    QCOMPARE(error, QString::fromLatin1("from before"));
}

void tst_JsonParser::theParserTellsItsParts()
{
    JsonLexer lexer("[1]\n2");
    JsonParser parser;

    QVERIFY(!parser.result().isValid());
    QVERIFY(!parser.parse(&lexer));
    QCOMPARE(parser.errorMessage(), QString::fromLatin1("Expected 'end of file'"));
    QCOMPARE(parser.errorLine(), 2);
    QCOMPARE(parser.errorPos(), 5);
    QCOMPARE(describe(parser.result()), QByteArray("[int 1]"));
    QCOMPARE(describe(parser.takeResult()), QByteArray("[int 1]"));
    QVERIFY(!parser.result().isValid());
}

void tst_JsonParser::aParserWithoutErrorHasNoMessage()
{
    JsonLexer lexer("[1]");
    JsonParser parser;

    QVERIFY(parser.parse(&lexer));
    QCOMPARE(parser.errorMessage(), QString());
    QCOMPARE(describe(parser.result()), QByteArray("[int 1]"));
}

void tst_JsonParser::duplicateKeysAreAllKept()
{
    const QVariant tree = parseJson(json("{'a':1,'b':5,'a':2,'a':3}"), nullptr);
    const QtCompat::MultiMap map = QtCompat::toMultiMap(tree);

    QCOMPARE(int(map.count()), 4);
    QCOMPARE(int(map.count(QLatin1String("a"))), 3);
    QCOMPARE(map.value(QLatin1String("a")).toInt(), 3);
    QCOMPARE(map.value(QLatin1String("b")).toInt(), 5);
    QtCompat::MultiMap::const_iterator entry = map.begin();
    QCOMPARE((entry++).value().toInt(), 3);
    QCOMPARE((entry++).value().toInt(), 2);
    QCOMPARE(entry.value().toInt(), 1);
}

void tst_JsonParser::membersEqualPlainInsertions_data()
{
    QTest::addColumn<int>("step");

    QTest::newRow("ascending with repetitions") << 1;
    QTest::newRow("descending with repetitions") << -1;
    QTest::newRow("mixed") << 0;
}

void tst_JsonParser::membersEqualPlainInsertions()
{
    QFETCH(int, step);

    Random random(40);
    for (int document = 0; document < 400; ++document) {
        QByteArray text;
        QtCompat::MultiMap expected;
        int number = 500;
        const int members = 1 + random.below(40);
        for (int i = 0; i < members; ++i) {
            const bool isOutOfOrder = step == 0 || random.below(12) == 0;
            number = isOutOfOrder ? 480 + random.below(40) : number + step * random.below(3);
            addMember(text, expected, QByteArray::number(number), i, random.below(4) == 0);
        }
        QString error;
        QCOMPARE(describe(parseExactly('{' + text + '}', &error)),
                 describe(QtCompat::toVariant(expected)));
        QCOMPARE(error, QString());
    }
}

// Whatever stood in a slot of the stack before must not show in a later value.
void tst_JsonParser::randomDocumentsEqualPlainInsertions()
{
    Random random(60);
    for (int i = 0; i < 2000; ++i) {
        QVariant tree;
        const QByteArray text = randomDocument(random, 6, tree);
        QString error;
        QCOMPARE(describe(parseExactly(text, &error)), describe(tree));
        QCOMPARE(error, QString());
    }
}

// An empty container innermost reduces a rule without symbols, which moves the top of the stack as
// a token does. Every level counts for another number of slots, so each size of the stack is met
// from each of them.
void tst_JsonParser::everyDepthIsRead_data()
{
    QTest::addColumn<QByteArray>("outer");
    QTest::addColumn<QByteArray>("inner");
    QTest::addColumn<int>("deepest");

    const QByteArray none;
    QTest::newRow("arrays") << none << QByteArray("A") << 600;
    QTest::newRow("objects") << none << QByteArray("O") << 600;
    QTest::newRow("one array around objects") << QByteArray("A") << QByteArray("O") << 600;
    QTest::newRow("two arrays around objects") << QByteArray("AA") << QByteArray("O") << 600;
    QTest::newRow("three arrays around objects") << QByteArray("AAA") << QByteArray("O") << 140;
    QTest::newRow("one object around arrays") << QByteArray("O") << QByteArray("A") << 140;
    QTest::newRow("two objects around arrays") << QByteArray("OO") << QByteArray("A") << 140;
    QTest::newRow("arrays and objects by turns") << none << QByteArray("AO") << 600;
    QTest::newRow("objects and arrays by turns") << none << QByteArray("OA") << 140;
    QTest::newRow("two arrays and an object") << none << QByteArray("AAO") << 140;
    QTest::newRow("two objects and an array") << none << QByteArray("OOA") << 140;
    QTest::newRow("later elements") << none << QByteArray("B") << 140;
    QTest::newRow("later members") << none << QByteArray("P") << 140;
    QTest::newRow("later members in an array") << QByteArray("A") << QByteArray("P") << 140;
    QTest::newRow("later members in two arrays") << QByteArray("AA") << QByteArray("P") << 140;
    QTest::newRow("later elements and members by turns") << none << QByteArray("BP") << 140;
    QTest::newRow("arrays that begin with a comma") << none << QByteArray("C") << 140;
    QTest::newRow("objects that begin with a comma") << none << QByteArray("Q") << 140;
    QTest::newRow("after empty containers") << none << QByteArray("D") << 140;
    QTest::newRow("after objects") << none << QByteArray("R") << 140;
    QTest::newRow("everything by turns") << none << QByteArray("ABCDOPQR") << 140;
}

void tst_JsonParser::everyDepthIsRead()
{
    QFETCH(QByteArray, outer);
    QFETCH(QByteArray, inner);
    QFETCH(int, deepest);

    for (int depth = 0; depth < deepest; ++depth) {
        const QByteArray around = lettersOf(outer, inner, depth);
        const bool innerIsObject = levelOf(inner.at(0)).isObject;
        QCOMPARE(failureOfNesting(around, innerIsObject ? "{}" : "[]"), QByteArray());
        if (depth < 140)
            QCOMPARE(failureOfNesting(around, innerIsObject ? "[]" : "{}"), QByteArray());
    }
}

void tst_JsonParser::tenThousandLevelsAreReadAndFreed_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("arrays") << arrays(10000);
    QTest::newRow("objects") << objects(9999);
}

// By the toolkit's own recursion, as whoever uses the tree does it.
void tst_JsonParser::tenThousandLevelsAreReadAndFreed()
{
    QFETCH(QByteArray, text);

    QString error;
    const QVariant tree = parseJson(text, &error);

    QCOMPARE(error, QString());
    QCOMPARE(depthOf(tree), 10000);
}

void tst_JsonParser::deepDocumentsNeedNoStack_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("depth");

    const int deep = 200000;
    const QByteArray openObject = json("{'a':");
    QTest::newRow("a million arrays") << arrays(Million) << "" << Million;
    QTest::newRow("a million objects") << objects(Million - 1) << "" << Million;
    QTest::newRow("arrays left open")
        << QByteArray(deep, '[') << "Expected ']', ',' at line 1 pos 200000" << 0;
    QTest::newRow("objects left open")
        << openObject.repeated(deep) << " at line 1 pos 1000000" << 0;
    QTest::newRow("arrays half closed")
        << arrays(deep).left(deep + deep / 2) << "Expected ']', ',' at line 1 pos 300000" << 0;
    QTest::newRow("after deep arrays") << arrays(deep) + " x"
                                       << "Expected 'end of file' at line 1 pos 400002" << deep;
    QTest::newRow("after deep objects") << objects(50000) + " x"
                                        << "Expected 'end of file' at line 1 pos 300004" << 50001;
    QTest::newRow("after deep arrays in an array") << '[' + arrays(deep) + " x"
                                                   << "Expected ']', ',' at line 1 pos 400003" << 0;
    QTest::newRow("after deep objects in an array") << '[' + objects(50000) + ",]"
                                                    << " at line 1 pos 300005" << 0;
    QTest::newRow("after deep arrays in an object")
        << openObject + arrays(deep) + json(",'b' 1}") << "Expected ':' at line 1 pos 400011" << 0;
}

void tst_JsonParser::deepDocumentsNeedNoStack()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QFETCH(int, depth);

    QString error;
    int treeDepth = -1;
    runOnSmallStack([&] {
        QVariant tree = parseJson(text, &error);
        const VariantTree::Disposer disposer(tree);
        treeDepth = depthOf(tree);
    });

    QCOMPARE(error, message);
    QCOMPARE(treeDepth, depth);
}

void tst_JsonParser::aResultThatIsNotTakenMayBeDeep()
{
    const QByteArray text = arrays(200000);
    bool isRead = false;

    runOnSmallStack([&] {
        JsonLexer lexer(text);
        JsonParser parser;
        isRead = parser.parse(&lexer);
    });

    QVERIFY(isRead);
}

void tst_JsonParser::manyMembersAreRead_data()
{
    QTest::addColumn<int>("factor");

    QTest::newRow("ascending keys") << 1;
    QTest::newRow("descending keys") << -1;
    QTest::newRow("scattered keys") << 7919;
}

void tst_JsonParser::manyMembersAreRead()
{
    QFETCH(int, factor);

    const int count = 100000;
    QByteArray text("{\"k0\":0");
    for (int i = 1; i < count; ++i) {
        const int key = Million + (factor > 0 ? i * factor % count : -i);
        text += ",\"k" + QByteArray::number(key) + "\":" + QByteArray::number(i);
    }
    QString error;
    const QtCompat::MultiMap map = QtCompat::toMultiMap(parseJson(text + '}', &error));

    QCOMPARE(error, QString());
    QCOMPARE(int(map.size()), count);
    for (int i = 1; i < count; i += 997) {
        const int key = Million + (factor > 0 ? i * factor % count : -i);
        QCOMPARE(describe(map.value(QString::fromLatin1("k%1").arg(key))),
                 "int " + QByteArray::number(i));
    }
}

void tst_JsonParser::manyElementsAreRead()
{
    QByteArray text("[0");
    for (int i = 1; i < Million; ++i)
        text += ',' + QByteArray::number(i);
    QString error;
    const QVariantList list = parseJson(text + ']', &error).toList();

    QCOMPARE(error, QString());
    QCOMPARE(int(list.size()), Million);
    for (int i = 0; i < Million; i += 9973)
        QCOMPARE(describe(list.at(i)), "int " + QByteArray::number(i));
}

void tst_JsonParser::threadsDoNotInteract()
{
    QByteArray outcomes[3];
    std::thread first(parseAgainAndAgain, json("{'a':[1,2.5,'x\\n'],'b':{'c':null}}"), outcomes);
    std::thread second(parseAgainAndAgain, json("[true,{'a':1,'a':2},'\\u20ac'"), outcomes + 1);
    std::thread third(parseAgainAndAgain, json("{'a':[1,2.5,'x\\n'],'b':{'c':null}}"),
                      outcomes + 2);
    first.join();
    second.join();
    third.join();

    QCOMPARE(outcomes[0], json("{'a': [int 1, double 2.5, string 'x<a>'], 'b': {'c': invalid}}"));
    QCOMPARE(outcomes[1], QByteArray("invalidExpected ']', ',' at line 1 pos 28"));
    QCOMPARE(outcomes[2], outcomes[0]);
}

NUV_TEST_MAIN(tst_JsonParser)

#include "tst_jsonparser.moc"
