// SPDX-License-Identifier: MIT
#ifndef NETWORKSETTINGS_H
#define NETWORKSETTINGS_H

struct Need;
class ApplicationView;
class QVariant;

/// The effects on the network access of an application, for the table of properties.
namespace NetworkSettings {

bool setDiskCache(ApplicationView &view, const QVariant &on);
bool setDiskCookies(ApplicationView &view, const QVariant &on);

/// Takes "host:port", where a user and a password, "http://", and a slash at the end may stand
/// around it.
bool setProxy(ApplicationView &view, const QVariant &address);

/// Takes an address of the web. Its user, its password and its fragment are not sent.
bool setReferrer(ApplicationView &view, const QVariant &address);

/// No toolkit on Linux closes a network session when nothing was transferred for a while, so that
/// there is nothing to keep open.
extern const Need closingSessions;

} // namespace NetworkSettings

#endif // NETWORKSETTINGS_H
