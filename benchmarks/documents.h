// SPDX-License-Identifier: MIT
#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QByteArray>
#include <QByteArrayList>

#include <vector>

/// The documents that are measured. They are made, not stored: each name always gives the same
/// bytes.
namespace Documents {

/// The names, in the order of the report.
QByteArrayList names();

/// The document with that name; empty for a name that is none.
QByteArray make(const QByteArray &name);

/// A configuration of `count` applications. With ascending keys it is as our writer makes it.
QByteArray applications(int count, bool ascendingKeys);

/// The keys of single values that an application can have: its tag and 38 properties.
std::vector<const char *> applicationKeys();

} // namespace Documents

#endif // DOCUMENTS_H
