// SPDX-License-Identifier: MIT
#ifndef PROPOSAL_H
#define PROPOSAL_H

#include "tools/nuv-apps-config/analysis/analysis.h"

/// The change that a finding proposes, as another program may be told it.
struct Proposal {
    bool isGiven = false; ///< false where there is no change, or where it would show a secret
    Place begin = { 0, 0 };
    Place end = { 0, 0 }; ///< of what goes away
    QString inserted;

    static Proposal of(const Analysis &analysis, const Finding &finding);
};

#endif // PROPOSAL_H
