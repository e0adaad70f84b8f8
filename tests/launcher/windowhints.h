// SPDX-License-Identifier: MIT
#ifndef WINDOWHINTS_H
#define WINDOWHINTS_H

#include <QProcess>
#include <QRegExp>
#include <QStringList>
#include <QWidget>

/// What a window asks of a window manager, as the X server tells anybody who asks.
namespace WindowHints {

/// Whether a window is to have no frame: of the three numbers the first one says that decorations are
/// chosen, the third one which. The window is named as xprop wants it: "-id" with its number, or "-name"
/// with its title.
inline bool haveNoFrame(const QStringList &window)
{
    QProcess reader;
    reader.start(QLatin1String("xprop"), window + QStringList(QLatin1String("_MOTIF_WM_HINTS")));
    if (!reader.waitForFinished())
        qFatal("is xprop, of the package x11-utils, installed?");
    const QString hints = QString::fromLatin1(reader.readAllStandardOutput().constData());
    return hints.contains(QRegExp(QLatin1String("= 0x2, 0x[0-9a-f]+, 0x0,")));
}

inline bool haveNoFrame(const QWidget &window)
{
    return haveNoFrame(QStringList() << QLatin1String("-id") << QString::number(window.winId()));
}

} // namespace WindowHints

#endif // WINDOWHINTS_H
