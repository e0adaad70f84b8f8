// SPDX-License-Identifier: MIT
#ifndef ENGINESETTINGS_H
#define ENGINESETTINGS_H

#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "effects/viewsettings.h"

#include <QVariant>
#include <QWebSettings>

/// The effects on the web settings of an application, for the table of properties.
namespace EngineSettings {

/// For the properties that the engine has an attribute for.
template<QWebSettings::WebAttribute attribute>
bool setAttribute(ApplicationView &view, const QVariant &on)
{
    view.page()->settings()->setAttribute(attribute, on.toBool());
    return true;
}

bool setSpatialNavigationDisabled(ApplicationView &view, const QVariant &on);
bool setDatabases(ApplicationView &view, const QVariant &on);
bool setDatabaseQuota(ApplicationView &view, const QVariant &bytes);
bool setInspectorPort(ApplicationView &view, const QVariant &port);
bool setDebugBorders(ApplicationView &view, const QVariant &on);

extern const Need compositing;
extern const Need databases;

} // namespace EngineSettings

#endif // ENGINESETTINGS_H
