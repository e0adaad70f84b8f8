// SPDX-License-Identifier: MIT
#ifndef MAPPINGS_H
#define MAPPINGS_H

#include <QSettings>
#include <QVariant>

#include <functional>

/// The peers of the mapping between trees and flat keys, in the library of the peers.
namespace Mappings {

typedef std::function<QVariant()> Mapping;

// As the mapping is described, without a thought of its cost.
Q_DECL_EXPORT Mapping prepareFlatteningPlainly(const QVariant &tree);
Q_DECL_EXPORT Mapping prepareUnflatteningPlainly(const QSettings::SettingsMap &map);

// Inserts the flat keys, known already, in the order of the tree.
Q_DECL_EXPORT Mapping prepareFlatteningFloor(const QVariant &tree);

} // namespace Mappings

#endif // MAPPINGS_H
