#ifndef GUICOMPAT_H
#define GUICOMPAT_H

// Not part of the public interface, never installed.
//
// What qtcompat.h is for the toolkit's core, for its windows.

#include <QRect>
#include <QWidget>

#if QT_VERSION < QT_VERSION_CHECK(5, 14, 0)
#include <QApplication>
#include <QDesktopWidget>
#else
#include <QScreen>
#endif

namespace GuiCompat {

/// The part of a window's screen that windows may cover.
inline QRect availableGeometry(const QWidget &window)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 14, 0)
    return QApplication::desktop()->availableGeometry(&window);
#else
    return window.screen()->availableGeometry();
#endif
}

} // namespace GuiCompat

#endif // GUICOMPAT_H
