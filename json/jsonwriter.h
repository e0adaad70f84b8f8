// SPDX-License-Identifier: MIT
#ifndef JSONWRITER_H
#define JSONWRITER_H

#include <QByteArray>
#include <QVariant>

/// Writes variant trees as JSON text: 7-bit ASCII, with the keys of an object in ascending order.
///
/// | value                           | becomes                                                       |
/// |---------------------------------|---------------------------------------------------------------|
/// | invalid                         | null                                                          |
/// | bool                            | true, false                                                   |
/// | int, uint, qlonglong, qulonglong| the number in decimal                                         |
/// | double, float                   | up to 15 significant digits, as format 'g' writes them        |
/// | QChar                           | the character itself, or its "\u" escape; without quotes      |
/// | QString, QByteArray             | a string                                                      |
/// | QVariantMap                     | an object                                                     |
/// | QVariantList, QStringList       | an array                                                      |
/// | what converts to qlonglong      | that number                                                   |
/// | what converts to QString only   | that text, as a string                                        |
/// | anything else                   | nothing                                                       |
///
/// Not a number and the infinities have no JSON form; they become the toolkit's words for them, which
/// do not read back. Reentrant.
namespace JsonWriter {

/// The text of `value` over several lines, without a line feed at the end. Each level is indented by
/// `indentStep` spaces more, starting from `indentation` spaces. A container that is a member's value
/// begins on a line of its own; an empty one holds an empty line.
QByteArray serialize(const QVariant &value, int indentStep, int indentation);

/// The text of `value` without any white space.
QByteArray serializeCompact(const QVariant &value);

/// The text of `value`, as QVariant::toString() gives it, for between the quotes of a JSON string.
/// Quote, backslash and the five control characters with a short escape are escaped, and every code
/// unit above 127; other control characters are written as they are.
QByteArray escapeString(const QVariant &value);

} // namespace JsonWriter

#endif // JSONWRITER_H
