// SPDX-License-Identifier: MIT
#include "config/appconfig.h"

#include "tests/support/configdescription.h"
#include "tests/support/testmain.h"

#include <QStringList>

#include <utility>

static_assert(std::is_same<decltype(&AppConfig::getProperty),
                           QVariant (AppConfig::*)(QString const &) const>::value,
              "reading takes a key and changes nothing");
static_assert(std::is_same<decltype(&AppConfig::setProperty),
                           void (AppConfig::*)(QString const &, QVariant const &)>::value,
              "writing takes a key and a value");
static_assert(!std::is_polymorphic<AppConfig>::value
                  && std::is_default_constructible<AppConfig>::value
                  && std::is_copy_constructible<AppConfig>::value
                  && std::is_copy_assignable<AppConfig>::value,
              "an AppConfig is a plain value");

class tst_AppConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshBagsHaveNothing();
    void everyPropertyIsStoredUnderItsOwnName();
    void everyPropertyIsReadFromItsOwnName();
    void everyPropertySurvivesCopying();
    void valuesComeBackAsTheyAre_data();
    void valuesComeBackAsTheyAre();
    void keysAreComparedExactly();
    void otherKeysAreStoredAsWell();
    void aSecondValueReplacesTheFirst();
    void invalidValuesReadAsNotSet();
    void writingACopyLeavesTheOriginalAlone();
    void copiesShareUntilOneIsWritten();
};

void tst_AppConfig::freshBagsHaveNothing()
{
    const AppConfig config;

    for (const AppConfigProperty &property : appConfigProperties) {
        QVERIFY2(!(config.*property.get)().isValid(), property.name);
        QVERIFY2(!config.getProperty(QLatin1String(property.name)).isValid(), property.name);
    }
    QVERIFY(!config.getProperty(QString()).isValid());
    QVERIFY(!config.getProperty(QLatin1String("")).isValid());
    QVERIFY(!config.getProperty(QLatin1String("anything")).isValid());
    QVERIFY(entriesOf(config).isEmpty());
}

void tst_AppConfig::everyPropertyIsStoredUnderItsOwnName()
{
    for (const AppConfigProperty &property : appConfigProperties) {
        const QString value = QLatin1String("value of ") + QLatin1String(property.name);
        AppConfig config;
        (config.*property.set)(value);

        // Nothing but this one entry: no other property is reached through the setter.
        QCOMPARE(describeConfig(config),
                 QByteArray(property.name) + " = " + describe(QVariant(value)));
        QCOMPARE(config.getProperty(QLatin1String(property.name)).toString(), value);
    }
}

void tst_AppConfig::everyPropertyIsReadFromItsOwnName()
{
    AppConfig config;
    for (int i = 0; i < appConfigPropertyCount; ++i)
        config.setProperty(QLatin1String(appConfigProperties[i].name), i);

    QCOMPARE(entriesOf(config).size(), appConfigPropertyCount);
    for (int i = 0; i < appConfigPropertyCount; ++i) {
        const AppConfigProperty &property = appConfigProperties[i];
        QVERIFY2((config.*property.get)().userType() == QMetaType::Int
                     && (config.*property.get)().toInt() == i,
                 property.name);
    }
}

void tst_AppConfig::everyPropertySurvivesCopying()
{
    AppConfig config;
    for (int i = 0; i < appConfigPropertyCount; ++i)
        (config.*appConfigProperties[i].set)(i);
    const QByteArray before = describeConfig(config);

    AppConfig constructed(config);
    AppConfig assigned;
    assigned = config;
    QCOMPARE(describeConfig(constructed), before);
    QCOMPARE(describeConfig(assigned), before);

    for (const AppConfigProperty &property : appConfigProperties) {
        (constructed.*property.set)(QLatin1String("changed"));
        (assigned.*property.set)(QVariant());
        QCOMPARE(describeConfig(config), before);
    }
    for (const AppConfigProperty &property : appConfigProperties) {
        QVERIFY2((constructed.*property.get)().toString() == QLatin1String("changed"),
                 property.name);
        QVERIFY2(!(assigned.*property.get)().isValid(), property.name);
    }
}

void tst_AppConfig::valuesComeBackAsTheyAre_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("description");

    QVariantMap map;
    map.insert(QLatin1String("a"), 1);
    QTest::newRow("bool") << QVariant(false) << QByteArray("bool false");
    QTest::newRow("int") << QVariant(-1) << QByteArray("int -1");
    QTest::newRow("long integer") << QVariant(Q_INT64_C(5000000000))
                                  << QByteArray("qlonglong 5000000000");
    QTest::newRow("double") << QVariant(1.0) << QByteArray("double 1");
    QTest::newRow("string") << QVariant(QString(QLatin1String(" 1 ")))
                            << QByteArray("string \" 1 \"");
    QTest::newRow("empty string") << QVariant(QString(QLatin1String("")))
                                  << QByteArray("string \"\"");
    QTest::newRow("list of strings")
        << QVariant(QStringList(QLatin1String("a"))) << QByteArray("strings [string \"a\"]");
    QTest::newRow("map") << QVariant(map) << QByteArray("{\"a\": int 1}");
    QTest::newRow("bytes") << QVariant(QByteArray("x")) << QByteArray("QByteArray x");
}

void tst_AppConfig::valuesComeBackAsTheyAre()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, description);

    for (const AppConfigProperty &property : appConfigProperties) {
        AppConfig config;
        (config.*property.set)(value);
        QCOMPARE(describe((config.*property.get)()), description);
    }
}

void tst_AppConfig::keysAreComparedExactly()
{
    AppConfig config;
    config.setUrl(QLatin1String("http://a.example/"));

    QVERIFY(!config.getProperty(QLatin1String("url")).isValid());
    QVERIFY(!config.getProperty(QLatin1String("URL")).isValid());
    QVERIFY(!config.getProperty(QLatin1String("Url ")).isValid());
    QVERIFY(!config.getProperty(QLatin1String(" Url")).isValid());

    config.setProperty(QLatin1String("url"), 1);
    QCOMPARE(config.getUrl().toString(), QString(QLatin1String("http://a.example/")));
}

void tst_AppConfig::otherKeysAreStoredAsWell()
{
    AppConfig config;
    config.setProperty(QLatin1String("Url"), QLatin1String("u"));
    config.setProperty(QLatin1String("my own"), 5);
    config.setProperty(QString(), 6);
    config.setProperty(QString(QChar(0x20ac)), 7);

    QCOMPARE(describe(config.getUrl()), QByteArray("string \"u\""));
    QCOMPARE(describe(config.getProperty(QLatin1String("my own"))), QByteArray("int 5"));
    QCOMPARE(describe(config.getProperty(QLatin1String(""))), QByteArray("int 6"));
    QCOMPARE(describe(config.getProperty(QString(QChar(0x20ac)))), QByteArray("int 7"));
    QCOMPARE(entriesOf(config).size(), 4);
}

void tst_AppConfig::aSecondValueReplacesTheFirst()
{
    AppConfig config;
    config.setScale(1);
    config.setScale(QLatin1String("2"));
    config.setProperty(QLatin1String("Scale"), 2.5);

    QCOMPARE(describeConfig(config), QByteArray("Scale = double 2.5"));
}

void tst_AppConfig::invalidValuesReadAsNotSet()
{
    AppConfig config;
    config.setUrl(QVariant());
    QVERIFY(!config.getUrl().isValid());
    QCOMPARE(entriesOf(config).size(), 1);

    config.setUserAgent(QLatin1String("agent"));
    config.setUserAgent(QVariant());
    QVERIFY(!config.getUserAgent().isValid());
    QVERIFY(!config.getProperty(QLatin1String("UserAgent")).isValid());
}

void tst_AppConfig::writingACopyLeavesTheOriginalAlone()
{
    AppConfig config;
    config.setUrl(QLatin1String("u"));
    AppConfig copy = config;

    copy.setUrl(QLatin1String("changed"));
    copy.setScale(2);
    QCOMPARE(describeConfig(config), QByteArray("Url = string \"u\""));

    config.setUrl(QLatin1String("changed again"));
    QCOMPARE(describeConfig(copy), QByteArray("Scale = int 2; Url = string \"changed\""));
}

void tst_AppConfig::copiesShareUntilOneIsWritten()
{
    AppConfig config;
    config.setUrl(QLatin1String("u"));
    AppConfig copy = config;
    QVERIFY(entriesOf(copy).isSharedWith(entriesOf(config)));

    // Reading neither inserts nor detaches, not even through an object that could be written.
    for (const AppConfigProperty &property : appConfigProperties)
        (copy.*property.get)();
    copy.getProperty(QLatin1String("none"));
    QVERIFY(entriesOf(copy).isSharedWith(entriesOf(config)));
    QCOMPARE(entriesOf(copy).size(), 1);

    copy.setScale(1);
    QVERIFY(!entriesOf(copy).isSharedWith(entriesOf(config)));
}

NUV_TEST_MAIN(tst_AppConfig)

#include "tst_appconfig.moc"
