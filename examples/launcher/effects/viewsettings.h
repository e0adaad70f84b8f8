// SPDX-License-Identifier: MIT
#ifndef VIEWSETTINGS_H
#define VIEWSETTINGS_H

#include <QString>
#include <QVariant>

class AppConfig;
class ApplicationView;
struct ValueKind;

/// Without what an effect does not show.
struct Need {
    const char *name;
    bool (*isMet)(const ApplicationView &view);
};

/// A row of the table: what a configured property does to an application.
struct ViewSetting {
    const char *property;
    QVariant (AppConfig::*get)() const;
    const ValueKind *kind;
    const char *target; ///< what it is applied to
    const char *moment; ///< when it works
    const char *effect; ///< in one line
    const Need *need; ///< null when there is none

    /// Gets values of its kind only. Returns false, and does nothing, when it cannot use one all the
    /// same. Null where the launcher takes several properties together, after all others.
    bool (*apply)(ApplicationView &view, const QVariant &value);
};

/// What the configured properties do to an application. A property that is not configured, or whose
/// value cannot be used, leaves the browser's default. A proxy, a referrer or a list of domains that
/// cannot be used keeps the application from starting.
namespace ViewSettings {

/// The rows, in the order in which they are printed and applied.
extern const ViewSetting table[];
extern const int count;

/// Prints every configured property and applies it. A property whose need is not met says so; a value
/// that cannot be used gets one warning on the standard error.
void apply(const AppConfig &config, ApplicationView &application);

/// The table as it is in the documentation, in Markdown.
QString description();

} // namespace ViewSettings

#endif // VIEWSETTINGS_H
