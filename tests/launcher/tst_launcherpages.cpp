// SPDX-License-Identifier: MIT
#include "config/appconfig.h"
#include "examples/launcher/application/applicationpage.h"
#include "examples/launcher/application/applicationview.h"
#include "examples/launcher/application/websurface.h"
#include "examples/launcher/network/configuredaccess.h"
#include "examples/launcher/network/launchernetwork.h"
#include "examples/launcher/effects/remoteinspector.h"
#include "examples/launcher/unattended/picturefile.h"
#include "examples/launcher/unattended/windowpicture.h"
#include "tests/launcher/output.h"
#include "tests/launcher/stage.h"
#include "tests/support/guitestmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QImage>
#include <QMimeData>
#include <QTcpServer>
#include <QTimerEvent>
#include <QWebFrame>

namespace {

const QRgb green = 0xff00ff00u;

/// A window with a page in it.
class Window
{
public:
    explicit Window(const AppConfig &config) : m_view(text("tv"), ApplicationPage::make)
    {
        Output out(stdout);
        m_view.apply(config);
        m_view.resize(400, 300);
        m_view.show();
        QApplication::setActiveWindow(&m_view);
    }

    void show(const char *html) const
    {
        QSignalSpy loaded(m_view.page(), SIGNAL(loadFinished(bool)));
        frame()->setHtml(text(html), QUrl(text("http://tv.example/")));
        for (int i = 0; i < 2000 && loaded.isEmpty(); ++i)
            QTest::qWait(10);
        m_view.surface().widget()->setFocus();
    }

    ApplicationView &view() { return m_view; }
    QWidget *canvas() const { return m_view.surface().canvas(); }
    QWidget *surface() const { return m_view.surface().widget(); }
    QWebFrame *frame() const { return m_view.page()->mainFrame(); }

    QString answer(const char *script) const
    {
        return frame()->evaluateJavaScript(text(script)).toString();
    }

    /// Waits until the page has done all that it had put off.
    void settle() const
    {
        answer("isSettled = false; setTimeout(function() { setTimeout(function() {"
               "isSettled = true }, 0) }, 0)");
        for (int i = 0; i < 2000 && answer("isSettled") != text("true"); ++i)
            QTest::qWait(10);
    }

    void turnWheel(const QPoint &at) const
    {
        QWheelEvent event = ToolkitDifferences::wheelNotch(at, canvas()->mapToGlobal(at));
        QApplication::sendEvent(canvas(), &event);
    }

    /// As the system does it: a press of the right button, and the wish for a menu.
    void clickRight(const QPoint &at) const
    {
        QTest::mouseClick(canvas(), Qt::RightButton, Qt::NoModifier, at);
        QContextMenuEvent wish(QContextMenuEvent::Mouse, at, canvas()->mapToGlobal(at));
        QApplication::sendEvent(canvas(), &wish);
    }

    void drop(const QUrl &address, const QPoint &at) const
    {
        QMimeData data;
        data.setUrls(QList<QUrl>() << address);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(canvas(), &enter);
        QDragMoveEvent move(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(canvas(), &move);
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(canvas(), &drop);
    }

private:
    ApplicationView m_view;
};

/// Closes whatever opens in front of a page, and notes what it was.
class Curtain : public QObject
{
public:
    Curtain() { startTimer(5); }

    QStringList seen;

protected:
    void timerEvent(QTimerEvent *) override
    {
        QWidget *menu = QApplication::activePopupWidget();
        QWidget *shown = menu ? menu : QApplication::activeModalWidget();
        if (!shown)
            return;
        const QFileDialog *dialog = qobject_cast<QFileDialog *>(shown);
        const bool isForMany = dialog && dialog->fileMode() == QFileDialog::ExistingFiles;
        seen << text(shown->metaObject()->className()) + text(isForMany ? "(many)" : "");
        shown->close();
    }
};

/// Keeps from an object what it would hear of its properties.
class PropertyFilter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->type() == QEvent::DynamicPropertyChange;
    }
};

} // namespace

/// What a user sees of a page and can do to it.
class tst_LauncherPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void withoutScrollBarsThePageScrolls_data();
    void withoutScrollBarsThePageScrolls();
    void partsOfAPageKeepTheirScrollBars();
    void onlyTheChromeOffersMenusFilesAndDrops_data();
    void onlyTheChromeOffersMenusFilesAndDrops();
    void nobodyOffersDownloadsOrPrints_data();
    void nobodyOffersDownloadsOrPrints();
    void aFloodOfQuestionsEndsForItsUser();

    void anAddressThatIsNoneFailsWithItsReason_data();
    void anAddressThatIsNoneFailsWithItsReason();
    void anEndWithoutAReasonIsGivenOne();
    void onlyTheUserScriptHasLines_data();
    void onlyTheUserScriptHasLines();
    void anEmptyPageIsAPage();
    void aPictureOfNothingIsNotWritten();
    void aPictureHasTheLayersOfThePage_data();
    void aPictureHasTheLayersOfThePage();
    void aPictureOnAFullDiskFails_data();
    void aPictureOnAFullDiskFails();
    void anApplicationHasOneWindow();
    void anEngineWithoutAnInspectorIsTold();

private:
    TemporaryDir m_folder;
    LauncherNetworkFactory m_networks;
};

void tst_LauncherPages::initTestCase()
{
    registerNetworkAccessManagerFactory(&m_networks);
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path()));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_folder.path()));
    QApplication::setQuitOnLastWindowClosed(false);
}

void tst_LauncherPages::withoutScrollBarsThePageScrolls_data()
{
    QTest::addColumn<bool>("scene");
    QTest::addColumn<QVariant>("bars");
    QTest::addColumn<bool>("areSeen");

    QTest::newRow("unset") << false << QVariant() << true;
    QTest::newRow("on") << false << QVariant(true) << true;
    QTest::newRow("off") << false << QVariant(false) << false;
    QTest::newRow("unset, in a scene") << true << QVariant() << true;
    QTest::newRow("off, in a scene") << true << QVariant(false) << false;
}

void tst_LauncherPages::withoutScrollBarsThePageScrolls()
{
    QFETCH(bool, scene);
    QFETCH(QVariant, bars);
    QFETCH(bool, areSeen);
    AppConfig config;
    config.setUseGraphicsView(scene);
    config.setShowScrollbar(bars);
    Window window(config);
    // A page that has a mind of its own about scroll bars does not bring them back.
    window.show("<!DOCTYPE html><style>::-webkit-scrollbar { width: 20px; height: 20px }</style>"
                "<body style='background: #0f0; margin: 0'>"
                "<div style='width: 3000px; height: 3000px'></div>");

    const QImage picture = pictureOf(window.view());
    QCOMPARE(picture.pixel(395, 150) != green, areSeen);
    QCOMPARE(picture.pixel(200, 295) != green, areSeen);

    QTest::keyClick(window.canvas(), Qt::Key_Down);
    for (int i = 0; i < 2000 && window.frame()->scrollPosition().y() == 0; ++i)
        QTest::qWait(10);
    const int afterKey = window.frame()->scrollPosition().y();
    QVERIFY(afterKey > 0);
    window.turnWheel(QPoint(100, 100));
    QVERIFY(window.frame()->scrollPosition().y() > afterKey);
    QTest::keyClick(window.canvas(), Qt::Key_Right);
    for (int i = 0; i < 2000 && window.frame()->scrollPosition().x() == 0; ++i)
        QTest::qWait(10);
    QVERIFY(window.frame()->scrollPosition().x() > 0);
}

void tst_LauncherPages::partsOfAPageKeepTheirScrollBars()
{
    AppConfig config;
    config.setShowScrollbar(false);
    Window window(config);
    window.show("<div id='part' style='width: 100px; height: 100px; overflow: scroll'></div>");

    QVERIFY(window.answer("document.getElementById('part').clientWidth").toInt() < 100);
}

void tst_LauncherPages::onlyTheChromeOffersMenusFilesAndDrops_data()
{
    QTest::addColumn<bool>("chrome");
    QTest::addColumn<bool>("scene");

    QTest::newRow("without a chrome") << false << false;
    QTest::newRow("without a chrome, in a scene") << false << true;
    QTest::newRow("with a chrome") << true << false;
    QTest::newRow("with a chrome, in a scene") << true << true;
}

void tst_LauncherPages::onlyTheChromeOffersMenusFilesAndDrops()
{
    QFETCH(bool, chrome);
    QFETCH(bool, scene);
    AppConfig config;
    config.setShowChrome(chrome);
    config.setUseGraphicsView(scene);
    Window window(config);
    window.show(
        "<body style='margin: 0'><input type='file' style='display: block; width: 200px;"
        "height: 40px'><input type='file' multiple style='display: block; width: 200px;"
        "height: 40px'><script>wishes = 0; oncontextmenu = function() { ++wishes }</script>");
    Curtain curtain;

    window.clickRight(QPoint(300, 150));
    QCOMPARE(curtain.seen.join(text(" ")), text(chrome ? "QMenu" : ""));
    QCOMPARE(window.answer("wishes"), text("1"));

    curtain.seen.clear();
    QTest::mouseClick(window.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
    QTest::mouseClick(window.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 60));
    window.settle();
    QCOMPARE(curtain.seen.join(text(" ")), text(chrome ? "QFileDialog QFileDialog(many)" : ""));

    const QString dropped = m_folder.write(text("dropped.html"), "<p>");
    window.drop(QUrl::fromLocalFile(dropped), QPoint(300, 150));
    if (!chrome)
        window.settle();
    for (int i = 0; i < 2000 && chrome && !window.frame()->url().isLocalFile(); ++i)
        QTest::qWait(10);
    QCOMPARE(window.frame()->url().isLocalFile(), chrome);
}

void tst_LauncherPages::nobodyOffersDownloadsOrPrints_data()
{
    QTest::addColumn<bool>("chrome");

    QTest::newRow("without a chrome") << false;
    QTest::newRow("with a chrome") << true;
}

void tst_LauncherPages::nobodyOffersDownloadsOrPrints()
{
    QFETCH(bool, chrome);
    AppConfig config;
    config.setShowChrome(chrome);
    Window window(config);
    window.show("<body style='margin: 0'><a download='a.bin' href='data:application/octet-stream,a'"
                " style='display: block; height: 40px'>fetch</a>"
                "<a href='#' onclick='print()' style='display: block; height: 40px'>print</a>");
    const QStringList before = QDir(m_folder.path()).entryList();
    Curtain curtain;

    QTest::mouseClick(window.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    QTest::mouseClick(window.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 50));
    QTest::keyClick(window.canvas(), Qt::Key_P, Qt::ControlModifier);
    QTest::keyClick(window.canvas(), Qt::Key_S, Qt::ControlModifier);
    window.settle();

    QCOMPARE(curtain.seen.join(text(" ")), QString());
    QCOMPARE(QDir(m_folder.path()).entryList(), before);
    QCOMPARE(window.frame()->url().host(), text("tv.example"));
}

void tst_LauncherPages::aFloodOfQuestionsEndsForItsUser()
{
    Window window((AppConfig()));
    window.show("<p>");
    Curtain curtain;
    QString printed;
    {
        Output out(stdout);
        window.answer("for (var i = 0; i < 50; ++i) alert(i); for (i = 0; i < 50; ++i) confirm(i)");
        printed = out.text();
    }
    QCOMPARE(curtain.seen.size(), 10);
    QCOMPARE(printed.count(text("tv  asks without end; what follows is answered with no\n")), 1);

    QTest::qWait(QuestionFlood::Pause); // whoever lets the user breathe is no flood
    window.answer("alert('later')");
    QCOMPARE(curtain.seen.size(), 11);
}

void tst_LauncherPages::anAddressThatIsNoneFailsWithItsReason_data()
{
    QTest::addColumn<QByteArray>("address");

    QTest::newRow("without the end of its host") << QByteArray("http://[bad/");
    QTest::newRow("with a port that is none") << QByteArray("http://tv.example:port/");
    QTest::newRow("with a blank in its host") << QByteArray("http://tv example/");
}

void tst_LauncherPages::anAddressThatIsNoneFailsWithItsReason()
{
    QFETCH(QByteArray, address);
    Stage stage;
    const QString url = QLatin1String(address.constData());
    stage.configure(Stage::application("tv", url) + ", "
                    + Stage::application("shown", url, ", \"EnableShowErrorPage\": true"));

    const Run closed = stage.launch("--once --eval 1 tv");
    const Run shown =
        stage.launch("--once --eval document.querySelector('#reason').textContent shown");

    QVERIFY2(closed.err.endsWith(text("nuv-launcher: tv: it has no usable Url\n")),
             qPrintable(closed.err));
    QVERIFY2(closed.err.startsWith(text("nuv-launcher: tv: Url = \"http://")),
             qPrintable(closed.err));
    QCOMPARE(closed.status, 1);
    QCOMPARE(linesAfter("shown  answers: ", shown.out).join(QString()),
             text("\"it has no usable Url\""));
    QCOMPARE(shown.status, 1);
}

// Only the engine of Qt 4 ends a page without a word.
void tst_LauncherPages::anEndWithoutAReasonIsGivenOne()
{
    const QScopedPointer<ApplicationPage> page(ApplicationPage::make(nullptr));
    page->setNetworkAccessManager(new ConfiguredAccess(page.data()));

    QVERIFY(QMetaObject::invokeMethod(page.data(), "judge", Q_ARG(bool, false)));
    QCOMPARE(page->loadError(), text("Request blocked"));
    QVERIFY(!page->mayLoadLater());

    page->showError(QUrl(), text("no certificate"));
    QVERIFY(QMetaObject::invokeMethod(page.data(), "judge", Q_ARG(bool, false)));
    QCOMPARE(page->loadError(), text("no certificate"));
}

void tst_LauncherPages::onlyTheUserScriptHasLines_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("place");

    QTest::newRow("in one of the launcher's own scripts") << 10000 << QString();
    QTest::newRow("in the user script")
        << 10001 << text(ToolkitDifferences::either("", "user.js:1: "));
}

// It begins at line 10001, all others end before.
void tst_LauncherPages::onlyTheUserScriptHasLines()
{
    QFETCH(int, line);
    QFETCH(QString, place);
    Window window((AppConfig()));
    window.view().page()->setUserScript(text("/scripts/user.js"), QString());
    QString told;
    {
        Output out(stdout);
        window.frame()->evaluateJavaScript(QString(line - 1, QLatin1Char('\n')) + text("nosuch()"));
        told = out.text();
    }

    QCOMPARE(told,
             text("tv  console: ") + place + text("ReferenceError: Can't find variable: nosuch\n"));
}

// As of a window for which there is not enough memory.
void tst_LauncherPages::aPictureOfNothingIsNotWritten()
{
    const QString file = m_folder.filePath(text("nothing.png"));

    QCOMPARE(writePicture(QImage(), file), text("it is too large"));
    QVERIFY(!QFile::exists(file));
}

void tst_LauncherPages::anEmptyPageIsAPage()
{
    Stage stage;
    stage.configure(Stage::application("tv", text("about:blank")));

    const Run run = stage.launch("--screenshot out.png --size 40x30 --eval location.href tv");

    QCOMPARE(run.err, QString());
    QCOMPARE(linesAfter("tv  answers: ", run.out).join(QString()), text("\"about:blank\""));
    QCOMPARE(QImage(stage.path("out.png")).size(), QSize(40, 30));
    QCOMPARE(run.status, 0);
}

void tst_LauncherPages::aPictureHasTheLayersOfThePage_data()
{
    QTest::addColumn<QByteArray>("properties");

    QTest::newRow("in a widget") << QByteArray();
    QTest::newRow("in a scene") << QByteArray(", \"UseGraphicsView\": true");
}

// One layer is there from the first, one is made when the page has loaded, and one is in a frame.
void tst_LauncherPages::aPictureHasTheLayersOfThePage()
{
    QFETCH(QByteArray, properties);
    Stage stage;
    const QByteArray layer = "<div style='width: 100px; height: 100px; background: #0f0;"
                             "-webkit-transform: translateZ(0)'></div>";
    stage.write("frame.html", "<!DOCTYPE html><body style='margin: 0'>" + layer);
    stage.write("page.html",
                "<!DOCTYPE html><body style='margin: 0'>" + layer
                    + "<div id='late' style='width: 100px; height: 100px'></div>"
                      "<iframe src='frame.html' style='border: 0; width: 100px; height: 100px'>"
                      "</iframe><script>onload = function() { var s = document.getElementById("
                      "'late').style; s.background = '#0f0'; s.webkitTransform = 'translateZ(0)' }"
                      "</script>");
    stage.configure(
        Stage::application("tv", text("page.html"), ", \"UseCompositing\": true" + properties));

    const Run run = stage.launch("--screenshot out.png --size 200x400 tv");

    QCOMPARE(run.status, 0);
    const QImage picture(stage.path("out.png"));
    QCOMPARE(picture.pixel(50, 50), green);
    QCOMPARE(picture.pixel(50, 150), green);
    QCOMPARE(picture.pixel(50, 250), green);
    QCOMPARE(picture.pixel(150, 50), 0xffffffffu);
}

void tst_LauncherPages::aPictureOnAFullDiskFails_data()
{
    QTest::addColumn<QByteArray>("size");

    QTest::newRow("while it is written") << QByteArray("1280x720");
    QTest::newRow("when it is closed") << QByteArray("10x10");
}

void tst_LauncherPages::aPictureOnAFullDiskFails()
{
    QFETCH(QByteArray, size);
    Stage stage;
    stage.write("page.html", "<p>");
    stage.configure(Stage::application("tv", text("page.html")));

    const Run run = stage.launch(("--screenshot /dev/full --size " + size + " tv").constData());

    QCOMPARE(run.err,
             text("nuv-launcher: tv: the picture cannot be written to /dev/full: No space left on "
                  "device\n"));
    QVERIFY(!run.out.contains(text("picture in")));
    QCOMPARE(run.status, 1);
}

void tst_LauncherPages::anApplicationHasOneWindow()
{
    Stage stage;
    stage.write("page.html",
                "<script>for (var i = 0; i < 3; ++i) { zarexExt.open('news'); zarexExt.open('tv') }"
                "</script>");
    stage.write("news.html", "<p>");
    stage.configure(Stage::application("tv", text("page.html")) + ", "
                    + Stage::application("news", text("news.html")));

    const Run run = stage.launch("--screenshot out.png --size 40x40 tv");

    QVERIFY2(!run.err.contains(text("nuv-launcher")),
             qPrintable(run.err)); // the platform's words aside
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out.count(text("  picture in ")), 2);
    QCOMPARE(run.out.count(text("news  Url = ")), 1);
    QCOMPARE(run.out.count(text("tv  Url = ")), 1);
    QCOMPARE(run.out.count(text("news  is shown again\n")), 2);
    QCOMPARE(run.out.count(text("tv  is shown again\n")), 0);
}

// The engine is asked for its inspector by a property of a page.
void tst_LauncherPages::anEngineWithoutAnInspectorIsTold()
{
    QTcpServer free;
    QVERIFY(free.listen());
    const quint16 port = free.serverPort();
    free.close();
    QWebPage page;
    PropertyFilter filter;
    page.installEventFilter(&filter);

    QCOMPARE(RemoteInspector::open(&page, port), text("the engine does not open it"));
    QCOMPARE(int(RemoteInspector::port()), 0);
}

NUV_GUI_TEST_MAIN(tst_LauncherPages)

#include "tst_launcherpages.moc"
