// SPDX-License-Identifier: MIT
#ifndef CERTIFICATERULES_H
#define CERTIFICATERULES_H

#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"

/// Looks into the files that a "Certificate" names.
namespace CertificateRules {

/// `certificate` is the object, whose "Path" is a string; `files` is where they are.
void check(const Document &document, const Node &certificate, const DeviceFiles &files,
           Findings &findings);

} // namespace CertificateRules

#endif // CERTIFICATERULES_H
