// SPDX-License-Identifier: MIT
#ifndef MATCHING_H
#define MATCHING_H

#include <QRegularExpression>

/// The first match of `expression` in `text`, which has no surrogate alone, from the offset `from` on.
/// Throws std::bad_alloc when there is no memory for the search, or for compiling the expression; for the
/// toolkit, nothing matches then.
QRegularExpressionMatch matched(const QRegularExpression &expression, const QString &text,
                                int from = 0);

/// Whether `pattern`, a literal, which is compiled once, matches in the Latin-1 text `bytes`. Throws the
/// same. Not reentrant.
bool matches(const QByteArray &bytes, const char *pattern);

#endif // MATCHING_H
