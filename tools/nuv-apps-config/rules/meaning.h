// SPDX-License-Identifier: MIT
#ifndef MEANING_H
#define MEANING_H

#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// Checks what the keys and values of a file say. `files` is where the named files are.
void checkMeaning(const SourceText &source, const Document &document, const DeviceFiles &files,
                  Findings &findings);

#endif // MEANING_H
