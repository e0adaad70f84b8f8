// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "config/webappsettings.h"
#include "fuzz/sizes.h"
#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "settings/jsonsettingsformat.h"
#include "tests/support/configdescription.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tests/tools/randomconfigurations.h"
#include "tools/nuv-apps-config/analysis/libraryview.h"
#include "tools/nuv-apps-config/commands/program.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSettings>

#include <csignal>
#include <cstdio>
#include <cstring>

#include <sys/resource.h>

/// What nuv-apps-config says of a file is what a program that is linked to the library gets from it.
/// NUV_TEST_FILES sets how many files are tried, NUV_TEST_SEED which.
class tst_Agreement : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsWhatTheLibraryGives();
    void listsAndGetsWhatTheLibraryGives();
    void keysAreThoseOfAnySettings();
    void checkSaysWhatTheLauncherWillSee();
    void diffFindsWhatDiffersForTheLauncher();
    void saysThatThereIsNoMemoryForAFile();

private:
    // The next file that does not keep the loader busy, at its path.
    QByteArray nextFile(RandomConfigurations *configurations);

    TemporaryDir m_folder;
    QString m_path;
    int m_number = 0;
};

namespace {

int fileCount()
{
    return Amount::tried("NUV_TEST_FILES", 400);
}

uint seed()
{
    return uint(Amount::given("NUV_TEST_SEED", 1));
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

// Every string that can be a tag: a tag is a scalar of the file, made a string.
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

// What a launcher gets that asks for all of these tags. The library reads its file once in a process.
QByteArray givenByLibrary(const QString &path, const QStringList &tags)
{
    qputenv("NUV_APPS_CONFIG_FILE", path.toLatin1());
    return ChildCall::run([&] {
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
               ChildCall::writeAll(STDOUT_FILENO, text);
               return 0;
           })
        .output;
}

// The library tells only what comes of it.
float versionIn(const QString &path)
{
    return QSettings(path, JsonSettingsFormat).value(QLatin1String("Global/Version")).toFloat();
}

// What a launcher gets, in this process, for a file with a name of its own.
QMap<QString, AppConfig> applicationsOf(const QString &path, const QStringList &tags)
{
    qputenv("NUV_APPS_CONFIG_FILE", path.toLatin1());
    const WebAppSettings settings;
    QMap<QString, AppConfig> applications;
    for (const QString &tag : tags) {
        AppConfig application;
        if (settings.getAppConfig(tag, application))
            applications.insert(tag, application);
    }
    return applications;
}

bool isParsed(const QByteArray &bytes)
{
    QString error;
    QVariant tree = parseJson(bytes, &error);
    const VariantTree::Disposer disposer(tree);
    return error.isEmpty() && !bytes.isEmpty();
}

// Behind the token at which the library stops.
int whereParsingStops(const QByteArray &bytes)
{
    QString error;
    QVariant tree = parseJson(bytes, &error);
    const VariantTree::Disposer disposer(tree);
    return error.isEmpty() ? bytes.size() : error.section(QLatin1Char(' '), -1).toInt();
}

bool isWhereTheLibraryStops(const QByteArray &bytes, int line)
{
    int begin = 0;
    for (int i = 1; i < line; ++i)
        begin = bytes.indexOf('\n', begin) + 1;
    const bool isReadBefore = begin == 0 || whereParsingStops(bytes.left(begin)) >= begin;
    return isReadBefore && whereParsingStops(bytes) >= begin;
}

bool isSameDouble(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

QByteArray plain(const QVariant &value)
{
    return (value.userType() == QMetaType::QStringList
                ? value.toStringList().join(QLatin1Char('\n'))
                : value.toString())
        .toUtf8();
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
    return QtCompat::toMultiMap(object).value(QLatin1String(key));
}

// The type that `show` names, in the words of describe().
bool isOfType(const QVariant &value, const QString &type)
{
    static const QHash<QString, int> types = { { QLatin1String("bool"), QMetaType::Bool },
                                               { QLatin1String("int"), QMetaType::Int },
                                               { QLatin1String("int64"), QMetaType::LongLong },
                                               { QLatin1String("null"), QMetaType::UnknownType },
                                               { QLatin1String("double"), QMetaType::Double },
                                               { QLatin1String("string"), QMetaType::QString },
                                               { QLatin1String("list"), QMetaType::QStringList } };
    return value.userType() == types.value(type, -1);
}

// The value of an entry with its type.
QVariant valueFrom(const QVariant &entry)
{
    QVariant value = at(entry, "value");
    const QString type = at(entry, "type").toString();
    if (type == QLatin1String("list"))
        value = value.toStringList();
    else if (type == QLatin1String("double") && value.toString().endsWith(QLatin1String("inf")))
        value = value.toString() == QLatin1String("inf") ? qInf() : -qInf();
    return isOfType(value, type) ? value : QVariant(QLatin1String("not of the type"));
}

AppConfig configFrom(const QVariant &shown)
{
    AppConfig config;
    for (const AppConfigProperty &property : appConfigProperties) {
        const QVariant entry = at(shown, property.name);
        if (VariantTree::isMap(entry)) // not so if it is not there, or the global port
            (config.*property.set)(valueFrom(entry));
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

struct Result {
    int status;
    QByteArray output;
};

Result called(const char *call, const QString &path, const QStringList &more = QStringList())
{
    const QStringList arguments =
        QString(QLatin1String("nuv-apps-config ") + QLatin1String(call)).split(QLatin1Char(' '))
        << path << more;
    const ChildCall::Result result = ChildCall::run([&] {
        Output output;
        return Program::run(arguments, output);
    });
    return Result { result.isEnded() ? result.exitStatus() : -1, result.output };
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

} // namespace

void tst_Agreement::initTestCase()
{
    qInstallMessageHandler(dropWarnings);
}

// The toolkit keeps what it read by the name of the file, so each has its own.
QByteArray tst_Agreement::nextFile(RandomConfigurations *configurations)
{
    QByteArray bytes = configurations->next();
    while (takesMinutes(bytes))
        bytes = configurations->next();
    QFile::remove(m_path);
    m_path = m_folder.write(QString::number(++m_number) + QLatin1String(".json"), bytes);
    return bytes;
}

void tst_Agreement::showsWhatTheLibraryGives()
{
    RandomConfigurations configurations(seed());
    int applications = 0;
    for (int i = 0; i < fileCount(); ++i) {
        const QByteArray bytes = nextFile(&configurations);
        const QByteArray given = givenByLibrary(m_path, possibleTags(bytes));
        const QByteArray said =
            saidByShow(called("show --format json --reveal --file", m_path).output);
        QVERIFY2(given == said, firstDifference(given, said) + "in file:\n" + bytes);
        applications += given.count("\napplication ");
    }
    QVERIFY2(applications > fileCount() / 4, QByteArray::number(applications));
}

void tst_Agreement::listsAndGetsWhatTheLibraryGives()
{
    RandomConfigurations configurations(seed() + 1);
    for (int i = 0; i < fileCount() / 4; ++i) {
        const QByteArray bytes = nextFile(&configurations);
        const QMap<QString, AppConfig> given = applicationsOf(m_path, possibleTags(bytes));
        const Result listed = called("list --format json --file", m_path);
        QCOMPARE(listed.status, isParsed(bytes) ? 0 : 1);
        QStringList tags = isParsed(bytes) ? readJson(listed.output).toStringList() : QStringList();
        tags.sort();
        QVERIFY2(tags == QStringList(given.keys()), bytes);
        for (const QString &tag : tags) {
            const AppConfigProperty &property = appConfigProperties[(i + m_number) % 42];
            const QVariant value = (given.value(tag).*property.get)();
            const Result got = called("get --file", m_path,
                                      { QLatin1String("--"), tag, QLatin1String(property.name) });
            QVERIFY2(got.status == (value.isValid() ? 0 : 1), bytes);
            if (value.userType() == QMetaType::Double)
                QVERIFY2(isSameDouble(got.output.trimmed().toDouble(), value.toDouble()), bytes);
            else if (value.isValid())
                QVERIFY2(got.output == plain(value) + '\n', bytes);
        }
    }
}

void tst_Agreement::keysAreThoseOfAnySettings()
{
    RandomConfigurations configurations(seed() + 2);
    for (int i = 0; i < fileCount() / 4; ++i) {
        const QByteArray bytes = nextFile(&configurations);
        const Result result = called("keys --format json --reveal --file", m_path);
        QVERIFY2(result.status == (isParsed(bytes) ? 0 : 1), bytes);
        if (!isParsed(bytes))
            continue;
        const QtCompat::MultiMap said = QtCompat::toMultiMap(readJson(result.output));
        const QSettings settings(m_path, JsonSettingsFormat);
        QVERIFY2(said.keys() == settings.allKeys(), bytes);
        for (const QString &key : settings.allKeys()) {
            const QVariant entry = said.value(key);
            QVERIFY2(describe(valueFrom(entry)) == describe(settings.value(key)),
                     describeText(key) + " in\n" + bytes);
        }
    }
}

// The line of a syntax error is true when what comes before it is the begin of a document that the
// library would read, and when the library does not stop before it.
void tst_Agreement::checkSaysWhatTheLauncherWillSee()
{
    RandomConfigurations configurations(seed() + 3);
    const QRegularExpression seen(QLatin1String("^the launcher will see (\\d+|no|none)\\b"));
    const QRegularExpression stops(
        QLatin1String("^nothing is read of this file: .* in line (\\d+)$"));
    int stopped = 0;
    for (int i = 0; i < fileCount() / 2; ++i) {
        const QByteArray bytes = nextFile(&configurations);
        const QByteArray last = called("check", m_path).output.trimmed().split('\n').last();
        const QString effect = QString::fromUtf8(last);
        const int count = applicationsOf(m_path, possibleTags(bytes)).size();
        const QRegularExpressionMatch number = seen.match(effect);
        const QRegularExpressionMatch line = stops.match(effect);
        QVERIFY2(number.hasMatch() == isParsed(bytes), last + " of\n" + bytes);
        if (number.hasMatch())
            QVERIFY2(number.captured(1).toInt() == count, last + " of\n" + bytes);
        if (!line.hasMatch())
            continue;
        ++stopped;
        QVERIFY2(isWhereTheLibraryStops(bytes, line.captured(1).toInt()), last + " of\n" + bytes);
    }
    QVERIFY(stopped > fileCount() / 20);
}

void tst_Agreement::diffFindsWhatDiffersForTheLauncher()
{
    RandomConfigurations configurations(seed() + 4);
    for (int i = 0; i < fileCount() / 4; ++i) {
        const QByteArray first = nextFile(&configurations);
        const QByteArray given = givenByLibrary(m_path, possibleTags(first));
        QByteArray second = first;
        const int at = second.lastIndexOf("true");
        if (i % 2 == 1 && at >= 0)
            second.replace(at, 4, "false");
        const QString other =
            m_folder.write(QLatin1String("other-") + QString::number(m_number), second);
        const bool isSame = givenByLibrary(other, possibleTags(second)) == given
            && versionIn(other) == versionIn(m_path);
        const Result result = called("diff", m_path, { other });
        QFile::remove(other);
        if (isParsed(first) && isParsed(second))
            QVERIFY2(result.status == (isSame ? 0 : 1), second);
        else
            QCOMPARE(result.status, 1);
    }
}

// QtTest ends a function after five minutes, which is for a few hundred files. It reads the limit before
// it calls the test.
static const bool isTimeEnough = qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT")
    || qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(300000 + 1000 * qint64(fileCount())));

// Where the copy cannot be written, nothing is said that the library would say of a part of it.
void tst_Agreement::saysThatThereIsNoMemoryForAFile()
{
    const QByteArray bytes = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [] }";
    rlimit usual = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (int room = 0; room <= bytes.size(); room += 7) {
        QString error;
        const rlimit limit = { rlim_t(room), usual.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto view = LibraryView::load(bytes, &error);
        ::setrlimit(RLIMIT_FSIZE, &usual);
        QVERIFY(!view);
        QCOMPARE(error, QString(QLatin1String("there is not enough memory for this file")));
    }
    std::signal(SIGXFSZ, handler);
    QString error;
    QVERIFY(LibraryView::load(bytes, &error));
}

NUV_TEST_MAIN(tst_Agreement)
#include "tst_agreement.moc"
