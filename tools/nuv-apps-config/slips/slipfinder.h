// SPDX-License-Identifier: MIT
#ifndef SLIPFINDER_H
#define SLIPFINDER_H

#include "tools/nuv-apps-config/slips/slip.h"
#include "tools/nuv-apps-config/tokens/structure.h"
#include "tools/nuv-apps-config/tokens/tokenizer.h"

#include <vector>

/// A token, and what was expected when it came.
struct Step {
    Token token;
    Structure::Mark before;
};

/// All slips of the hand near a syntax error that could be its cause. `steps` are the last tokens, the
/// first of them the one that cannot come next, and then backwards.
std::vector<Slip> slipsNear(const SourceText &source, const std::vector<Step> &steps);

#endif // SLIPFINDER_H
