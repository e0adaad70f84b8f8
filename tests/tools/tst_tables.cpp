// SPDX-License-Identifier: MIT
#include "tests/support/appconfigproperties.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "config/webappsettings.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commandline/commands.h"
#include "tools/nuv-apps-config/documents/deviceexamples.h"
#include "tools/nuv-apps-config/documents/documents.h"
#include "tools/nuv-apps-config/documents/reference.h"
#include "tools/nuv-apps-config/documents/templates.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

/// The table of properties, the library and the launcher speak of the same properties, and what is
/// made from the tables is what the tables say.
class tst_Tables : public QObject
{
    Q_OBJECT

private slots:
    void theTableHasThePropertiesOfTheLibrary();
    void theTableHasThePropertiesOfTheLauncher();
    void everyRowIsDescribed();
    void everyExampleIsAValueOfItsKind();
    void everyRuleHasItsSample_data();
    void everyRuleHasItsSample();
    void everyRuleInTheSourcesIsInTheTable();
    void committedDocumentsAreUpToDate_data();
    void committedDocumentsAreUpToDate();
    void samplesInTheDocumentsAreClean();
    void everyDeviceExampleIsShown();
    void deviceExamplesAreCleanAndLoaded_data();
    void deviceExamplesAreCleanAndLoaded();
    void everyCommandAndOptionIsDocumented_data();
    void everyCommandAndOptionIsDocumented();
    void theTemplateLoads();
    void theTemplateNamesEveryProperty();
};

namespace {

QByteArray contentsOf(const char *path)
{
    QFile file(QLatin1String(SOURCE_FOLDER "/") + QLatin1String(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList rulesFoundIn(const QByteArray &bytes, const QString &folder)
{
    QStringList rules;
    const std::unique_ptr<Analysis> analysis = analyse(QLatin1String("test"), bytes, folder);
    for (const Finding &finding : analysis->findings.all())
        rules.append(QLatin1String(finding.rule));
    return rules;
}

// Copies the files that the samples name, which only their owner can read but for `more`.
void copyCertificates(const TemporaryDir &folder, QFile::Permissions more = QFile::Permissions())
{
    const QDir certificates(
        QLatin1String(SOURCE_FOLDER "/tools/nuv-apps-config/samples/certificates"));
    QDir(folder.path()).mkdir(QLatin1String("certificates"));
    for (const QString &name : certificates.entryList(QDir::Files)) {
        const QString target = folder.filePath(QLatin1String("certificates/") + name);
        QFile::copy(certificates.filePath(name), target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | more);
    }
}

// Copies the pages and scripts that the examples for devices name.
void copyPages(const TemporaryDir &folder)
{
    const QDir examples(QLatin1String(SOURCE_FOLDER "/examples/configurations"));
    for (const char *name : { "pages/welcome.html", "scripts/back-to-welcome.js" }) {
        const QString path = QLatin1String(name);
        QDir(folder.path()).mkpath(path.section(QLatin1Char('/'), 0, 0));
        QFile::copy(examples.filePath(path), folder.filePath(path));
    }
}

// What is between ```json and ```.
QList<QByteArray> samplesIn(const QByteArray &page)
{
    QList<QByteArray> samples;
    const QByteArray begin = "```json\n";
    for (int at = page.indexOf(begin); at >= 0; at = page.indexOf(begin, at + 1)) {
        const int from = at + begin.size();
        samples.append(page.mid(from, page.indexOf("```", from) - from));
    }
    return samples;
}

} // namespace

void tst_Tables::theTableHasThePropertiesOfTheLibrary()
{
    QSet<QString> ours;
    for (const Property &property : Properties::all()) {
        if (property.property)
            ours.insert(QLatin1String(property.property));
    }
    QSet<QString> theirs;
    for (const AppConfigProperty &property : appConfigProperties) {
        theirs.insert(QLatin1String(property.name));
        const Property *row = Properties::findProperty(QLatin1String(property.name));
        QVERIFY2(row, property.name);
        const QString prefix = row->section == Section::Certificate ? QLatin1String("Certificate/")
                                                                    : QLatin1String("");
        QCOMPARE(prefix + QLatin1String(row->key), QString(QLatin1String(property.inFile)));
    }
    QCOMPARE(ours.size(), 42);
    QCOMPARE(ours, theirs);
}

void tst_Tables::theTableHasThePropertiesOfTheLauncher()
{
    const QString source =
        QString::fromUtf8(contentsOf("examples/launcher/effects/viewsettings.cpp"));
    const QRegularExpression row(QLatin1String("\\{ \"(\\w+)\",\\s*&AppConfig::get(\\w+)"));
    QSet<QString> names;
    QRegularExpressionMatchIterator it = row.globalMatch(source);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        QCOMPARE(match.captured(1), match.captured(2));
        QVERIFY2(Properties::findProperty(match.captured(1)), qPrintable(match.captured(1)));
        names.insert(match.captured(1));
    }
    QCOMPARE(names.size(), 42);
}

void tst_Tables::everyRowIsDescribed()
{
    for (const Property &property : Properties::all()) {
        const QString description = QLatin1String(property.description);
        QVERIFY2(description.size() > 20 && description.endsWith(QLatin1Char('.')), property.key);
        QVERIFY2(QLatin1String(property.whenMissing).size() > 3, property.key);
        for (const QString &need : Properties::needed(property))
            QVERIFY2(Properties::findProperty(need), property.key);
    }
}

void tst_Tables::everyExampleIsAValueOfItsKind()
{
    for (const Property &property : Properties::all()) {
        QByteArray members = QByteArray("\"") + property.key + "\": " + property.example;
        const QByteArray version = "\"Version\": 1";
        const QByteArray tag = "\"Tag\": \"tv\"";
        QByteArray global = version;
        QByteArray application = tag;
        QByteArray document;
        if (property.section == Section::Document)
            document = members;
        else if (property.section == Section::Global)
            global = qstrcmp(property.key, "Version") == 0 ? members : version + ", " + members;
        else if (property.section == Section::Application)
            application = qstrcmp(property.key, "Tag") == 0 ? members : tag + ", " + members;
        if (document.isEmpty())
            document = "\"Global\": {" + global + "}, \"Applications\": [ {" + application + "} ]";
        for (const QString &rule : rulesFoundIn('{' + document + '}', QLatin1String("/nowhere")))
            QVERIFY2(rule != QLatin1String("wrong-kind") && !rule.endsWith(QLatin1String("range")),
                     property.key);
    }
}

void tst_Tables::everyRuleHasItsSample_data()
{
    QTest::addColumn<QString>("id");
    for (const Rule &rule : Rules::all())
        QTest::newRow(rule.id) << QString(QLatin1String(rule.id));
}

// Of itself alone: that everyone can read a key is a matter of the file system.
void tst_Tables::everyRuleHasItsSample()
{
    QFETCH(QString, id);
    static const QStringList shownByNoFile = { QLatin1String("no-file"),
                                               QLatin1String("unreadable-file"),
                                               QLatin1String("variable-names-nothing"),
                                               QLatin1String("certificate-unexamined") };
    if (shownByNoFile.contains(id))
        return;
    const QByteArray name = "tools/nuv-apps-config/samples/" + id.toLatin1() + ".json";
    QVERIFY2(QFile::exists(QLatin1String(SOURCE_FOLDER "/") + QLatin1String(name)), name);
    const QByteArray bytes = contentsOf(name);
    const Rule &rule = Rules::find(id.toLatin1());
    QVERIFY(!Rules::isSyntaxError(rule.id) || rule.severity == Severity::Error);
    QCOMPARE(Rules::sample(*Rules::lookUp(id)), bytes);

    const TemporaryDir copy;
    copyCertificates(
        copy, id == QLatin1String("key-readable-by-all") ? QFile::ReadOther : QFile::Permissions());
    QCOMPARE(rulesFoundIn(bytes, copy.path()), QStringList(id));
}

void tst_Tables::everyRuleInTheSourcesIsInTheTable()
{
    QDirIterator it(QLatin1String(SOURCE_FOLDER "/tools/nuv-apps-config"),
                    QStringList(QLatin1String("*.cpp")), QDir::Files, QDirIterator::Subdirectories);
    const QRegularExpression use(
        QLatin1String("(?:add|error|addAtKey)\\((?:findings, )?\"([a-z-]+)\","));
    QSet<QString> used;
    while (it.hasNext()) {
        QFile file(it.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QRegularExpressionMatchIterator match = use.globalMatch(QString::fromUtf8(file.readAll()));
        while (match.hasNext())
            used.insert(match.next().captured(1));
    }
    QVERIFY(used.size() > 30);
    for (const QString &id : used)
        QVERIFY2(Rules::lookUp(id), qPrintable(id));
}

void tst_Tables::committedDocumentsAreUpToDate_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(generatedFiles().size()); ++i)
        QTest::newRow(generatedFiles()[size_t(i)].path) << i;
}

void tst_Tables::committedDocumentsAreUpToDate()
{
    QFETCH(int, index);
    const GeneratedFile &file = generatedFiles()[size_t(index)];
    QVERIFY2(contentsOf(file.path) == file.make(contentsOf(file.path)),
             "run: cmake --build BUILD --target documents");
}

void tst_Tables::samplesInTheDocumentsAreClean()
{
    const TemporaryDir folder;
    copyPages(folder);
    folder.write(QLatin1String("overlay.html"), "<p>");
    for (const char *page : { "docs/configuration.md", "README.md" }) {
        const QList<QByteArray> samples = samplesIn(contentsOf(page));
        QVERIFY2(!samples.isEmpty(), page);
        for (const QByteArray &sample : samples)
            QCOMPARE(rulesFoundIn(sample, folder.path()), QStringList());
    }
}

void tst_Tables::everyDeviceExampleIsShown()
{
    QStringList shown;
    for (const DeviceExample &example : DeviceExamples::all())
        shown.append(QLatin1String(example.name) + QLatin1String(".json"));
    shown.sort();
    const QDir files(QLatin1String(SOURCE_FOLDER "/examples/configurations"));
    QCOMPARE(shown, files.entryList(QDir::Files, QDir::Name));
}

void tst_Tables::deviceExamplesAreCleanAndLoaded_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(DeviceExamples::all().size()); ++i)
        QTest::newRow(DeviceExamples::all()[size_t(i)].name) << i;
}

void tst_Tables::deviceExamplesAreCleanAndLoaded()
{
    QFETCH(int, index);
    const QByteArray bytes = DeviceExamples::configuration(DeviceExamples::all()[size_t(index)]);
    const TemporaryDir folder;
    copyPages(folder);
    QCOMPARE(rulesFoundIn(bytes, folder.path()), QStringList());

    qputenv("NUV_APPS_CONFIG_FILE",
            folder.write(QLatin1String("AppsConfig.json"), bytes).toLatin1());
    const WebAppSettings settings;
    const QRegularExpression tag(QLatin1String("\"Tag\": \"(\\w+)\""));
    QRegularExpressionMatchIterator it = tag.globalMatch(QString::fromLatin1(bytes));
    QVERIFY(it.hasNext());
    while (it.hasNext()) {
        AppConfig config;
        QVERIFY(settings.getAppConfig(it.next().captured(1), config));
        QVERIFY(config.getUrl().isValid());
    }
}

void tst_Tables::everyCommandAndOptionIsDocumented_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("help") << Commands::help(nullptr).toUtf8();
    QTest::newRow("manual") << contentsOf("tools/nuv-apps-config/man/nuv-apps-config.1")
                                   .replace("\\-", "-")
                                   .replace("\\fB", "");
}

void tst_Tables::everyCommandAndOptionIsDocumented()
{
    QFETCH(QByteArray, text);
    for (const Command &command : Commands::all()) {
        const QRegularExpression word(
            QString(QLatin1String("\\b%1\\b")).arg(QLatin1String(command.name)));
        QVERIFY2(QString::fromUtf8(text).contains(word), command.name);
    }
    for (const Option &option : Commands::options())
        QVERIFY2(text.contains(QByteArray("--") + option.name), option.name);
}

void tst_Tables::theTemplateLoads()
{
    TemporaryDir folder;
    const QByteArray bytes = Templates::text(QLatin1String("all"));
    const QString path = folder.write(QLatin1String("AppsConfig.json"), bytes);
    QCOMPARE(rulesFoundIn(bytes, folder.path()), QStringList());

    qputenv("NUV_APPS_CONFIG_FILE", path.toLatin1());
    AppConfig config;
    QVERIFY(getWebAppSettings()->getAppConfig(QLatin1String("tv"), config));
    QCOMPARE(config.getUrl(), QVariant(QLatin1String("http://tv.example/")));
    QCOMPARE(config.getScale(), QVariant(1.5));
    QCOMPARE(config.getGrantBroadcastAccessRightDomains().toStringList(),
             QStringList(QLatin1String("broadcaster.example")));
    int configured = 0;
    for (const AppConfigProperty &property : appConfigProperties)
        configured += (config.*property.get)().isValid();
    QCOMPARE(configured, 42 - 10); // the others stand there as remarks
}

void tst_Tables::theTemplateNamesEveryProperty()
{
    const QByteArray bytes = Templates::text(QLatin1String("all"));
    for (const Property &property : Properties::all())
        QVERIFY2(bytes.contains(property.key), property.key);
    for (const Section section : { Section::Global, Section::Application }) {
        for (const Property *property : Properties::of(section)) {
            const QByteArray remark = "\"_comment " + QByteArray(property->key) + "\": \"";
            QVERIFY2(bytes.contains(remark), property->key);
        }
    }
}

NUV_TEST_MAIN(tst_Tables)
#include "tst_tables.moc"
