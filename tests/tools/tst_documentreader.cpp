// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/testmain.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "tools/nuv-apps-config/reading/documentreader.h"

#include <random>

/// The reader must see what the library's parser sees: an error where that rejects, none where it
/// accepts, and the same values. NUV_READER_ROWS=100000 tries that many rows of tokens.
class tst_DocumentReader : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithTheLibraryOnChosenTexts_data();
    void agreesWithTheLibraryOnChosenTexts();
    void agreesWithTheLibraryOnEveryShortRowOfTokens();
    void agreesWithTheLibraryOnRandomRowsOfTokens();
    void agreesWithTheLibraryOnDamagedConfigurations();
    void hasTheValuesOfTheLibrary();
    void placesAreThoseOfTheText();
    void readsWithoutRecursion();
    void stopsAtManyErrors();
    void keepsWhatItHasReadWhenItStops_data();
    void keepsWhatItHasReadWhenItStops();
};

namespace {

struct Verdict {
    explicit Verdict(const QByteArray &bytes) : source(QLatin1String("test"), bytes)
    {
        isReliable = readDocument(source, document, findings);
    }

    SourceText source;
    Document document;
    Findings findings;
    bool isReliable;
};

bool libraryAccepts(const QByteArray &bytes)
{
    QString error;
    const QVariant tree = parseJson(bytes, &error);
    Q_UNUSED(tree);
    return error.isEmpty();
}

// Why the reader and the library disagree; empty when they do not.
QByteArray disagreement(const QByteArray &bytes)
{
    const Verdict verdict(bytes);
    const bool isError = verdict.findings.hasSyntaxError();
    const bool isAccepted = libraryAccepts(bytes);
    for (const Finding &finding : verdict.findings.all()) {
        const int end = finding.offset + finding.length;
        if (finding.offset < 0 || finding.length < 0
            || end > bytes.size() + 1) // what is missing at the end
            return "a finding outside of the file: " + finding.text.toUtf8() + ": " + bytes;
    }
    if (verdict.findings.has("empty-file"))
        return isAccepted || isError ? "empty, yet accepted or an error: " + bytes : QByteArray();
    if (isAccepted && isError)
        return "an error in what the library accepts: " + bytes;
    if (!isAccepted && !isError && !verdict.findings.has("not-text"))
        return "no error in what the library rejects: " + bytes;
    return QByteArray();
}

const char *const pieces[] = { "{", "}", "[", "]", ",", ":", "\"a\"", "1", "true", "b", "x" };
const int pieceCount = int(sizeof pieces / sizeof pieces[0]);

// In random rows, in addition to those above.
const char *const oddPieces[] = { "\n",        " ",
                                  "'a'",       "//c\n",
                                  "/*c*/",     "\"",
                                  "\\",        "tru",
                                  "bnull",     "-",
                                  "1-2",       ".5",
                                  "=",         ";",
                                  "True",      "\xe2\x80\x9c",
                                  "\xc2\xa0",  "\xef\xbb\xbf",
                                  "\"a\n\"",   "\"\\q\"",
                                  "\"\\u00\"", "#",
                                  "\x01",      "null",
                                  "banana",    "\"a: \"",
                                  "\"a\":",    "0x1",
                                  "\xff",      "\f" };
const int oddPieceCount = int(sizeof oddPieces / sizeof oddPieces[0]);

const char configuration[] = "{\n"
                             "    \"Global\": { \"Version\": 1, \"RemoteInspectorPort\": 9222 },\n"
                             "    \"Applications\": [\n"
                             "        {\n"
                             "            \"Tag\": \"tv\", \"Url\": \"http://tv.example/#a:b\",\n"
                             "            \"Certificate\": { \"Path\": \"tv.pem\" },\n"
                             "            \"GrantBroadcastAccessRightDomains\": [\n"
                             "                { \"Domain\": \"a.example\" },\n"
                             "                { \"Domain\": \"b.example\" }\n"
                             "            ],\n"
                             "            \"Scale\": 1.25\n"
                             "        },\n"
                             "        { \"Tag\": \"menu\" }\n"
                             "    ]\n"
                             "}\n";

QVariant valueOf(const Document &document, const Node &node)
{
    if (node.type == Node::Array) {
        QVariantList list;
        for (const Node::Child &child : node.children)
            list.append(valueOf(document, document.at(child)));
        return list;
    }
    if (node.type == Node::Object) {
        QtCompat::MultiMap map;
        for (const Node::Child &child : node.children)
            map.insert(child.key, valueOf(document, document.at(child)));
        return QtCompat::toVariant(map);
    }
    return node.value;
}

} // namespace

void tst_DocumentReader::agreesWithTheLibraryOnChosenTexts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const char *const texts[] = {
        "",
        " ",
        "b",
        "bb\n",
        "1",
        "null",
        "\"a\"",
        "[]",
        "{}",
        "[,1]",
        "{,\"a\":1}",
        "[,]",
        "{,}",
        "[1,]",
        "{\"a\":1,}",
        "[b1]",
        "bnull",
        "trueb",
        "[1-2]",
        "[+]",
        "[01]",
        "{\"a\" 1}",
        "{\"a\"}",
        "{\"a\":}",
        "{1:2}",
        "1 2",
        "{} x",
        "[1 2]",
        "{",
        "[",
        "]",
        "}",
        "[}",
        "{]",
        "[[1}",
        "{\"a\":[1}",
        "\"a",
        "\"a\\",
        "\"a\nb\"",
        "{\"a\":\"b\n,\"c\":1}",
        "\"\\u004\"",
        "\"\\u0041\"",
        "{\"a\": 'b'}",
        "{'a': 1}",
        "[1 // c\n]",
        "[1, /* c */ 2]",
        "/* open",
        "# c",
        "[True]",
        "\xef\xbb\xbf{}",
        "\xef\xbb\xbf",
        "[\xc2\xa0 1]",
        "[.5]",
        "{\"a\"=1}",
        "[1;2]",
        "{a:1}",
        "{\"a: \"b\"}",
        "{\"a\":1 \"b\":2}",
        "[1,,2]",
        "{\"a\"::1}",
        "{:1}",
        "{{}}",
        "{[1]}",
        "[\"a\":1]",
        "{\"a\":[1,\"b\":2}",
        "nulls",
        "banana",
        "bTrue",
        "b",
        "bb1",
        "\f1",
        "[1]\n\n]",
    };
    for (const char *text : texts)
        QTest::newRow(*text ? text : "empty") << QByteArray(text);
}

void tst_DocumentReader::agreesWithTheLibraryOnChosenTexts()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(disagreement(bytes), QByteArray());
}

void tst_DocumentReader::agreesWithTheLibraryOnEveryShortRowOfTokens()
{
    const int longest = 4;
    int combinations = 1;
    for (int length = 1; length <= longest; ++length) {
        combinations *= pieceCount;
        for (int row = 0; row < combinations; ++row) {
            QByteArray bytes;
            for (int i = 0, rest = row; i < length; ++i, rest /= pieceCount)
                bytes += pieces[rest % pieceCount];
            const QByteArray why = disagreement(bytes);
            if (!why.isEmpty())
                QFAIL(why.constData());
        }
    }
}

void tst_DocumentReader::agreesWithTheLibraryOnRandomRowsOfTokens()
{
    std::mt19937 engine(20240817);
    const int rows = Amount::tried("NUV_READER_ROWS", 5000);
    for (int row = 0; row < rows; ++row) {
        QByteArray bytes;
        for (unsigned long length = engine() % 14; length > 0; --length) {
            const int piece = int(engine() % unsigned(2 * pieceCount + oddPieceCount));
            bytes += piece < 2 * pieceCount ? pieces[piece / 2] : oddPieces[piece - 2 * pieceCount];
        }
        const QByteArray why = disagreement(bytes);
        if (!why.isEmpty())
            QFAIL(why.constData());
    }
}

void tst_DocumentReader::agreesWithTheLibraryOnDamagedConfigurations()
{
    std::mt19937 engine(42);
    const QByteArray whole(configuration);
    const unsigned long size = static_cast<unsigned long>(whole.size());
    const char letters[] = "{}[],:\"'\\b1-. \n/tf\xc3";
    const int rounds = Amount::tried("NUV_READER_ROUNDS", 1500);
    for (int round = 0; round < rounds; ++round) {
        QByteArray bytes = whole;
        for (unsigned long edits = 1 + engine() % 2; edits > 0; --edits) {
            const int at = int(engine() % size) % bytes.size();
            const char letter = letters[engine() % (sizeof letters - 1)];
            switch (engine() % 4) {
            case 0:
                bytes.remove(at, 1);
                break;
            case 1:
                bytes.insert(at, letter);
                break;
            case 2:
                bytes[at] = letter;
                break;
            default:
                bytes.truncate(at + 1);
            }
        }
        const QByteArray why = disagreement(bytes);
        if (!why.isEmpty())
            QFAIL(why.constData());
    }
}

void tst_DocumentReader::hasTheValuesOfTheLibrary()
{
    QString error;
    const Verdict verdict(configuration);
    QVERIFY(verdict.findings.all().empty());
    QCOMPARE(valueOf(verdict.document, verdict.document.rootNode()),
             parseJson(configuration, &error));
}

void tst_DocumentReader::placesAreThoseOfTheText()
{
    const QByteArray bytes = "{\n  \"a\": [10, {\"b\": \"\xc3\xa9\", \"c\": 1}]\n}";
    const Verdict verdict(bytes);
    const Document &document = verdict.document;
    const Node &array = document.at(document.rootNode().children.at(0));
    QCOMPARE(bytes.mid(array.begin, array.length()).left(4), QByteArray("[10,"));
    QCOMPARE(bytes.mid(array.begin, array.length()).right(2), QByteArray("}]"));
    const Node &object = document.at(array.children.at(1));
    const Node::Child &c = object.children.at(1);
    QCOMPARE(bytes.mid(c.keyBegin, c.keyEnd - c.keyBegin), QByteArray("\"c\""));
    const Place place = verdict.source.place(c.keyBegin);
    QCOMPARE(place.line, 2);
    QCOMPARE(place.column, 24); // the two bytes in front are one character
}

void tst_DocumentReader::readsWithoutRecursion()
{
    const int depth = 300000;
    const Verdict verdict(QByteArray(depth, '[') + QByteArray(depth, ']'));
    QVERIFY(!verdict.findings.hasSyntaxError());
    QCOMPARE(verdict.document.depth, depth);
}

void tst_DocumentReader::stopsAtManyErrors()
{
    const Verdict verdict(QByteArray(100000, '|'));
    QVERIFY(!verdict.isReliable || verdict.document.isEmpty());
    QVERIFY(int(verdict.findings.all().size()) <= Findings::Limit);
}

void tst_DocumentReader::keepsWhatItHasReadWhenItStops_data()
{
    QTest::addColumn<QByteArray>("mistake");
    QTest::newRow("no key") << QByteArray(",:1");
    QTest::newRow("no comma") << QByteArray(" \"k\":1");
    QTest::newRow("a comma too many") << QByteArray(",");
    QTest::newRow("no colon") << QByteArray(",\"k\" 1");
    QTest::newRow("a colon too many") << QByteArray(",\"k\"::1");
    QTest::newRow("no value") << QByteArray(",\"k\":");
    QTest::newRow("no quotes around a key") << QByteArray(",k:1");
    QTest::newRow("no quotes around a value") << QByteArray(",\"k\":v");
    QTest::newRow("another keyword") << QByteArray(",\"k\":True");
    QTest::newRow("another character") << QByteArray(",|");
    QTest::newRow("another bracket") << QByteArray(",\"k\":1]");
    QTest::newRow("no end of an array") << QByteArray(",\"k\":[1,\"l\":1");
}

// Each mistake is the last that it hears of for one of the counts, with a key of its own in front. Beyond
// that count all is the same.
void tst_DocumentReader::keepsWhatItHasReadWhenItStops()
{
    QFETCH(QByteArray, mistake);
    int stops = 0;
    for (int count = 90; stops < 3; ++count) {
        QVERIFY(count <= 180);
        const QByteArray bytes =
            "{\"one\":1" + mistake.repeated(count) + ",\"the last one\":1" + mistake + '}';
        const Verdict verdict(bytes);
        QVERIFY(!verdict.document.isEmpty());
        for (const Node::Child &child : verdict.document.rootNode().children) {
            if (bytes.mid(child.keyBegin, 1) == "\"")
                QCOMPARE(child.key.toLatin1(),
                         bytes.mid(child.keyBegin + 1, child.keyEnd - child.keyBegin - 2));
        }
        stops += !verdict.isReliable;
    }
}

NUV_TEST_MAIN(tst_DocumentReader)
#include "tst_documentreader.moc"
