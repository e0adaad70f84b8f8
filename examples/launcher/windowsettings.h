#ifndef WINDOWSETTINGS_H
#define WINDOWSETTINGS_H

class ApplicationView;
class QVariant;

/// The effects on the window of an application, for the table of properties.
namespace WindowSettings {

bool setFrameless(ApplicationView &view, const QVariant &on);
bool setMaximized(ApplicationView &view, const QVariant &on);
bool setOpacity(ApplicationView &view, const QVariant &fraction);

} // namespace WindowSettings

#endif // WINDOWSETTINGS_H
