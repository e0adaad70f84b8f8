// SPDX-License-Identifier: MIT
#include "config/webappsettings.h"

#include "config/webappsettings_p.h"
#include "settings/jsonsettingsformat.h"
#include "tests/support/configdescription.h"
#include "tests/support/messages.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QSettings>

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <typeinfo>

static_assert(std::is_same<decltype(&WebAppSettings::getGlobalRemoteInspectorPort),
                           bool (WebAppSettings::*)(unsigned int &) const>::value,
              "the port is written to an unsigned int");
static_assert(std::is_same<decltype(&WebAppSettings::getGlobalConfig),
                           bool (WebAppSettings::*)(AppConfig &) const>::value,
              "the global configuration is written to an AppConfig");
static_assert(std::is_same<decltype(&WebAppSettings::getAppConfig),
                           bool (WebAppSettings::*)(QString const &, AppConfig &) const>::value,
              "an application's configuration is found by its tag");
static_assert(std::is_same<decltype(&getWebAppSettings), WebAppSettings *(*)()>::value,
              "the instance is handed out by pointer");
static_assert(std::is_polymorphic<WebAppSettings>::value
                  && std::has_virtual_destructor<WebAppSettings>::value
                  && sizeof(WebAppSettings) == 2 * sizeof(void *),
              "a WebAppSettings is a virtual table and a pointer");

namespace {

/// The state of the loader, with what it keeps for the process released at the end of the block.
class Loaded : public WebAppSettingsPrivate
{
public:
    ~Loaded() { delete settings; }
};

QByteArray globalOf(const WebAppSettings &settings)
{
    AppConfig config;
    return settings.getGlobalConfig(config) ? describeConfig(config) : QByteArray("refused");
}

QByteArray applicationOf(const WebAppSettings &settings, const char *tag)
{
    AppConfig config;
    if (!settings.getAppConfig(QLatin1String(tag), config))
        return "none";
    return describeConfig(config);
}

QByteArray portOf(const WebAppSettings &settings)
{
    unsigned int port = 12345;
    if (settings.getGlobalRemoteInspectorPort(port))
        return QByteArray::number(port);
    return port == 12345 ? "none" : "none, but written";
}

// Sorted by tag, one line each.
QByteArray describeApplications(const QHash<QString, AppConfig> &applications)
{
    QMap<QString, AppConfig> sorted;
    QHash<QString, AppConfig>::const_iterator it;
    for (it = applications.constBegin(); it != applications.constEnd(); ++it)
        sorted.insert(it.key(), it.value());
    QByteArray result;
    for (QMap<QString, AppConfig>::const_iterator at = sorted.constBegin(); at != sorted.constEnd();
         ++at)
        result += describeText(at.key()) + ": " + describeConfig(at.value()) + '\n';
    return result;
}

} // namespace

class tst_WebAppSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void privateStateIsLaidOutInItsOrder();
    void versionsDecideAboutTheApplications_data();
    void versionsDecideAboutTheApplications();
    void portsAreReadAsNumbers_data();
    void portsAreReadAsNumbers();
    void lookupsWithAPortOfVersionOne();
    void globalCertificatesNeedAPath_data();
    void globalCertificatesNeedAPath();
    void applicationsAreFiledUnderTheirTags_data();
    void applicationsAreFiledUnderTheirTags();
    void everyPropertyComesFromItsKeyOfTheFile();
    void everyNullLeavesItsPropertyUnset();
    void everyKeyInLowerCaseIsIgnored();
    void everyKindOfValueIsStoredAsItIs();
    void nothingIsInheritedFromTheGlobalSection();
    void propertiesOfApplications_data();
    void propertiesOfApplications();
    void malformedFilesGiveNothingButOneWarning();
    void nothingIsOpenedWithoutAFile();
    void filesThatCannotBeReadGiveNothing();
    void whatIsInNoFileYetGivesNothing();
    void missesLeaveTheOutputAlone();
    void tagsAreComparedExactly();
    void changingWhatWasHandedOutChangesNothingStored();
    void handedOutConfigurationsShareTheStoredValues();
    void whatWasHandedOutOutlivesTheSettings();
    void everyObjectReadsTheFileOfItsTime();
    void theInstanceIsOneAndNeverReloads();
    void classNameIsKnownAtRunTime();
    void lookupsWithoutStateFail();

private:
    QString writeConfiguration(const QByteArray &json);
    void useFile(const QString &path);

    TemporaryDir m_folder;
    QString m_folderBefore;
    int m_files = 0;
};

void tst_WebAppSettings::initTestCase()
{
    // No file of the default name is here.
    m_folderBefore = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder.path()));
}

void tst_WebAppSettings::cleanupTestCase()
{
    ::unsetenv("NUV_APPS_CONFIG_FILE");
    QDir::setCurrent(m_folderBefore);
}

// The toolkit shares what it parsed by the file's path, so each case has a path of its own.
QString tst_WebAppSettings::writeConfiguration(const QByteArray &json)
{
    const QString path = m_folder.write(QString::fromLatin1("%1.json").arg(++m_files), json);
    useFile(path);
    return path;
}

void tst_WebAppSettings::useFile(const QString &path)
{
    ::setenv("NUV_APPS_CONFIG_FILE", QFile::encodeName(path).constData(), 1);
}

void tst_WebAppSettings::privateStateIsLaidOutInItsOrder()
{
    QVERIFY(offsetof(WebAppSettingsPrivate, applications) == 0);
    QVERIFY(offsetof(WebAppSettingsPrivate, settings) < offsetof(WebAppSettingsPrivate, version));
    QVERIFY(offsetof(WebAppSettingsPrivate, version)
            < offsetof(WebAppSettingsPrivate, remoteInspectorPort));
    QVERIFY(offsetof(WebAppSettingsPrivate, remoteInspectorPort)
            < offsetof(WebAppSettingsPrivate, globalConfig));
    QVERIFY(sizeof(WebAppSettingsPrivate) == 2 * sizeof(void *) + 8 + sizeof(AppConfig));
}

void tst_WebAppSettings::versionsDecideAboutTheApplications_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<float>("version");
    QTest::addColumn<bool>("isUsable");

    const float infinity = std::numeric_limits<float>::infinity();
    const bool comma = ToolkitDifferences::readsCommaAsDecimalSign();

    QTest::newRow("1") << QByteArray("\"Version\": 1,") << 1.0f << true;
    QTest::newRow("1.0") << QByteArray("\"Version\": 1.0,") << 1.0f << true;
    QTest::newRow("1.5") << QByteArray("\"Version\": 1.5,") << 1.5f << true;
    QTest::newRow("1.9") << QByteArray("\"Version\": 1.9,") << 1.9f << true;
    QTest::newRow("1.9999999") << QByteArray("\"Version\": 1.9999999,") << 1.9999999f << true;
    QTest::newRow("1 as text") << QByteArray("\"Version\": \"1\",") << 1.0f << true;
    QTest::newRow("1.5 as text") << QByteArray("\"Version\": \"1.5\",") << 1.5f << true;
    QTest::newRow("1e0 as text") << QByteArray("\"Version\": \"1e0\",") << 1.0f << true;
    QTest::newRow("1 with a comma as text")
        << QByteArray("\"Version\": \"1,5\",") << (comma ? 1.5f : 0.0f) << comma;
    QTest::newRow("1 and two digits after a comma, in a string")
        << QByteArray("\"Version\": \"1,00\",") << (comma ? 1.0f : 0.0f) << comma;
    QTest::newRow("1 and three digits after a comma, in a string")
        << QByteArray("\"Version\": \"1,000\",") << (comma ? 1.0f : 0.0f) << comma;
    QTest::newRow("1.000 as text") << QByteArray("\"Version\": \"1.000\",") << 1.0f << true;
    QTest::newRow("1.5 between blanks as text")
        << QByteArray("\"Version\": \" 1.5\t\",") << 1.5f << true;
    QTest::newRow("true") << QByteArray("\"Version\": true,") << 1.0f << true;
    QTest::newRow("0.99999999 is narrowed to 1")
        << QByteArray("\"Version\": 0.99999999,") << 1.0f << true;
    QTest::newRow("1.99999999 is narrowed to 2")
        << QByteArray("\"Version\": 1.99999999,") << 2.0f << false;
    QTest::newRow("1.99999999 as text")
        << QByteArray("\"Version\": \"1.99999999\",") << 2.0f << false;
    QTest::newRow("0.9999999") << QByteArray("\"Version\": 0.9999999,") << 0.9999999f << false;
    QTest::newRow("0.99") << QByteArray("\"Version\": 0.99,") << 0.99f << false;
    QTest::newRow("2") << QByteArray("\"Version\": 2,") << 2.0f << false;
    QTest::newRow("0.5") << QByteArray("\"Version\": 0.5,") << 0.5f << false;
    QTest::newRow("0") << QByteArray("\"Version\": 0,") << 0.0f << false;
    QTest::newRow("-1") << QByteArray("\"Version\": -1,") << -1.0f << false;
    QTest::newRow("-1.5") << QByteArray("\"Version\": -1.5,") << -1.5f << false;
    QTest::newRow("false") << QByteArray("\"Version\": false,") << 0.0f << false;
    QTest::newRow("missing") << QByteArray() << 0.0f << false;
    QTest::newRow("null") << QByteArray("\"Version\": null,") << 0.0f << false;
    QTest::newRow("empty text") << QByteArray("\"Version\": \"\",") << 0.0f << false;
    QTest::newRow("a word") << QByteArray("\"Version\": \"one\",") << 0.0f << false;
    QTest::newRow("an object") << QByteArray("\"Version\": {\"a\": 1},") << 0.0f << false;
    QTest::newRow("an array") << QByteArray("\"Version\": [1],") << 0.0f << false;
    QTest::newRow("another case") << QByteArray("\"version\": 1,") << 0.0f << false;
    QTest::newRow("5000000000") << QByteArray("\"Version\": 5000000000,") << 5000000000.0f << false;
    QTest::newRow("1e300") << QByteArray("\"Version\": 1e300,") << infinity << false;
    QTest::newRow("-1e300") << QByteArray("\"Version\": -1e300,") << -infinity << false;
    QTest::newRow("1e400") << QByteArray("\"Version\": 1e400,")
                           << float(ToolkitDifferences::overflownNumber()) << false;
    QTest::newRow("1e400 as text") << QByteArray("\"Version\": \"1e400\",")
                                   << float(ToolkitDifferences::overflownNumber()) << false;
    QTest::newRow("inf as text") << QByteArray("\"Version\": \"inf\",") << infinity << false;
    QTest::newRow("nan as text") << QByteArray("\"Version\": \"nan\",")
                                 << std::numeric_limits<float>::quiet_NaN() << false;
}

void tst_WebAppSettings::versionsDecideAboutTheApplications()
{
    QFETCH(QByteArray, member);
    QFETCH(float, version);
    QFETCH(bool, isUsable);
    writeConfiguration("{\"Global\": {" + member
                       + "\"RemoteInspectorPort\": 9222, \"Certificate\": {\"Path\": \"p\"}}, "
                         "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"u\"}]}");

    const Messages messages;
    const Loaded loaded;
    const WebAppSettings settings;

    QVERIFY(loaded.settings);
    QCOMPARE(int(loaded.settings->status()), int(QSettings::NoError));
    QVERIFY(!loaded.settings->parent()); // nothing frees it
    if (std::isnan(version))
        QVERIFY(std::isnan(loaded.version));
    else
        QVERIFY2(!(loaded.version < version) && !(loaded.version > version),
                 QByteArray::number(double(loaded.version)).constData());
    QCOMPARE(loaded.isUsable(), isUsable);

    // Whatever the version is, the global values are read.
    QCOMPARE(loaded.remoteInspectorPort, 9222u);
    QCOMPARE(globalOf(settings), QByteArray("CertPath = string \"p\""));
    QCOMPARE(portOf(settings), QByteArray(isUsable ? "9222" : "none"));
    QCOMPARE(applicationOf(settings, "tv"), QByteArray(isUsable ? "Url = string \"u\"" : "none"));
    QCOMPARE(loaded.applications.size(), isUsable ? 1 : 0);
    QCOMPARE(messages.count(), 0);
}

void tst_WebAppSettings::portsAreReadAsNumbers_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<quint32>("stored");
    QTest::addColumn<QByteArray>("handedOut");

    const quint32 none = 4294967295u;
    QTest::newRow("9222") << QByteArray("\"RemoteInspectorPort\": 9222,") << 9222u
                          << QByteArray("9222");
    QTest::newRow("900") << QByteArray("\"RemoteInspectorPort\": 900,") << 900u
                         << QByteArray("900");
    QTest::newRow("0 is a port") << QByteArray("\"RemoteInspectorPort\": 0,") << 0u
                                 << QByteArray("0");
    QTest::newRow("65536") << QByteArray("\"RemoteInspectorPort\": 65536,") << 65536u
                           << QByteArray("65536");
    QTest::newRow("4294967294") << QByteArray("\"RemoteInspectorPort\": 4294967294,") << 4294967294u
                                << QByteArray("4294967294");
    QTest::newRow("4294967295 reads as not set")
        << QByteArray("\"RemoteInspectorPort\": 4294967295,") << none << QByteArray("none");
    QTest::newRow("-1 reads as not set")
        << QByteArray("\"RemoteInspectorPort\": -1,") << none << QByteArray("none");
    QTest::newRow("9222.5 is rounded")
        << QByteArray("\"RemoteInspectorPort\": 9222.5,") << 9223u << QByteArray("9223");
    QTest::newRow("a number as text")
        << QByteArray("\"RemoteInspectorPort\": \"900\",") << 900u << QByteArray("900");
    QTest::newRow("-1 as text is no number")
        << QByteArray("\"RemoteInspectorPort\": \"-1\",") << 0u << QByteArray("0");
    QTest::newRow("a word is no number")
        << QByteArray("\"RemoteInspectorPort\": \"abc\",") << 0u << QByteArray("0");
    QTest::newRow("empty text is no number")
        << QByteArray("\"RemoteInspectorPort\": \"\",") << 0u << QByteArray("0");
    QTest::newRow("true is 1") << QByteArray("\"RemoteInspectorPort\": true,") << 1u
                               << QByteArray("1");
    QTest::newRow("null is not set")
        << QByteArray("\"RemoteInspectorPort\": null,") << none << QByteArray("none");
    QTest::newRow("missing is not set") << QByteArray() << none << QByteArray("none");
    QTest::newRow("an object is not set")
        << QByteArray("\"RemoteInspectorPort\": {\"a\": 1},") << none << QByteArray("none");
    QTest::newRow("an array is not set")
        << QByteArray("\"RemoteInspectorPort\": [9222],") << none << QByteArray("none");
    QTest::newRow("another case is not set")
        << QByteArray("\"remoteInspectorPort\": 9222,") << none << QByteArray("none");
}

void tst_WebAppSettings::portsAreReadAsNumbers()
{
    QFETCH(QByteArray, member);
    QFETCH(quint32, stored);
    QFETCH(QByteArray, handedOut);
    writeConfiguration("{\"Global\": {" + member + "\"Version\": 1}}");

    const Loaded loaded;
    const WebAppSettings settings;

    QCOMPARE(loaded.remoteInspectorPort, stored);
    QCOMPARE(portOf(settings), handedOut);
}

void tst_WebAppSettings::lookupsWithAPortOfVersionOne()
{
    writeConfiguration("{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 900}}");
    const WebAppSettings settings;

    unsigned int port = 5;
    QVERIFY(settings.getGlobalRemoteInspectorPort(port));
    QCOMPARE(port, 900u);
    AppConfig config;
    QVERIFY(settings.getGlobalConfig(config));
    QCOMPARE(entriesOf(config).size(), 0);
    QVERIFY(!settings.getAppConfig(QString(), config));
}

void tst_WebAppSettings::globalCertificatesNeedAPath_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("global");

    QTest::newRow("all three")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\", \"PrivateKey\": \"k\", "
                      "\"PassPhrase\": \"w\"}}}")
        << QByteArray("CertPassPhrase = string \"w\"; CertPrivateKey = string \"k\"; "
                      "CertPath = string \"p\"");
    QTest::newRow("a path only") << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\"}}}")
                                 << QByteArray("CertPath = string \"p\"");
    QTest::newRow("a path and a key")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\", \"PrivateKey\": \"k\"}}}")
        << QByteArray("CertPrivateKey = string \"k\"; CertPath = string \"p\"");
    QTest::newRow("a path and a pass phrase")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\", \"PassPhrase\": \"w\"}}}")
        << QByteArray("CertPassPhrase = string \"w\"; CertPath = string \"p\"");
    QTest::newRow("no path") << QByteArray("{\"Global\": {\"Certificate\": {\"PrivateKey\": \"k\", "
                                           "\"PassPhrase\": \"w\"}}}")
                             << QByteArray();
    QTest::newRow("a path that is null")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": null, \"PrivateKey\": \"k\"}}}")
        << QByteArray();
    QTest::newRow("an empty path is a path")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"\", \"PrivateKey\": \"k\"}}}")
        << QByteArray("CertPrivateKey = string \"k\"; CertPath = string \"\"");
    QTest::newRow("a key and a pass phrase that are null")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\", \"PrivateKey\": null, "
                      "\"PassPhrase\": null}}}")
        << QByteArray("CertPath = string \"p\"");
    QTest::newRow("other kinds of values")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": 1, \"PrivateKey\": true, "
                      "\"PassPhrase\": 0.5}}}")
        << QByteArray("CertPassPhrase = double 0.5; CertPrivateKey = bool true; CertPath = int 1");
    QTest::newRow("at the top level")
        << QByteArray("{\"Certificate\": {\"Path\": \"p\"}, \"Global\": {\"Version\": 1}}")
        << QByteArray();
    QTest::newRow("with other keys of the same words")
        << QByteArray("{\"Global\": {\"Path\": \"p\", \"CertPath\": \"p\", "
                      "\"certificate\": {\"Path\": \"p\"}, \"Certificate\": {\"path\": \"p\"}}}")
        << QByteArray();
    QTest::newRow("two global sections both count")
        << QByteArray("{\"Global\": {\"Certificate\": {\"Path\": \"p\"}}, "
                      "\"Global\": {\"Certificate\": {\"Path\": \"q\", \"PrivateKey\": \"k\"}}}")
        << QByteArray("CertPrivateKey = string \"k\"; CertPath = string \"p\"");
}

void tst_WebAppSettings::globalCertificatesNeedAPath()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, global);
    writeConfiguration(json);

    const WebAppSettings settings;

    QCOMPARE(globalOf(settings), global);
}

void tst_WebAppSettings::applicationsAreFiledUnderTheirTags_data()
{
    QTest::addColumn<QByteArray>("applications");
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("two applications") << QByteArray(
        "\"Applications\": [{\"Tag\": \"b\", \"Url\": 2}, {\"Tag\": \"a\", \"Url\": 1}]")
                                      << QByteArray("\"a\": Url = int 1\n\"b\": Url = int 2\n");
    QTest::newRow("a tag only") << QByteArray("\"Applications\": [{\"Tag\": \"a\"}]")
                                << QByteArray("\"a\": \n");
    QTest::newRow("of two with one tag the first is kept whole")
        << QByteArray("\"Applications\": [{\"Tag\": \"tv\", \"Url\": 1}, "
                      "{\"Tag\": \"tv\", \"Url\": 2, \"Scale\": 2}]")
        << QByteArray("\"tv\": Url = int 1\n");
    QTest::newRow("tags that differ in case")
        << QByteArray(
               "\"Applications\": [{\"Tag\": \"tv\", \"Url\": 1}, {\"Tag\": \"TV\", \"Url\": 2}]")
        << QByteArray("\"TV\": Url = int 2\n\"tv\": Url = int 1\n");
    QTest::newRow("tags that differ in spaces")
        << QByteArray(
               "\"Applications\": [{\"Tag\": \" tv\", \"Url\": 1}, {\"Tag\": \"tv\", \"Url\": 2}]")
        << QByteArray("\" tv\": Url = int 1\n\"tv\": Url = int 2\n");
    QTest::newRow("no tag in between")
        << QByteArray("\"Applications\": [{\"Tag\": \"a\"}, {\"Url\": 2}, {\"Tag\": \"c\"}]")
        << QByteArray("\"a\": \n\"c\": \n");
    QTest::newRow("a tag of null in between")
        << QByteArray("\"Applications\": [{\"Tag\": null, \"Url\": 2}, {\"Tag\": \"c\"}]")
        << QByteArray("\"c\": \n");
    QTest::newRow("a tag in another case")
        << QByteArray("\"Applications\": [{\"tag\": \"a\"}]") << QByteArray();
    QTest::newRow("a tag that is an object")
        << QByteArray("\"Applications\": [{\"Tag\": {\"x\": 1}}, {\"Tag\": [1]}]") << QByteArray();
    QTest::newRow("a number") << QByteArray("\"Applications\": [{\"Tag\": 7}]")
                              << QByteArray("\"7\": \n");
    QTest::newRow("the same number as text is a duplicate")
        << QByteArray("\"Applications\": [{\"Tag\": 7, \"Url\": 1}, {\"Tag\": \"7\", \"Url\": 2}]")
        << QByteArray("\"7\": Url = int 1\n");
    QTest::newRow("true and false")
        << QByteArray("\"Applications\": [{\"Tag\": true}, {\"Tag\": false}]")
        << QByteArray("\"false\": \n\"true\": \n");
    QTest::newRow("doubles") << QByteArray("\"Applications\": [{\"Tag\": 1.5}, {\"Tag\": 2.0}, "
                                           "{\"Tag\": -0.25}]")
                             << QByteArray("\"-0.25\": \n\"1.5\": \n\"2\": \n");
    // Qt 4 writes 15 digits, Qt 5 as few as lead back to the number.
    QTest::newRow("a million as a double")
        << QByteArray("\"Applications\": [{\"Tag\": 1000000.0}]")
        << QByteArray(ToolkitDifferences::either("\"1000000\": \n", "\"1e+06\": \n"));
    QTest::newRow("a double of 16 digits")
        << QByteArray("\"Applications\": [{\"Tag\": 1.000000000000001}]")
        << QByteArray(ToolkitDifferences::either("\"1\": \n", "\"1.000000000000001\": \n"));
    QTest::newRow("two doubles of 16 digits are one tag or two")
        << QByteArray("\"Applications\": [{\"Tag\": 1.000000000000001}, {\"Tag\": 1.0}]")
        << QByteArray(
               ToolkitDifferences::either("\"1\": \n", "\"1\": \n\"1.000000000000001\": \n"));
    QTest::newRow("a long integer") << QByteArray("\"Applications\": [{\"Tag\": 5000000000}]")
                                    << QByteArray("\"5000000000\": \n");
    QTest::newRow("the empty text") << QByteArray("\"Applications\": [{\"Tag\": \"\", \"Url\": 1}]")
                                    << QByteArray("\"\": Url = int 1\n");
    QTest::newRow("bytes above 127") << QByteArray("\"Applications\": [{\"Tag\": \"\xc3\xa9\"}]")
                                     << QByteArray("\"<c3><a9>\": \n");
    QTest::newRow("no array") << QByteArray("\"Other\": 1") << QByteArray();
    QTest::newRow("an empty array") << QByteArray("\"Applications\": []") << QByteArray();
    QTest::newRow("a scalar") << QByteArray("\"Applications\": 3") << QByteArray();
    QTest::newRow("an object") << QByteArray("\"Applications\": {\"1\": {\"Tag\": \"a\"}}")
                               << QByteArray();
    QTest::newRow("an object with a size is as good as an array") << QByteArray(
        "\"Applications\": {\"1\": {\"Tag\": \"a\"}, \"2\": {\"Tag\": \"b\"}, \"size\": 1}")
                                                                  << QByteArray("\"a\": \n");
    QTest::newRow("a size beyond the elements") << QByteArray(
        "\"Applications\": {\"1\": {\"Tag\": \"a\"}, \"7\": {\"Tag\": \"b\"}, \"size\": 9}")
                                                << QByteArray("\"a\": \n\"b\": \n");
    QTest::newRow("a size below zero")
        << QByteArray("\"Applications\": {\"1\": {\"Tag\": \"a\"}, \"size\": -1}") << QByteArray();
    QTest::newRow("elements that are no objects")
        << QByteArray("\"Applications\": [1, \"Tag\", null, [], {}, {\"Tag\": \"a\"}]")
        << QByteArray("\"a\": \n");
    QTest::newRow("another case of the name")
        << QByteArray("\"applications\": [{\"Tag\": \"a\"}]") << QByteArray();
    QTest::newRow("eleven applications are visited in the order of the file")
        << QByteArray("\"Applications\": [{},{\"Tag\":\"a\",\"Url\":2},{},{},{},{},{},{},{},"
                      "{\"Tag\":\"a\",\"Url\":10},{\"Tag\":\"a\",\"Url\":11}]")
        << QByteArray("\"a\": Url = int 2\n");
    QTest::newRow("two arrays merge, and the size of the first counts")
        << QByteArray("\"Applications\": [{\"Tag\": \"a\"}], "
                      "\"Applications\": [{\"Url\": 1}, {\"Tag\": \"b\"}]")
        << QByteArray("\"a\": Url = int 1\n");
    QTest::newRow("a second global section counts, too")
        << QByteArray("\"Applications\": [{\"Tag\": \"a\"}], \"Global\": {\"Version\": 2}")
        << QByteArray("\"a\": \n");
}

void tst_WebAppSettings::applicationsAreFiledUnderTheirTags()
{
    QFETCH(QByteArray, applications);
    QFETCH(QByteArray, lines);
    writeConfiguration("{\"Global\": {\"Version\": 1}, " + applications + "}");

    const Messages messages;
    const Loaded loaded;

    QCOMPARE(describeApplications(loaded.applications), lines);
    QCOMPARE(messages.count(), 0);
}

namespace {

/// The text of an application's entry that gives every property the value of `valueOf`.
template<typename ValueOf>
QByteArray entryWithAll(ValueOf valueOf)
{
    QByteArray certificate;
    QByteArray entry = "\"Tag\": \"tv\"";
    for (const AppConfigProperty &property : appConfigProperties) {
        const QByteArray path = property.inFile;
        const QByteArray member =
            "\"" + path.mid(path.indexOf('/') + 1) + "\": " + valueOf(property);
        if (path.contains('/'))
            certificate += (certificate.isEmpty() ? "" : ", ") + member;
        else
            entry += ", " + member;
    }
    return "{" + entry + ", \"Certificate\": {" + certificate + "}}";
}

bool isDomains(const AppConfigProperty &property)
{
    return qstrcmp(property.name, "GrantBroadcastAccessRightDomains") == 0;
}

QByteArray ownName(const AppConfigProperty &property)
{
    const QByteArray name = QByteArray("\"") + property.name + '"';
    return isDomains(property) ? "[{\"Domain\": " + name + "}]" : name;
}

QByteArray null(const AppConfigProperty &)
{
    return "null";
}

QByteArray withApplication(const QByteArray &entry)
{
    return "{\"Global\": {\"Version\": 1}, \"Applications\": [" + entry + "]}";
}

} // namespace

void tst_WebAppSettings::everyPropertyComesFromItsKeyOfTheFile()
{
    writeConfiguration(withApplication(entryWithAll(ownName)));
    const WebAppSettings settings;

    AppConfig config;
    QVERIFY(settings.getAppConfig(QLatin1String("tv"), config));

    QCOMPARE(entriesOf(config).size(), appConfigPropertyCount);
    for (const AppConfigProperty &property : appConfigProperties) {
        const QByteArray name = QByteArray("string \"") + property.name + '"';
        QCOMPARE(describe((config.*property.get)()),
                 isDomains(property) ? "strings [" + name + "]" : name);
    }
}

void tst_WebAppSettings::everyNullLeavesItsPropertyUnset()
{
    writeConfiguration(withApplication(entryWithAll(null)));
    QCOMPARE(applicationOf(WebAppSettings(), "tv"), QByteArray());

    // And one by one, among the others. Without its path a certificate is none at all.
    for (const AppConfigProperty &unset : appConfigProperties) {
        writeConfiguration(withApplication(entryWithAll([&](const AppConfigProperty &property) {
            return &property == &unset ? QByteArray("null") : ownName(property);
        })));
        const Loaded loaded;
        const AppConfig config = loaded.applications.value(QLatin1String("tv"));
        const bool isPath = qstrcmp(unset.name, "CertPath") == 0;
        QVERIFY2(!entriesOf(config).contains(QLatin1String(unset.name)), unset.name);
        QCOMPARE(entriesOf(config).size(), appConfigPropertyCount - (isPath ? 3 : 1));
    }
}

void tst_WebAppSettings::everyKeyInLowerCaseIsIgnored()
{
    QByteArray entry = entryWithAll(ownName).toLower();
    entry.replace("\"tag\"", "\"Tag\"");
    writeConfiguration(withApplication(entry));

    QCOMPARE(applicationOf(WebAppSettings(), "tv"), QByteArray());
}

void tst_WebAppSettings::everyKindOfValueIsStoredAsItIs()
{
    static const char *const kinds[][2] = {
        { "\"text\"", "string \"text\"" },
        { "\"\"", "string \"\"" },
        { "true", "bool true" },
        { "false", "bool false" },
        { "-7", "int -7" },
        { "5000000000", "qlonglong 5000000000" },
        { "2.0", "double 2" },
        { "\"true\"", "string \"true\"" },
    };
    for (const char *const(&kind)[2] : kinds) {
        writeConfiguration(withApplication(entryWithAll([&](const AppConfigProperty &property) {
            return isDomains(property) ? QByteArray("null") : QByteArray(kind[0]);
        })));
        const Loaded loaded;
        const AppConfig config = loaded.applications.value(QLatin1String("tv"));
        QCOMPARE(entriesOf(config).size(), appConfigPropertyCount - 1);
        for (const AppConfigProperty &property : appConfigProperties) {
            if (!isDomains(property))
                QCOMPARE(describe((config.*property.get)()), QByteArray(kind[1]));
        }
    }
}

void tst_WebAppSettings::nothingIsInheritedFromTheGlobalSection()
{
    QByteArray global = entryWithAll(ownName);
    global.replace("{\"Tag\": \"tv\"", "{\"Version\": 1");
    global.replace("\"RemoteInspectorPort\": \"RemoteInspectorPort\"",
                   "\"RemoteInspectorPort\": 9");
    writeConfiguration("{\"Global\": " + global + ", \"Applications\": [{\"Tag\": \"tv\"}]}");

    const WebAppSettings settings;

    QCOMPARE(applicationOf(settings, "tv"), QByteArray());
    QCOMPARE(globalOf(settings),
             QByteArray("CertPassPhrase = string \"CertPassPhrase\"; "
                        "CertPrivateKey = string \"CertPrivateKey\"; "
                        "CertPath = string \"CertPath\""));
    QCOMPARE(portOf(settings), QByteArray("9"));
}

void tst_WebAppSettings::propertiesOfApplications_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QByteArray>("properties");

    QTest::newRow("a port of its own") << QByteArray("\"RemoteInspectorPort\": 9222.5")
                                       << QByteArray("RemoteInspectorPort = double 9222.5");
    QTest::newRow("keys in another case")
        << QByteArray("\"useragent\": 1, \"url\": 2, \"URL\": 3") << QByteArray();
    QTest::newRow("keys that are no property")
        << QByteArray("\"Title\": 1, \"CertPath\": 2, \"Tags\": 3, \"Version\": 4") << QByteArray();
    QTest::newRow("objects and arrays where a scalar is meant")
        << QByteArray("\"Url\": {\"a\": 1}, \"Scale\": [1], \"UserAgent\": {}") << QByteArray();
    QTest::newRow("of a duplicate key the first counts")
        << QByteArray("\"Url\": 1, \"Url\": 2") << QByteArray("Url = int 1");

    QTest::newRow("certificate") << QByteArray("\"Certificate\": {\"Path\": \"p\", "
                                               "\"PrivateKey\": \"k\", \"PassPhrase\": \"w\"}")
                                 << QByteArray("CertPassPhrase = string \"w\"; "
                                               "CertPrivateKey = string \"k\"; "
                                               "CertPath = string \"p\"");
    QTest::newRow("certificate with a path only")
        << QByteArray("\"Certificate\": {\"Path\": \"p\"}")
        << QByteArray("CertPath = string \"p\"");
    QTest::newRow("certificate without a path")
        << QByteArray("\"Certificate\": {\"PrivateKey\": \"k\", \"PassPhrase\": \"w\"}")
        << QByteArray();
    QTest::newRow("certificate with a path of null")
        << QByteArray("\"Certificate\": {\"Path\": null, \"PassPhrase\": \"w\"}") << QByteArray();
    QTest::newRow("certificate of other kinds")
        << QByteArray("\"Certificate\": {\"Path\": false, \"PrivateKey\": 1}")
        << QByteArray("CertPrivateKey = int 1; CertPath = bool false");
    QTest::newRow("certificate that is a string")
        << QByteArray("\"Certificate\": \"p\"") << QByteArray();

    const QByteArray domains = "\"GrantBroadcastAccessRightDomains\": ";
    const QByteArray property = "GrantBroadcastAccessRightDomains = strings ";
    QTest::newRow("domains keep their order and duplicates")
        << domains + "[{\"Domain\": \"a\"}, {\"Domain\": \"b\"}, {\"Domain\": \"a\"}]"
        << property + "[string \"a\", string \"b\", string \"a\"]";
    QTest::newRow("no domains") << domains + "[]" << QByteArray();
    QTest::newRow("domains that are plain strings")
        << domains + "[\"a\", \"b\"]" << property + "[]";
    QTest::newRow("a domain that is a number")
        << domains + "[{\"Domain\": 5}, {\"Domain\": 0.5}, {\"Domain\": true}]"
        << property + "[string \"5\", string \"0.5\", string \"true\"]";
    QTest::newRow("a domain that is a large double")
        << domains + "[{\"Domain\": 5000000000.0}, {\"Domain\": 5000000000}]"
        << property
            + ToolkitDifferences::either("[string \"5000000000\", string \"5000000000\"]",
                                         "[string \"5e+09\", string \"5000000000\"]");
    QTest::newRow("a domain that is null")
        << domains + "[{\"Domain\": null}, {\"Domain\": \"b\"}]" << property + "[string \"b\"]";
    QTest::newRow("only domains that are null")
        << domains + "[{\"Domain\": null}]" << property + "[]";
    QTest::newRow("an empty domain")
        << domains + "[{\"Domain\": \"\"}]" << property + "[string \"\"]";
    QTest::newRow("domains in another case")
        << domains + "[{\"domain\": \"a\"}]" << property + "[]";
    QTest::newRow("eleven domains come in the order of the file") << domains
            + "[{\"Domain\":1},{\"Domain\":2},{\"Domain\":3},{\"Domain\":4},{\"Domain\":5},"
              "{\"Domain\":6},{\"Domain\":7},{\"Domain\":8},{\"Domain\":9},{\"Domain\":10},"
              "{\"Domain\":11}]"
                                                                  << property
            + "[string \"1\", string \"2\", string \"3\", string \"4\", string \"5\", "
              "string \"6\", string \"7\", string \"8\", string \"9\", string \"10\", "
              "string \"11\"]";
    QTest::newRow("domains as a string") << domains + "\"a\"" << QByteArray();
    QTest::newRow("domains as an object") << domains + "{\"Domain\": \"a\"}" << QByteArray();
    QTest::newRow("domains claim more than there are")
        << domains + "{\"1\": {\"Domain\": \"a\"}, \"size\": 3}" << property + "[string \"a\"]";
    QTest::newRow("domains claim a size below zero")
        << domains + "{\"1\": {\"Domain\": \"a\"}, \"size\": -2}" << property + "[]";
    QTest::newRow("of two lists of domains the size of the first counts") << domains
            + "[{\"Domain\": \"a\"}], " + domains
            + "[{\"Domain\": \"b\"}, {\"Domain\": \"c\"}]" << property + "[string \"a\"]";
}

void tst_WebAppSettings::propertiesOfApplications()
{
    QFETCH(QByteArray, members);
    QFETCH(QByteArray, properties);
    writeConfiguration("{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 1}, "
                       "\"Applications\": [{\"Tag\": \"tv\", "
                       + members + "}, {\"Tag\": \"next\", \"Url\": \"u\"}]}");

    const WebAppSettings settings;

    QCOMPARE(applicationOf(settings, "tv"), properties);
    // The application after it and the global port are not touched.
    QCOMPARE(applicationOf(settings, "next"), QByteArray("Url = string \"u\""));
    QCOMPARE(portOf(settings), QByteArray("1"));
}

void tst_WebAppSettings::malformedFilesGiveNothingButOneWarning()
{
    writeConfiguration(
        "{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 1, "
        "\"Certificate\": {\"Path\": \"p\"}},\n\"Applications\" [{\"Tag\": \"tv\"}]}");

    const Messages messages;
    const Loaded loaded;
    QCOMPARE(messages.count(), 1);
    QCOMPARE(int(messages.type(0)), int(QtWarningMsg));
    QCOMPARE(messages.text(0), QByteArray("\"Expected ':' at line 2 pos 99\" "));

    QVERIFY(loaded.settings);
    QCOMPARE(int(loaded.settings->status()), int(QSettings::NoError));
    QVERIFY(loaded.applications.isEmpty());
    QVERIFY(entriesOf(loaded.globalConfig).isEmpty());
    QVERIFY(loaded.remoteInspectorPort == 4294967295u);
    QVERIFY(!loaded.isUsable());

    const WebAppSettings settings;
    QCOMPARE(portOf(settings), QByteArray("none"));
    QCOMPARE(globalOf(settings), QByteArray());
    QCOMPARE(applicationOf(settings, "tv"), QByteArray("none"));
}

void tst_WebAppSettings::nothingIsOpenedWithoutAFile()
{
    useFile(QLatin1String("missing.json"));
    const Messages messages;
    const Loaded loaded;
    const WebAppSettings settings;

    QVERIFY(!loaded.settings);
    QVERIFY(!loaded.isUsable());
    QVERIFY(loaded.version <= 0.0f && loaded.version >= 0.0f);
    QVERIFY(loaded.remoteInspectorPort == 4294967295u);
    QVERIFY(loaded.applications.isEmpty());
    QCOMPARE(portOf(settings), QByteArray("none"));
    QCOMPARE(globalOf(settings), QByteArray());
    QCOMPARE(applicationOf(settings, ""), QByteArray("none"));
    QCOMPARE(messages.count(), 0);
}

void tst_WebAppSettings::filesThatCannotBeReadGiveNothing()
{
    useFile(m_folder.path()); // a folder exists, and cannot be read as a file whoever asks
    const Messages messages;
    const Loaded loaded;
    const WebAppSettings settings;

    QVERIFY(loaded.settings);
    QCOMPARE(int(loaded.settings->status()), int(QSettings::AccessError));
    QVERIFY(!loaded.isUsable());
    QCOMPARE(portOf(settings), QByteArray("none"));
    QCOMPARE(globalOf(settings), QByteArray());
    QCOMPARE(applicationOf(settings, ""), QByteArray("none"));
    QCOMPARE(messages.count(), 0);
}

// QSettings of the same name share what was set and could not be written.
void tst_WebAppSettings::whatIsInNoFileYetGivesNothing()
{
    const TemporaryDir folder;
    useFile(folder.path());
    QSettings own(folder.path(), JsonSettingsFormat);
    own.setValue(QLatin1String("Global/Version"), 1);
    own.setValue(QLatin1String("Global/RemoteInspectorPort"), 9222);
    own.setValue(QLatin1String("Applications/1/Tag"), QLatin1String("tv"));
    own.setValue(QLatin1String("Applications/size"), 1);
    {
        const Loaded loaded;
        const WebAppSettings settings;

        QCOMPARE(int(loaded.settings->status()), int(QSettings::AccessError));
        QCOMPARE(loaded.version, 1.0f);
        QVERIFY(!loaded.isUsable());
        QCOMPARE(portOf(settings), QByteArray("none"));
        QCOMPARE(applicationOf(settings, "tv"), QByteArray("none"));
    }
    own.clear();
}

void tst_WebAppSettings::missesLeaveTheOutputAlone()
{
    writeConfiguration(withApplication("{\"Tag\": \"tv\", \"Url\": \"u\"}"));
    const WebAppSettings settings;

    AppConfig config;
    config.setScale(5);
    QVERIFY(!settings.getAppConfig(QLatin1String("radio"), config));
    QCOMPARE(describeConfig(config), QByteArray("Scale = int 5"));
    unsigned int port = 77;
    QVERIFY(!settings.getGlobalRemoteInspectorPort(port));
    QCOMPARE(port, 77u);

    // A hit replaces all that the output held.
    QVERIFY(settings.getAppConfig(QLatin1String("tv"), config));
    QCOMPARE(describeConfig(config), QByteArray("Url = string \"u\""));
    QVERIFY(settings.getGlobalConfig(config));
    QCOMPARE(describeConfig(config), QByteArray());
}

void tst_WebAppSettings::tagsAreComparedExactly()
{
    writeConfiguration(withApplication("{\"Tag\": \"tv\"}"));
    const WebAppSettings settings;

    static const char *const others[] = { "TV", "Tv", "tv ", " tv", "t", "tv*", "tv/", "", "1" };
    for (const char *other : others)
        QVERIFY2(applicationOf(settings, other) == "none", other);
    QCOMPARE(applicationOf(settings, "tv"), QByteArray());
}

void tst_WebAppSettings::changingWhatWasHandedOutChangesNothingStored()
{
    writeConfiguration("{\"Global\": {\"Version\": 1, \"Certificate\": {\"Path\": \"p\"}}, "
                       "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"u\"}]}");
    const WebAppSettings settings;

    AppConfig config;
    QVERIFY(settings.getAppConfig(QLatin1String("tv"), config));
    config.setUrl(QLatin1String("changed"));
    config.setScale(2);
    QVERIFY(settings.getGlobalConfig(config));
    config.setCertPath(QLatin1String("changed"));

    QCOMPARE(applicationOf(settings, "tv"), QByteArray("Url = string \"u\""));
    QCOMPARE(globalOf(settings), QByteArray("CertPath = string \"p\""));
}

void tst_WebAppSettings::handedOutConfigurationsShareTheStoredValues()
{
    writeConfiguration(withApplication("{\"Tag\": \"tv\", \"Url\": \"u\"}"));
    const WebAppSettings settings;

    AppConfig first;
    AppConfig second;
    QVERIFY(settings.getAppConfig(QLatin1String("tv"), first));
    QVERIFY(settings.getAppConfig(QLatin1String("tv"), second));

    QVERIFY(entriesOf(first).isSharedWith(entriesOf(second)));
}

void tst_WebAppSettings::whatWasHandedOutOutlivesTheSettings()
{
    writeConfiguration("{\"Global\": {\"Version\": 1, \"Certificate\": {\"Path\": \"p\"}}, "
                       "\"Applications\": [{\"Tag\": \"tv\", \"Url\": \"u\"}]}");
    WebAppSettings *settings = new WebAppSettings;
    AppConfig application;
    AppConfig global;
    QVERIFY(settings->getAppConfig(QLatin1String("tv"), application));
    QVERIFY(settings->getGlobalConfig(global));

    delete settings;

    QCOMPARE(describeConfig(application), QByteArray("Url = string \"u\""));
    QCOMPARE(describeConfig(global), QByteArray("CertPath = string \"p\""));
}

void tst_WebAppSettings::everyObjectReadsTheFileOfItsTime()
{
    writeConfiguration(withApplication("{\"Tag\": \"first\"}"));
    const WebAppSettings first;
    writeConfiguration(withApplication("{\"Tag\": \"second\"}"));
    const WebAppSettings second;

    QCOMPARE(applicationOf(first, "first"), QByteArray());
    QCOMPARE(applicationOf(first, "second"), QByteArray("none"));
    QCOMPARE(applicationOf(second, "first"), QByteArray("none"));
    QCOMPARE(applicationOf(second, "second"), QByteArray());
}

void tst_WebAppSettings::theInstanceIsOneAndNeverReloads()
{
    const QString path = writeConfiguration(withApplication("{\"Tag\": \"tv\", \"Url\": \"u\"}"));
    WebAppSettings *const settings = getWebAppSettings();
    QVERIFY(settings);
    QCOMPARE(applicationOf(*settings, "tv"), QByteArray("Url = string \"u\""));

    QFile::remove(path);
    writeConfiguration(withApplication("{\"Tag\": \"radio\"}"));

    QVERIFY(getWebAppSettings() == settings);
    QCOMPARE(applicationOf(*getWebAppSettings(), "tv"), QByteArray("Url = string \"u\""));
    QCOMPARE(applicationOf(*getWebAppSettings(), "radio"), QByteArray("none"));
}

void tst_WebAppSettings::classNameIsKnownAtRunTime()
{
    useFile(QLatin1String("missing.json"));
    const WebAppSettings settings;
    const WebAppSettings &object = settings;
    QCOMPARE(QByteArray(typeid(object).name()), QByteArray("14WebAppSettings"));
}

void tst_WebAppSettings::lookupsWithoutStateFail()
{
    writeConfiguration("{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 1}, "
                       "\"Applications\": [{\"Tag\": \"tv\"}]}");
    WebAppSettings settings;
    QCOMPARE(portOf(settings), QByteArray("1"));

    // The pointer is after the virtual table.
    memset(reinterpret_cast<char *>(&settings) + sizeof(void *), 0, sizeof(void *));

    QCOMPARE(portOf(settings), QByteArray("none"));
    QCOMPARE(globalOf(settings), QByteArray("refused"));
    QCOMPARE(applicationOf(settings, "tv"), QByteArray("none"));
}

NUV_TEST_MAIN(tst_WebAppSettings)

#include "tst_webappsettings.moc"
