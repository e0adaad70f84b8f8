// SPDX-License-Identifier: MIT
#ifndef SUBJECTS_H
#define SUBJECTS_H

#include <QByteArray>
#include <QVariant>

#include <functional>

/// One thing that is measured, ready to be run. What it needs (a tree to be written, a padded copy) is
/// there.
struct Subject {
    std::function<QVariant()> run; ///< null for what there is not
    int units; ///< by which the figure is divided; 0 where the size of the result is it
    std::function<void()> renew = nullptr; ///< before every run, where one uses up what it needs
};

/// Everything that is measured, by its name and by who does it:
///
/// | action                | who                                          | unit              |
/// |-----------------------|----------------------------------------------|-------------------|
/// | read                  | Readers::names()                             | byte read         |
/// | write                 | Writers::names()                             | byte written      |
/// | flatten               | ours, plain, floor                           | flat key          |
/// | unflatten             | ours, plain, floor                           | flat key          |
/// | load                  | ours, handed-over                            | application       |
/// | look-up               | getAppConfig, getter, hash, hash-and-key     | call              |
namespace Subjects {

/// `file` holds the document.
Subject prepare(const QByteArray &action, const QByteArray &file, const QByteArray &who);

Subject prepareFlattening(const QByteArray &document, const QByteArray &who);
Subject prepareUnflattening(const QByteArray &document, const QByteArray &who);
Subject prepareLoading(const QByteArray &file, const QByteArray &who);
Subject prepareLookUp(const QByteArray &file, const QByteArray &who);

/// The units of a run that gave `result`.
int units(const Subject &subject, const QVariant &result);

/// The content of a file, empty when it cannot be read.
QByteArray contentOf(const QByteArray &file);

} // namespace Subjects

#endif // SUBJECTS_H
