// SPDX-License-Identifier: MIT
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "settings/jsonsettingsformat.h"
#include "tests/json/jsoninput.h"
#include "tests/support/describe.h"
#include "tests/support/messages.h"
#include "tests/support/testmain.h"

#include <QBuffer>
#include <QFile>

// Every line of the tables in docs/json-dialect.md. The heading of a table's second column says what
// becomes of the text in the first.

namespace {

QByteArray describeReading(const QByteArray &text)
{
    const ExactBlock block(text);
    QString error;
    const QVariant tree = parseJson(block.bytes(), &error);
    if (error.isEmpty())
        return describe(tree);
    const QByteArray kept = tree.isValid() ? " and " + describe(tree) : QByteArray();
    return "error \"" + error.toLatin1() + '"' + kept;
}

QByteArray describeFlatKeys(const QByteArray &text)
{
    QByteArray content = text;
    QBuffer device(&content);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    const Messages messages;
    readJsonSettings(device, map);
    QByteArray result = messages.count() == 1 ? "a warning" : "";
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
        result += result.isEmpty() ? "" : ", ";
        result += it.key().toLatin1() + " = " + describe(it.value());
    }
    return result;
}

QByteArray writtenAgain(const QByteArray &text)
{
    return JsonWriter::serializeCompact(parseJson(text, nullptr));
}

struct Reading {
    const char *heading;
    QByteArray (*result)(const QByteArray &text);
    bool hasBytesInResult; // "<c3>" in the second column is a byte, too
};

const Reading readings[] = { { "read as", describeReading, false },
                             { "flat keys", describeFlatKeys, false },
                             { "written again", writtenAgain, true } };

// The cells of a line of a table, without the blanks around them.
QList<QByteArray> cellsOf(const QByteArray &line)
{
    QList<QByteArray> cells = line.mid(1, line.size() - 2).split('|');
    for (int i = 0; i < cells.size(); ++i)
        cells[i] = cells.at(i).trimmed();
    return cells;
}

// What is between the backquotes; an empty string has two of them.
QByteArray code(const QByteArray &cell)
{
    return cell.size() < 2 ? QByteArray() : cell.mid(1, cell.size() - 2);
}

// The text with the byte instead of "<c3>".
QByteArray withBytes(const QByteArray &text)
{
    QByteArray result;
    for (int i = 0; i < text.size(); ++i) {
        const bool isByte = text.at(i) == '<' && i + 3 < text.size() && text.at(i + 3) == '>';
        result += isByte ? QByteArray::fromHex(text.mid(i + 1, 2)) : text.mid(i, 1);
        i += isByte ? 3 : 0;
    }
    return result;
}

const Reading *readingWith(const QByteArray &heading)
{
    for (const Reading &reading : readings) {
        if (heading == reading.heading)
            return &reading;
    }
    return nullptr;
}

// The lines of the tables, each with its reading.
struct Line {
    const Reading *reading;
    QByteArray text;
    QByteArray result;
};

QList<Line> linesOfTheDocument()
{
    QFile file(QLatin1String(DIALECT_DOCUMENT));
    if (!file.open(QIODevice::ReadOnly))
        return QList<Line>();
    QList<Line> lines;
    const Reading *reading = nullptr;
    const QList<QByteArray> document = file.readAll().split('\n');
    for (int i = 0; i < document.size(); ++i) {
        const QList<QByteArray> cells = cellsOf(document.at(i));
        if (!document.at(i).startsWith('|')) {
            reading = nullptr;
        } else if (cells.at(0) == "text") {
            reading = readingWith(cells.value(1));
        } else if (reading && !cells.at(0).startsWith("---")) {
            const Line line = { reading, code(cells.at(0)), code(cells.value(1)) };
            lines.append(line);
        }
    }
    return lines;
}

} // namespace

class tst_JsonDialect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTableIsRead();
    void everyLineOfTheDocumentHolds_data();
    void everyLineOfTheDocumentHolds();
};

// A heading that the test does not know would hide its table.
void tst_JsonDialect::everyTableIsRead()
{
    QFile file(QLatin1String(DIALECT_DOCUMENT));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray document = file.readAll();
    const QList<Line> lines = linesOfTheDocument();
    int rows = 0;
    for (const Reading &reading : readings) {
        QVERIFY(document.contains(QByteArray("\n| text | ") + reading.heading + " |"));
        rows -= document.count(QByteArray("\n| text | ") + reading.heading + " |");
    }
    // A table has a line of headings and one of dashes.
    rows += document.count("\n|") - document.count("\n|---");
    QCOMPARE(lines.size(), rows);
}

void tst_JsonDialect::everyLineOfTheDocumentHolds_data()
{
    QTest::addColumn<int>("number");

    const QList<Line> lines = linesOfTheDocument();
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray name = lines.at(i).text + ' ' + lines.at(i).reading->heading;
        QTest::newRow(name.constData()) << i;
    }
}

void tst_JsonDialect::everyLineOfTheDocumentHolds()
{
    QFETCH(int, number);

    const Line line = linesOfTheDocument().at(number);
    const QByteArray expected =
        line.reading->hasBytesInResult ? withBytes(line.result) : line.result;

    QCOMPARE(line.reading->result(withBytes(line.text)), expected);
}

NUV_TEST_MAIN(tst_JsonDialect)

#include "tst_jsondialect.moc"
