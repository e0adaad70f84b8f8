// SPDX-License-Identifier: MIT
#ifndef UNIFIEDDIFF_H
#define UNIFIEDDIFF_H

#include <QByteArray>

class RepairedFile;

/// What the repairs change, as a unified diff. Secrets in it are masked: on their lines it is for people
/// only, elsewhere it can be applied.
QByteArray unifiedDiff(const RepairedFile &file);

#endif // UNIFIEDDIFF_H
