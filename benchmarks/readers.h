// SPDX-License-Identifier: MIT
#ifndef READERS_H
#define READERS_H

#include <QByteArray>
#include <QByteArrayList>
#include <QVariant>

#include <functional>

/// Everything that can turn a document into the variant tree: our parser, those who could stand in
/// its place, and the floor, which knows the tokens and only builds the tree.
namespace Readers {

typedef std::function<QVariant()> Reading;

/// The names, ours first.
QByteArrayList names();

/// A reading of `document` by the named reader, ready to be measured: what the reader may prepare
/// (a padded copy, the floor's list of tokens) is done here. A null function for an unknown name.
Reading prepare(const QByteArray &reader, const QByteArray &document);

Reading prepareOurs(const QByteArray &document);

// In the library of the peers.
Q_DECL_EXPORT Reading prepareQt(const QByteArray &document);
Q_DECL_EXPORT Reading prepareRapidJson(const QByteArray &document);
Q_DECL_EXPORT Reading prepareSimdjson(const QByteArray &document);
Q_DECL_EXPORT Reading prepareNlohmann(const QByteArray &document);
Q_DECL_EXPORT Reading prepareFloor(const QByteArray &document);

} // namespace Readers

#endif // READERS_H
