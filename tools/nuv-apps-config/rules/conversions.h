// SPDX-License-Identifier: MIT
#ifndef CONVERSIONS_H
#define CONVERSIONS_H

#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/properties/properties.h"

#include <QByteArray>

/// What was meant by a value of the wrong kind or out of its range.
namespace Conversions {

/// A value of the right kind, as JSON; empty when nobody can tell. `source` is the value as it is
/// written, `files` is where the named files are.
QByteArray toKind(const Property &property, const Node &value, const Document &document,
                  const QByteArray &source, const DeviceFiles &files);

/// 05 written as 0.5, where the range allows it. Empty for anything else.
QByteArray withLostPoint(const Property &property, const QByteArray &written);

/// The fraction that was meant by a percentage, as JSON; empty when it is none.
QByteArray fromPercentage(const Property &property, double number);

} // namespace Conversions

#endif // CONVERSIONS_H
