#ifndef VIEWSETTINGS_H
#define VIEWSETTINGS_H

class AppConfig;
class ApplicationView;

/// What the configured properties do to a view. A property that is not configured, or whose value
/// cannot be used, leaves the browser's default.
namespace ViewSettings {

/// Prints every configured property and applies it. Those that this launcher has no effect for say
/// so; a value that cannot be used gets a warning on the standard error.
void apply(const AppConfig &config, ApplicationView &view);

} // namespace ViewSettings

#endif // VIEWSETTINGS_H
