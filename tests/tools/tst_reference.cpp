// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"

#include "tools/nuv-apps-config/commandline/invocation.h"
#include "tools/nuv-apps-config/documents/reference.h"
#include "tools/nuv-apps-config/report/reports.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <functional>

/// What editors, viewers and readers of a terminal are told of keys and rules.
class tst_Reference : public QObject
{
    Q_OBJECT

private slots:
    void everyPatternOfTheSchemaHasASentence();
    void theSchemaHasKeywordsOfTheStandardOnly();
    void everySectionOfTheSchemaTakesItsName();
    void hoverTextsNameKeysOfTheFile();
    void explanationsFitOnAScreen_data();
    void explanationsFitOnAScreen();
    void everyRuleOfSarifHasItsHelp();
    void examplesOfTheManualCanBeCalled();
    void noTextOfTheManualsIsTakenForARequest_data();
    void noTextOfTheManualsIsTakenForARequest();
};

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

// Calls `look` for each object in `value`, the outermost first.
void walk(const QJsonValue &value, const std::function<void(const QJsonObject &)> &look)
{
    const QJsonObject members = value.toObject();
    const QJsonArray elements = value.toArray();
    if (value.isObject())
        look(members);
    for (auto member = members.constBegin(); member != members.constEnd(); ++member)
        walk(member.value(), look);
    for (auto element = elements.constBegin(); element != elements.constEnd(); ++element)
        walk(*element, look);
}

void walkSchema(const std::function<void(const QJsonObject &)> &look)
{
    walk(QJsonDocument::fromJson(Reference::schema()).object(), look);
}

} // namespace

void tst_Reference::everyPatternOfTheSchemaHasASentence()
{
    const QRegularExpression sentence(
        text("\\bA[n]? (address|referrer|proxy|user agent|domain|path|tag) (is|has|begins) .*\\."));
    int count = 0;
    walkSchema([&](const QJsonObject &schema) {
        if (!schema.contains(text("pattern")) || !schema.contains(text("title")))
            return;
        const QString hover = schema.value(text("description")).toString();
        QVERIFY2(sentence.match(hover).hasMatch(), qPrintable(hover));
        ++count;
    });
    QVERIFY(count >= 8);
}

// A linter that is strict refuses a schema with a keyword that is not of the standard.
void tst_Reference::theSchemaHasKeywordsOfTheStandardOnly()
{
    const QStringList keywords =
        text(
            "$schema additionalProperties anyOf dependencies description examples exclusiveMaximum "
            "items maximum minimum pattern patternProperties properties required title type")
            .split(QLatin1Char(' '));
    const QStringList maps(QStringList(text("properties")) << text("patternProperties"));
    const std::function<void(const QJsonObject &)> look = [&](const QJsonObject &schema) {
        for (const QString &keyword : schema.keys()) {
            QVERIFY2(keywords.contains(keyword), qPrintable(keyword));
            const QJsonValue value = schema.value(keyword);
            const QJsonObject members = value.toObject();
            for (const QString &name : maps.contains(keyword) ? members.keys() : QStringList())
                look(members.value(name).toObject());
            if (keyword == text("items"))
                look(members);
            const QJsonArray forms = keyword == text("anyOf") ? value.toArray() : QJsonArray();
            for (int i = 0; i < forms.size(); ++i)
                look(forms.at(i).toObject());
        }
    };
    look(QJsonDocument::fromJson(Reference::schema()).object());
}

void tst_Reference::everySectionOfTheSchemaTakesItsName()
{
    int count = 0;
    walkSchema([&](const QJsonObject &schema) {
        if (schema.value(text("additionalProperties")) != QJsonValue(false))
            return;
        const QJsonObject members = schema.value(text("properties")).toObject();
        QCOMPARE(members.value(text("$schema")).toObject().value(text("type")).toString(),
                 text("string"));
        ++count;
    });
    QCOMPARE(count, 6); // the certificate is in two of them
}

void tst_Reference::hoverTextsNameKeysOfTheFile()
{
    QStringList keys;
    for (const Property &property : Properties::all())
        keys.append(text(property.key));
    const QRegularExpression need(text(" Needs (\\w+)(?: or (\\w+))?\\."));
    int count = 0;
    walkSchema([&](const QJsonObject &schema) {
        const auto match = need.match(schema.value(text("description")).toString());
        for (int i = 1; i <= match.lastCapturedIndex(); ++i) {
            QVERIFY2(keys.contains(match.captured(i)), qPrintable(match.captured(i)));
            ++count;
        }
    });
    QVERIFY(count >= 8);
}

void tst_Reference::explanationsFitOnAScreen_data()
{
    QTest::addColumn<QString>("id");
    for (const Rule &rule : Rules::all())
        QTest::newRow(rule.id) << text(rule.id);
}

void tst_Reference::explanationsFitOnAScreen()
{
    QFETCH(QString, id);
    const QString explanation = Reference::explain(*Rules::lookUp(id));
    QVERIFY2(explanation.size() < 24 * 80, qPrintable(explanation));
    for (const QString &line : explanation.split(QLatin1Char('\n')))
        QVERIFY2(line.size() <= 132, qPrintable(line));
}

void tst_Reference::everyRuleOfSarifHasItsHelp()
{
    const ChildCall::Result result = ChildCall::run([] {
        Output output;
        makeSarifReport(output)->finish();
        return output.flush() ? 0 : 1;
    });
    int count = 0;
    walk(QJsonDocument::fromJson(result.output).object(), [&](const QJsonObject &rule) {
        const Rule *known = Rules::lookUp(rule.value(text("id")).toString());
        if (!known)
            return;
        const QString help = rule.value(text("help")).toObject().value(text("text")).toString();
        QVERIFY2(help.contains(text(known->description)), known->id);
        QVERIFY2(
            help.endsWith(
                QString(text(" \"nuv-apps-config explain %1\" says more.")).arg(text(known->id))),
            qPrintable(help));
        ++count;
    });
    QCOMPARE(count, int(Rules::all().size()));
}

void tst_Reference::examplesOfTheManualCanBeCalled()
{
    QString manual = QString::fromUtf8(Reference::programManual());
    manual.replace(text("\\-"), text("-"));
    const QRegularExpression call(
        text("\n\\\\fBnuv-apps-config ([^>\n]+?)(?: > [\\w.]+)?\\\\fR\n"));
    int count = 0;
    QRegularExpressionMatchIterator it = call.globalMatch(manual);
    while (it.hasNext()) {
        Invocation invocation;
        QString error;
        const QStringList words =
            QStringList(text("nuv-apps-config")) + it.next().captured(1).split(QLatin1Char(' '));
        QVERIFY2(parseCommandLine(words, &invocation, &error), qPrintable(error));
        QVERIFY(invocation.command);
        ++count;
    }
    QCOMPARE(count, manual.count(text("\n\\fBnuv-apps-config ")));
    QVERIFY(count > 3);
}

void tst_Reference::noTextOfTheManualsIsTakenForARequest_data()
{
    QTest::addColumn<QString>("manual");
    QTest::newRow("program") << QString::fromUtf8(Reference::programManual());
    QTest::newRow("file") << QString::fromUtf8(Reference::formatManual());
}

// A line of them that begins with a point or a quote would not be shown.
void tst_Reference::noTextOfTheManualsIsTakenForARequest()
{
    QFETCH(QString, manual);
    const QRegularExpression request(text("^(\\.\\\\\" |\\.(TH|SH|TP|PP|br|nf|fi)\\b)"));
    for (const QString &line : manual.split(QLatin1Char('\n'))) {
        const bool isRequest =
            line.startsWith(QLatin1Char('.')) || line.startsWith(QLatin1Char('\''));
        QVERIFY2(!isRequest || request.match(line).hasMatch(), qPrintable(line));
    }
}

NUV_TEST_MAIN(tst_Reference)
#include "tst_reference.moc"
