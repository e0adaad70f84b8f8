// SPDX-License-Identifier: MIT
#ifndef SUREREPAIR_H
#define SUREREPAIR_H

#include "tools/nuv-apps-config/findings/finding.h"

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

#endif // SUREREPAIR_H
