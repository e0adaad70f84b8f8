// SPDX-License-Identifier: MIT
#ifndef SUREREPAIRS_H
#define SUREREPAIRS_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/repairs/surerepair.h"

#include <vector>

/// The repairs that nobody need look at: what the file holds there can mean one thing only.
namespace SureRepairs {

/// Those of the finding's own proposals that are sure, and some that no hint can propose. In order, and
/// apart from each other. As long as a mistake in the syntax is left, what keys and values mean is not
/// repaired: the tree is not sure then. Comments come after all else in the syntax.
std::vector<SureRepair> of(const Analysis &analysis, const DeviceFiles &files);

} // namespace SureRepairs

#endif // SUREREPAIRS_H
