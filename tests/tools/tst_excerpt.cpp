// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/report/excerpt.h"

#include <cstring>
#include <random>

/// The line under a finding: it fits, the caret is under the place, and no secret is in it.
class tst_Excerpt : public QObject
{
    Q_OBJECT

private slots:
    void fitsAndPointsAtThePlace();
    void bytesThatBeginNoCharacterAreShown();
    void theReportFitsTheTerminal_data();
    void theReportFitsTheTerminal();
};

namespace {

/// Something that a line may hold, and what is shown of it.
struct Letter {
    const char *bytes;
    const char *shown;
    int columns;
};

const Letter letters[] = {
    { "a", "a", 1 },
    { "Z", "Z", 1 },
    { " ", " ", 1 },
    { "\\\"", "\\\"", 2 },
    { "\t", " ", 1 },
    { "\x01", "\xef\xbf\xbd", 1 },
    { "\x80", "\xef\xbf\xbd", 1 },
    { "\xe9", "\xc3\xa9", 1 },
    { "\xc3\xa9", "\xc3\xa9", 1 },
    { "\xe6\xbc\xa2", "\xe6\xbc\xa2", 2 },
    { "\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80", 2 },
    { "e\xcc\x81", "e\xcc\x81", 1 },
};

const char Secret[] = "correct horse battery";

class Lines
{
public:
    explicit Lines(uint seed) : m_engine(seed) {}

    int below(int limit) { return int(m_engine() % uint(limit)); }

    // A letter begins at each of `places`, and is `texts` in the output.
    QByteArray next(QList<int> *places, QList<int> *kinds)
    {
        QByteArray bytes = "{ ";
        const int count = 1 + below(6);
        for (int i = 0; i < count; ++i) {
            bytes += "\"_" + QByteArray::number(i) + "\": \"";
            for (int j = below(60); j > 0; --j) {
                const int kind = below(int(std::size(letters)));
                places->append(bytes.size());
                kinds->append(kind);
                bytes += letters[kind].bytes;
                if (kind == IncompleteKind)
                    bytes += '.'; // so that it makes no character with the next
            }
            bytes += "\", ";
            if (below(3) == 0)
                bytes += "\"PassPhrase\": \"" + QByteArray(Secret) + "\", ";
        }
        return bytes + "\"_\": 1 }";
    }

    static const int IncompleteKind = 7;

private:
    std::mt19937 m_engine;
};

// Of what the test writes, with the table above.
int columnsOf(const QString &text)
{
    int columns = 0;
    for (const uint c : text.toUcs4())
        columns += c == 0x301 ? 0 : c == 0x6f22 || c == 0x1f600 ? 2 : 1;
    return columns;
}

QString fromColumn(const QString &text, int column)
{
    int at = 0;
    while (at < text.size() && columnsOf(text.left(at)) < column)
        ++at;
    while (at > 0 && at < text.size() && text.at(at).unicode() == 0x301)
        ++at; // belongs to the letter before
    return text.mid(at);
}

QByteArray whole(const Analysis &analysis, int offset)
{
    return makeExcerpt(analysis.source, offset, 1, *analysis.secrets, 1 << 20).line.toUtf8();
}

} // namespace

void tst_Excerpt::fitsAndPointsAtThePlace()
{
    Lines lines(uint(Amount::given("NUV_TEST_SEED", 1)));
    int cuts = 0;
    for (int i = 0; i < Amount::tried("NUV_TEST_FILES", 400); ++i) {
        QList<int> places, kinds;
        const QByteArray bytes = lines.next(&places, &kinds);
        const auto analysis = analyse(QLatin1String("test"), bytes, QString(QLatin1String("/")));
        for (int j = 0; j < 20 && !places.isEmpty(); ++j) {
            const int which = lines.below(places.size());
            const int length = lines.below(50);
            const int columns = 32 + lines.below(140);
            const Excerpt excerpt =
                makeExcerpt(analysis->source, places[which], length, *analysis->secrets, columns);
            const QByteArray line = excerpt.line.toUtf8();
            QVERIFY2(columnsOf(excerpt.line) <= columns, line.constData());
            QVERIFY2(excerpt.caret + excerpt.width <= columnsOf(excerpt.line), line.constData());
            QVERIFY2(excerpt.width <= qMax(length, 2) * 2, line.constData());
            const QString marked = fromColumn(excerpt.line, excerpt.caret);
            const Letter &letter = letters[kinds[which]];
            QVERIFY2(marked.startsWith(QString::fromUtf8(letter.shown)), line.constData());
            for (int k = 0; k + 5 <= int(std::strlen(Secret)); ++k)
                QVERIFY2(!line.contains(QByteArray(Secret + k, 5)), line.constData());
            const QByteArray all = whole(*analysis, places[which]);
            const bool isCut = columnsOf(QString::fromUtf8(all)) > columns;
            QCOMPARE(line.contains("\xe2\x80\xa6"), isCut);
            if (!isCut)
                QCOMPARE(line, all);
            cuts += isCut;
        }
    }
    QVERIFY(cuts > 20);
}

// So many that the line is cut among them.
void tst_Excerpt::bytesThatBeginNoCharacterAreShown()
{
    const QByteArray bytes = "{ \"_\": \"" + QByteArray(1000, '\x80') + "\" }";
    const auto analysis = analyse(QLatin1String("test"), bytes, QString(QLatin1String("/")));
    const Excerpt excerpt = makeExcerpt(analysis->source, 900, 1, *analysis->secrets, 40);
    const QString shown(38, QChar(0xfffd));
    QCOMPARE(excerpt.line, QChar(0x2026) + shown + QChar(0x2026));
    QVERIFY(excerpt.caret > 10 && excerpt.caret < 30);
}

void tst_Excerpt::theReportFitsTheTerminal_data()
{
    QTest::addColumn<QByteArray>("columns");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("40")
        << QByteArray("40")
        << QByteArray("    1 | \xe2\x80\xa6\"Tag\": \"tv\", \"Ulr\": \"http://tv\xe2\x80\xa6\n"
                      "      |               ^~~~~\n");
    QTest::newRow("narrower than anything")
        << QByteArray("7")
        << QByteArray("    1 | \xe2\x80\xa6\"Tag\": \"tv\", \"Ulr\": \"http://tv\xe2\x80\xa6\n"
                      "      |               ^~~~~\n");
    QTest::newRow("60") << QByteArray("60")
                        << QByteArray("    1 | \xe2\x80\xa6s\": [ { \"Tag\": \"tv\", \"Ulr\": "
                                      "\"http://tv.example/\" }\xe2\x80\xa6\n"
                                      "      |                       ^~~~~\n");
    const QByteArray usual("    1 | { \"Global\": { \"Version\": 1 }, \"Applications\": [ "
                           "{ \"Tag\": \"tv\", \"Ulr\": \"http://tv.example/\" } ] }\n"
                           "      |                                             "
                           "                   ^~~~~\n");
    QTest::newRow("no terminal") << QByteArray() << usual;
    QTest::newRow("none") << QByteArray("0") << usual;
    QTest::newRow("no number") << QByteArray("wide") << usual;
}

void tst_Excerpt::theReportFitsTheTerminal()
{
    QFETCH(QByteArray, columns);
    TemporaryDir folder;
    const QString file = folder.write(
        QLatin1String("test.json"),
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"tv\", \"Ulr\": "
        "\"http://tv.example/\" } ] }");
    const ChildCall::Result result = ChildCall::run([&] {
        qputenv("COLUMNS", columns);
        Output output;
        return Program::run(QStringList() << QLatin1String("nuv-apps-config")
                                          << QLatin1String("check") << file,
                            output);
    });
    const int begin = result.output.indexOf("    1 | ");
    const int end = result.output.indexOf("        hint: ");
    QTEST(result.output.mid(begin, end - begin), "expected");
}

NUV_TEST_MAIN(tst_Excerpt)
#include "tst_excerpt.moc"
