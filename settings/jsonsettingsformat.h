// SPDX-License-Identifier: MIT
#ifndef JSONSETTINGSFORMAT_H
#define JSONSETTINGSFORMAT_H

#include <QSettings>

class QIODevice;

/// The handle of the "json" storage format, for the constructors of QSettings. Set once, when the
/// library is loaded; only read afterwards. Files that QSettings names itself end in ".json".
extern QSettings::Format JsonSettingsFormat;

/// Reads a JSON document into the flat keys of QSettings, as flatkeys.h describes them.
///
/// A document with a syntax error leaves `map` alone and sends one warning to the message handler.
/// Returns true in every case, so that QSettings never reports a malformed file. Reentrant.
bool readJsonSettings(QIODevice &device, QSettings::SettingsMap &map);

/// Writes flat keys as the JSON document that reads back to them, indented by four spaces. Returns
/// true in every case; what the device could not take is lost. Reentrant.
bool writeJsonSettings(QIODevice &device, const QSettings::SettingsMap &map);

#endif // JSONSETTINGSFORMAT_H
