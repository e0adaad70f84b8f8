// SPDX-License-Identifier: MIT
#ifndef WRITERS_H
#define WRITERS_H

#include <QByteArray>
#include <QByteArrayList>
#include <QVariant>

#include <functional>

/// Everything that can turn a variant tree into indented text: our writer, those who could stand in
/// its place, and the floor, which stores the finished text byte by byte.
namespace Writers {

typedef std::function<QByteArray()> Writing;

/// The names, ours first.
QByteArrayList names();

/// A writing of `tree` by the named writer, ready to be measured. A null function for an unknown name.
Writing prepare(const QByteArray &writer, const QVariant &tree);

// In the library of the peers. The floor gets the finished text.
Q_DECL_EXPORT Writing prepareQt(const QVariant &tree);
Q_DECL_EXPORT Writing prepareRapidJson(const QVariant &tree);
Q_DECL_EXPORT Writing prepareFloor(const QByteArray &text);

} // namespace Writers

#endif // WRITERS_H
