// SPDX-License-Identifier: MIT
#ifndef TEMPLATES_H
#define TEMPLATES_H

#include <QByteArray>
#include <QStringList>

/// Configurations to start from.
namespace Templates {

/// "minimal", the common devices, and "all".
QStringList names();

/// Empty when there is none of that name.
QByteArray text(const QString &name);

} // namespace Templates

#endif // TEMPLATES_H
