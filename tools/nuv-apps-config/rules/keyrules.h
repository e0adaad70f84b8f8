// SPDX-License-Identifier: MIT
#ifndef KEYRULES_H
#define KEYRULES_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/properties/properties.h"

/// What can be wrong with a key.
namespace KeyRules {

/// What holds for the keys of every object: no "/", no "size", no duplicate.
void checkEverywhere(const Document &document, Findings &findings);

/// Returns true when the section does not read the key, and says so unless it may be ignored.
bool checkName(const Document &document, const Node &object, const Node::Child &member,
               Section section, Findings &findings);

/// The member whose key is probably meant to be that of the section, which is reported where it is; null
/// when there is none. What is missing is not a mistake of its own then.
const Node::Child *misspelt(const Node &object, Section section, const QString &key);

} // namespace KeyRules

#endif // KEYRULES_H
