// SPDX-License-Identifier: MIT
#ifndef VALUETEXT_H
#define VALUETEXT_H

#include "config/appconfig.h"

#include <QString>
#include <QVariant>

/// Values for people, for scripts and for JSON.
namespace ValueText {

/// "string", "switch", "int" and so on, for what the variant holds.
QString typeOf(const QVariant &value);

/// Texts in quotes, with control characters made visible.
QString shown(const QVariant &value);

/// The value alone; the elements of a list on a line each.
QString plain(const QVariant &value);

/// Whether two values mean the same: an integer may be of either type. The toolkit's own
/// comparison converts strings, and calls numbers equal that differ in their last digits.
bool isSame(const QVariant &a, const QVariant &b);

/// A property that an AppConfig holds.
struct Entry {
    QString property;
    QString path; ///< in the file
    QVariant value;
    QVariant shown; ///< with secrets masked, unless they are revealed
};

/// In the order of the table.
QList<Entry> entriesOf(const AppConfig &config, bool reveal);

} // namespace ValueText

#endif // VALUETEXT_H
