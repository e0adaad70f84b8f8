// SPDX-License-Identifier: MIT
#ifndef EFFECT_H
#define EFFECT_H

#include "tools/nuv-apps-config/analysis/analysis.h"

#include <QString>

/// What comes of a file: what a launcher sees of it.
struct Effect {
    int seen = 0; ///< the applications that it can ask for
    int all = 0; ///< the elements of "Applications"
    QString text; ///< a sentence without a full stop, the same in words

    /// Runs the library's own loader on the bytes.
    static Effect of(const Analysis &analysis);
};

#endif // EFFECT_H
