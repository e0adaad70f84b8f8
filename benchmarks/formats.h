// SPDX-License-Identifier: MIT
#ifndef FORMATS_H
#define FORMATS_H

#include <QByteArray>
#include <QByteArrayList>
#include <QSettings>

/// The settings formats that somebody would write instead of ours, each around a well-known library,
/// in the library of the peers. They fill the map straight from the library's own values, without a
/// tree of variants between them. They do nothing for depth, for keys with "/" or for keys that come
/// twice.
namespace Formats {

/// Those that can be asked for: "qt", "rapidjson", "simdjson", "nlohmann". The third only reads.
Q_DECL_EXPORT QByteArrayList names();

Q_DECL_EXPORT bool canWrite(const QByteArray &name);

/// QSettings::InvalidFormat for a name that is none. Registers it, so call it once for a name.
Q_DECL_EXPORT QSettings::Format prepare(const QByteArray &name);

} // namespace Formats

#endif // FORMATS_H
