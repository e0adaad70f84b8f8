#include "examples/launcher/windowsettings.h"

#include "examples/launcher/applicationview.h"

#include <QVariant>

bool WindowSettings::setFrameless(ApplicationView &view, const QVariant &on)
{
    const Qt::WindowFlags others = view.windowFlags() & ~Qt::FramelessWindowHint;
    view.setWindowFlags(on.toBool() ? others | Qt::FramelessWindowHint : others);
    return true;
}

bool WindowSettings::setMaximized(ApplicationView &view, const QVariant &on)
{
    view.setWindowState(on.toBool() ? Qt::WindowMaximized : Qt::WindowNoState);
    return true;
}

bool WindowSettings::setOpacity(ApplicationView &view, const QVariant &fraction)
{
    view.setWindowOpacity(qreal(fraction.toDouble())); // a float in the Qt 4 of ARM devices
    return true;
}
