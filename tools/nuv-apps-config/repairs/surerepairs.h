#ifndef SUREREPAIRS_H
#define SUREREPAIRS_H

#include "tools/nuv-apps-config/analysis/analysis.h"

#include <vector>

/// Some findings, and the changes that do away with them, in order.
struct SureRepair {
    std::vector<const Finding *> findings;
    std::vector<Edit> edits;
    /// The value that could not be judged before: under a key that nobody knew, or with backslashes that
    /// were no part of it. What is wrong with it is found after the repair.
    int uncoveredBegin = 0;
    int uncoveredEnd = 0;
};

/// The repairs that nobody need look at: what the file holds there can mean one thing only.
namespace SureRepairs {

/// Those of the finding's own proposals that are sure, and some that no hint can propose. In order, and
/// apart from each other. As long as a mistake in the syntax is left, what keys and values mean is not
/// repaired: the tree is not sure then. Comments come after all else in the syntax.
std::vector<SureRepair> of(const Analysis &analysis, const QString &folder);

} // namespace SureRepairs

#endif // SUREREPAIRS_H
