// SPDX-License-Identifier: MIT
#ifndef EXCERPT_H
#define EXCERPT_H

#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// A line of the source as it may be shown, and where in it the caret goes.
struct Excerpt {
    QString line;
    int caret = 0; ///< the column, from 0
    int width = 1; ///< of what is marked, in columns

    static constexpr int UsualColumns = 160;
};

/// Secrets in the line are masked. Of a line that is wider than `columns` the part around `offset` is
/// given, with an ellipsis where something is missing.
Excerpt makeExcerpt(const SourceText &source, int offset, int length, const Secrets &secrets,
                    int columns = Excerpt::UsualColumns);

#endif // EXCERPT_H
