// SPDX-License-Identifier: MIT
#ifndef WINDOWSETTINGS_H
#define WINDOWSETTINGS_H

#include "effects/viewsettings.h"

/// The effects on the window of an application, for the table of properties.
namespace WindowSettings {

bool setFrameless(ApplicationView &view, const QVariant &on);
bool setMaximized(ApplicationView &view, const QVariant &on);
bool setOpacity(ApplicationView &view, const QVariant &fraction);
bool setChrome(ApplicationView &view, const QVariant &on);
bool setFrameRate(ApplicationView &view, const QVariant &on);
bool setKeptWhenClosed(ApplicationView &view, const QVariant &on);

bool setGraphicsView(ApplicationView &view, const QVariant &on);
bool setGrowing(ApplicationView &view, const QVariant &on);

extern const Need graphicsView;
extern const Need tiles;

} // namespace WindowSettings

#endif // WINDOWSETTINGS_H
