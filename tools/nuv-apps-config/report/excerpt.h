#ifndef EXCERPT_H
#define EXCERPT_H

#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// A line of the source as it may be shown, and where in it the caret goes.
struct Excerpt {
    QString line;
    int caret = 0; ///< from 0
    int width = 1; ///< of what is marked
};

/// Secrets in the line are masked. Of a long line the part around `offset` is given.
Excerpt makeExcerpt(const SourceText &source, int offset, int length, const Secrets &secrets);

#endif // EXCERPT_H
