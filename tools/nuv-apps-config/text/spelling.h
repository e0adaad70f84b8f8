// SPDX-License-Identifier: MIT
#ifndef SPELLING_H
#define SPELLING_H

#include <QString>
#include <QStringList>

namespace Spelling {

/// How many letters have to be changed, added, removed or swapped with their neighbour to make `b` out
/// of `a`; never more than `limit` + 1.
int distance(const QString &a, const QString &b, int limit);

/// The one of `names` that was probably meant; empty when none is near. Case does not count.
QString nearest(const QString &name, const QStringList &names);

/// Those of `names` that may be meant, a few at most: the nearest one, and those that `name` is a part
/// of, as "WebGL" of "UseWebGL".
QStringList similar(const QString &name, const QStringList &names);

/// The same as the end of a sentence: "; did you mean "Scale"?"; empty when nothing is similar.
QString didYouMean(const QString &name, const QStringList &names);

} // namespace Spelling

#endif // SPELLING_H
