// SPDX-License-Identifier: MIT
#ifndef FOREIGN_H
#define FOREIGN_H

#include "tools/nuv-apps-config/findings/finding.h"

#include <QByteArray>

/// Files that are something else altogether, of which a list of syntax errors would say nothing.
namespace Foreign {

/// Reports what the bytes are, in one finding. False for what may be a configuration. Only for what
/// the library rejects.
bool report(const QByteArray &bytes, Findings &findings);

} // namespace Foreign

#endif // FOREIGN_H
