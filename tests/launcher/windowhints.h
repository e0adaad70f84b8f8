// SPDX-License-Identifier: MIT
#ifndef WINDOWHINTS_H
#define WINDOWHINTS_H

#include <QProcess>
#include <QStringList>
#include <QWidget>

/// What a window asks of a window manager, as the X server tells anybody who asks.
namespace WindowHints {

/// The third number of the hints says which decorations there are.
inline bool haveNoFrame(const QWidget &window)
{
    QProcess reader;
    reader.start(QLatin1String("xprop"),
                 QStringList() << QLatin1String("-id") << QString::number(window.winId())
                               << QLatin1String("_MOTIF_WM_HINTS"));
    if (!reader.waitForFinished())
        qFatal("is xprop, of the package x11-utils, installed?");
    const QString hints = QString::fromLatin1(reader.readAllStandardOutput().constData());
    return hints.section(QLatin1String("= "), 1).section(QLatin1String(", "), 2, 2)
        == QLatin1String("0x0");
}

} // namespace WindowHints

#endif // WINDOWHINTS_H
