#include "settings/jsonsettingsformat.h"

#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "tests/documents/documenttable.h"
#include "tests/support/describe.h"
#include "tests/support/testmain.h"

#include <QBuffer>

namespace {

// A row of test data for every row of the table.
void addRows(const char *heading)
{
    QTest::addColumn<QStringList>("row");
    const Table table = tableBelow(QLatin1String("docs/settings-format.md"), heading);
    QVERIFY(table.size() > 5);
    for (int i = 0; i < table.size(); ++i)
        QTest::newRow(qPrintable(table.at(i).at(0))) << table.at(i);
}

// What stands between backticks.
QStringList codesOf(const QString &cell)
{
    QStringList codes;
    const QStringList parts = cell.split(QLatin1Char('`'));
    for (int i = 1; i < parts.size(); i += 2)
        codes.append(parts.at(i));
    return codes;
}

QVariant parsed(const QString &json)
{
    QString error;
    const QVariant tree = parseJson(json.toLatin1(), &error);
    if (!error.isEmpty())
        qFatal("%s: %s", qPrintable(json), qPrintable(error));
    return tree;
}

// Of a cell with codes such as `list/1 = 10`; a cell without codes has no keys.
QSettings::SettingsMap keysOf(const QString &cell)
{
    const QString separator = QLatin1String(" = ");
    QSettings::SettingsMap map;
    const QStringList codes = codesOf(cell);
    for (int i = 0; i < codes.size(); ++i) {
        const QString key = codes.at(i).section(separator, 0, 0);
        map.insert(key == QLatin1String("\"\"") ? QString() : key,
                   parsed(codes.at(i).section(separator, 1)));
    }
    return map;
}

QByteArray written(const QSettings::SettingsMap &map)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    writeJsonSettings(device, map);
    return device.data();
}

QByteArray canonical(const QString &json)
{
    return JsonWriter::serialize(parsed(json), 4, 0);
}

} // namespace

/// The tables of docs/settings-format.md are true.
class tst_SettingsDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyDocumentBecomesTheseKeysAndThisAgain_data();
    void everyDocumentBecomesTheseKeysAndThisAgain();
    void everySetOfKeysIsWrittenLikeThis_data();
    void everySetOfKeysIsWrittenLikeThis();
};

void tst_SettingsDocument::everyDocumentBecomesTheseKeysAndThisAgain_data()
{
    addRows("Round trip");
}

void tst_SettingsDocument::everyDocumentBecomesTheseKeysAndThisAgain()
{
    QFETCH(QStringList, row);
    QCOMPARE(row.size(), 3);
    const QString document = codesOf(row.at(0)).at(0);
    const bool comesBack = row.at(2) == QLatin1String("the same");

    QByteArray bytes = document.toLatin1();
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    QVERIFY(readJsonSettings(device, map));

    QCOMPARE(describeLines(map), describeLines(keysOf(row.at(1))));
    QCOMPARE(written(map), canonical(comesBack ? document : codesOf(row.at(2)).at(0)));
}

void tst_SettingsDocument::everySetOfKeysIsWrittenLikeThis_data()
{
    addRows("Keys that a program sets");
}

void tst_SettingsDocument::everySetOfKeysIsWrittenLikeThis()
{
    QFETCH(QStringList, row);
    QCOMPARE(row.size(), 2);
    QCOMPARE(written(keysOf(row.at(0))), canonical(codesOf(row.at(1)).at(0)));
}

NUV_TEST_MAIN(tst_SettingsDocument)
#include "tst_settingsdocument.moc"
