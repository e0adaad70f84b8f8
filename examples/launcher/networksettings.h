#ifndef NETWORKSETTINGS_H
#define NETWORKSETTINGS_H

class ApplicationView;
class QVariant;

/// The effects on the network access of an application, for the table of properties.
namespace NetworkSettings {

bool setDiskCache(ApplicationView &view, const QVariant &on);

} // namespace NetworkSettings

#endif // NETWORKSETTINGS_H
