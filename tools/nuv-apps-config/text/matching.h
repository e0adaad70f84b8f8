// SPDX-License-Identifier: MIT
#ifndef MATCHING_H
#define MATCHING_H

#include <QRegularExpression>

/// The first match of `expression` in `text`, which has no surrogate alone, from the offset `from` on.
/// Throws std::bad_alloc when there is no memory for the search, or for compiling the expression; for the
/// toolkit, nothing matches then.
QRegularExpressionMatch matched(const QRegularExpression &expression, const QString &text,
                                int from = 0);

#endif // MATCHING_H
