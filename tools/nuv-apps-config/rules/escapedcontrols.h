// SPDX-License-Identifier: MIT
#ifndef ESCAPEDCONTROLS_H
#define ESCAPEDCONTROLS_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// Escapes that stand for a control character, as in "C:\tv\new".
namespace EscapedControls {

/// Adds one finding for all of a string. Returns false when there are none.
bool report(const SourceText &source, const Node &value, Findings &findings);

/// Whether JSON has every escape and every character of the string, so that it means what it says.
/// What it has not is reported where the string is read.
bool isPlain(const SourceText &source, const Node &value);

} // namespace EscapedControls

#endif // ESCAPEDCONTROLS_H
