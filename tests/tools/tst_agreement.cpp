#include "config/webappsettings.h"
#include "fuzz/sizes.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "settings/jsonsettingsformat.h"
#include "tests/support/configdescription.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tests/tools/randomconfigurations.h"
#include "tools/nuv-apps-config/program.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QSettings>

#include <cstdio>

/// What nuv-apps-config says of a file is what a program that is linked to the library gets from it.
/// NUV_TEST_FILES sets how many files are tried, NUV_TEST_SEED which.
class tst_Agreement : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsWhatTheLibraryGives();
};

namespace {

int numberFrom(const char *variable, int fallback)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : fallback;
}

// The library's one warning, about a syntax error, comes with every second file.
void dropWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtWarningMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

bool takesMinutes(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    readJsonSettings(device, map);
    return claimsTooMuch(map);
}

// Every text that can be a tag: a tag is a scalar of the file, made a text.
void collectTexts(const QVariant &value, QSet<QString> *texts)
{
    if (VariantTree::isMap(value)) {
        for (const QVariant &member : VariantTree::map(value))
            collectTexts(member, texts);
    } else if (VariantTree::isList(value)) {
        for (const QVariant &element : VariantTree::list(value))
            collectTexts(element, texts);
    } else {
        texts->insert(value.toString());
    }
}

QStringList possibleTags(const QByteArray &bytes)
{
    QVariant tree = parseJson(bytes, nullptr);
    const VariantTree::Disposer disposer(tree);
    QSet<QString> texts;
    collectTexts(tree, &texts);
    texts.insert(QString());
    QStringList sorted = texts.values();
    sorted.sort();
    return sorted;
}

QByteArray describeApplication(const QString &tag, const AppConfig &config)
{
    return "application " + describeText(tag) + ": " + describeConfig(config) + '\n';
}

QByteArray describeHead(bool hasPort, uint port, const AppConfig &global)
{
    return "port: " + (hasPort ? QByteArray::number(port) : QByteArray("none"))
        + "\nglobal: " + describeConfig(global) + '\n';
}

// What a launcher gets that asks for all of these tags.
QByteArray givenByLibrary(const QStringList &tags)
{
    const WebAppSettings &settings = *getWebAppSettings();
    uint port = 0;
    const bool hasPort = settings.getGlobalRemoteInspectorPort(port);
    AppConfig config;
    settings.getGlobalConfig(config);
    QByteArray text = describeHead(hasPort, port, config);
    for (const QString &tag : tags) {
        AppConfig application;
        if (settings.getAppConfig(tag, application))
            text += describeApplication(tag, application);
    }
    return text;
}

// JSON in UTF-8, read with the library's own parser, which keeps all digits of a number.
QVariant readJson(const QByteArray &utf8)
{
    QByteArray ascii;
    for (const QChar c : QString::fromUtf8(utf8)) {
        if (c.unicode() < 0x80)
            ascii += char(c.unicode());
        else
            ascii += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    QString error;
    const QVariant tree = parseJson(ascii, &error);
    if (!error.isEmpty() || QJsonDocument::fromJson(utf8).isNull())
        qFatal("no JSON: %s", utf8.constData());
    return tree;
}

QVariant at(const QVariant &object, const char *key)
{
    return object.toMap().value(QLatin1String(key));
}

// The type that `show` names, in the words of describe().
bool isOfType(const QVariant &value, const QString &type)
{
    static const QHash<QString, int> types = { { QLatin1String("bool"), QMetaType::Bool },
                                               { QLatin1String("int"), QMetaType::Int },
                                               { QLatin1String("int64"), QMetaType::LongLong },
                                               { QLatin1String("double"), QMetaType::Double },
                                               { QLatin1String("string"), QMetaType::QString },
                                               { QLatin1String("list"), QMetaType::QStringList } };
    return value.userType() == types.value(type, -1);
}

AppConfig configFrom(const QVariant &shown)
{
    AppConfig config;
    for (const AppConfigProperty &property : appConfigProperties) {
        const QVariant entry = at(shown, property.name);
        if (!VariantTree::isMap(entry)) // not there, or the global port
            continue;
        QVariant value = at(entry, "value");
        const QString type = at(entry, "type").toString();
        if (type == QLatin1String("list"))
            value = value.toStringList();
        else if (type == QLatin1String("double") && value.toString().endsWith(QLatin1String("inf")))
            value = value.toString() == QLatin1String("inf") ? qInf() : -qInf();
        (config.*property.set)(isOfType(value, type) ? value
                                                     : QVariant(QLatin1String("not of the type")));
    }
    return config;
}

QByteArray saidByShow(const QByteArray &json)
{
    const QVariant root = readJson(json);
    const QVariant port = at(at(root, "global"), "RemoteInspectorPort");
    QByteArray text =
        describeHead(port.isValid(), uint(port.toULongLong()), configFrom(at(root, "global")));
    QMap<QString, QByteArray> applications;
    for (const QVariant &application : at(root, "applications").toList()) {
        const QString tag = at(application, "tag").toString();
        applications.insert(tag,
                            describeApplication(tag, configFrom(at(application, "properties"))));
    }
    for (const QByteArray &line : applications)
        text += line;
    return text;
}

QByteArray outputOf(const QStringList &arguments)
{
    return ChildCall::run([&] {
               Output output;
               return Program::run(QStringList(QLatin1String("nuv-apps-config")) + arguments,
                                   output);
           })
        .output;
}

QByteArray firstDifference(const QByteArray &given, const QByteArray &said)
{
    const QList<QByteArray> a = given.split('\n');
    const QList<QByteArray> b = said.split('\n');
    int i = 0;
    while (i < qMin(a.size(), b.size()) && a.at(i) == b.at(i))
        ++i;
    return "\nthe library gives " + a.value(i) + "\nthe program says  " + b.value(i) + '\n';
}

QStringList words(const char *text)
{
    return QString(QLatin1String(text)).split(QLatin1Char(' '));
}

} // namespace

void tst_Agreement::initTestCase()
{
    qInstallMessageHandler(dropWarnings);
}

void tst_Agreement::showsWhatTheLibraryGives()
{
    const TemporaryDir folder;
    RandomConfigurations configurations(uint(numberFrom("NUV_TEST_SEED", 1)));
    const int files = numberFrom("NUV_TEST_FILES", 1000);
    int applications = 0;
    for (int i = 0; i < files; ++i) {
        const QByteArray bytes = configurations.next();
        if (takesMinutes(bytes))
            continue;
        const QString path = folder.write(QString::number(i) + QLatin1String(".json"), bytes);
        const QStringList tags = possibleTags(bytes);
        qputenv("NUV_APPS_CONFIG_FILE", path.toLatin1());
        const QByteArray given = ChildCall::run([&] {
                                     ChildCall::writeAll(STDOUT_FILENO, givenByLibrary(tags));
                                     return 0;
                                 }).output;
        const QByteArray said =
            saidByShow(outputOf(words("show --format json --reveal --file") + QStringList(path)));
        QVERIFY2(given == said,
                 firstDifference(given, said) + "in file " + QByteArray::number(i) + ":\n" + bytes);
        applications += given.count("\napplication ");
        QFile::remove(path);
    }
    QVERIFY2(applications > files / 2, QByteArray::number(applications));
}

NUV_TEST_MAIN(tst_Agreement)
#include "tst_agreement.moc"
