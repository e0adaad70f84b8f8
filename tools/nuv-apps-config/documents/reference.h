// SPDX-License-Identifier: MIT
#ifndef REFERENCE_H
#define REFERENCE_H

#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <QByteArray>

/// The reference, made from the tables.
namespace Reference {

/// An entry for a terminal.
QString explain(const Property &property);
QString explain(const Rule &rule);

QByteArray configurationPage(); ///< docs/configuration.md
QByteArray rulesPage(); ///< docs/rules.md
QByteArray formatManual(); ///< AppsConfig.json(5)
QByteArray programManual(); ///< nuv-apps-config(1)

/// The JSON Schema, draft-07.
QByteArray schema();

/// A header that declares getters and setters of properties, each pair after a comment of its own, with
/// these comments as the table says them. What is between the lines "/// \{" and "/// \}" is changed,
/// the order stays.
QByteArray describedAccessors(const QByteArray &header);

/// The paragraph in lines of so many characters.
QString wrapped(const QString &paragraph, int width);

/// Facts about a property, each a name and a description: its kind, range, example and so on.
QList<QPair<QString, QString>> facts(const Property &property);

} // namespace Reference

#endif // REFERENCE_H
