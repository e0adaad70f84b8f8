// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/testmain.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "settings/flatkeys.h"
#include "settings/jsonsettingsformat.h"
#include "tests/tools/mistakes.h"
#include "tests/tools/randomconfigurations.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/documents/templates.h"
#include "tools/nuv-apps-config/report/layout.h"

#include <QDirIterator>

/// What fmt makes of a file.
class tst_Layout : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void becomes_data();
    void becomes();
    void changesBlanksOnly();
    void whatIsOddStaysAsItIs();
    void theProjectsOwnFilesAreInOrder();
};

namespace {

std::unique_ptr<Analysis> analysed(const QByteArray &bytes)
{
    return analyse(QLatin1String("test"), bytes, QString(QLatin1String("/")));
}

QByteArray formatted(const QByteArray &bytes)
{
    const auto analysis = analysed(bytes);
    return Layout::of(analysis->document, bytes);
}

// What is left without the blanks between the tokens.
QByteArray squeezed(const QByteArray &bytes)
{
    QByteArray left;
    bool isText = false;
    for (int i = 0; i < bytes.size(); ++i) {
        const char c = bytes.at(i);
        if (!isText && (c == ' ' || c == '\t' || c == '\r' || c == '\n'))
            continue;
        left += c;
        if (c == '"')
            isText = !isText;
        if (c == '\\' && isText && i + 1 < bytes.size())
            left += bytes.at(++i);
    }
    return left;
}

QSettings::SettingsMap flatKeys(const QByteArray &bytes)
{
    QVariant tree = parseJson(bytes, nullptr);
    const VariantTree::Disposer disposer(tree);
    QSettings::SettingsMap map;
    QString prefix;
    flattenVariant(prefix, map, tree);
    return map;
}

bool hasTrailingBlanks(const QByteArray &bytes)
{
    return bytes.contains(" \n") || bytes.contains("\n\n\n") || bytes.endsWith("\n\n");
}

} // namespace

// Names of files with a NUL in them are among what the configurations by chance have.
void tst_Layout::initTestCase()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

void tst_Layout::becomes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const char *bytes, const char *expected) {
        QTest::newRow(name) << QByteArray(bytes) << QByteArray(expected);
    };
    row("everything on one line", "{\"b\":[1,{}],\"a\":\"\xc3\xa9\"}",
        "{\n    \"b\": [ 1, {} ],\n    \"a\": \"\xc3\xa9\"\n}\n");
    row("everything on lines of its own", "{\n\"b\"\n:\n[\n1\n,\n{\n}\n]\n}",
        "{\n    \"b\": [\n        1,\n        {}\n    ]\n}\n");
    row("a remark stays with its key", "{\"b\" : 1,\n \"_comment a\":\"x\", \"a\":2}\r\n",
        "{\n    \"b\": 1,\n    \"_comment a\": \"x\",\n    \"a\": 2\n}\n");
    row("one blank line stays", "{\n\n\n\"b\": 1,\n\n\n\n\"a\": 2,\n\"c\": 3\n\n}\n\n\n",
        "{\n    \"b\": 1,\n\n    \"a\": 2,\n    \"c\": 3\n}\n");
    row("a blank line with returns and tabs stays", "{\r\n\"b\": 1,\r\n \t\r\n\"a\": 2\r\n}\r\n",
        "{\n    \"b\": 1,\n\n    \"a\": 2\n}\n");
    row("commas at the begin of lines", "{\n\"b\": 1\n,\n\"a\": 2\n}",
        "{\n    \"b\": 1,\n    \"a\": 2\n}\n");
    row("what is too long for a line",
        "{ \"a\": { \"first\": \"0123456789012345678901234567890123456789\", \"second\": "
        "\"01234567890123456789012345678901234567890\" } }",
        "{\n    \"a\": {\n        \"first\": \"0123456789012345678901234567890123456789\",\n"
        "        \"second\": \"01234567890123456789012345678901234567890\"\n    }\n}\n");
    row("nothing but brackets", "{ }", "{}\n");
    row("a value alone", " 1 ", "1\n");
    row("keys that come twice", "{ \"a\": 1, \"a\": 2 }", "{\n    \"a\": 1,\n    \"a\": 2\n}\n");
    row("all digits", "{ \"a\": 99999999999999999999, \"b\": 1.10 }",
        "{\n    \"a\": 99999999999999999999,\n    \"b\": 1.10\n}\n");
    row("blanks inside of strings", "{\"a  b\":\" c\\\" : \\\\\"}",
        "{\n    \"a  b\": \" c\\\" : \\\\\"\n}\n");
}

void tst_Layout::becomes()
{
    QFETCH(QByteArray, bytes);
    QTEST(formatted(bytes), "expected");
}

void tst_Layout::changesBlanksOnly()
{
    for (const QByteArray &bytes : Mistakes::configurations()) {
        const QByteArray once = formatted(bytes);
        QCOMPARE(squeezed(once), squeezed(bytes));
        QCOMPARE(formatted(once), once);
        QVERIFY(once.endsWith('\n') && !hasTrailingBlanks(once));
    }
}

void tst_Layout::whatIsOddStaysAsItIs()
{
    RandomConfigurations configurations(uint(Amount::given("NUV_TEST_SEED", 1)));
    int tried = 0;
    for (int i = 0; i < Amount::tried("NUV_TEST_FILES", 2000); ++i) {
        const QByteArray bytes = configurations.next();
        const auto analysis = analysed(bytes);
        if (analysis->findings.hasSyntaxError() || analysis->document.isEmpty())
            continue;
        const QByteArray once = Layout::of(analysis->document, bytes);
        QCOMPARE(flatKeys(once), flatKeys(bytes));
        QCOMPARE(formatted(once), once);
        ++tried;
    }
    QVERIFY(tried > 50);
}

void tst_Layout::theProjectsOwnFilesAreInOrder()
{
    QDirIterator it(QLatin1String(SOURCE_FOLDER "/examples"), QStringList(QLatin1String("*.json")),
                    QDir::Files, QDirIterator::Subdirectories);
    int tried = 0;
    while (it.hasNext()) {
        QFile file(it.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(formatted(bytes), bytes);
        ++tried;
    }
    QVERIFY(tried > 4);
    for (const QString &name : Templates::names())
        QCOMPARE(formatted(Templates::text(name)), Templates::text(name));
}

NUV_TEST_MAIN(tst_Layout)
#include "tst_layout.moc"
