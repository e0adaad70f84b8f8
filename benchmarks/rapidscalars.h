// SPDX-License-Identifier: MIT
#ifndef RAPIDSCALARS_H
#define RAPIDSCALARS_H

#include <rapidjson/rapidjson.h>

#include <QVariant>

/// Writes a value without children by any of RapidJSON's writers whose text is UTF-16; null for a type that
/// JSON does not have.
template<typename Writer>
void writeRapidScalar(Writer &writer, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        writer.Bool(value.toBool());
        break;
    case QMetaType::Int:
        writer.Int(value.toInt());
        break;
    case QMetaType::LongLong:
        writer.Int64(value.toLongLong());
        break;
    case QMetaType::Double:
        writer.Double(value.toDouble());
        break;
    case QMetaType::QString: {
        const QString text = value.toString();
        writer.String(text.utf16(), rapidjson::SizeType(text.size()));
        break;
    }
    default:
        writer.Null();
    }
}

#endif // RAPIDSCALARS_H
