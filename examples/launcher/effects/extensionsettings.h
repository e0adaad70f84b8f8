// SPDX-License-Identifier: MIT
#ifndef EXTENSIONSETTINGS_H
#define EXTENSIONSETTINGS_H

class ApplicationView;
class QVariant;

/// The effects on the extension object of an application, for the table of properties.
namespace ExtensionSettings {

bool setBroadcastClearance(ApplicationView &view, const QVariant &on);
bool setBroadcastDomains(ApplicationView &view, const QVariant &domains);

} // namespace ExtensionSettings

#endif // EXTENSIONSETTINGS_H
