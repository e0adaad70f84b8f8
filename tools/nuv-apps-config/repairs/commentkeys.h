// SPDX-License-Identifier: MIT
#ifndef COMMENTKEYS_H
#define COMMENTKEYS_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/repairs/surerepair.h"

#include <vector>

/// Makes of each comment the value of a key that begins with "_comment", which the library ignores. It
/// stays where it is between the members of an object; from elsewhere it goes to the object that it is
/// most likely about.
namespace CommentKeys {

/// For a file whose only mistakes in the syntax are comments: its tree is what was meant then.
std::vector<SureRepair> repairs(const Analysis &analysis);

} // namespace CommentKeys

#endif // COMMENTKEYS_H
