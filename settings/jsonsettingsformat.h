#ifndef JSONSETTINGSFORMAT_H
#define JSONSETTINGSFORMAT_H

#include <QSettings>
#include <QString>
#include <QVariant>

class QIODevice;

/// The handle of the "json" storage format, for the constructors of QSettings. Set once, when the
/// library is loaded; only read afterwards. Files that QSettings names itself end in ".json".
extern QSettings::Format JsonSettingsFormat;

/// Reads a JSON document into the flat keys of QSettings:
///
/// | document                                  | becomes                                             |
/// |-------------------------------------------|-----------------------------------------------------|
/// | {"a": 1, "b": {"c": true}}                | a = 1, b/c = true                                   |
/// | {"list": [10, 20]}                        | list/1 = 10, list/2 = 20, list/size = 2             |
/// | {"list": []}                              | list/size = 0                                       |
/// | {"none": null, "empty": {}}               | none = an invalid variant                           |
///
/// A document with a syntax error leaves `map` alone and sends one warning to the message handler.
/// Returns true in every case, so that QSettings never reports a malformed file. Reentrant.
bool readJsonSettings(QIODevice &device, QSettings::SettingsMap &map);

/// Writes flat keys as the JSON document that reads back to them, indented by four spaces. Returns
/// true in every case; what the device could not take is lost. Reentrant.
bool writeJsonSettings(QIODevice &device, const QSettings::SettingsMap &map);

/// Adds the flat keys of `value` to `map`; what a key held before is replaced. `prefix` is the path of
/// `value` with a "/" behind it, empty for the root. On return its last component is cut off.
void flattenVariant(QString &prefix, QSettings::SettingsMap &map, const QVariant &value);

/// Returns `node` with `value` set under the path `key`. What stands in the way of the path is
/// replaced by an object. A last component "size" turns the object that it is set in into an array of
/// so many elements, from the entries "1", "2", … that the object holds by then; its other entries
/// are dropped. Keys must therefore come in ascending order, as a settings map has them.
QVariant unflattenVariant(const QVariant &node, const QString &key, const QVariant &value);

/// The tree of all entries of `map`: what unflattenVariant() makes of them one by one, from an invalid
/// node.
QVariant unflattenMap(const QSettings::SettingsMap &map);

#endif // JSONSETTINGSFORMAT_H
