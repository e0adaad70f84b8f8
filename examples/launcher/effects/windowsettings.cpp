// SPDX-License-Identifier: MIT
#include "effects/windowsettings.h"

#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "application/guicompat.h"
#include "effects/chrome.h"
#include "effects/framerate.h"
#include "application/websurface.h"

#include <QGraphicsWebView>
#include <QWebSettings>

bool WindowSettings::setFrameless(ApplicationView &view, const QVariant &on)
{
    const Qt::WindowFlags others = view.windowFlags() & ~Qt::FramelessWindowHint;
    view.setWindowFlags(on.toBool() ? others | Qt::FramelessWindowHint : others);
    return true;
}

// Without a window manager nobody looks at the state of a window.
bool WindowSettings::setMaximized(ApplicationView &view, const QVariant &on)
{
    if (on.toBool())
        view.setGeometry(GuiCompat::availableGeometry(view));
    view.setWindowState(on.toBool() ? Qt::WindowMaximized : Qt::WindowNoState);
    return true;
}

bool WindowSettings::setOpacity(ApplicationView &view, const QVariant &fraction)
{
    view.setWindowOpacity(qreal(fraction.toDouble())); // a float in the Qt 4 of ARM devices
    return true;
}

bool WindowSettings::setChrome(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool())
        return true;
    view.addBar(new Chrome(view.page(), &view));
    view.surface().offerControls();
    view.page()->setFilesAreOffered(true);
    return true;
}

bool WindowSettings::setFrameRate(ApplicationView &view, const QVariant &on)
{
    if (on.toBool())
        new FrameRate(view.surface().canvas(), &view);
    return true;
}

bool WindowSettings::setKeptWhenClosed(ApplicationView &view, const QVariant &on)
{
    view.setAttribute(Qt::WA_DeleteOnClose, !on.toBool());
    return true;
}

bool WindowSettings::setGraphicsView(ApplicationView &view, const QVariant &on)
{
    if (on.toBool())
        view.useScene();
    return true;
}

bool WindowSettings::setGrowing(ApplicationView &view, const QVariant &on)
{
    if (on.toBool())
        view.surface().growToContents();
    return true;
}

namespace {

bool isGraphicsView(const ApplicationView &view)
{
    return view.surface().item() != nullptr;
}

// The engine does not tell whether it has tiles, but only tiles can be frozen.
bool paintsInTiles(const ApplicationView &view)
{
    QGraphicsWebView *item = view.surface().item();
    if (!item)
        return false;
    QWebSettings *settings = view.page()->settings();
    const bool before = settings->testAttribute(QWebSettings::TiledBackingStoreEnabled);
    settings->setAttribute(QWebSettings::TiledBackingStoreEnabled, true);
    item->setTiledBackingStoreFrozen(true);
    const bool isFrozen = item->isTiledBackingStoreFrozen();
    item->setTiledBackingStoreFrozen(false);
    settings->setAttribute(QWebSettings::TiledBackingStoreEnabled, before);
    return isFrozen;
}

} // namespace

const Need WindowSettings::graphicsView = { "UseGraphicsView", isGraphicsView };
const Need WindowSettings::tiles = {
    "UseGraphicsView, and an engine that paints in tiles: that of Qt 4, not the newer ones",
    paintsInTiles
};
