// SPDX-License-Identifier: MIT
#ifndef TEXTRULES_H
#define TEXTRULES_H

#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// What can be wrong with a string that is of the right kind. The reference launcher judges by the
/// same functions, those of its directory "values".
namespace TextRules {

/// `files` is where the named files are.
void check(const SourceText &source, const Property &property, const Node &value,
           const DeviceFiles &files, Findings &findings);

/// Whether check() would find nothing that keeps the value from being used.
bool isUsable(const Property &property, const QString &text, const DeviceFiles &files);

} // namespace TextRules

#endif // TEXTRULES_H
