// SPDX-License-Identifier: MIT
#include "json/jsonlexer.h"

#include "global/qtcompat.h"
#include "tests/json/jsoninput.h"
#include "tests/support/describe.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <limits>

namespace {

// What the lexer makes of a document: its tokens, each with its value if it has one, up to the first
// end or error, and the line and position that it has then.
struct Scan {
    QByteArray tokens;
    int line;
    int position;
};

Scan scan(const QByteArray &text)
{
    const ExactBlock block(text);
    JsonLexer lexer(block.bytes());
    Scan result = { QByteArray(), 0, 0 };
    int token;
    do {
        token = lexer.nextToken();
        result.tokens += result.tokens.isEmpty() ? "" : " ";
        if (lexer.value().isValid())
            result.tokens += describe(lexer.value());
        else
            result.tokens += JsonGrammar::spell[token];
    } while (token != T_END_OF_FILE && token != T_ERROR);
    result.line = lexer.line();
    result.position = lexer.pos();
    return result;
}

void row(const char *name, const QByteArray &text, const char *tokens, int position)
{
    QTest::newRow(name) << text << json(tokens) << position;
}

// The conversion of a number's text as it is documented, without any shortcut.
QVariant numberValue(const QByteArray &text)
{
    const bool isFloating = text.contains('.') || text.contains('e') || text.contains('E');
    bool ok = false;
    if (!isFloating) {
        const int value = text.toInt(&ok);
        if (ok)
            return value;
        const qlonglong longValue = text.toLongLong(&ok);
        if (ok)
            return longValue;
    }
    return QtCompat::toDouble(text);
}

// What a string reads as, byte by byte as it is documented, without any shortcut.
struct PlainString {
    int token;
    QString text;
    int position;
};

uint lowByte(const QByteArray &pair)
{
    return uint(pair.toInt(nullptr, 16)) & 0xffu;
}

QChar escaped(char letter)
{
    static const char letters[] = "bfnrt";
    static const char meanings[] = "\b\f\n\r\t";
    const char *const found = letter ? std::strchr(letters, letter) : nullptr;
    return found ? QChar(ushort(meanings[found - letters])) : QtCompat::charFromAscii(letter);
}

PlainString readPlainly(const QByteArray &data)
{
    PlainString result = { T_ERROR, QString(), int(data.size()) };
    bool isEscaped = false;
    for (int i = 1; i < data.size(); ++i) {
        const char c = data.at(i);
        if (isEscaped && c == 'u' && i + 4 < data.size() - 1) {
            result.text +=
                QChar(ushort(lowByte(data.mid(i + 1, 2)) << 8 | lowByte(data.mid(i + 3, 2))));
            isEscaped = false;
            i += 4;
        } else if (isEscaped) {
            result.text += escaped(c);
            isEscaped = false;
        } else if (c == '\\') {
            isEscaped = true;
        } else if (c == '"') {
            result.token = T_STRING;
            result.position = i + 1;
            return result;
        } else {
            result.text += QtCompat::charFromAscii(c);
        }
    }
    return result;
}

// Empty when the lexer reads the string at the start of `text` as readPlainly() does.
QByteArray differenceFromPlainReading(const QByteArray &text)
{
    const PlainString expected = readPlainly(text);
    const ExactBlock block(text);
    JsonLexer lexer(block.bytes());
    const int token = lexer.nextToken();
    const QVariant value = expected.token == T_STRING ? QVariant(expected.text) : QVariant();
    if (token == expected.token && lexer.pos() == expected.position && lexer.line() == 1
        && lexer.value().userType() == value.userType()
        && lexer.value().toString() == value.toString())
        return QByteArray();
    return text.toHex() + " read as " + describe(lexer.value()) + " to "
        + QByteArray::number(lexer.pos());
}

bool isSameNumber(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() != QMetaType::Double)
        return a == b;
    const double first = a.toDouble();
    const double second = b.toDouble();
    return std::memcmp(&first, &second, sizeof first) == 0;
}

// Empty when the lexer reads `text` as one number with the documented value, wherever it ends.
QByteArray differenceFromPlainNumber(const QByteArray &text, const QByteArray &after)
{
    const ExactBlock block(text + after);
    JsonLexer lexer(block.bytes());
    const int token = lexer.nextToken();
    if (token == T_NUMBER && lexer.pos() == text.size()
        && isSameNumber(lexer.value(), numberValue(text)))
        return QByteArray();
    return text + " in front of '" + after + "' read as " + describe(lexer.value());
}

QByteArray randomNumber(Random &random)
{
    const QByteArray digits("0123456789");
    const QByteArray all = random.below(2) ? "00001234567899.5" : "00123456789+-.eE";
    QByteArray text(1, random.oneOf("+--0123456789"));
    const int length = random.below(25);
    while (text.size() <= length)
        text += random.oneOf(random.below(4) ? digits : all);
    return text;
}

// The token that a byte begins, by plain comparison.
int tokenOf(int byte)
{
    static const char single[] = "{}[]:,";
    const char *const found = byte ? std::strchr(single, byte) : nullptr;
    if (found)
        return T_LBRACE + int(found - single);
    if (byte == '+' || byte == '-' || (byte >= '0' && byte <= '9'))
        return T_NUMBER;
    const bool isBlank = byte == 9 || byte == 10 || byte == 13 || byte == 32 || byte == 'b';
    return isBlank ? T_END_OF_FILE : T_ERROR;
}

// How many bytes of a string of one byte are passed.
int positionBehind(int byte)
{
    const bool isWordOrString = (byte >= 'a' && byte <= 'z') || byte == '"';
    return tokenOf(byte) != T_ERROR || isWordOrString ? 1 : 0;
}

} // namespace

class tst_JsonLexer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsOnLineOneWithoutAValue();
    void textsBecomeTheseTokens_data();
    void textsBecomeTheseTokens();
    void numbersGetTheseValues_data();
    void numbersGetTheseValues();
    void stringsGetTheseValues_data();
    void stringsGetTheseValues();
    void brokenStringsEndTheInput_data();
    void brokenStringsEndTheInput();
    void onlyLineFeedsBetweenTokensCountAsLines_data();
    void onlyLineFeedsBetweenTokensCountAsLines();

    void everyByteBeginsWhatItShould();
    void everyByteMayStandInAString();
    void everyByteMayFollowABackslash();
    void everyPairIsReadAsTheToolkitReadsIt();
    void numbersEqualThePlainConversion_data();
    void numbersEqualThePlainConversion();
    void stringsEqualThePlainReading_data();
    void stringsEqualThePlainReading();
    void stringsOfEveryLengthEndAtTheirQuote();
    void theCodecForCStringsReadsTheBytes_data();
    void theCodecForCStringsReadsTheBytes();
    void theCodecForCStringsSeesOneByteAtATime();
    void keysThatLookAlikeStayApart();
    void keysThatDifferInOneByteStayApart();

    void aValueIsGoneWithTheNextToken();
    void aValueCanBeTaken();
    void theEndStaysTheEnd();
    void theInputIsNotChanged();
};

void tst_JsonLexer::startsOnLineOneWithoutAValue()
{
    const JsonLexer lexer("1");

    QCOMPARE(lexer.line(), 1);
    QCOMPARE(lexer.pos(), 0);
    QVERIFY(!lexer.value().isValid());
}

void tst_JsonLexer::textsBecomeTheseTokens_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("tokens");
    QTest::addColumn<int>("position");

    row("empty", "", "end of file", 0);
    row("blanks only", "\t\r b\n", "end of file", 5);
    row("brace open", "{", "{ end of file", 1);
    row("brace closed", "}", "} end of file", 1);
    row("bracket open", "[", "[ end of file", 1);
    row("bracket closed", "]", "] end of file", 1);
    row("colon", ":", ": end of file", 1);
    row("comma", ",", ", end of file", 1);
    row("false", "false", "false end of file", 5);
    row("true", "true", "true end of file", 4);
    row("null", "null", "null end of file", 4);
    row("string", "\"a\"", "string 'a' end of file", 3);
    row("number", "42", "int 42 end of file", 2);
    row("all without blanks", json("{'a':[1,true,false,null,-2.5]}"),
        "{ string 'a' : [ int 1 , true , false , null , double -2.5 ] } end of file", 30);
    row("all with blanks", json(" { 'a'\t:\r[ 1\n, true ] } "),
        "{ string 'a' : [ int 1 , true ] } end of file", 24);

    row("b in front of a number", "[b1]", "[ int 1 ] end of file", 4);
    row("b in front of null", "bnull", "null end of file", 5);
    row("b in front of true", "bbtrue", "true end of file", 6);
    row("b alone", "b", "end of file", 1);
    row("b between numbers", "1b2", "int 1 int 2 end of file", 3);
    row("b around a string", json("b'b'b"), "string 'b' end of file", 5);
    row("b after true", "trueb", "error", 5);
    row("b after null", "nullb", "error", 5);
    row("b inside null", "nubll", "error", 5);
    row("capital B", "B", "error", 0);

    row("True", "True", "error", 0);
    row("NULL", "NULL", "error", 0);
    row("tRUE", "tRUE", "error", 1);
    row("nul", "nul", "error", 3);
    row("nulls", "nulls", "error", 5);
    row("fals", "fals", "error", 4);
    row("falsy", "falsy", "error", 5);
    row("true twice", "truetrue", "error", 8);
    row("true and a number", "true1", "true int 1 end of file", 5);
    row("null and a bracket", "null]", "null ] end of file", 5);
    row("e alone", "e", "error", 1);
    row("any word", "[hello", "[ error", 6);
    row("hexadecimal number", "0x10", "int 0 error", 2);

    row("slash", " /", "error", 1);
    row("comment", "1 // one", "int 1 error", 2);
    row("hash", "#", "error", 0);
    row("form feed", "[\f", "[ error", 1);
    row("vertical tab", "1\v", "int 1 error", 1);
    row("NUL", QByteArray("[\0]", 3), "[ error", 1);
    row("single quote", "'a'", "error", 0);
    row("point", ".5", "error", 0);
    row("byte-order mark", "\xef\xbb\xbf{}", "error", 0);
    row("byte 255", "1,\xff", "int 1 , error", 2);
}

void tst_JsonLexer::textsBecomeTheseTokens()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, tokens);
    QFETCH(int, position);

    const Scan result = scan(text);

    QCOMPARE(result.tokens, tokens);
    QCOMPARE(result.position, position);
}

void tst_JsonLexer::numbersGetTheseValues_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("42") << QByteArray("42") << QVariant(42);
    QTest::newRow("-7") << QByteArray("-7") << QVariant(-7);
    QTest::newRow("+5") << QByteArray("+5") << QVariant(5);
    QTest::newRow("-0") << QByteArray("-0") << QVariant(0);
    QTest::newRow("leading zeros") << QByteArray("007") << QVariant(7);
    QTest::newRow("nine digits") << QByteArray("-999999999") << QVariant(-999999999);
    QTest::newRow("ten digits") << QByteArray("1000000000") << QVariant(1000000000);
    QTest::newRow("many zeros") << QByteArray("000000000000000000000000012") << QVariant(12);
    QTest::newRow("largest int") << QByteArray("2147483647") << QVariant(2147483647);
    QTest::newRow("smallest int") << QByteArray("-2147483648") << QVariant(-2147483647 - 1);
    QTest::newRow("above int") << QByteArray("2147483648") << QVariant(Q_INT64_C(2147483648));
    QTest::newRow("below int") << QByteArray("-2147483649") << QVariant(Q_INT64_C(-2147483649));
    QTest::newRow("largest qlonglong")
        << QByteArray("9223372036854775807") << QVariant(std::numeric_limits<qlonglong>::max());
    QTest::newRow("smallest qlonglong")
        << QByteArray("-9223372036854775808") << QVariant(std::numeric_limits<qlonglong>::min());
    QTest::newRow("above qlonglong")
        << QByteArray("9223372036854775808") << QVariant(9223372036854775808.0);
    QTest::newRow("20 nines") << QByteArray("99999999999999999999") << QVariant(1e20);
    QTest::newRow("1.5") << QByteArray("1.5") << QVariant(1.5);
    QTest::newRow("1.0 stays a double") << QByteArray("1.0") << QVariant(1.0);
    QTest::newRow("-0.0 keeps its sign") << QByteArray("-0.0") << QVariant(-0.0);
    QTest::newRow("-0.1") << QByteArray("-0.1") << QVariant(-0.1);
    QTest::newRow("15 digits") << QByteArray("0.12345678901234") << QVariant(0.12345678901234);
    QTest::newRow("17 digits") << QByteArray("0.12345678901234567")
                               << QVariant(0.12345678901234567);
    QTest::newRow("1e3") << QByteArray("1e3") << QVariant(1000.0);
    QTest::newRow("1E3") << QByteArray("1E3") << QVariant(1000.0);
    QTest::newRow("1e2 stays a double") << QByteArray("1e2") << QVariant(100.0);
    QTest::newRow("1e+2") << QByteArray("1e+2") << QVariant(100.0);
    QTest::newRow("25e-2") << QByteArray("25e-2") << QVariant(0.25);
    QTest::newRow("1e400") << QByteArray("1e400")
                           << QVariant(ToolkitDifferences::overflownNumber());
    QTest::newRow("-1e400") << QByteArray("-1e400")
                            << QVariant(ToolkitDifferences::either(
                                   0.0, -std::numeric_limits<double>::infinity()));
    QTest::newRow("largest double")
        << QByteArray("1.7976931348623157e308") << QVariant(std::numeric_limits<double>::max());
    QTest::newRow("above the largest double")
        << QByteArray("1.7976931348623159e308") << QVariant(ToolkitDifferences::overflownNumber());
    QTest::newRow("smallest double")
        << QByteArray("4.9e-324") << QVariant(std::numeric_limits<double>::denorm_min());
    QTest::newRow("1e-400") << QByteArray("1e-400") << QVariant(0.0);
    QTest::newRow("1-2") << QByteArray("1-2") << QVariant(0.0);
    QTest::newRow("plus") << QByteArray("+") << QVariant(0.0);
    QTest::newRow("minus") << QByteArray("-") << QVariant(0.0);
    QTest::newRow("--5") << QByteArray("--5") << QVariant(0.0);
    QTest::newRow("1.2.3") << QByteArray("1.2.3") << QVariant(0.0);
    QTest::newRow("1e") << QByteArray("1e") << QVariant(0.0);
    QTest::newRow("-e") << QByteArray("-e") << QVariant(0.0);
}

void tst_JsonLexer::numbersGetTheseValues()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariant, value);

    const QByteArray number = describe(value);
    const int size = text.size();

    QCOMPARE(scan(text).tokens, number + " end of file");
    QCOMPARE(scan(text).position, size);
    QCOMPARE(scan(text + ']').tokens, number + " ] end of file");
    QCOMPARE(scan(text + 'b' + text).tokens, number + ' ' + number + " end of file");
    QCOMPARE(scan(text + "true").tokens, number + " true end of file");
    QCOMPARE(scan(text + '\0').tokens, number + " error");
    QCOMPARE(scan(text + '\0').position, size);
    QCOMPARE(scan(text + '\xb2').tokens, number + " error");
}

void tst_JsonLexer::stringsGetTheseValues_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("empty") << json("''") << json("''");
    QTest::newRow("letters") << json("'abc'") << json("'abc'");
    QTest::newRow("backspace") << json("'\\b'") << json("'<8>'");
    QTest::newRow("form feed") << json("'\\f'") << json("'<c>'");
    QTest::newRow("line feed") << json("'\\n'") << json("'<a>'");
    QTest::newRow("carriage return") << json("'\\r'") << json("'<d>'");
    QTest::newRow("tab") << json("'\\t'") << json("'<9>'");
    QTest::newRow("quote") << json("'a\\'b'") << json("'a\"b'");
    QTest::newRow("backslash") << json("'\\\\'") << json("'\\'");
    QTest::newRow("backslash and letter") << json("'\\\\n'") << json("'\\n'");
    QTest::newRow("solidus") << json("'\\/'") << json("'/'");
    QTest::newRow("letter without a meaning") << json("'\\q'") << json("'q'");
    QTest::newRow("capital N") << json("'\\N'") << json("'N'");
    QTest::newRow("backslash and byte 233") << json("'\\\xe9'") << json("'<e9>'");
    QTest::newRow("raw control bytes") << json("'\x01\t\n\r\x7f'") << json("'<1><9><a><d><7f>'");
    QTest::newRow("raw NUL") << QByteArray("\"a\0b\"", 5) << json("'a<0>b'");
    QTest::newRow("UTF-8 stays two characters") << json("'\xc3\xa9'") << json("'<c3><a9>'");
    QTest::newRow("byte 255") << json("'\xff'") << json("'<ff>'");

    QTest::newRow("u escape") << json("'a\\u00e9b'") << json("'a<e9>b'");
    QTest::newRow("u escape at the end") << json("'\\u0041'") << json("'A'");
    QTest::newRow("u escape of zero") << json("'\\u0000'") << json("'<0>'");
    QTest::newRow("capital digits") << json("'\\u20AC'") << json("'<20ac>'");
    QTest::newRow("surrogates stay two units")
        << json("'\\ud83d\\ude00'") << json("'<d83d><de00>'");
    QTest::newRow("u with three digits") << json("'\\u004'") << json("'u004'");
    QTest::newRow("u with no digit") << json("'\\u'") << json("'u'");
    QTest::newRow("capital u") << json("'\\U0041'") << json("'U0041'");
    QTest::newRow("no digits") << json("'\\uwxyz'") << json("'<0>'");
    QTest::newRow("one bad pair") << json("'\\u4gff'") << json("'<ff>'");
    QTest::newRow("signs are digits") << json("'\\u+1-1'") << json("'<1ff>'");
    QTest::newRow("minus first") << json("'\\u-1+a'") << json("'<ff0a>'");
    QTest::newRow("blanks are digits") << json("'\\u 1 2'") << json("'<102>'");
    QTest::newRow("blank and sign") << json("'\\u +1-1'") << json("'<0>1'");
    // Behind a digit Qt 5 takes a blank for part of the number as well.
    QTest::newRow("blanks after digits")
        << json("'\\u1 2 '") << ToolkitDifferences::either(json("'<0>'"), json("'<102>'"));
    QTest::newRow("tab and line feed after digits")
        << json("'\\uf\te\n'") << ToolkitDifferences::either(json("'<0>'"), json("'<f0e>'"));
    QTest::newRow("blanks only") << json("'\\u    '") << json("'<0>'");
    QTest::newRow("prefix of hexadecimal numbers") << json("'\\u0x0X'") << json("'<0>'");
    QTest::newRow("escapes between text")
        << json("'one\\ttwo\\u0033four'") << json("'one<9>two3four'");
}

void tst_JsonLexer::stringsGetTheseValues()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, value);

    const Scan result = scan(text);

    QCOMPARE(result.tokens, "string " + value + " end of file");
    QCOMPARE(result.position, text.size());
    QCOMPARE(result.line, 1);
}

void tst_JsonLexer::brokenStringsEndTheInput_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("quote alone") << json("'");
    QTest::newRow("no closing quote") << json("'abc");
    QTest::newRow("cut after a backslash") << json("'abc\\");
    QTest::newRow("cut after an escape") << json("'abc\\n");
    QTest::newRow("closing quote escaped") << json("'abc\\'");
    QTest::newRow("cut after u") << json("'\\u");
    QTest::newRow("cut after one digit") << json("'\\u0");
    QTest::newRow("cut after three digits") << json("'\\u004");
    QTest::newRow("cut after four digits") << json("'\\u0041");
    QTest::newRow("cut after the text of an escape") << json("'\\u0041x");
    QTest::newRow("quote taken for a digit") << json("'\\u004' ");
    QTest::newRow("quote taken for a digit in a list") << json("'\\u004']");
    QTest::newRow("8 bytes and no quote") << json("'abcdefgh");
    QTest::newRow("23 bytes and no quote") << json("'abcdefghijklmnopqrstuvw");
    QTest::newRow("8 bytes and a backslash") << json("'abcdefgh\\");
}

void tst_JsonLexer::brokenStringsEndTheInput()
{
    QFETCH(QByteArray, text);

    const Scan result = scan(text);

    QCOMPARE(result.tokens, QByteArray("error"));
    QCOMPARE(result.position, text.size());
}

void tst_JsonLexer::onlyLineFeedsBetweenTokensCountAsLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");

    QTest::newRow("none") << QByteArray("1") << 1;
    QTest::newRow("line feed at the start") << QByteArray("\n1") << 2;
    QTest::newRow("line feed at the end") << QByteArray("1\n") << 2;
    QTest::newRow("three") << QByteArray("\n[\n\n]") << 4;
    QTest::newRow("carriage return alone") << QByteArray("[\r\r]\r") << 1;
    QTest::newRow("carriage return and line feed") << QByteArray("[\r\n]\r\n") << 3;
    QTest::newRow("in a string") << json("'a\nb\n'") << 1;
    QTest::newRow("in a string with an escape") << json("'\\t\n'") << 1;
    QTest::newRow("escaped line feed byte") << json("'\\\n'") << 1;
    QTest::newRow("around a string") << json("\n'\n'\n") << 3;
    QTest::newRow("in front of an error") << QByteArray("\n\n#\n") << 3;
    QTest::newRow("in a broken string") << json("\n'\n\n") << 2;
}

void tst_JsonLexer::onlyLineFeedsBetweenTokensCountAsLines()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);

    QCOMPARE(scan(text).line, line);
}

void tst_JsonLexer::everyByteBeginsWhatItShould()
{
    for (int byte = 0; byte < 256; ++byte) {
        const ExactBlock block(QByteArray(1, char(byte)));
        JsonLexer lexer(block.bytes());
        QCOMPARE(lexer.nextToken(), tokenOf(byte));
        QCOMPARE(lexer.pos(), positionBehind(byte));
        QCOMPARE(lexer.line(), byte == '\n' ? 2 : 1);
        QCOMPARE(lexer.value().isValid(), tokenOf(byte) == T_NUMBER);
    }
}

void tst_JsonLexer::everyByteMayStandInAString()
{
    for (int byte = 0; byte < 256; ++byte) {
        const char c = char(byte);
        QCOMPARE(differenceFromPlainReading(json("'") + c + json("'")), QByteArray());
        QCOMPARE(differenceFromPlainReading(json("'1234567") + c + json("9\\n'")), QByteArray());
    }
}

void tst_JsonLexer::everyByteMayFollowABackslash()
{
    for (int byte = 0; byte < 256; ++byte)
        QCOMPARE(differenceFromPlainReading(json("'\\") + char(byte) + json("12345678'")),
                 QByteArray());
}

// All pairs of bytes, as the first and as the second of an escape.
void tst_JsonLexer::everyPairIsReadAsTheToolkitReadsIt()
{
    for (int high = 0; high < 256; ++high) {
        QByteArray text = json("'");
        QString expected;
        for (int low = 0; low < 256; ++low) {
            const QByteArray pair = QByteArray(1, char(high)) + char(low);
            text += "\\u" + pair + "7a\\u7a" + pair;
            expected += QChar(ushort(lowByte(pair) << 8 | 0x7a));
            expected += QChar(ushort(0x7a00 | lowByte(pair)));
        }
        const ExactBlock block(text + json("'"));
        JsonLexer lexer(block.bytes());
        QCOMPARE(lexer.nextToken(), int(T_STRING));
        QCOMPARE(lexer.value().toString(), expected);
    }
}

void tst_JsonLexer::numbersEqualThePlainConversion_data()
{
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("at the end of the input") << QByteArray();
    QTest::newRow("in front of a digit that is none") << QByteArray("\xb2"
                                                                    "5");
    QTest::newRow("in front of letters") << QByteArray("f5");
}

void tst_JsonLexer::numbersEqualThePlainConversion()
{
    QFETCH(QByteArray, after);

    Random random(20);
    for (int i = 0; i < 30000; ++i)
        QCOMPARE(differenceFromPlainNumber(randomNumber(random), after), QByteArray());
}

void tst_JsonLexer::stringsEqualThePlainReading_data()
{
    QTest::addColumn<QByteArray>("alphabet");
    QTest::addColumn<int>("longest");

    QByteArray allBytes;
    for (int byte = 0; byte < 256; ++byte)
        allBytes += char(byte);

    QTest::newRow("escapes") << QByteArray("\"\\\\\\uuu0123456789abcdefABCDEF") << 40;
    QTest::newRow("odd digits") << QByteArray("\\uu+- x0fg\"") << 30;
    QTest::newRow("long runs") << allBytes + QByteArray(200, 'a') << 300;
    QTest::newRow("neighbours of quote and backslash") << QByteArray("!\"#[\\]\xa2\xdc") << 24;
    QTest::newRow("keys") << QByteArray("aaaaaaa\":::") << 12;
}

void tst_JsonLexer::stringsEqualThePlainReading()
{
    QFETCH(QByteArray, alphabet);
    QFETCH(int, longest);

    Random random(30);
    for (int i = 0; i < 4000; ++i) {
        const QByteArray text = random.bytes(alphabet, random.below(longest));
        QCOMPARE(differenceFromPlainReading('"' + text), QByteArray());
        QCOMPARE(differenceFromPlainReading('"' + text + '"'), QByteArray());
    }
}

// Long strings pass several bytes at a time, so each length is tried at each offset.
void tst_JsonLexer::stringsOfEveryLengthEndAtTheirQuote()
{
    for (int offset = 0; offset < 8; ++offset) {
        for (int length = 0; length < 150; ++length) {
            const QByteArray blanks(offset, ' ');
            const QByteArray text(length, 'x');
            const QByteArray expected = "string \"" + text + '"';
            QCOMPARE(scan(blanks + '"' + text + '"').tokens, expected + " end of file");
            QCOMPARE(scan(blanks + '"' + text + "\":1").tokens, expected + " : int 1 end of file");
            QCOMPARE(scan(blanks + '"' + text + "\\\"\"").tokens, expected + "\" end of file");
            QCOMPARE(scan(blanks + '"' + text).position, offset + 1 + length);
        }
    }
}

void tst_JsonLexer::theCodecForCStringsReadsTheBytes_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("tokensWithQt4");
    QTest::addColumn<QByteArray>("tokensWithQt5");

    const QByteArray moving("moving");
    QTest::newRow("currency sign as euro sign") << QByteArray("ISO-8859-15") << json("'\xa4'")
                                                << json("string '<20ac>'") << json("string '<a4>'");
    QTest::newRow("Cyrillic letters")
        << QByteArray("KOI8-R") << json("'\xcd\xc9\xd2'") << json("string '<43c><438><440>'")
        << json("string '<cd><c9><d2>'");
    QTest::newRow("the bytes of a UTF-8 sequence are none alone")
        << QByteArray("UTF-8") << json("'caf\xc3\xa9'") << json("string 'caf<fffd><fffd>'")
        << json("string 'caf<c3><a9>'");
    QTest::newRow("ASCII in UTF-8") << QByteArray("UTF-8") << json("'a\x7f'")
                                    << json("string 'a<7f>'") << json("string 'a<7f>'");
    QTest::newRow("a key") << QByteArray("KOI8-R") << json("'\xc1':1")
                           << json("string '<430>' : int 1") << json("string '<c1>' : int 1");
    QTest::newRow("a key that comes again")
        << QByteArray("KOI8-R") << json("'\xc1':'\xc1':")
        << json("string '<430>' : string '<430>' :") << json("string '<c1>' : string '<c1>' :");
    QTest::newRow("keys of the same replacement character")
        << QByteArray("UTF-8") << json("'\xc3':'\xa9':")
        << json("string '<fffd>' : string '<fffd>' :") << json("string '<c3>' : string '<a9>' :");
    QTest::newRow("a byte after a backslash") << QByteArray("ISO-8859-15") << json("'\\\xa4'")
                                              << json("string '<20ac>'") << json("string '<a4>'");
    QTest::newRow("bytes around an escape")
        << QByteArray("ISO-8859-15") << json("'\xa4\\n\xa4'") << json("string '<20ac><a><20ac>'")
        << json("string '<a4><a><a4>'");
    QTest::newRow("u escapes are not the codec's")
        << QByteArray("ISO-8859-15") << json("'\\u00a4'") << json("string '<a4>'")
        << json("string '<a4>'");
    QTest::newRow("ASCII is the codec's as well")
        << moving << json("'a\\/'") << json("string '<461><42f>'") << json("string 'a/'");
    QTest::newRow("a u that is no escape")
        << moving << json("'\\u1'") << json("string '<475><431>'") << json("string 'u1'");
    QTest::newRow("short escapes, numbers and words are not")
        << moving << json("'\\b\\t\\u0041' 12 0.5 true")
        << json("string '<8><9>A' int 12 double 0.5 true")
        << json("string '<8><9>A' int 12 double 0.5 true");
}

void tst_JsonLexer::theCodecForCStringsReadsTheBytes()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, tokensWithQt4);
    QFETCH(QByteArray, tokensWithQt5);
    ToolkitDifferences::MovingCodec::instance();

    const ToolkitDifferences::CodecForCStrings installed(codec.constData());
    const Scan result = scan(text);

    QCOMPARE(result.tokens,
             ToolkitDifferences::either(tokensWithQt4, tokensWithQt5) + " end of file");
    QCOMPARE(result.position, text.size());
}

void tst_JsonLexer::theCodecForCStringsSeesOneByteAtATime()
{
    const ToolkitDifferences::CodecForCStrings installed(
        ToolkitDifferences::MovingCodec::instance());

    scan(json("{'a key':'some text','a\\nkey':'\xc3\xa9'}"));

    QCOMPARE(ToolkitDifferences::MovingCodec::instance()->longestPiece(),
             ToolkitDifferences::either(1, 0));
}

// Known keys are told apart by a few of their bytes first, so many of these are taken for each other
// if that is where it ends.
void tst_JsonLexer::keysThatLookAlikeStayApart()
{
    Random random(70);
    QByteArray text;
    QByteArray expected;
    for (int i = 0; i < 3000; ++i) {
        const QByteArray key = '"' + random.bytes("abc", random.below(7)) + '"';
        text += key + ':';
        expected += "string " + key + " : ";
    }

    QCOMPARE(scan(text).tokens, expected + "end of file");
}

// The highest bit of a byte does not count where known keys are looked for, only where they are compared.
void tst_JsonLexer::keysThatDifferInOneByteStayApart()
{
    for (int size = 1; size <= 40; ++size) {
        for (int i = 0; i < size; ++i) {
            const QByteArray plain(size, 'a');
            QByteArray other = plain;
            other[i] = '\xe1';
            QByteArray shown = plain;
            shown.replace(i, 1, "<e1>");

            QCOMPARE(scan('"' + plain + "\":\"" + other + "\":\"" + plain + "\":").tokens,
                     "string \"" + plain + "\" : string \"" + shown + "\" : string \"" + plain
                         + "\" : end of file");
        }
    }
}

void tst_JsonLexer::aValueIsGoneWithTheNextToken()
{
    JsonLexer lexer(json("1 'a' true 2"));

    lexer.nextToken();
    QCOMPARE(describe(lexer.value()), QByteArray("int 1"));
    lexer.nextToken();
    QCOMPARE(describe(lexer.value()), json("string 'a'"));
    lexer.nextToken();
    QVERIFY(!lexer.value().isValid());
    lexer.nextToken();
    QCOMPARE(describe(lexer.value()), QByteArray("int 2"));
    lexer.nextToken();
    QVERIFY(!lexer.value().isValid());
}

void tst_JsonLexer::aValueCanBeTaken()
{
    JsonLexer lexer(json("'a' 2 'b'"));
    QString text;
    QVariant number;

    lexer.nextToken();
    lexer.takeText(text);
    QCOMPARE(text, QString(QLatin1String("a")));
    lexer.nextToken();
    lexer.takeNumber(number);
    QCOMPARE(describe(number), QByteArray("int 2"));
    lexer.nextToken();
    lexer.takeText(text);
    QCOMPARE(text, QString(QLatin1String("b")));
}

void tst_JsonLexer::theEndStaysTheEnd()
{
    JsonLexer lexer("1 \n");
    lexer.nextToken();

    for (int i = 0; i < 3; ++i) {
        QCOMPARE(lexer.nextToken(), int(T_END_OF_FILE));
        QCOMPARE(lexer.pos(), 3);
        QCOMPARE(lexer.line(), 2);
        QVERIFY(!lexer.value().isValid());
    }
}

void tst_JsonLexer::theInputIsNotChanged()
{
    const QByteArray text = json("{'a\\n':[1,2.5,null]}");
    const char *const bytes = text.constData();

    JsonLexer lexer(text);
    while (lexer.nextToken() != T_END_OF_FILE)
        QVERIFY(text.constData() == bytes);

    QCOMPARE(text, json("{'a\\n':[1,2.5,null]}"));
}

NUV_TEST_MAIN(tst_JsonLexer)

#include "tst_jsonlexer.moc"
