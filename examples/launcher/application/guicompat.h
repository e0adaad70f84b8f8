#ifndef GUICOMPAT_H
#define GUICOMPAT_H

// Not part of the public interface, never installed.
//
// What qtcompat.h is for the toolkit's core, for its windows and its page engine.

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

/// What the engine is told about the databases of a page that is offered some, or none. In Qt 4 they are
/// one switch of the whole process, set by the page that was told last: there they stay on for the others,
/// and no document finds openDatabase where it is not offered.
inline bool databaseSwitch(bool offered)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    Q_UNUSED(offered)
    return true;
#else
    return offered;
#endif
}

} // namespace GuiCompat

#endif // GUICOMPAT_H
