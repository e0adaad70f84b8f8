// SPDX-License-Identifier: MIT
#include "hooks/networkaccessmanager.h"

#include "tests/hooks/virtualslot.h"
#include "tests/support/messages.h"
#include "tests/support/testmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QMetaObject>
#include <QScopedPointer>
#include <QtDebug>

namespace {

const char SslMessage[] = "[NetworkAccessManager::setSslConfiguration]: NOT Implement. ";
const char ImplMessage[] = "[NetworkAccessManager::impl]: NOT Implement. ";

void setThreeTexts(NetworkAccessManager *manager)
{
    manager->setSslConfiguration(QLatin1String("cert"), QLatin1String("key"),
                                 QLatin1String("phrase"));
}

void setTwoTexts(NetworkAccessManager *manager)
{
    manager->setSslConfiguration(QLatin1String("cert"), QLatin1String("key"));
}

void askForImpl(NetworkAccessManager *manager)
{
    QCOMPARE(manager->impl(), static_cast<QNetworkAccessManager *>(nullptr));
}

typedef void (*Operation)(NetworkAccessManager *manager);

} // namespace

Q_DECLARE_METATYPE(Operation)

/// Overrides the two functions for certificates, and notes how they were called.
class CertificateManager : public NetworkAccessManager
{
    Q_OBJECT

public:
    explicit CertificateManager(QObject *parent) : NetworkAccessManager(parent) {}

    void setSslConfiguration(QString const &a, QString const &b, QString const &c) override
    {
        texts = a + QLatin1Char('|') + b + QLatin1Char('|') + c;
    }

    void setSslConfiguration(QString const &a, QString const &b) override
    {
        texts = a + QLatin1Char('|') + b;
    }

    QString texts;
};

/// Overrides impl() alone. What it hands out is never used.
class ImplManager : public NetworkAccessManager
{
    Q_OBJECT

public:
    explicit ImplManager(QObject *parent) : NetworkAccessManager(parent) {}

    using NetworkAccessManager::setSslConfiguration;

    QNetworkAccessManager *impl() override { return handedOut(); }

    static QNetworkAccessManager *handedOut()
    {
        static char place;
        return reinterpret_cast<QNetworkAccessManager *>(&place);
    }
};

/// Hands out what it is told to, and counts.
class CountingFactory : public NetworkAccessManagerFactory
{
public:
    CountingFactory() : result(nullptr), calls(0), lastParent(nullptr) {}
    ~CountingFactory() override { ++destroyed; }

    NetworkAccessManager *create(QObject *parent) override
    {
        ++calls;
        lastParent = parent;
        return result;
    }

    NetworkAccessManager *result;
    int calls;
    QObject *lastParent;
    static int destroyed;
};

int CountingFactory::destroyed = 0;

class tst_NetworkAccessManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void withoutAFactoryABaseObjectOfTheParentIsMade();
    void withoutAFactoryAndAParentTheCallerOwnsTheObject();
    void theFactoryIsAskedOncePerCall();
    void theFactoryGetsTheParentAsItIs();
    void aNullResultOfTheFactoryIsHandedOn();
    void aSecondFactoryReplacesTheFirst();
    void aNullFactoryBringsTheBaseObjectBack();
    void factoriesAreNeverDeleted();

    void eachCallOfABaseOperationSendsOneMessage_data();
    void eachCallOfABaseOperationSendsOneMessage();
    void theMessagesAreWhatTheDebugStreamOfQt4Writes();
    void rulesOfTheToolkitMayKeepTheMessagesBack();
    void baseOperationsChangeNothing();
    void makingAndDeletingSaysNothing();
    void aSubclassKeepsTheMessagesOfWhatItDoesNotOverride();
    void theOverloadsAreToldApartThroughTheBaseClass();

    void theMetaObjectHasANameAndNothingElse();
    void castsFindBaseAndSubclassObjects();
    void itIsAQObjectAndNoMore();
    void virtualFunctionsComeInTheirOrder();
    void theFactorysVirtualFunctionsComeInTheirOrder();
};

void tst_NetworkAccessManager::cleanup()
{
    registerNetworkAccessManagerFactory(nullptr);
}

void tst_NetworkAccessManager::withoutAFactoryABaseObjectOfTheParentIsMade()
{
    QObject parent;

    NetworkAccessManager *const manager = createNetworkAccessManager(&parent);

    QVERIFY(manager);
    QCOMPARE(manager->parent(), &parent);
    QCOMPARE(manager->metaObject(), &NetworkAccessManager::staticMetaObject);
    Messages messages;
    QVERIFY(!manager->impl());
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.text(0), QByteArray(ImplMessage));
}

void tst_NetworkAccessManager::withoutAFactoryAndAParentTheCallerOwnsTheObject()
{
    QScopedPointer<NetworkAccessManager> first(createNetworkAccessManager(nullptr));
    QScopedPointer<NetworkAccessManager> second(createNetworkAccessManager(nullptr));

    QVERIFY(first);
    QVERIFY(second);
    QVERIFY(first.data() != second.data());
    QVERIFY(!first->parent());
}

void tst_NetworkAccessManager::theFactoryIsAskedOncePerCall()
{
    ImplManager manager(nullptr);
    CountingFactory factory;
    factory.result = &manager;
    registerNetworkAccessManagerFactory(&factory);
    QCOMPARE(factory.calls, 0);

    for (int call = 1; call <= 3; ++call) {
        QCOMPARE(createNetworkAccessManager(nullptr),
                 static_cast<NetworkAccessManager *>(&manager));
        QCOMPARE(factory.calls, call);
    }
}

void tst_NetworkAccessManager::theFactoryGetsTheParentAsItIs()
{
    QObject parent;
    ImplManager manager(nullptr);
    CountingFactory factory;
    factory.result = &manager;
    registerNetworkAccessManagerFactory(&factory);

    createNetworkAccessManager(&parent);
    QCOMPARE(factory.lastParent, &parent);
    QVERIFY(!manager.parent()); // what becomes of the parent is the factory's business

    createNetworkAccessManager(nullptr);
    QVERIFY(!factory.lastParent);
}

void tst_NetworkAccessManager::aNullResultOfTheFactoryIsHandedOn()
{
    CountingFactory factory;
    registerNetworkAccessManagerFactory(&factory);
    QObject parent;
    Messages messages;

    QVERIFY(!createNetworkAccessManager(&parent));

    QCOMPARE(factory.calls, 1);
    QVERIFY(parent.children().isEmpty());
    QCOMPARE(messages.count(), 0);
}

void tst_NetworkAccessManager::aSecondFactoryReplacesTheFirst()
{
    ImplManager manager(nullptr);
    CountingFactory first, second;
    second.result = &manager;
    registerNetworkAccessManagerFactory(&first);
    registerNetworkAccessManagerFactory(&second);

    QCOMPARE(createNetworkAccessManager(nullptr), static_cast<NetworkAccessManager *>(&manager));

    QCOMPARE(first.calls, 0);
    QCOMPARE(second.calls, 1);
}

void tst_NetworkAccessManager::aNullFactoryBringsTheBaseObjectBack()
{
    CountingFactory factory;
    registerNetworkAccessManagerFactory(&factory);
    registerNetworkAccessManagerFactory(nullptr);
    QObject parent;

    NetworkAccessManager *const manager = createNetworkAccessManager(&parent);

    QVERIFY(manager);
    QCOMPARE(manager->metaObject(), &NetworkAccessManager::staticMetaObject);
    QCOMPARE(manager->parent(), &parent);
    QCOMPARE(factory.calls, 0);
}

void tst_NetworkAccessManager::factoriesAreNeverDeleted()
{
    CountingFactory first, second;
    const int destroyedBefore = CountingFactory::destroyed;

    registerNetworkAccessManagerFactory(&first);
    createNetworkAccessManager(nullptr);
    registerNetworkAccessManagerFactory(&second);
    registerNetworkAccessManagerFactory(nullptr);

    QCOMPARE(CountingFactory::destroyed, destroyedBefore);
}

void tst_NetworkAccessManager::eachCallOfABaseOperationSendsOneMessage_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("three strings") << Operation(setThreeTexts) << QByteArray(SslMessage);
    QTest::newRow("two strings") << Operation(setTwoTexts) << QByteArray(SslMessage);
    QTest::newRow("impl") << Operation(askForImpl) << QByteArray(ImplMessage);
}

void tst_NetworkAccessManager::eachCallOfABaseOperationSendsOneMessage()
{
    QFETCH(Operation, operation);
    QFETCH(QByteArray, message);
    NetworkAccessManager manager(nullptr);
    Messages messages;

    for (int call = 0; call < 3; ++call) {
        operation(&manager);
        QCOMPARE(messages.count(), call + 1);
        QCOMPARE(messages.text(call), message);
        QCOMPARE(int(messages.type(call)), int(QtDebugMsg));
    }
}

void tst_NetworkAccessManager::theMessagesAreWhatTheDebugStreamOfQt4Writes()
{
    NetworkAccessManager manager(nullptr);
    Messages messages;

    askForImpl(&manager);
    qDebug() << "[NetworkAccessManager::impl]: NOT Implement.";

    QCOMPARE(messages.count(), 2);
    // Qt 5 leaves out the last space of its stream.
    const QByteArray streamed = messages.text(1);
    QCOMPARE(messages.text(0), ToolkitDifferences::either(streamed, streamed + ' '));
}

// Qt 5 sorts messages into categories, which QT_LOGGING_RULES and a file of the system switch.
void tst_NetworkAccessManager::rulesOfTheToolkitMayKeepTheMessagesBack()
{
    NetworkAccessManager manager(nullptr);
    Messages messages;

    {
        const ToolkitDifferences::WithoutDebugMessages rules;
        askForImpl(&manager);
    }
    QCOMPARE(messages.count(), ToolkitDifferences::either(1, 0));

    askForImpl(&manager);
    QCOMPARE(messages.count(), ToolkitDifferences::either(2, 1));
}

void tst_NetworkAccessManager::baseOperationsChangeNothing()
{
    QObject parent;
    NetworkAccessManager manager(&parent);
    Messages messages;

    setThreeTexts(&manager);
    setTwoTexts(&manager);
    askForImpl(&manager);

    QCOMPARE(manager.parent(), &parent);
    QVERIFY(manager.objectName().isEmpty());
    QVERIFY(manager.children().isEmpty());
    QVERIFY(manager.dynamicPropertyNames().isEmpty());
}

void tst_NetworkAccessManager::makingAndDeletingSaysNothing()
{
    Messages messages;

    delete createNetworkAccessManager(nullptr);

    QCOMPARE(messages.count(), 0);
}

void tst_NetworkAccessManager::aSubclassKeepsTheMessagesOfWhatItDoesNotOverride()
{
    CertificateManager certificates(nullptr);
    ImplManager implementation(nullptr);
    Messages messages;

    setThreeTexts(&certificates);
    setTwoTexts(&certificates);
    QCOMPARE(static_cast<NetworkAccessManager &>(implementation).impl(), ImplManager::handedOut());
    QCOMPARE(messages.count(), 0);

    askForImpl(&certificates);
    setThreeTexts(&implementation);
    setTwoTexts(&implementation);
    QCOMPARE(messages.count(), 3);
    QCOMPARE(messages.text(0), QByteArray(ImplMessage));
    QCOMPARE(messages.text(1), QByteArray(SslMessage));
    QCOMPARE(messages.text(2), QByteArray(SslMessage));
}

void tst_NetworkAccessManager::theOverloadsAreToldApartThroughTheBaseClass()
{
    CertificateManager manager(nullptr);

    setThreeTexts(&manager);
    QCOMPARE(manager.texts, QString::fromLatin1("cert|key|phrase"));

    setTwoTexts(&manager);
    QCOMPARE(manager.texts, QString::fromLatin1("cert|key"));
}

void tst_NetworkAccessManager::theMetaObjectHasANameAndNothingElse()
{
    const QMetaObject &meta = NetworkAccessManager::staticMetaObject;

    QCOMPARE(QByteArray(meta.className()), QByteArray("NetworkAccessManager"));
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

void tst_NetworkAccessManager::castsFindBaseAndSubclassObjects()
{
    NetworkAccessManager manager(nullptr);
    ImplManager subclassed(nullptr);
    QObject *const base = &manager;
    QObject *const derived = &subclassed;
    QObject stranger;

    QCOMPARE(qobject_cast<NetworkAccessManager *>(base), &manager);
    QCOMPARE(qobject_cast<NetworkAccessManager *>(derived),
             static_cast<NetworkAccessManager *>(&subclassed));
    QVERIFY(!qobject_cast<NetworkAccessManager *>(&stranger));
    QVERIFY(!qobject_cast<ImplManager *>(base));
    QVERIFY(base->inherits("NetworkAccessManager"));
    QVERIFY(!base->inherits("QNetworkAccessManager"));
}

void tst_NetworkAccessManager::itIsAQObjectAndNoMore()
{
    QCOMPARE(sizeof(NetworkAccessManager), sizeof(QObject));
}

void tst_NetworkAccessManager::virtualFunctionsComeInTheirOrder()
{
    typedef NetworkAccessManager Manager;
    typedef void (Manager::*ThreeTexts)(QString const &, QString const &, QString const &);
    typedef void (Manager::*TwoTexts)(QString const &, QString const &);
    const int first = FirstOwnSlot::number();

    QVERIFY(first > 0);
    QCOMPARE(virtualSlot(static_cast<ThreeTexts>(&Manager::setSslConfiguration)), first);
    QCOMPARE(virtualSlot(static_cast<TwoTexts>(&Manager::setSslConfiguration)), first + 1);
    QCOMPARE(virtualSlot(&Manager::impl), first + 2);
}

void tst_NetworkAccessManager::theFactorysVirtualFunctionsComeInTheirOrder()
{
    // A virtual destructor takes two slots.
    QCOMPARE(virtualSlot(&NetworkAccessManagerFactory::create), 2);
    QCOMPARE(sizeof(NetworkAccessManagerFactory), sizeof(void *));
}

NUV_TEST_MAIN(tst_NetworkAccessManager)

#include "tst_networkaccessmanager.moc"
