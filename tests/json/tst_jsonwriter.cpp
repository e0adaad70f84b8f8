// SPDX-License-Identifier: MIT
#include "json/jsonwriter.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "tests/json/jsoninput.h"
#include "tests/support/describe.h"
#include "tests/support/smallstackthread.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QDate>
#include <QSize>
#include <QUrl>

#include <limits>

namespace {

// A type without any conversion.
struct Opaque {
    int number;
};

void scalarRow(const char *name, const QVariant &value, const QByteArray &text)
{
    QTest::newRow(name) << value << text;
}

// An integer type that Qt 5 converts to qlonglong. Qt 4 does not, and so nothing is written.
void smallIntegerRow(const char *name, const QVariant &value, const QByteArray &text)
{
    scalarRow(name, value, ToolkitDifferences::isQt4() ? QByteArray() : text);
}

void layoutRow(const char *name, const char *document, const char *indented, const char *compact)
{
    QTest::newRow(name) << json(document) << json(indented) << json(compact);
}

QVariant parsed(const QByteArray &text)
{
    return parseJson(text, nullptr);
}

// What a code unit becomes between the quotes, by plain comparison.
QByteArray escapedUnit(ushort unit)
{
    switch (unit) {
    case 8:
        return "\\b";
    case 12:
        return "\\f";
    case 10:
        return "\\n";
    case 13:
        return "\\r";
    case 9:
        return "\\t";
    case 34:
        return "\\\"";
    case 92:
        return "\\\\";
    }
    if (unit <= 127)
        return QByteArray(1, char(unit));
    return "\\u" + QByteArray::number(unit, 16).rightJustified(4, '0');
}

} // namespace

Q_DECLARE_METATYPE(Opaque)

class tst_JsonWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scalarsAreWrittenLikeThis_data();
    void scalarsAreWrittenLikeThis();
    void rareTypesAreWrittenLikeThis_data();
    void rareTypesAreWrittenLikeThis();
    void doublesAreWrittenAsTheToolkitWritesThem();
    void charactersAreWrittenBare_data();
    void charactersAreWrittenBare();

    void treesAreLaidOutLikeThis_data();
    void treesAreLaidOutLikeThis();
    void stringListsAreArrays();
    void aValueOfNoTextLeavesItsPlaceEmpty();
    void mapsOfCallersAreObjects();
    void equalKeysAreAllWritten();
    void indentationIsAsAsked_data();
    void indentationIsAsAsked();

    void textsAreEscapedLikeThis_data();
    void textsAreEscapedLikeThis();
    void everyCodeUnitIsEscapedByItsRule();
    void eightUnitsAreEscapedAsOne();
    void longTextsAreEscapedAtEachOffset();
    void whatIsEscapedIsTheTextOfTheValue_data();
    void whatIsEscapedIsTheTextOfTheValue();
    void byteArraysAreTextAsTheToolkitReadsIt_data();
    void byteArraysAreTextAsTheToolkitReadsIt();
    void theCodecForCStringsDoesNotWrite();
    void outputIsAscii();

    void whatIsWrittenReadsBack_data();
    void whatIsWrittenReadsBack();
    void deepTreesNeedNoStack();
    void wideTreesAreWritten();
    void theRoomIsHalfOfTheTextAtMost();
    void spacesMayComeWhereTheRoomEnds();
    void anythingMayComeWhereTheRoomEnds_data();
    void anythingMayComeWhereTheRoomEnds();
    void theTreeIsNotChanged();
};

void tst_JsonWriter::scalarsAreWrittenLikeThis_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("text");

    scalarRow("invalid", QVariant(), "null");
    scalarRow("true", true, "true");
    scalarRow("false", false, "false");
    scalarRow("zero", 0, "0");
    scalarRow("int", -42, "-42");
    scalarRow("largest int", std::numeric_limits<int>::max(), "2147483647");
    scalarRow("smallest int", std::numeric_limits<int>::min(), "-2147483648");
    scalarRow("largest uint", std::numeric_limits<uint>::max(), "4294967295");
    scalarRow("largest qlonglong", std::numeric_limits<qlonglong>::max(), "9223372036854775807");
    scalarRow("smallest qlonglong", std::numeric_limits<qlonglong>::min(), "-9223372036854775808");
    scalarRow("largest qulonglong", std::numeric_limits<qulonglong>::max(), "18446744073709551615");
    scalarRow("0.1", 0.1, "0.1");
    scalarRow("3.0", 3.0, "3");
    scalarRow("-2.5", -2.5, "-2.5");
    scalarRow("15 digits", 123456789012345.0, "123456789012345");
    scalarRow("16 digits", 1234567890123456.0, "1.23456789012346e+15");
    scalarRow("large", 1e20, "1e+20");
    scalarRow("small", 0.00001, "1e-05");
    scalarRow("third", 1.0 / 3, "0.333333333333333");
    scalarRow("float", 0.5f, "0.5");
    scalarRow("float that is no short decimal", 0.1f, "0.100000001490116");
    scalarRow("string", QLatin1String("text"), "\"text\"");
    scalarRow("empty string", QLatin1String(""), "\"\"");
    scalarRow("null string", QString(), "\"\"");
    scalarRow("string with a quote and a tab", QLatin1String("a\"\tb"), "\"a\\\"\\tb\"");
    scalarRow("e acute", QString(QChar(0xe9)), "\"\\u00e9\"");
    scalarRow("byte array", QByteArray("a\\b"), "\"a\\\\b\"");
    scalarRow("empty byte array", QByteArray(""), "\"\"");
}

void tst_JsonWriter::scalarsAreWrittenLikeThis()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, text);

    QCOMPARE(JsonWriter::serialize(value, 4, 0), text);
    QCOMPARE(JsonWriter::serialize(value, 4, 8), text);
    QCOMPARE(JsonWriter::serializeCompact(value), text);
}

// The types that no parser makes; the words for what is no finite number do not read back.
void tst_JsonWriter::rareTypesAreWrittenLikeThis_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("text");

    scalarRow("infinity", std::numeric_limits<double>::infinity(), "inf");
    scalarRow("minus infinity", -std::numeric_limits<double>::infinity(), "-inf");
    scalarRow("not a number", std::numeric_limits<double>::quiet_NaN(), "nan");
    smallIntegerRow("short", QVariant::fromValue<short>(-5), "-5");
    smallIntegerRow("unsigned short", QVariant::fromValue<ushort>(65535), "65535");
    smallIntegerRow("long", QVariant::fromValue<long>(-70000), "-70000");
    smallIntegerRow("unsigned long", QVariant::fromValue<ulong>(70000), "70000");
    smallIntegerRow("unsigned char", QVariant::fromValue<uchar>(200), "200");
    smallIntegerRow("char", QVariant::fromValue<char>('A'), "65");
    scalarRow("date", QDate(2024, 2, 29), "\"2024-02-29\"");
    scalarRow("time", QTime(23, 59, 1),
              ToolkitDifferences::either("\"23:59:01\"", "\"23:59:01.000\""));
    scalarRow("date and time", QDateTime(QDate(2024, 2, 29), QTime(23, 59, 1)),
              ToolkitDifferences::either("\"2024-02-29T23:59:01\"", "\"2024-02-29T23:59:01.000\""));
    scalarRow("address", QUrl(QLatin1String("http://host/a?b=c")), "\"http://host/a?b=c\"");
    scalarRow("size", QSize(1, 2), "");
    scalarRow("hash", QVariantHash(), "");
    scalarRow("own type", QVariant::fromValue(Opaque()), "");
}

void tst_JsonWriter::rareTypesAreWrittenLikeThis()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, text);

    QCOMPARE(JsonWriter::serialize(value, 4, 0), text);
    QCOMPARE(JsonWriter::serializeCompact(value), text);
}

void tst_JsonWriter::doublesAreWrittenAsTheToolkitWritesThem()
{
    Random random(50);
    for (int i = 0; i < 20000; ++i) {
        const QByteArray digits = random.bytes("0123456789", 1 + random.below(18));
        const QByteArray exponent = QByteArray::number(random.below(40) - 30);
        const double value = ("-" + digits + "e" + exponent).toDouble();
        const QByteArray expected = QString::number(value, 'g', 15).toUtf8();
        QCOMPARE(JsonWriter::serialize(value, 4, 0), expected);
        QCOMPARE(JsonWriter::serializeCompact(value), expected);
    }
}

void tst_JsonWriter::charactersAreWrittenBare_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("letter") << int('A') << QByteArray("A");
    QTest::newRow("quote") << int('"') << QByteArray("\"");
    QTest::newRow("backslash") << int('\\') << QByteArray("\\");
    QTest::newRow("line feed") << 10 << QByteArray("\n");
    QTest::newRow("zero") << 0 << QByteArray(1, '\0');
    QTest::newRow("127") << 127 << QByteArray("\x7f");
    QTest::newRow("128") << 128 << QByteArray("\\u0080");
    QTest::newRow("e acute") << 0xe9 << QByteArray("\\u00e9");
    QTest::newRow("euro sign") << 0x20ac << QByteArray("\\u20ac");
    QTest::newRow("last unit") << 0xffff << QByteArray("\\uffff");
}

void tst_JsonWriter::charactersAreWrittenBare()
{
    QFETCH(int, code);
    QFETCH(QByteArray, text);

    const QVariant value = QChar(ushort(code));

    QCOMPARE(JsonWriter::serialize(value, 4, 0), text);
    QCOMPARE(JsonWriter::serializeCompact(value), text);
    QCOMPARE(JsonWriter::serializeCompact(QVariantList() << value), '[' + text + ']');
}

void tst_JsonWriter::treesAreLaidOutLikeThis_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("indented");
    QTest::addColumn<QByteArray>("compact");

    layoutRow(
        "everything", "{'a':1,'b':[true,{'c':'x'}],'d':{}}",
        "{\n    'a':1,\n    'b':\n    [\n        true,\n        {\n            'c':'x'\n        }\n"
        "    ],\n    'd':\n    {\n\n    }\n}",
        "{'a':1,'b':[true,{'c':'x'}],'d':{}}");
    layoutRow("empty object", "{}", "{\n\n}", "{}");
    layoutRow("empty array", "[]", "[\n\n]", "[]");
    layoutRow("key with an empty array", "{'k':[]}", "{\n    'k':\n    [\n\n    ]\n}", "{'k':[]}");
    layoutRow("null member", "{'k':null}", "{\n    'k':null\n}", "{'k':null}");
    layoutRow("sorted keys", "{'b':2,'a':1,'B':3}", "{\n    'B':3,\n    'a':1,\n    'b':2\n}",
              "{'B':3,'a':1,'b':2}");
    layoutRow("scalars in an array", "[1,null,'x']", "[\n    1,\n    null,\n    'x'\n]",
              "[1,null,'x']");
    layoutRow("arrays in an array", "[[],[1]]", "[\n    [\n\n    ],\n    [\n        1\n    ]\n]",
              "[[],[1]]");
    layoutRow("objects in an array", "[{'a':1},{}]",
              "[\n    {\n        'a':1\n    },\n    {\n\n    }\n]", "[{'a':1},{}]");
    layoutRow("scalar after a container", "[[],1]", "[\n    [\n\n    ],\n    1\n]", "[[],1]");
    layoutRow("key with a quote", "{'a\\'b':1}", "{\n    'a\\'b':1\n}", "{'a\\'b':1}");
    layoutRow("key above 127", "{'\\u00e9':'\\ud83d\\ude00'}",
              "{\n    '\\u00e9':'\\ud83d\\ude00'\n}", "{'\\u00e9':'\\ud83d\\ude00'}");
    layoutRow("empty key", "{'':''}", "{\n    '':''\n}", "{'':''}");
}

void tst_JsonWriter::treesAreLaidOutLikeThis()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, indented);
    QFETCH(QByteArray, compact);

    const QVariant tree = parsed(document);

    QCOMPARE(JsonWriter::serialize(tree, 4, 0), indented);
    QCOMPARE(JsonWriter::serializeCompact(tree), compact);
}

void tst_JsonWriter::stringListsAreArrays()
{
    const QStringList list = QStringList() << QLatin1String("a") << QLatin1String("b\n");
    QVariantMap map;
    map.insert(QLatin1String("k"), list);
    map.insert(QLatin1String("l"), QVariantList() << QVariant(QStringList()));

    QCOMPARE(JsonWriter::serialize(list, 4, 0), json("[\n    'a',\n    'b\\n'\n]"));
    QCOMPARE(JsonWriter::serializeCompact(list), json("['a','b\\n']"));
    QCOMPARE(JsonWriter::serialize(map, 4, 0),
             json("{\n    'k':\n    [\n        'a',\n        'b\\n'\n    ],\n    'l':\n    [\n"
                  "        [\n\n        ]\n    ]\n}"));
    QCOMPARE(JsonWriter::serializeCompact(map), json("{'k':['a','b\\n'],'l':[[]]}"));
}

void tst_JsonWriter::aValueOfNoTextLeavesItsPlaceEmpty()
{
    QVariantMap map;
    map.insert(QLatin1String("a"), QSize(1, 2));
    map.insert(QLatin1String("b"), QVariantList() << QSize(1, 2) << 1);

    QCOMPARE(JsonWriter::serializeCompact(map), json("{'a':,'b':[,1]}"));
    QCOMPARE(JsonWriter::serialize(map, 2, 0),
             json("{\n  'a':,\n  'b':\n  [\n    ,\n    1\n  ]\n}"));
}

// A launcher's own, inside of each other and of lists, as QSettings::setValue() takes them.
void tst_JsonWriter::mapsOfCallersAreObjects()
{
    QVariantMap inner;
    inner.insert(QLatin1String("b"), QVariantMap());
    inner.insert(QLatin1String("a"), 1);
    QVariantMap map;
    map.insert(QLatin1String("k"), inner);
    map.insert(QLatin1String("l"), QVariantList() << QVariant(inner));

    QCOMPARE(JsonWriter::serializeCompact(map), json("{'k':{'a':1,'b':{}},'l':[{'a':1,'b':{}}]}"));
    QCOMPARE(JsonWriter::serialize(map.value(QLatin1String("k")), 1, 0),
             json("{\n 'a':1,\n 'b':\n {\n\n }\n}"));
}

void tst_JsonWriter::equalKeysAreAllWritten()
{
    QtCompat::MultiMap entries;
    QtCompat::insertMulti(entries, QLatin1String("k")) = 1;
    QtCompat::insertMulti(entries, QLatin1String("k")) = 2;
    QtCompat::insertMulti(entries, QLatin1String("a")) = 3;
    const QVariant map = QtCompat::toVariant(entries);

    QCOMPARE(JsonWriter::serializeCompact(map), json("{'a':3,'k':2,'k':1}"));
    QCOMPARE(JsonWriter::serialize(map, 1, 0), json("{\n 'a':3,\n 'k':2,\n 'k':1\n}"));
}

void tst_JsonWriter::indentationIsAsAsked_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("indentation");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("four") << 4 << 0 << json("{\n    'a':\n    [\n        1\n    ]\n}");
    QTest::newRow("one") << 1 << 0 << json("{\n 'a':\n [\n  1\n ]\n}");
    QTest::newRow("none") << 0 << 0 << json("{\n'a':\n[\n1\n]\n}");
    QTest::newRow("starting at three")
        << 2 << 3 << json("   {\n     'a':\n     [\n       1\n     ]\n   }");
    const QByteArray far(1000, ' ');
    QTest::newRow("starting at a thousand")
        << 0 << 1000
        << far + "{\n" + far + "\"a\":\n" + far + "[\n" + far + "1\n" + far + "]\n" + far + '}';
    QTest::newRow("a thousand") << 1000 << 0
                                << "{\n" + far + "\"a\":\n" + far + "[\n" + far + far + "1\n" + far
            + "]\n}";
    QTest::newRow("less than none") << -2 << 0 << json("{\n'a':\n[\n1\n]\n}");
    QTest::newRow("less than none, starting at five")
        << -2 << 5 << json("     {\n   'a':\n   [\n 1\n   ]\n     }");
    QTest::newRow("starting at less than none") << 4 << -6 << json("{\n'a':\n[\n  1\n]\n}");
    QTest::newRow("none, starting at one") << 0 << 1 << json(" {\n 'a':\n [\n 1\n ]\n }");
}

void tst_JsonWriter::indentationIsAsAsked()
{
    QFETCH(int, step);
    QFETCH(int, indentation);
    QFETCH(QByteArray, text);

    QCOMPARE(JsonWriter::serialize(parsed("{\"a\":[1]}"), step, indentation), text);
}

void tst_JsonWriter::textsAreEscapedLikeThis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("escaped");

    QTest::newRow("empty") << QString() << QByteArray("");
    QTest::newRow("plain") << "a b/c" << QByteArray("a b/c");
    QTest::newRow("backspace") << "\b" << QByteArray("\\b");
    QTest::newRow("form feed") << "\f" << QByteArray("\\f");
    QTest::newRow("line feed") << "\n" << QByteArray("\\n");
    QTest::newRow("carriage return") << "\r" << QByteArray("\\r");
    QTest::newRow("tab") << "\t" << QByteArray("\\t");
    QTest::newRow("quote") << "\"" << QByteArray("\\\"");
    QTest::newRow("backslash") << "\\" << QByteArray("\\\\");
    QTest::newRow("raw control character") << "\x01" << QByteArray("\x01");
    QTest::newRow("raw vertical tab") << "\v" << QByteArray("\v");
    QTest::newRow("raw 127") << "\x7f" << QByteArray("\x7f");
    QTest::newRow("raw zero") << QString(QChar(0)) << QByteArray(1, '\0');
    QTest::newRow("128") << QString(QChar(0x80)) << QByteArray("\\u0080");
    QTest::newRow("e acute") << QString(QChar(0xe9)) << QByteArray("\\u00e9");
    QTest::newRow("lower-case digits") << QString(QChar(0xabcd)) << QByteArray("\\uabcd");
    QTest::newRow("above the basic plane")
        << QString::fromUtf8("\xf0\x9f\x98\x80") << QByteArray("\\ud83d\\ude00");
    QTest::newRow("half a pair") << QString(QChar(0xd83d)) << QByteArray("\\ud83d");
}

void tst_JsonWriter::textsAreEscapedLikeThis()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, escaped);

    QCOMPARE(JsonWriter::escapeString(text), escaped);
    QCOMPARE(JsonWriter::serialize(text, 4, 0), '"' + escaped + '"');
}

void tst_JsonWriter::everyCodeUnitIsEscapedByItsRule()
{
    for (int code = 0; code < 65536; ++code) {
        const ushort unit = ushort(code);
        QCOMPARE(JsonWriter::escapeString(QString(QChar(unit))), escapedUnit(unit));
    }
}

// Eight units are looked at together; nothing may depend on which they are.
void tst_JsonWriter::eightUnitsAreEscapedAsOne()
{
    const ushort fillings[] = { ' ', 'x', '~', '"', '\\', 0xe9 };
    for (ushort filling : fillings) {
        for (ushort unit = 0; unit < 0x200; ++unit) {
            for (int place = 0; place < 8; ++place) {
                QString text(8, QChar(filling));
                QByteArray expected;
                text[place] = QChar(unit);
                for (int i = 0; i < 8; ++i)
                    expected += escapedUnit(text.at(i).unicode());
                QCOMPARE(JsonWriter::escapeString(text), expected);
            }
        }
    }
}

// Long strings are escaped in pieces; nothing may depend on where a piece ends.
void tst_JsonWriter::longTextsAreEscapedAtEachOffset()
{
    for (int offset = 0; offset < 140; ++offset) {
        QString text(200, QLatin1Char('x'));
        text[offset] = QLatin1Char('\n');
        text[offset + 1] = QChar(0x20ac);
        const QByteArray expected =
            QByteArray(offset, 'x') + "\\n\\u20ac" + QByteArray(198 - offset, 'x');
        QCOMPARE(JsonWriter::escapeString(text), expected);
        QCOMPARE(JsonWriter::escapeString(text.left(offset + 2)), expected.left(offset + 8));
        QCOMPARE(JsonWriter::escapeString(QString(offset, QChar(0xe9))),
                 QByteArray("\\u00e9").repeated(offset));
    }
}

void tst_JsonWriter::whatIsEscapedIsTheTextOfTheValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("text");

    scalarRow("invalid", QVariant(), "");
    scalarRow("int", 42, "42");
    scalarRow("bool", true, "true");
    scalarRow("byte array", QByteArray("a\"b"), "a\\\"b");
    scalarRow("map", QVariantMap(), "");
    // Qt 4 writes a double with 15 digits, Qt 5 with as few as lead back to it.
    scalarRow("0.5", 0.5, "0.5");
    scalarRow("a million", 1000000.0, ToolkitDifferences::either("1000000", "1e+06"));
    scalarRow("0.1 + 0.2", 0.1 + 0.2, ToolkitDifferences::either("0.3", "0.30000000000000004"));
    scalarRow("float", 0.1f, ToolkitDifferences::either("0.1", "0.10000000149011612"));
}

void tst_JsonWriter::whatIsEscapedIsTheTextOfTheValue()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, text);

    QCOMPARE(JsonWriter::escapeString(value), text);
}

// Latin-1 to Qt 4, or the codec for C strings; UTF-8 to Qt 5 and 6. To all but Qt 6 they end at a NUL.
void tst_JsonWriter::byteArraysAreTextAsTheToolkitReadsIt_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("textWithQt4");
    QTest::addColumn<QByteArray>("textWithQt5");

    const QByteArray none;
    QTest::newRow("ASCII") << none << QByteArray("a") << json("'a'") << json("'a'");
    QTest::newRow("UTF-8") << none << QByteArray("\xc3\xa9") << json("'\\u00c3\\u00a9'")
                           << json("'\\u00e9'");
    QTest::newRow("Latin-1") << none << QByteArray("\xe9") << json("'\\u00e9'")
                             << json("'\\ufffd'");
    QTest::newRow("UTF-8, with its codec")
        << QByteArray("UTF-8") << QByteArray("\xc3\xa9") << json("'\\u00e9'") << json("'\\u00e9'");
    QTest::newRow("another codec")
        << QByteArray("KOI8-R") << QByteArray("\xc1") << json("'\\u0430'") << json("'\\ufffd'");
    QTest::newRow("NUL") << none << QByteArray("a\0b", 3) << json("'a'")
                         << ToolkitDifferences::either(json("'a'"), json("'a'"),
                                                       QByteArray("\"a\0b\"", 5));
}

void tst_JsonWriter::byteArraysAreTextAsTheToolkitReadsIt()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, textWithQt4);
    QFETCH(QByteArray, textWithQt5);

    const ToolkitDifferences::CodecForCStrings installed(codec.constData());

    QCOMPARE(JsonWriter::serializeCompact(bytes),
             ToolkitDifferences::either(textWithQt4, textWithQt5));
}

void tst_JsonWriter::theCodecForCStringsDoesNotWrite()
{
    QVariantMap map;
    map.insert(QString(QChar(0x430)), QString(QChar(0xe9)));
    map.insert(QLatin1String("a"), QVariantList() << 1 << -0.5 << true << QVariant());

    const ToolkitDifferences::CodecForCStrings installed(
        ToolkitDifferences::MovingCodec::instance());

    QCOMPARE(JsonWriter::serializeCompact(map),
             json("{'a':[1,-0.5,true,null],'\\u0430':'\\u00e9'}"));
    QCOMPARE(JsonWriter::serialize(QVariantList() << QLatin1String("b\n"), 4, 0),
             json("[\n    'b\\n'\n]"));
}

void tst_JsonWriter::outputIsAscii()
{
    QVariantMap map;
    QString text;
    for (int code = 1; code < 0x3000; code += 5) {
        text += QChar(ushort(code));
        map.insert(text.right(3), text.right(20));
    }
    const QByteArray written = JsonWriter::serialize(map, 4, 0);
    for (int i = 0; i < written.size(); ++i)
        QVERIFY(static_cast<uchar>(written.at(i)) < 128);
}

void tst_JsonWriter::whatIsWrittenReadsBack_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("scalars") << json("[1,-2147483649,0.1,1e+20,true,false,null,'']");
    QTest::newRow("nested") << json("{'a':{'b':[[],{},[{'c':[1]}]]},'':null}");
    QTest::newRow("escapes") << json("{'\\u20ac\\n':'\\b\\f\\n\\r\\t\\'\\\\/\x01\x7f\\u0100'}");
    QTest::newRow("latin-1") << json("['\\u00e9\\u00ff']");
}

void tst_JsonWriter::whatIsWrittenReadsBack()
{
    QFETCH(QByteArray, document);

    const QVariant tree = parsed(document);
    QVERIFY(tree.isValid());

    QCOMPARE(describe(parsed(JsonWriter::serialize(tree, 4, 0))), describe(tree));
    QCOMPARE(describe(parsed(JsonWriter::serializeCompact(tree))), describe(tree));
}

void tst_JsonWriter::deepTreesNeedNoStack()
{
    const int depth = 100000;
    const QByteArray text = json("[{'a':").repeated(depth) + "0" + QByteArray("}]").repeated(depth);
    QByteArray compact;
    QByteArray indented;
    runOnSmallStack([&] {
        QVariant tree = parsed(text);
        const VariantTree::Disposer disposer(tree);
        compact = JsonWriter::serializeCompact(tree);
        indented = JsonWriter::serialize(tree, 0, 0);
    });

    const QByteArray expected = json("[\n{\n'a':\n").repeated(depth - 1) + json("[\n{\n'a':0")
        + QByteArray("\n}\n]").repeated(depth);
    QVERIFY(compact == text);
    QVERIFY(indented == expected);
}

void tst_JsonWriter::wideTreesAreWritten()
{
    QVariantList list;
    QVariantMap map;
    QByteArray elements;
    QByteArray members;
    for (int i = 100000; i < 200000; ++i) {
        const QByteArray number = QByteArray::number(i);
        list += i;
        map.insert(QString::fromLatin1(number), i);
        elements += ',' + number;
        members += ",\"" + number + "\":" + number;
    }

    QVERIFY(JsonWriter::serializeCompact(list) == '[' + elements.mid(1) + ']');
    QVERIFY(JsonWriter::serializeCompact(map) == '{' + members.mid(1) + '}');
}

void tst_JsonWriter::theRoomIsHalfOfTheTextAtMost()
{
    for (int depth = 1; depth < 20000; depth += depth / 3 + 1) {
        const QByteArray brackets = QByteArray(depth, '[') + QByteArray(depth, ']');
        QVariant tree = parsed(brackets);
        const VariantTree::Disposer disposer(tree);
        const QByteArray text = JsonWriter::serializeCompact(tree);
        QVERIFY2(text == brackets, QByteArray::number(depth).constData());
        QVERIFY2(text.capacity() <= qMax(240, text.size() + text.size() / 2),
                 QByteArray::number(text.capacity()).constData());
    }
}

void tst_JsonWriter::spacesMayComeWhereTheRoomEnds()
{
    for (int indentation = 0; indentation <= 1000; ++indentation) {
        const QByteArray spaces(indentation, ' ');
        QCOMPARE(JsonWriter::serialize(QVariantList() << true, 0, indentation),
                 spaces + "[\n" + spaces + "true\n" + spaces + ']');
    }
}

void tst_JsonWriter::anythingMayComeWhereTheRoomEnds_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("compact");
    QTest::addColumn<QByteArray>("indented");

    const auto add = [](const char *name, const QVariant &value, const QByteArray &written) {
        QTest::newRow(name) << value << written << written;
    };
    const QChar wide(0x100);
    add("the longest escapes of a piece", QString(32, wide),
        '"' + QByteArray("\\u0100").repeated(32) + '"');
    add("the longest escapes of more than a piece", QString(33, wide),
        '"' + QByteArray("\\u0100").repeated(33) + '"');
    add("the longest escapes of two pieces", QString(64, wide),
        '"' + QByteArray("\\u0100").repeated(64) + '"');
    add("the longest integer", qlonglong(Q_INT64_C(-9223372036854775807) - 1),
        "-9223372036854775808");
    add("a double with decimals", -1234567.125, "-1234567.125");
    add("the longest keyword", false, "false");
    add("a character", wide, "\\u0100");
    QTest::newRow("an empty object")
        << QVariant(QVariantMap()) << QByteArray("{}") << QByteArray("{\n\n         }");
}

// The room grows when it is used up, wherever that is. What is written after it is seen by a sanitizer,
// and by the allocator when it gets the room back.
void tst_JsonWriter::anythingMayComeWhereTheRoomEnds()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, compact);
    QFETCH(QByteArray, indented);
    for (int size = 0; size <= 800; ++size) {
        const QVariantList list = QVariantList() << QString(size, QLatin1Char('x')) << value;
        const QByteArray text = '"' + QByteArray(size, 'x') + '"';

        QCOMPARE(JsonWriter::serializeCompact(list), '[' + text + ',' + compact + ']');
        QCOMPARE(JsonWriter::serialize(list, 9, 0),
                 "[\n         " + text + ",\n         " + indented + "\n]");
    }
}

void tst_JsonWriter::theTreeIsNotChanged()
{
    const QByteArray document = json("{'a':[1,{'b':'x'}],'c':null}");
    const QVariant tree = parsed(document);
    const QByteArray before = describe(tree);

    JsonWriter::serialize(tree, 4, 0);
    JsonWriter::serializeCompact(tree);

    QCOMPARE(describe(tree), before);
}

NUV_TEST_MAIN(tst_JsonWriter)

#include "tst_jsonwriter.moc"
