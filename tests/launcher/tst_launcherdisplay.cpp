// SPDX-License-Identifier: MIT
#include "config/appconfig.h"
#include "examples/launcher/application/applicationpage.h"
#include "examples/launcher/application/applicationview.h"
#include "examples/launcher/network/launchernetwork.h"
#include "examples/launcher/unattended/windowpicture.h"
#include "tests/launcher/output.h"
#include "tests/launcher/windowhints.h"
#include "tests/support/guitestmain.h"
#include "tests/support/toolkitdifferences.h"

#include <QColor>
#include <QImage>
#include <QWebFrame>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

/// A window on the display with a page in it.
class Window
{
public:
    explicit Window(const AppConfig &config) : m_view(text("tv"))
    {
        Output out(stdout);
        m_view.apply(config);
        m_view.resize(300, 200);
        m_view.show();
    }

    void show(const char *html) { m_view.page()->mainFrame()->setHtml(text(html)); }

    QString answer(const char *script) const
    {
        return m_view.page()->mainFrame()->evaluateJavaScript(text(script)).toString();
    }

    /// Waits until a place of the window has a colour: layers are drawn some time after the page. Returns
    /// what it has in the end.
    QRgb awaitPixel(int x, int y, QRgb color)
    {
        for (int i = 0; i < 3000 && pixel(x, y) != color; ++i)
            QTest::qWait(20);
        return pixel(x, y);
    }

    QRgb pixel(int x, int y) { return pictureOf(m_view).pixel(x, y); }

    /// What the screen shows at this place of the window.
    QRgb onScreen(int x, int y) const
    {
        return ToolkitDifferences::screen().pixel(m_view.mapToGlobal(QPoint(x, y)));
    }

private:
    ApplicationView m_view;
};

/// A window of one colour, which no window before it had: one that has just gone may be seen a while longer.
class ColoredWindow
{
public:
    ColoredWindow(const QColor &color, const QRect &geometry) : m_color(color)
    {
        m_widget.setStyleSheet(text("background: ") + color.name());
        m_widget.setGeometry(geometry);
        m_widget.show();
    }

    /// Waits until the screen shows the window at this place of it. Returns false when it never does.
    bool isSeenAt(const QPoint &place) const
    {
        const QPoint onScreen = m_widget.mapToGlobal(place);
        for (int i = 0; i < 3000; ++i) {
            if (ToolkitDifferences::screen().pixel(onScreen) == m_color.rgb())
                return true;
            QTest::qWait(20);
        }
        return false;
    }

private:
    QWidget m_widget;
    const QColor m_color;
};

/// But for what is rounded where colours are mixed.
bool areAlike(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) < 4 && qAbs(qGreen(a) - qGreen(b)) < 4
        && qAbs(qBlue(a) - qBlue(b)) < 4;
}

const QRgb blue = 0xff0000ffu;
const QRgb green = 0xff00ff00u;

const char canvas[] = "<!DOCTYPE html><body style='margin: 0; background: #0f0'>"
                      "<canvas id='canvas' width='100' height='100'></canvas><script>"
                      "var gl = document.getElementById('canvas').getContext('webgl')"
                      "      || document.getElementById('canvas').getContext('experimental-webgl');"
                      "var drawn = 'nothing';"
                      "if (gl) {"
                      "    var bytes = new Uint8Array(4);"
                      "    gl.clearColor(0, 0, 1, 1);"
                      "    gl.clear(gl.COLOR_BUFFER_BIT);"
                      "    gl.readPixels(50, 50, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, bytes);"
                      "    drawn = [bytes[0], bytes[1], bytes[2], bytes[3]].join();"
                      "}</script>";

const char layer[] = "<!DOCTYPE html><body style='margin: 0'><div style='margin: 50px;"
                     "width: 100px; height: 100px; background: #0f0;"
                     "-webkit-transform: translateZ(0)'></div>";

} // namespace

// What needs a display with OpenGL.
class tst_LauncherDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void scriptsDrawWithWebGLUnlessItIsOff_data();
    void scriptsDrawWithWebGLUnlessItIsOff();
    void layersShowTheirBordersWhereTheyArePutTogether_data();
    void layersShowTheirBordersWhereTheyArePutTogether();
    void aPageIsDrawnInTilesAsItIsWithoutThem();
    void aMaximizedWindowFillsTheScreen_data();
    void aMaximizedWindowFillsTheScreen();
    void aWindowIsAskedForWithoutItsFrame_data();
    void aWindowIsAskedForWithoutItsFrame();
    void aWindowComesToTheFront();
    void whatLiesBehindAWindowShinesThrough_data();
    void whatLiesBehindAWindowShinesThrough();
};

void tst_LauncherDisplay::initTestCase()
{
    static LauncherNetworkFactory networks;
    registerNetworkAccessManagerFactory(&networks);
}

void tst_LauncherDisplay::scriptsDrawWithWebGLUnlessItIsOff_data()
{
    QTest::addColumn<bool>("scene");
    QTest::addColumn<QVariant>("webgl");
    QTest::addColumn<QString>("drawn");
    QTest::addColumn<uint>("pixel");

    const QString bytes = text("0,0,255,255");
    const QString nothing = text("nothing");
    const QString drawn = ToolkitDifferences::canDrawWithWebGL() ? bytes : nothing;
    const uint colour = drawn == bytes ? blue : green;
    const QString drawnUnasked = ToolkitDifferences::drawsWithWebGLUnasked() ? drawn : nothing;
    QTest::newRow("unset") << false << QVariant() << drawnUnasked
                           << (drawnUnasked == bytes ? blue : green);
    QTest::newRow("on") << false << QVariant(true) << drawn << colour;
    QTest::newRow("off") << false << QVariant(false) << nothing << green;
    QTest::newRow("on, in a scene") << true << QVariant(true) << drawn << colour;
    QTest::newRow("off, in a scene") << true << QVariant(false) << nothing << green;
}

void tst_LauncherDisplay::scriptsDrawWithWebGLUnlessItIsOff()
{
    QFETCH(bool, scene);
    QFETCH(QVariant, webgl);
    QFETCH(QString, drawn);
    QFETCH(uint, pixel);
    AppConfig config;
    config.setUseGraphicsView(scene);
    config.setUseWebGL(webgl);

    Window window(config);
    window.show(canvas);

    QCOMPARE(window.answer("drawn"), drawn);
    QCOMPARE(window.awaitPixel(150, 150, green), green);
    QCOMPARE(window.awaitPixel(50, 50, pixel), pixel);
}

void tst_LauncherDisplay::layersShowTheirBordersWhereTheyArePutTogether_data()
{
    QTest::addColumn<bool>("scene");
    QTest::addColumn<bool>("compositing");
    QTest::addColumn<bool>("borders");

    QTest::newRow("layers with borders") << false << true << true;
    QTest::newRow("layers without borders") << false << true << false;
    QTest::newRow("no layers") << false << false << true;
    QTest::newRow("layers with borders, in a scene") << true << true << true;
    QTest::newRow("no layers, in a scene") << true << false << true;
}

void tst_LauncherDisplay::layersShowTheirBordersWhereTheyArePutTogether()
{
    QFETCH(bool, scene);
    QFETCH(bool, compositing);
    QFETCH(bool, borders);
    AppConfig config;
    config.setUseGraphicsView(scene);
    config.setUseCompositing(compositing);
    config.setShowDebugBorders(borders);

    Window window(config);
    window.show(layer);

    QCOMPARE(window.awaitPixel(100, 60, green), green);
    QCOMPARE(window.pixel(100, 50) != green,
             compositing && borders && ToolkitDifferences::hasBordersOfLayers());
}

void tst_LauncherDisplay::aPageIsDrawnInTilesAsItIsWithoutThem()
{
    AppConfig config;
    config.setUseGraphicsView(true);
    config.setUseTiledBackingStore(true);

    Window window(config);
    window.show(layer);

    QCOMPARE(window.awaitPixel(100, 60, green), green);
    QCOMPARE(window.pixel(20, 20), 0xffffffffu);
}

// No window manager runs here.
void tst_LauncherDisplay::aMaximizedWindowFillsTheScreen_data()
{
    QTest::addColumn<QVariant>("maximized");
    QTest::addColumn<bool>("fills");

    QTest::newRow("unset") << QVariant() << false;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("on") << QVariant(true) << true;
}

void tst_LauncherDisplay::aMaximizedWindowFillsTheScreen()
{
    QFETCH(QVariant, maximized);
    QFETCH(bool, fills);
    AppConfig config;
    config.setStartMaximized(maximized);
    ApplicationView view(text("tv"), ApplicationPage::make);
    view.resize(300, 200);
    {
        Output out(stdout);
        view.apply(config);
    }
    view.show();
    static int number = 0; // a window that has just gone may be seen a while longer
    const QColor color(0, 255, ++number);
    view.page()->mainFrame()->setHtml(
        QString(text("<body style='background: %1'>")).arg(color.name()));

    QImage screen = ToolkitDifferences::screen();
    const QPoint end(screen.width() - 2, screen.height() - 2);
    for (int i = 0; i < 3000; ++i) {
        const QPoint corner = view.mapToGlobal(QPoint(5, 5));
        if (screen.pixel(corner) == color.rgb() && (!fills || screen.pixel(end) == color.rgb()))
            break;
        QTest::qWait(20);
        screen = ToolkitDifferences::screen();
    }
    QCOMPARE(screen.pixel(view.mapToGlobal(QPoint(5, 5))), color.rgb());
    QCOMPARE(screen.pixel(end) == color.rgb(), fills);
    QCOMPARE(screen.pixel(1, 1) == color.rgb() && screen.pixel(end.x(), 1) == color.rgb(), fills);
}

// A window manager reads the wish from the window.
void tst_LauncherDisplay::aWindowIsAskedForWithoutItsFrame_data()
{
    QTest::addColumn<QVariant>("frameless");
    QTest::addColumn<bool>("isPlain");

    QTest::newRow("unset") << QVariant() << false;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("on") << QVariant(true) << true;
}

void tst_LauncherDisplay::aWindowIsAskedForWithoutItsFrame()
{
    QFETCH(QVariant, frameless);
    QFETCH(bool, isPlain);
    AppConfig config;
    config.setFrameless(frameless);
    ApplicationView view(text("tv"), ApplicationPage::make);
    {
        Output out(stdout);
        view.apply(config);
    }
    view.show();

    QCOMPARE(WindowHints::haveNoFrame(view), isPlain);
}

void tst_LauncherDisplay::aWindowComesToTheFront()
{
    ApplicationView first(text("tv"), ApplicationPage::make);
    ApplicationView second(text("news"), ApplicationPage::make);
    for (ApplicationView *view : { &first, &second }) {
        view->setGeometry(0, 0, 300, 200);
        view->show();
    }
    first.page()->mainFrame()->setHtml(text("<body style='background: #0f0'>"));
    second.page()->mainFrame()->setHtml(text("<body style='background: #00f'>"));
    for (int i = 0; i < 3000 && ToolkitDifferences::screen().pixel(100, 100) != blue; ++i)
        QTest::qWait(20);
    QCOMPARE(ToolkitDifferences::screen().pixel(100, 100), blue);

    first.bringToFront();
    for (int i = 0; i < 3000 && ToolkitDifferences::screen().pixel(100, 100) != green; ++i)
        QTest::qWait(20);
    QCOMPARE(ToolkitDifferences::screen().pixel(100, 100), green);
}

// A page with a green square, in front of a blue window.
void tst_LauncherDisplay::whatLiesBehindAWindowShinesThrough_data()
{
    QTest::addColumn<QVariant>("opacity");
    QTest::addColumn<QVariant>("transparent");
    QTest::addColumn<uint>("inSquare");
    QTest::addColumn<uint>("besideSquare");

    const QVariant unset;
    const uint white = 0xffffffffu;
    QTest::newRow("nothing configured") << unset << unset << green << white;
    QTest::newRow("opaque") << QVariant(1) << QVariant(false) << green << white;
    QTest::newRow("half") << QVariant(0.5) << unset << 0xff007f7fu << 0xff7f7fffu;
    QTest::newRow("invisible") << QVariant(0) << unset << blue << blue;
    QTest::newRow("transparent page") << unset << QVariant(true) << green << blue;
    QTest::newRow("both") << QVariant(0.5) << QVariant(true) << 0xff007f7fu << blue;
}

void tst_LauncherDisplay::whatLiesBehindAWindowShinesThrough()
{
    QFETCH(QVariant, opacity);
    QFETCH(QVariant, transparent);
    QFETCH(uint, inSquare);
    QFETCH(uint, besideSquare);
    AppConfig config;
    config.setWindowOpacity(opacity);
    config.setUseTransparentBackground(transparent);
    static int number = 0; // each a blue of its own
    const ColoredWindow behind(QColor(++number % 3, 0, 255), QRect(0, 0, 400, 300));
    QVERIFY(behind.isSeenAt(QPoint(50, 50)));
    QVERIFY(behind.isSeenAt(QPoint(200, 150)));

    Window window(config);
    window.show("<!DOCTYPE html><body style='margin: 0'>"
                "<div style='width: 100px; height: 100px; background: #0f0'></div>");
    // What is shown later is seen later: a window that is not to be seen would be by then.
    const ColoredWindow last(QColor(255, number, 0), QRect(350, 250, 30, 30));
    QVERIFY(last.isSeenAt(QPoint(15, 15)));

    for (int i = 0; i < 3000
         && !(areAlike(window.onScreen(50, 50), inSquare)
              && areAlike(window.onScreen(200, 150), besideSquare));
         ++i)
        QTest::qWait(20); // the windows are put together by another program
    const QString seen = QString::number(window.onScreen(50, 50), 16) + QLatin1Char(' ')
        + QString::number(window.onScreen(200, 150), 16);
    QVERIFY2(areAlike(window.onScreen(50, 50), inSquare), qPrintable(seen));
    QVERIFY2(areAlike(window.onScreen(200, 150), besideSquare), qPrintable(seen));
}

NUV_GUI_TEST_MAIN(tst_LauncherDisplay)

#include "tst_launcherdisplay.moc"
