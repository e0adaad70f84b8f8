// SPDX-License-Identifier: MIT
#include "config/appconfig.h"
#include "config/webappsettings.h"

#include "tests/support/filecontents.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include <QScopedPointer>
#include <QSettings>

#include <cstddef>
#include <cstring>

#include <dlfcn.h>

namespace {

/// What the library registers; the handle itself does not leave it. It is the first in a process
/// that registers nothing before.
const QSettings::Format JsonFormat = QSettings::CustomFormat1;

/// The library, loaded until the end of the block, as far as it can be unloaded.
class LoadedLibrary
{
public:
    explicit LoadedLibrary(int mode = RTLD_NOW | RTLD_LOCAL)
        : m_handle(dlopen(NUV_LIBRARY_FILE, mode))
    {
        if (!m_handle)
            qFatal("%s", dlerror());
    }

    ~LoadedLibrary() { dlclose(m_handle); }

    void *symbol(const char *name) const { return dlsym(m_handle, name); }

    template<class Function>
    Function function(const char *name) const
    {
        void *const address = symbol(name);
        if (!address)
            qFatal("%s is not exported", name);
        return reinterpret_cast<Function>(address);
    }

    /// A non-virtual member function, from its mangled name.
    template<class Method>
    Method method(const char *name) const
    {
        void *words[2] = { symbol(name), nullptr };
        if (!words[0])
            qFatal("%s is not exported", name);
        Method result;
        static_assert(sizeof result == sizeof words, "not a member pointer of this C++ ABI");
        std::memcpy(&result, words, sizeof words);
        return result;
    }

private:
    Q_DISABLE_COPY(LoadedLibrary)
    void *m_handle;
};

bool readNothing(QIODevice &, QSettings::SettingsMap &)
{
    return true;
}

bool writeNothing(QIODevice &, const QSettings::SettingsMap &)
{
    return true;
}

QSettings::Format registerAnotherFormat(int number)
{
    return QSettings::registerFormat(QString::fromLatin1("other%1").arg(number), readNothing,
                                     writeNothing);
}

} // namespace

class tst_Loading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theLibraryStaysMappedAfterItsLastClosing();
    void loadingRegistersTheFormat_data();
    void loadingRegistersTheFormat();
    void theFormatEndsInJson();
    void settingsOutliveTheClosingOfTheLibrary();
    void theSettingsAreReachedThroughTheirSymbols();
    void internalNamesCannotBeLookedUp_data();
    void internalNamesCannotBeLookedUp();
    void twentyLoadingsTakeOneOfTheSixteenFormats();

private:
    TemporaryDir m_folder;
};

void tst_Loading::initTestCase()
{
    const QString path =
        m_folder.write(QLatin1String("configured.json"),
                       "{\"Global\": {\"Version\": 1, \"RemoteInspectorPort\": 9222},"
                       " \"Applications\": [{\"Tag\": \"tv\", \"UserAgent\": \"tv browser\"}]}");
    qputenv("NUV_APPS_CONFIG_FILE", QFile::encodeName(path));
    QVERIFY(!dlopen(NUV_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD));
}

void tst_Loading::theLibraryStaysMappedAfterItsLastClosing()
{
    {
        const LoadedLibrary library;
    }
    void *const handle = dlopen(NUV_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    QVERIFY(handle);
    dlclose(handle);
}

void tst_Loading::loadingRegistersTheFormat_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("bound at once, local") << int(RTLD_NOW | RTLD_LOCAL);
    QTest::newRow("bound at once, global") << int(RTLD_NOW | RTLD_GLOBAL);
    QTest::newRow("bound lazily, local") << int(RTLD_LAZY | RTLD_LOCAL);
}

void tst_Loading::loadingRegistersTheFormat()
{
    QFETCH(int, mode);
    TemporaryDir folder; // of its own: parsed files are shared within the process
    const QString path = folder.write(QLatin1String("a.json"), "{\"list\": [{\"key\": 7}]}");

    const LoadedLibrary library(mode);
    const QSettings settings(path, JsonFormat);

    QCOMPARE(settings.value(QLatin1String("list/1/key")), QVariant(7));
    QCOMPARE(settings.value(QLatin1String("list/size")), QVariant(1));
}

void tst_Loading::theFormatEndsInJson()
{
    const LoadedLibrary library;

    const QSettings settings(JsonFormat, QSettings::UserScope, QLatin1String("maker"),
                             QLatin1String("product"));

    QVERIFY2(settings.fileName().endsWith(QLatin1String("/maker/product.json")),
             qPrintable(settings.fileName()));
}

void tst_Loading::settingsOutliveTheClosingOfTheLibrary()
{
    const QString path =
        m_folder.write(QLatin1String("outlives.json"), "{\"Name\": \"tv\", \"name\": 1}");
    QScopedPointer<LoadedLibrary> library(new LoadedLibrary);
    QSettings settings(path, JsonFormat);
    library.reset();

    QCOMPARE(settings.value(QLatin1String("Name")), QVariant(QLatin1String("tv")));
    QCOMPARE(settings.value(QLatin1String("name")), QVariant(1));
    settings.setValue(QLatin1String("name"), 2);
    settings.sync();

    QCOMPARE(settings.status(), QSettings::NoError);
    QCOMPARE(fileContents(path), QByteArray("{\n    \"Name\":\"tv\",\n    \"name\":2\n}"));
}

void tst_Loading::theSettingsAreReachedThroughTheirSymbols()
{
    typedef WebAppSettings *(*GetSettings)();
    typedef bool (WebAppSettings::*GetPort)(unsigned int &) const;
    typedef bool (WebAppSettings::*GetConfig)(QString const &, AppConfig &) const;
    typedef QVariant (AppConfig::*Getter)() const;
    const LoadedLibrary library;
    const GetSettings getSettings = library.function<GetSettings>("_Z17getWebAppSettingsv");
    const GetPort getPort =
        library.method<GetPort>("_ZNK14WebAppSettings28getGlobalRemoteInspectorPortERj");
    const GetConfig getConfig =
        library.method<GetConfig>("_ZNK14WebAppSettings12getAppConfigERK7QStringR9AppConfig");
    const Getter getUserAgent = library.method<Getter>("_ZNK9AppConfig12getUserAgentEv");

    WebAppSettings *const settings = getSettings();
    QVERIFY(settings);
    QCOMPARE(getSettings(), settings);
    unsigned int port = 0;
    QVERIFY((settings->*getPort)(port));
    QCOMPARE(port, 9222u);
    AppConfig config;
    QVERIFY((settings->*getConfig)(QLatin1String("tv"), config));
    QCOMPARE((config.*getUserAgent)(), QVariant(QLatin1String("tv browser")));
    QVERIFY(!(settings->*getConfig)(QLatin1String("radio"), config));
}

void tst_Loading::internalNamesCannotBeLookedUp_data()
{
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("the format's handle") << QByteArray("JsonSettingsFormat");
    QTest::newRow("the parser") << QByteArray("_Z9parseJsonRK10QByteArrayP7QString");
    QTest::newRow("the read callback")
        << QByteArray("_Z16readJsonSettingsR9QIODeviceR4QMapI7QString8QVariantE");
    QTest::newRow("the loader") << QByteArray("_ZN21WebAppSettingsPrivateC1Ev");
}

void tst_Loading::internalNamesCannotBeLookedUp()
{
    QFETCH(QByteArray, name);
    const LoadedLibrary library;

    QVERIFY(!library.symbol(name.constData()));
}

void tst_Loading::twentyLoadingsTakeOneOfTheSixteenFormats()
{
    for (int i = 0; i < 20; ++i)
        const LoadedLibrary library;

    for (int i = 1; i <= 15; ++i)
        QCOMPARE(int(registerAnotherFormat(i)), int(JsonFormat) + i);
    QCOMPARE(registerAnotherFormat(16), QSettings::InvalidFormat);
}

NUV_TEST_MAIN(tst_Loading)

#include "tst_loading.moc"
