// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tests/tools/mistakes.h"
#include "tools/nuv-apps-config/report/reports.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// What other programs are told: places, paths and repairs that they can rely on.
class tst_Reports : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aRepairInJsonIsTheEdit();
    void sarifSaysTheHintAndTheEdit();
    void thePathLeadsToTheValue_data();
    void thePathLeadsToTheValue();
    void aSecretIsInNoRepair();
    void whatIsNoTextIsInNoRepair_data();
    void whatIsNoTextIsInNoRepair();
    void sarifSaysWhereTheProgramIsExplained();

private:
    QJsonObject reported(std::unique_ptr<Report> (*make)(Output &)) const;

    TemporaryDir m_folder;
    std::vector<std::unique_ptr<Analysis>> m_files;
};

namespace {

QJsonValue member(const QJsonValue &object, const char *name)
{
    return object.toObject().value(QLatin1String(name));
}

int number(const QJsonValue &object, const char *name)
{
    return member(object, name).toInt(-1);
}

// The offset of a place; columns count characters.
int offsetOf(const QByteArray &bytes, int line, int column)
{
    int offset = 0;
    for (int i = 1; i < line; ++i)
        offset = bytes.indexOf('\n', offset) + 1;
    for (int i = 1; i < column; ++i) {
        ++offset;
        while (offset < bytes.size() && (bytes.at(offset) & 0xc0) == 0x80)
            ++offset;
    }
    return offset;
}

QByteArray changed(QByteArray bytes, const QJsonValue &region, const char *line, const char *column,
                   const QString &inserted)
{
    const int begin = offsetOf(bytes, number(region, line), number(region, column));
    const int end = offsetOf(bytes, number(region, "endLine"), number(region, "endColumn"));
    return bytes.replace(begin, end - begin, inserted.toUtf8());
}

bool isText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).toUtf8() == bytes && !bytes.contains('\r');
}

} // namespace

void tst_Reports::initTestCase()
{
    for (const Mistakes::Kind &kind : Mistakes::syntaxKinds() + Mistakes::meaningKinds()) {
        std::mt19937 engine(uint(Amount::given("NUV_TEST_SEED", 1)));
        for (int i = 0; i < Amount::tried("NUV_TEST_FILES", 4); ++i) {
            Mistakes::Planted file;
            file.bytes = Mistakes::configurationOfRound(i);
            if (kind.plant(&file, engine) && isText(file.bytes))
                m_files.push_back(analyse(QLatin1String("test.json"), file.bytes, m_folder.path()));
        }
    }
}

QJsonObject tst_Reports::reported(std::unique_ptr<Report> (*make)(Output &)) const
{
    const ChildCall::Result result = ChildCall::run([&] {
        Output output;
        const std::unique_ptr<Report> report = make(output);
        for (const auto &file : m_files)
            report->add(*file, Effect());
        report->finish();
        return output.flush() ? 0 : 1;
    });
    return QJsonDocument::fromJson(result.output).object();
}

void tst_Reports::aRepairInJsonIsTheEdit()
{
    const QJsonArray files = reported(makeJsonReport).value(QLatin1String("files")).toArray();
    QCOMPARE(files.size(), int(m_files.size()));
    int repaired = 0;
    for (int i = 0; i < files.size(); ++i) {
        const Analysis &analysis = *m_files[size_t(i)];
        const QByteArray &bytes = analysis.source.bytes();
        const QJsonArray findings = member(files.at(i), "findings").toArray();
        QCOMPARE(findings.size(), int(analysis.findings.all().size()));
        for (int j = 0; j < findings.size(); ++j) {
            const QJsonValue found = findings.at(j);
            const Finding &finding = analysis.findings.all()[size_t(j)];
            const int end = offsetOf(bytes, number(found, "endLine"), number(found, "endColumn"));
            QCOMPARE(end, qMin(bytes.size(), finding.offset + qMax(1, finding.length)));
            const QJsonValue repair = member(found, "repair");
            if (repair.isUndefined())
                continue;
            QCOMPARE(changed(bytes, repair, "line", "column", member(repair, "text").toString()),
                     finding.edit.appliedTo(bytes));
            ++repaired;
        }
    }
    QVERIFY(repaired > 50);
}

void tst_Reports::sarifSaysTheHintAndTheEdit()
{
    const QJsonValue run = reported(makeSarifReport).value(QLatin1String("runs")).toArray().at(0);
    const QJsonArray results = member(run, "results").toArray();
    int at = 0, fixed = 0;
    for (const auto &file : m_files) {
        const QByteArray &bytes = file->source.bytes();
        for (const Finding &finding : file->findings.all()) {
            const QJsonValue result = results.at(at++);
            const QString hint =
                finding.hint.isEmpty() ? QString() : QLatin1String(". Hint: ") + finding.hint;
            QCOMPARE(member(member(result, "message"), "text").toString(), finding.text + hint);
            const QJsonArray fixes = member(result, "fixes").toArray();
            if (fixes.isEmpty())
                continue;
            QCOMPARE(member(member(fixes.at(0), "description"), "text").toString(), finding.hint);
            const QJsonValue change = member(fixes.at(0), "artifactChanges").toArray().at(0);
            QCOMPARE(member(member(change, "artifactLocation"), "uri").toString(),
                     QString(QLatin1String("test.json")));
            const QJsonValue replacement = member(change, "replacements").toArray().at(0);
            QCOMPARE(changed(bytes, member(replacement, "deletedRegion"), "startLine",
                             "startColumn",
                             member(member(replacement, "insertedContent"), "text").toString()),
                     finding.edit.appliedTo(bytes));
            ++fixed;
        }
    }
    QCOMPARE(at, results.size());
    QVERIFY(fixed > 50);
}

void tst_Reports::thePathLeadsToTheValue_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *bytes, const char *expected) {
        QTest::newRow(name) << QByteArray(bytes) << QString(QLatin1String(expected));
    };
    row("a value",
        "{ \"Global\": { \"Version\": 3 }, \"Applications\": [ { \"Tag\": \"a\", "
        "\"Url\": \"http://a/\" } ] }",
        "Global.Version");
    row("an element",
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"a\", \"Url\": "
        "\"http://a/\" }, { \"Url\": \"http://a/\" } ] }",
        "Applications[1]");
    row("a key",
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"a\", \"Url\": "
        "\"http://a/\", \"GrantBroadcastAccessRightDomains\": [ { \"Domain\": \"a\", \"X\": 1 } ] "
        "} ] }",
        "Applications[0].GrantBroadcastAccessRightDomains[0].X");
    row("a key that is no word",
        "{ \"Global\": { \"Version\": 1, \"a \\\"key\": 1 }, \"Applications\": [ { \"Tag\": "
        "\"a\", \"Url\": \"http://a/\" } ] }",
        "Global[\"a \\\"key\"]");
    QTest::newRow("a key with an accent of its own")
        << QByteArray("{ \"Global\": { \"Version\": 1, \"e\\u0301t\": 1 }, \"Applications\": [ { "
                      "\"Tag\": \"a\", \"Url\": \"http://a/\" } ] }")
        << QString::fromUtf8("Global.e\xcc\x81t");
    row("the document", "[]", "");
}

void tst_Reports::thePathLeadsToTheValue()
{
    QFETCH(QByteArray, bytes);
    m_files.clear();
    m_files.push_back(analyse(QLatin1String("test.json"), bytes, m_folder.path()));
    const QJsonValue file = reported(makeJsonReport).value(QLatin1String("files")).toArray().at(0);
    const QJsonArray findings = member(file, "findings").toArray();
    QCOMPARE(findings.size(), 1);
    QTEST(member(findings.at(0), "path").toString(), "expected");
}

void tst_Reports::aSecretIsInNoRepair()
{
    m_files.clear();
    m_files.push_back(analyse(
        QLatin1String("test.json"),
        "{ \"Global\": { \"Version\": 1, \"Certificate\": { \"Path\": \"a\", \"PassPhrase\": "
        "1234567890, \"Passphrase\": 'geheimes Wort' } } }",
        m_folder.path()));
    for (const auto make : { makeJsonReport, makeSarifReport }) {
        const QByteArray text = QJsonDocument(reported(make)).toJson();
        QVERIFY(!text.contains("12345") && !text.contains("geheim"));
    }
}

void tst_Reports::whatIsNoTextIsInNoRepair_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<bool>("isRepaired");
    QTest::newRow("ASCII") << QByteArray("cafe") << true;
    QTest::newRow("UTF-8") << QByteArray("caf\xc3\xa9") << true;
    QTest::newRow("Latin-1") << QByteArray("caf\xe9") << false;
}

// The repair takes an application out of an array in the array.
void tst_Reports::whatIsNoTextIsInNoRepair()
{
    QFETCH(QByteArray, tag);
    QFETCH(bool, isRepaired);
    m_files.clear();
    m_files.push_back(
        analyse(QLatin1String("test.json"),
                "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ [ { \"Tag\": \"" + tag
                    + "\", \"Url\": \"about:blank\" } ] ] }",
                m_folder.path()));
    const QJsonValue file = reported(makeJsonReport).value(QLatin1String("files")).toArray().at(0);
    const QJsonValue found = member(file, "findings").toArray().at(0);
    QCOMPARE(member(found, "rule").toString(), QString(QLatin1String("wrong-kind")));
    QCOMPARE(!member(found, "repair").isUndefined(), isRepaired);
}

void tst_Reports::sarifSaysWhereTheProgramIsExplained()
{
    const QJsonValue run = reported(makeSarifReport).value(QLatin1String("runs")).toArray().at(0);
    const QJsonValue driver = member(member(run, "tool"), "driver");
    QCOMPARE(member(driver, "informationUri").toString(),
             QString(QLatin1String("man:nuv-apps-config(1)")));
    QCOMPARE(
        member(driver, "rules").toArray().at(0).toObject().keys().join(QLatin1Char(' ')),
        QString(QLatin1String("defaultConfiguration fullDescription help id shortDescription")));
}

NUV_TEST_MAIN(tst_Reports)
#include "tst_reports.moc"
