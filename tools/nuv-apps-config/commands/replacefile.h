// SPDX-License-Identifier: MIT
#ifndef REPLACEFILE_H
#define REPLACEFILE_H

#include <QByteArray>
#include <QString>

/// Writes `bytes` instead of `before`, which the file held when it was read. At every moment the file has
/// all of the one or all of the other. A symbolic link stays one, and the file keeps its mode, its owner
/// and its group.
///
/// Returns false, with the reason in `*error`, when it cannot be written or does not hold `before` any
/// more; the file is as it was then.
bool replaceFile(const QString &name, const QByteArray &before, const QByteArray &bytes,
                 QString *error);

#endif // REPLACEFILE_H
