// SPDX-License-Identifier: MIT
#ifndef NEARBYFILES_H
#define NEARBYFILES_H

#include <QString>

/// Files next to the configuration file.
namespace NearbyFiles {

/// The path of a file, relative to `folder`, that was probably meant by `path`; empty when none is
/// near.
QString nearest(const QString &path, const QString &folder);

} // namespace NearbyFiles

#endif // NEARBYFILES_H
