#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QByteArray>
#include <QByteArrayList>

/// The documents that are measured. They are made, not stored: each name always gives the same
/// bytes.
namespace Documents {

/// The names, in the order of the report.
QByteArrayList names();

/// The document with that name; empty for a name that is none.
QByteArray make(const QByteArray &name);

/// A configuration of `count` applications. With ascending keys it is as our writer makes it.
QByteArray applications(int count, bool ascendingKeys);

} // namespace Documents

#endif // DOCUMENTS_H
