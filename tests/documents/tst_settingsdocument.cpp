// SPDX-License-Identifier: MIT
#include "settings/jsonsettingsformat.h"

#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "tests/documents/documenttable.h"
#include "tests/support/describe.h"
#include "tests/support/messages.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QBitArray>
#include <QBuffer>
#include <QDateTime>
#include <QLine>
#include <QLocale>
#include <QRect>
#include <QUrl>

#include <limits>

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

// What is between backticks.
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

/// A type that the toolkit knows nothing about.
struct OwnType {
    int member;
};

QVariantMap scalars()
{
    QVariantMap values;
    values.insert(QLatin1String("true"), true);
    values.insert(QLatin1String("7"), 7);
    values.insert(QLatin1String("7u"), 7u);
    values.insert(QLatin1String("qlonglong 5"), qlonglong(5));
    values.insert(QLatin1String("qlonglong 5000000000"), Q_INT64_C(5000000000));
    values.insert(QLatin1String("qulonglong 18446744073709551615"),
                  Q_UINT64_C(18446744073709551615));
    values.insert(QLatin1String("0.5"), 0.5);
    values.insert(QLatin1String("2.0"), 2.0);
    values.insert(QLatin1String("0.1 + 0.2"), 0.1 + 0.2);
    values.insert(QLatin1String("0.5f"), 0.5f);
    values.insert(QLatin1String("not a number"), std::numeric_limits<double>::quiet_NaN());
    values.insert(QLatin1String("infinity"), std::numeric_limits<double>::infinity());
    values.insert(QLatin1String("an invalid variant"), QVariant());
    return values;
}

QVariantMap texts()
{
    QVariantMap values;
    values.insert(QLatin1String("QString \"text\""), QLatin1String("text"));
    values.insert(QLatin1String("QString \"\""), QString(QLatin1String("")));
    values.insert(QLatin1String("QString()"), QString());
    values.insert(QLatin1String("QString \"@Invalid()\""), QLatin1String("@Invalid()"));
    values.insert(QLatin1String("QChar"), QChar(QLatin1Char('x')));
    values.insert(QLatin1String("QByteArray \"bytes\""), QByteArray("bytes"));
    values.insert(QLatin1String("QDate"), QDate(2026, 1, 2));
    values.insert(QLatin1String("QTime"), QTime(3, 4, 5));
    values.insert(QLatin1String("QDateTime"), QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    values.insert(QLatin1String("QUrl"), QUrl(QLatin1String("http://host.example/p")));
    values.insert(QLatin1String("QLocale"), QLocale(QLatin1String("de")));
    return values;
}

QVariantMap containers()
{
    const QStringList strings = QStringList() << QLatin1String("a") << QLatin1String("b");
    QVariantMap map;
    map.insert(QLatin1String("k"), 1);
    QVariantHash hash;
    hash.insert(QLatin1String("k"), 1);
    QVariantMap values;
    values.insert(QLatin1String("QStringList \"a\", \"b\""), strings);
    values.insert(QLatin1String("QStringList()"), QStringList());
    values.insert(QLatin1String("QVariantList 1, \"x\""),
                  QVariantList() << 1 << QLatin1String("x"));
    values.insert(QLatin1String("QVariantMap k: 1"), map);
    values.insert(QLatin1String("QVariantMap()"), QVariantMap());
    values.insert(QLatin1String("QVariantHash"), hash);
    values.insert(QLatin1String("QBitArray"), QBitArray(3, true));
    return values;
}

QVariantMap shapes()
{
    const OwnType own = { 1 };
    QVariantMap values;
    values.insert(QLatin1String("QPoint"), QPoint(1, 2));
    values.insert(QLatin1String("QPointF"), QPointF(1, 2));
    values.insert(QLatin1String("QSize"), QSize(1, 2));
    values.insert(QLatin1String("QSizeF"), QSizeF(1, 2));
    values.insert(QLatin1String("QRect"), QRect(1, 2, 3, 4));
    values.insert(QLatin1String("QRectF"), QRectF(1, 2, 3, 4));
    values.insert(QLatin1String("QLine"), QLine(1, 2, 3, 4));
    values.insert(QLatin1String("a type of the program's own"), QVariant::fromValue(own));
    return values;
}

/// What the table calls by these names.
QVariantMap storedValues()
{
    const QVariantMap parts[] = { scalars(), texts(), containers(), shapes() };
    QVariantMap all;
    for (const QVariantMap &part : parts) {
        for (QVariantMap::const_iterator it = part.constBegin(); it != part.constEnd(); ++it)
            all.insert(it.key(), it.value());
    }
    return all;
}

QString nameOf(const QString &cell)
{
    return cell.startsWith(QLatin1Char('`')) ? codesOf(cell).at(0) : cell;
}

/// What the file has under "v", without blanks between tokens.
QString writtenAs(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QLatin1String("no file");
    QString text = QString::fromLatin1(file.readAll().simplified());
    text = text.section(QLatin1String("\"v\":"), 1).trimmed();
    text.chop(1); // the bracket of the root
    const bool isContainer = text.contains(QLatin1Char('[')) || text.contains(QLatin1Char('{'));
    return isContainer ? text.remove(QLatin1Char(' ')) : text.trimmed();
}

/// What the next start finds under "v".
QString readAgain(const QSettings &settings)
{
    if (!settings.contains(QLatin1String("before")))
        return QLatin1String("the file does not read");
    QStringList keys = settings.allKeys();
    keys.removeAll(QLatin1String("before"));
    const QVariant value = settings.value(QLatin1String("v"));
    if (value.isValid())
        return QString::fromLatin1(describe(value));
    keys.removeAll(QLatin1String("v"));
    return keys.isEmpty() ? QString(QLatin1String("nothing")) : keys.join(QLatin1String(", "));
}

QString expected(const QString &cell)
{
    const QStringList codes = codesOf(cell);
    return codes.isEmpty() ? cell : codes.join(QLatin1String(", "));
}

} // namespace

Q_DECLARE_METATYPE(OwnType)

/// The tables of docs/settings-format.md are true.
class tst_SettingsDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyDocumentBecomesTheseKeysAndThisAgain_data();
    void everyDocumentBecomesTheseKeysAndThisAgain();
    void everySetOfKeysIsWrittenLikeThis_data();
    void everySetOfKeysIsWrittenLikeThis();
    void whatIsStoredIsReadAgainLikeThis_data();
    void whatIsStoredIsReadAgainLikeThis();
    void everyKindOfValueIsInTheTable();
    void aClearedFileHasTheEmptyKey();
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

void tst_SettingsDocument::whatIsStoredIsReadAgainLikeThis_data()
{
    addRows("What a program may store");
}

void tst_SettingsDocument::whatIsStoredIsReadAgainLikeThis()
{
    QFETCH(QStringList, row);
    QCOMPARE(row.size(), 4);
    const QString name = nameOf(row.at(0));
    const QVariantMap values = storedValues();
    QVERIFY2(values.contains(name), qPrintable(name));
    const bool hasMilliseconds = !ToolkitDifferences::isQt4();
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("stored.json"));
    const QString nextStart = folder.filePath(QLatin1String("read.json"));

    {
        QSettings settings(path, JsonSettingsFormat);
        settings.setValue(QLatin1String("before"), 1);
        settings.setValue(QLatin1String("v"), values.value(name));
    }
    QVERIFY(QFile::copy(path, nextStart)); // the toolkit remembers what it wrote
    Messages messages;
    const QSettings settings(nextStart, JsonSettingsFormat);
    QCOMPARE(settings.status(), QSettings::NoError);

    const QString milliseconds = QLatin1String(".000");
    QString file = expected(row.at(1));
    QString again = expected(row.at(2));
    if (!hasMilliseconds) {
        file.remove(milliseconds);
        again.remove(milliseconds);
    }
    QCOMPARE(writtenAs(path), file);
    QCOMPARE(readAgain(settings), again);
}

void tst_SettingsDocument::everyKindOfValueIsInTheTable()
{
    QStringList names;
    const Table table =
        tableBelow(QLatin1String("docs/settings-format.md"), "What a program may store");
    for (int i = 0; i < table.size(); ++i)
        names.append(nameOf(table.at(i).at(0)));
    names.sort();

    QCOMPARE(names, QStringList(storedValues().keys()));
}

void tst_SettingsDocument::aClearedFileHasTheEmptyKey()
{
    const TemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("cleared.json"));
    const QString nextStart = folder.filePath(QLatin1String("read.json"));
    {
        QSettings settings(path, JsonSettingsFormat);
        settings.setValue(QLatin1String("key"), 1);
        settings.sync();
        settings.clear();
    }
    QVERIFY(QFile::copy(path, nextStart));

    const QSettings settings(nextStart, JsonSettingsFormat);

    QCOMPARE(settings.allKeys(), QStringList(QString(QLatin1String(""))));
    QVERIFY(!settings.value(QString()).isValid());
    QVERIFY(!settings.contains(QLatin1String("key")));
}

NUV_TEST_MAIN(tst_SettingsDocument)
#include "tst_settingsdocument.moc"
