// SPDX-License-Identifier: MIT
#ifndef REPAIRABLE_H
#define REPAIRABLE_H

#include <QByteArray>
#include <QList>

#include <random>

/// Mistakes that can have been meant in one way only, planted in configurations without any.
namespace Repairable {

struct Kind {
    const char *name; ///< in words
    /// Plants one in the line, which has one member, an opening or a closing bracket. False where it
    /// cannot be there.
    bool (*plant)(QByteArray *line, std::mt19937 &engine);
};

const QList<Kind> &kinds();

/// A configuration with every kind of value, and without a mistake: each time another.
QByteArray configuration(std::mt19937 &engine);

} // namespace Repairable

#endif // REPAIRABLE_H
