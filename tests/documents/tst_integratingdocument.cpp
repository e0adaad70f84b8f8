// SPDX-License-Identifier: MIT
#include "config/appconfig.h"
#include "config/webappsettings.h"

#include "tests/documents/documenttable.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

namespace {

struct Case {
    const char *file; ///< as it is in the table
    const char *contents; ///< null for no file, empty for one that cannot be read
};

const char global[] = "\"RemoteInspectorPort\": 9222, \"Certificate\": { \"Path\": \"c.pem\" }";
const char applications[] = "\"Applications\": [ { \"Tag\": \"tv\" }, { \"Tag\": \"radio\" } ]";

const Case cases[] = {
    { "there is none", nullptr },
    { "cannot be read", "" },
    { "has a syntax error, and one warning is sent", "{ \"Global\": { \"Version\": 1, %1 }, %2" },
    { "has no version, or one below 1 or from 2 on", "{ \"Global\": { %1 }, %2 }" },
    { "has no version, or one below 1 or from 2 on", "{ \"Global\": { \"Version\": 2, %1 }, %2 }" },
    { "has no version, or one below 1 or from 2 on",
      "{ \"Global\": { \"Version\": 0.5, %1 }, %2 }" },
    { "has a version from 1 to below 2", "{ \"Global\": { \"Version\": 1, %1 }, %2 }" },
    { "has a version from 1 to below 2", "{ \"Global\": { \"Version\": 1.9, %1 }, %2 }" },
};

// The path of what the case describes.
QString prepared(const Case &file, const TemporaryDir &folder)
{
    const QString name = QLatin1String("file.json");
    if (!file.contents)
        return folder.filePath(QLatin1String("missing.json"));
    if (!file.contents[0]) {
        QDir(folder.path()).mkdir(name); // a folder is there, and is no file for anybody
        return folder.filePath(name);
    }
    const QString text = QLatin1String(file.contents);
    return folder.write(name,
                        text.arg(QLatin1String(global), QLatin1String(applications)).toLatin1());
}

// What the look-ups say, in the words of the table.

const char *portAnswer(const WebAppSettings &settings)
{
    unsigned int port = 0;
    return settings.getGlobalRemoteInspectorPort(port) ? "true if a port is configured" : "false";
}

const char *globalAnswer(const WebAppSettings &settings)
{
    AppConfig config;
    if (!settings.getGlobalConfig(config))
        return "false";
    return config.getCertPath().isValid() ? "true, with the certificate" : "true, nothing in it";
}

const char *applicationAnswer(const WebAppSettings &settings)
{
    AppConfig config;
    return settings.getAppConfig(QLatin1String("tv"), config)
            && settings.getAppConfig(QLatin1String("radio"), config)
        ? "true for each tag"
        : "false";
}

QStringList answers(const WebAppSettings &settings)
{
    return QStringList() << QLatin1String("the instance") << QLatin1String(portAnswer(settings))
                         << QLatin1String(globalAnswer(settings))
                         << QLatin1String(applicationAnswer(settings));
}

} // namespace

/// The table of docs/integrating.md, of what each look-up returns when, is true.
class tst_IntegratingDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRowIsTried();
    void theLookUpsAnswerLikeThis_data();
    void theLookUpsAnswerLikeThis();
};

namespace {

Table lookUps()
{
    return tableBelow(QLatin1String("docs/integrating.md"), "What each look-up returns when");
}

} // namespace

void tst_IntegratingDocument::everyRowIsTried()
{
    QStringList tried;
    for (const Case &file : cases) {
        if (!tried.contains(QLatin1String(file.file)))
            tried << QLatin1String(file.file);
    }
    QStringList told;
    const Table table = lookUps();
    for (int i = 0; i < table.size(); ++i)
        told << table.at(i).at(0);
    QCOMPARE(tried, told);
}

void tst_IntegratingDocument::theLookUpsAnswerLikeThis_data()
{
    QTest::addColumn<int>("index");
    const int count = int(sizeof cases / sizeof cases[0]);
    for (int i = 0; i < count; ++i)
        QTest::newRow(
            qPrintable(QString::fromLatin1("%1: %2").arg(i).arg(QLatin1String(cases[i].file))))
            << i;
}

void tst_IntegratingDocument::theLookUpsAnswerLikeThis()
{
    QFETCH(int, index);
    const Case &file = cases[index];
    const TemporaryDir folder;
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path()); // where no AppsConfig.json is
    qputenv("NUV_APPS_CONFIG_FILE", prepared(file, folder).toLatin1());

    const QStringList words = answers(WebAppSettings());
    QDir::setCurrent(before);

    const Table table = lookUps();
    for (int i = 0; i < table.size(); ++i) {
        if (table.at(i).at(0) == QLatin1String(file.file))
            QCOMPARE(words, QStringList(table.at(i).mid(1)));
    }
}

NUV_TEST_MAIN(tst_IntegratingDocument)
#include "tst_integratingdocument.moc"
