// SPDX-License-Identifier: MIT
#include "hooks/zarexextbase.h"

#include "global/qtcompat.h"
#include "tests/hooks/virtualslot.h"
#include "tests/support/guitestmain.h"
#include "tests/support/messages.h"

#include <QMetaMethod>
#include <QPointer>
#include <QScopedPointer>
#include <QWebFrame>
#include <QWebPage>
#include <QWebSettings>
#include <QWebView>

/// Our library only hands such a factory on; these members are the test's own.
class ZarexExtFactory
{
public:
    virtual ~ZarexExtFactory() { ++destroyed; }
    static int destroyed;
};

int ZarexExtFactory::destroyed = 0;

/// What a launcher would publish.
class TvExtension : public ZarexExtBase
{
    Q_OBJECT
    Q_PROPERTY(int volume READ volume WRITE setVolume NOTIFY volumeChanged)

public:
    TvExtension(QObject *parent, QWebPage *hostPage) : ZarexExtBase(parent, hostPage), m_volume(7)
    {
    }

    int volume() const { return m_volume; }

public Q_SLOTS:
    QString greet(const QString &name) { return QLatin1String("hello ") + name; }

    void setVolume(int volume)
    {
        m_volume = volume;
        Q_EMIT volumeChanged(volume);
    }

Q_SIGNALS:
    void volumeChanged(int volume);

private:
    int m_volume;
};

/// Chooses another name, as a subclass may.
class RenamedExtension : public ZarexExtBase
{
    Q_OBJECT

public:
    RenamedExtension(QObject *parent, QWebPage *hostPage) : ZarexExtBase(parent, hostPage)
    {
        setObjectName(QLatin1String("platform"));
    }
};

/// Adds a virtual function after those that the base class has.
class ProbeExtension : public ZarexExtBase
{
public:
    ProbeExtension() : ZarexExtBase(nullptr, nullptr) {}
    virtual void probe() {}
};

namespace {

const char AskForType[] = "typeof zarexExt";

QVariant evaluate(QWebFrame *frame, const QString &script)
{
    return frame->evaluateJavaScript(script);
}

QString text(QWebPage &page, const char *script)
{
    return evaluate(page.mainFrame(), QLatin1String(script)).toString();
}

/// Whether the scripts of the page's document find an object of that name.
bool isPublished(QWebPage &page, const char *name = "zarexExt")
{
    const QString script =
        QString::fromLatin1("typeof window['%1'] == 'object' && window['%1'] !== null");
    return evaluate(page.mainFrame(), script.arg(QLatin1String(name))).toBool();
}

/// Loads a document and waits for it.
bool load(QWebFrame *frame, const char *html)
{
    QSignalSpy finished(frame, SIGNAL(loadFinished(bool)));
    frame->setHtml(QLatin1String(html));
    for (int tries = 0; finished.isEmpty() && tries < 500; ++tries)
        QTest::qWait(10);
    return finished.count() == 1 && finished.at(0).at(0).toBool();
}

bool navigate(QWebPage &page, const char *html = "<p>a page</p>")
{
    return load(page.mainFrame(), html);
}

/// A page with a document whose scripts have run. Before that its window object need not be set up
/// yet, and the first navigation may go on with the same one.
class LoadedPage : public QWebPage
{
public:
    LoadedPage()
    {
        text(*this, "1");
        if (!navigate(*this) || text(*this, AskForType) != QLatin1String("undefined"))
            qFatal("no page can be loaded");
    }
};

bool isConnected(QWebPage &page, ZarexExtBase &extension)
{
    return QObject::disconnect(page.mainFrame(), SIGNAL(javaScriptWindowObjectCleared()),
                               &extension, SLOT(attachObject()));
}

} // namespace

class tst_ZarexExtBase : public QObject
{
    Q_OBJECT

public:
    tst_ZarexExtBase() : m_factoryAtStart(getZarexExtFactory()) {}

private Q_SLOTS:
    void itIsNamedZarexExtFromTheStart();
    void itBelongsToItsParent();
    void withoutAPageItIsInert();
    void hostFrameIsTheMainFrame();
    void hostViewIsTheViewOfThePage();
    void hostViewIsNullWithoutAView();
    void hostViewFollowsThePage();

    void scriptsDoNotSeeItBeforeTheNextNavigation();
    void scriptsSeeItInAWindowThatIsNotYetSetUp();
    void scriptsSeeItAfterAnExplicitAttach();
    void scriptsSeeItAfterANavigation();
    void theScriptsOfTheDocumentItselfSeeIt();
    void scriptsSeeItAfterTwentyNavigations();
    void everyNavigationPublishesItAnew();
    void itIsConnectedToTheMainFrame();
    void childFramesNeverReceiveIt();
    void navigationsOfChildFramesDoNotAttachIt();
    void otherPagesNeverReceiveIt();
    void theLastOfTwoObjectsOfOneNameIsSeen();

    void anotherNameCountsFromTheNextNavigation();
    void anotherNameCountsFromAnExplicitAttach();
    void aSubclassCanChooseItsName();

    void scriptsCallSlots();
    void scriptsReadAndWriteProperties();
    void scriptsConnectToSignals();
    void scriptsCanAttachIt();
    void scriptsCanRenameIt();
    void scriptsCanDeleteItLater();

    void scriptGarbageCollectionNeverDeletesIt();
    void afterItsDeletionScriptsSeeNothing();
    void afterItsDeletionThePageNavigatesOn();
    void itOutlivesItsPage();
    void itIsDeletedWithThePageThatIsItsParent();
    void nothingIsReported();

    void theMetaObjectHasOneSlotAndNothingElse();
    void theSlotCanBeInvokedByName();
    void castsFindBaseAndSubclassObjects();
    void itIsAQObjectAndOnePointer();
    void itAddsNoVirtualFunctions();

    void noFactoryIsRegisteredAtStart();
    void theLastFactoryIsHandedOut();
    void factoriesAreNeverDeleted();

private:
    ZarexExtFactory const *m_factoryAtStart;
};

void tst_ZarexExtBase::itIsNamedZarexExtFromTheStart()
{
    QWebPage page;

    QCOMPARE(ZarexExtBase(nullptr, &page).objectName(), QString::fromLatin1("zarexExt"));
    QCOMPARE(ZarexExtBase(nullptr, nullptr).objectName(), QString::fromLatin1("zarexExt"));
}

void tst_ZarexExtBase::itBelongsToItsParent()
{
    QWebPage page;
    QScopedPointer<QObject> parent(new QObject);
    const QPointer<ZarexExtBase> extension(new ZarexExtBase(parent.data(), &page));
    QCOMPARE(extension->parent(), parent.data());

    parent.reset();

    QVERIFY(!extension);
}

void tst_ZarexExtBase::withoutAPageItIsInert()
{
    LoadedPage bystander;
    ZarexExtBase extension(nullptr, nullptr);

    QVERIFY(!extension.hostFrame());
    QVERIFY(!extension.hostView());
    extension.attachObject();
    QVERIFY(navigate(bystander));
    QCOMPARE(text(bystander, AskForType), QString::fromLatin1("undefined"));
    QVERIFY(!isConnected(bystander, extension));
    QVERIFY(!QObject::disconnect(&extension, nullptr, nullptr, nullptr));
}

void tst_ZarexExtBase::hostFrameIsTheMainFrame()
{
    QWebPage page;
    const ZarexExtBase extension(nullptr, &page);

    QVERIFY(extension.hostFrame());
    QCOMPARE(extension.hostFrame(), page.mainFrame());
}

void tst_ZarexExtBase::hostViewIsTheViewOfThePage()
{
    QWebView view;
    const ZarexExtBase extension(nullptr, view.page());

    QCOMPARE(extension.hostView(), static_cast<QWidget *>(&view));
}

void tst_ZarexExtBase::hostViewIsNullWithoutAView()
{
    QWebPage page;
    const ZarexExtBase extension(nullptr, &page);

    QVERIFY(!extension.hostView());
}

void tst_ZarexExtBase::hostViewFollowsThePage()
{
    QWebPage page;
    const ZarexExtBase extension(nullptr, &page);
    QScopedPointer<QWidget> widget(new QWidget);

    page.setView(widget.data());
    QCOMPARE(extension.hostView(), widget.data());

    widget.reset();
    QVERIFY(!extension.hostView());
}

void tst_ZarexExtBase::scriptsDoNotSeeItBeforeTheNextNavigation()
{
    LoadedPage page;

    ZarexExtBase extension(nullptr, &page);
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));

    QVERIFY(navigate(page));
    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::scriptsSeeItInAWindowThatIsNotYetSetUp()
{
    QWebPage page;
    ZarexExtBase extension(nullptr, &page);

    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::scriptsSeeItAfterAnExplicitAttach()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);

    extension.attachObject();
    QVERIFY(isPublished(page));

    extension.attachObject();
    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::scriptsSeeItAfterANavigation()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);

    QVERIFY(navigate(page));

    QVERIFY(isPublished(page));
    QCOMPARE(text(page, "zarexExt.objectName"), QString::fromLatin1("zarexExt"));
    QCOMPARE(text(page, "zarexExt.greet('tv')"), QString::fromLatin1("hello tv"));
}

void tst_ZarexExtBase::theScriptsOfTheDocumentItselfSeeIt()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);

    QVERIFY(navigate(page, "<script>var answer = zarexExt.greet('document');</script>"));

    QCOMPARE(text(page, "answer"), QString::fromLatin1("hello document"));
}

void tst_ZarexExtBase::scriptsSeeItAfterTwentyNavigations()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);

    for (int i = 1; i <= 20; ++i) {
        QVERIFY(navigate(page, "<script>zarexExt.volume += 1;</script>"));
        QCOMPARE(extension.volume(), 7 + i);
        QCOMPARE(text(page, "zarexExt.greet('tv')"), QString::fromLatin1("hello tv"));
    }
}

void tst_ZarexExtBase::everyNavigationPublishesItAnew()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));
    QCOMPARE(text(page, "zarexExt = 'taken'; zarexExt"), QString::fromLatin1("taken"));

    QVERIFY(navigate(page));

    QVERIFY(isPublished(page));
    QCOMPARE(text(page, "zarexExt.objectName"), QString::fromLatin1("zarexExt"));
}

void tst_ZarexExtBase::itIsConnectedToTheMainFrame()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);

    QVERIFY(isConnected(page, extension));

    // Nothing else attaches it.
    QVERIFY(navigate(page));
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::childFramesNeverReceiveIt()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page, "<iframe></iframe><iframe></iframe>"));
    QVERIFY(isPublished(page));

    const QList<QWebFrame *> children = page.mainFrame()->childFrames();
    QCOMPARE(children.size(), 2);
    for (int i = 0; i < children.size(); ++i) {
        QWebFrame *const child = children.at(i);
        const QLatin1String ask(AskForType);
        QCOMPARE(evaluate(child, ask).toString(), QString::fromLatin1("undefined"));
        QVERIFY(load(child, "<script>var seen = typeof zarexExt;</script><iframe></iframe>"));
        QCOMPARE(evaluate(child, QLatin1String("seen")).toString(),
                 QString::fromLatin1("undefined"));
        QCOMPARE(child->childFrames().size(), 1);
        QCOMPARE(evaluate(child->childFrames().at(0), ask).toString(),
                 QString::fromLatin1("undefined"));
    }

    extension.attachObject();
    QCOMPARE(evaluate(children.at(0), QLatin1String(AskForType)).toString(),
             QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::navigationsOfChildFramesDoNotAttachIt()
{
    LoadedPage page;
    QVERIFY(navigate(page, "<iframe></iframe>"));
    text(page, "1");
    ZarexExtBase extension(nullptr, &page);

    for (int i = 0; i < 2; ++i)
        QVERIFY(load(page.mainFrame()->childFrames().at(0), "<script>var a;</script>"));

    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::otherPagesNeverReceiveIt()
{
    LoadedPage page, other;
    ZarexExtBase extension(nullptr, &page);

    QVERIFY(navigate(page));
    QVERIFY(navigate(other));

    QVERIFY(isPublished(page));
    QCOMPARE(text(other, AskForType), QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::theLastOfTwoObjectsOfOneNameIsSeen()
{
    LoadedPage page;
    TvExtension first(nullptr, &page), second(nullptr, &page);
    first.setVolume(1);
    second.setVolume(2);

    QVERIFY(navigate(page));

    QCOMPARE(text(page, "zarexExt.volume"), QString::fromLatin1("2"));
}

void tst_ZarexExtBase::anotherNameCountsFromTheNextNavigation()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));

    extension.setObjectName(QLatin1String("tv"));
    QVERIFY(isPublished(page, "zarexExt"));
    QVERIFY(!isPublished(page, "tv"));

    QVERIFY(navigate(page));
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
    QVERIFY(isPublished(page, "tv"));
    QCOMPARE(text(page, "tv.objectName"), QString::fromLatin1("tv"));
}

void tst_ZarexExtBase::anotherNameCountsFromAnExplicitAttach()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));

    extension.setObjectName(QLatin1String("tv"));
    extension.attachObject();

    QVERIFY(isPublished(page, "tv"));
    QVERIFY(isPublished(page, "zarexExt")); // until the window object is cleared
}

void tst_ZarexExtBase::aSubclassCanChooseItsName()
{
    LoadedPage page;
    RenamedExtension extension(nullptr, &page);

    QVERIFY(navigate(page));

    QVERIFY(isPublished(page, "platform"));
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::scriptsCallSlots()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);
    QVERIFY(navigate(page));

    QCOMPARE(text(page, "zarexExt.greet('script')"), QString::fromLatin1("hello script"));

    text(page, "zarexExt.setVolume(11)");
    QCOMPARE(extension.volume(), 11);
}

void tst_ZarexExtBase::scriptsReadAndWriteProperties()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);
    QVERIFY(navigate(page));

    QCOMPARE(text(page, "zarexExt.volume"), QString::fromLatin1("7"));

    text(page, "zarexExt.volume = 12");
    QCOMPARE(extension.volume(), 12);
}

void tst_ZarexExtBase::scriptsConnectToSignals()
{
    LoadedPage page;
    TvExtension extension(nullptr, &page);
    QVERIFY(navigate(page));

    text(page, "var heard = []; zarexExt.volumeChanged.connect(function(v) { heard.push(v); });");
    extension.setVolume(3);
    extension.setVolume(4);

    QCOMPARE(text(page, "heard.join()"), QString::fromLatin1("3,4"));
}

void tst_ZarexExtBase::scriptsCanAttachIt()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));

    text(page, "var kept = zarexExt; zarexExt = 1; kept.attachObject();");

    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::scriptsCanRenameIt()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));

    text(page, "zarexExt.objectName = 'mine'");
    QCOMPARE(extension.objectName(), QString::fromLatin1("mine"));

    QVERIFY(navigate(page));
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
    QVERIFY(isPublished(page, "mine"));
}

// A slot of every QObject, so a launcher had better hold a guarded pointer.
void tst_ZarexExtBase::scriptsCanDeleteItLater()
{
    LoadedPage page;
    const QPointer<ZarexExtBase> extension(new ZarexExtBase(nullptr, &page));
    QVERIFY(navigate(page));

    text(page, "zarexExt.deleteLater()");
    QVERIFY(extension);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!extension);

    QVERIFY(navigate(page));
    QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
}

void tst_ZarexExtBase::scriptGarbageCollectionNeverDeletesIt()
{
    LoadedPage page;
    const QScopedPointer<ZarexExtBase> owned(new ZarexExtBase(nullptr, &page));
    const QPointer<ZarexExtBase> extension(owned.data());
    const QPointer<QObject> decoy(new QObject);
    QVERIFY(navigate(page));
    page.mainFrame()->addToJavaScriptWindowObject(QLatin1String("decoy"), decoy.data(),
                                                  QtCompat::ScriptOwnership::AutoOwnership);
    text(page, "decoy = null; zarexExt = null;");

    QVERIFY(navigate(page));
    QVERIFY(navigate(page));
    QWebSettings::clearMemoryCaches(); // collects the scripts' garbage as well

    QVERIFY2(!decoy, "nothing was collected, so this proves nothing");
    QVERIFY(extension);
    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::afterItsDeletionScriptsSeeNothing()
{
    LoadedPage page;
    QScopedPointer<TvExtension> extension(new TvExtension(nullptr, &page));
    QVERIFY(navigate(page));
    QCOMPARE(text(page, "String(zarexExt.volume)"), QString::fromLatin1("7"));

    extension.reset();

    const char askForVolume[] =
        "try { typeof zarexExt.volume == 'number' ? 'read' : 'gone' } catch (e) { 'gone' }";
    const char callGreet[] = "try { zarexExt.greet('tv'); 'called' } catch (e) { 'gone' }";
    QCOMPARE(text(page, askForVolume), QString::fromLatin1("gone"));
    QCOMPARE(text(page, callGreet), QString::fromLatin1("gone"));
}

void tst_ZarexExtBase::afterItsDeletionThePageNavigatesOn()
{
    LoadedPage page;
    QScopedPointer<ZarexExtBase> extension(new ZarexExtBase(nullptr, &page));
    QVERIFY(navigate(page));
    text(page, "var kept = zarexExt;");

    extension.reset();

    for (int i = 0; i < 2; ++i) {
        QVERIFY(navigate(page));
        QCOMPARE(text(page, AskForType), QString::fromLatin1("undefined"));
    }
}

// Nobody may ask it for the frame or the view from then on, but it can still be renamed and
// deleted.
void tst_ZarexExtBase::itOutlivesItsPage()
{
    QScopedPointer<LoadedPage> page(new LoadedPage);
    QScopedPointer<ZarexExtBase> extension(new ZarexExtBase(nullptr, page.data()));
    QVERIFY(navigate(*page));
    QVERIFY(isPublished(*page));

    page.reset();
    QCOMPARE(extension->objectName(), QString::fromLatin1("zarexExt"));
    extension->setObjectName(QLatin1String("orphan"));
    const QPointer<ZarexExtBase> guard(extension.data());
    extension.reset();

    QVERIFY(!guard);
}

void tst_ZarexExtBase::itIsDeletedWithThePageThatIsItsParent()
{
    QScopedPointer<LoadedPage> page(new LoadedPage);
    const QPointer<ZarexExtBase> extension(new ZarexExtBase(page.data(), page.data()));
    QVERIFY(navigate(*page));
    QVERIFY(isPublished(*page));

    page.reset();

    QVERIFY(!extension);
}

void tst_ZarexExtBase::nothingIsReported()
{
    LoadedPage page;
    Messages messages;

    ZarexExtBase inert(nullptr, nullptr);
    inert.attachObject();
    ZarexExtBase extension(nullptr, &page);
    QVERIFY(navigate(page));
    extension.attachObject();

    QCOMPARE(messages.count(), 0);
}

void tst_ZarexExtBase::theMetaObjectHasOneSlotAndNothingElse()
{
    const QMetaObject &meta = ZarexExtBase::staticMetaObject;

    QCOMPARE(QByteArray(meta.className()), QByteArray("ZarexExtBase"));
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.indexOfSlot("attachObject()"), meta.methodOffset());
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(int(method.methodType()), int(QMetaMethod::Slot));
    QCOMPARE(int(method.access()), int(QMetaMethod::Public));
    QVERIFY(method.parameterTypes().isEmpty());
    const QByteArray result(method.typeName());
    QVERIFY(result.isEmpty() || result == "void"); // the toolkits write it differently
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

void tst_ZarexExtBase::theSlotCanBeInvokedByName()
{
    LoadedPage page;
    ZarexExtBase extension(nullptr, &page);

    QVERIFY(QMetaObject::invokeMethod(&extension, "attachObject", Qt::DirectConnection));

    QVERIFY(isPublished(page));
}

void tst_ZarexExtBase::castsFindBaseAndSubclassObjects()
{
    ZarexExtBase extension(nullptr, nullptr);
    TvExtension subclassed(nullptr, nullptr);
    QObject *const base = &extension;
    QObject *const derived = &subclassed;
    QObject stranger;

    QCOMPARE(qobject_cast<ZarexExtBase *>(base), &extension);
    QCOMPARE(qobject_cast<ZarexExtBase *>(derived), static_cast<ZarexExtBase *>(&subclassed));
    QVERIFY(!qobject_cast<ZarexExtBase *>(&stranger));
    QVERIFY(!qobject_cast<TvExtension *>(base));
    QCOMPARE(QByteArray(base->metaObject()->className()), QByteArray("ZarexExtBase"));
    QVERIFY(derived->inherits("ZarexExtBase"));
}

void tst_ZarexExtBase::itIsAQObjectAndOnePointer()
{
    QCOMPARE(sizeof(ZarexExtBase), sizeof(QObject) + sizeof(void *));
}

void tst_ZarexExtBase::itAddsNoVirtualFunctions()
{
    QCOMPARE(virtualSlot(&ProbeExtension::probe), FirstOwnSlot::number());
    QCOMPARE(virtualSlot(&ZarexExtBase::hostFrame), -1);
    QCOMPARE(virtualSlot(&ZarexExtBase::hostView), -1);
    QCOMPARE(virtualSlot(&ZarexExtBase::attachObject), -1);
}

void tst_ZarexExtBase::noFactoryIsRegisteredAtStart()
{
    QVERIFY(!m_factoryAtStart);
}

void tst_ZarexExtBase::theLastFactoryIsHandedOut()
{
    const ZarexExtFactory first, second;

    registerZarexExtFactory(&first);
    QCOMPARE(getZarexExtFactory(), &first);
    QCOMPARE(getZarexExtFactory(), &first);

    registerZarexExtFactory(&second);
    QCOMPARE(getZarexExtFactory(), &second);

    registerZarexExtFactory(nullptr);
    QVERIFY(!getZarexExtFactory());
}

void tst_ZarexExtBase::factoriesAreNeverDeleted()
{
    const ZarexExtFactory first, second;
    const int destroyedBefore = ZarexExtFactory::destroyed;

    registerZarexExtFactory(&first);
    registerZarexExtFactory(&second);
    registerZarexExtFactory(nullptr);

    QCOMPARE(ZarexExtFactory::destroyed, destroyedBefore);
}

NUV_GUI_TEST_MAIN(tst_ZarexExtBase)

#include "tst_zarexextbase.moc"
