// SPDX-License-Identifier: MIT
#ifndef DESCRIBE_H
#define DESCRIBE_H

#include "global/qtcompat.h"

#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <QVariant>

#include <cmath>

// Values as text, so that a comparison sees their types as well and shows what differs. Comparing
// variants would not do: to them 1, 1.0, true and "1" are equal.

/// The text in quotes, with everything but printable ASCII as its code in hexadecimal.
inline QByteArray describeText(const QString &text)
{
    QByteArray result = "\"";
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        if (unit >= 0x20 && unit < 0x7f)
            result += char(unit);
        else
            result += '<' + QByteArray::number(unit, 16) + '>';
    }
    return result + '"';
}

/// Enough digits to tell it from every other, and the sign of a zero, which the toolkit leaves out.
inline QByteArray describeDouble(double value)
{
    const bool isNegativeZero = std::fpclassify(value) == FP_ZERO && std::signbit(value);
    return (isNegativeZero ? "-" : "") + QByteArray::number(value, 'g', 17);
}

inline QByteArray describe(const QVariant &value);

inline QByteArray describeList(const QVariantList &list)
{
    QByteArray result = "[";
    for (int i = 0; i < list.size(); ++i)
        result += (i == 0 ? "" : ", ") + describe(list.at(i));
    return result + "]";
}

inline QByteArray describeMap(const QtCompat::MultiMap &map)
{
    QByteArray result = "{";
    for (QtCompat::MultiMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
        result += (it == map.constBegin() ? "" : ", ") + describeText(it.key()) + ": "
            + describe(it.value());
    }
    return result + "}";
}

/// The type and the value of a variant, as in `int 1`, `double 0.5`, `string "x"`, `[bool true]`.
inline QByteArray describe(const QVariant &value)
{
    if (value.userType() == QtCompat::multiMapType() || QtCompat::isOtherMap(value))
        return describeMap(QtCompat::toMultiMap(value));
    switch (value.userType()) {
    case QVariant::Invalid:
        return "invalid";
    case QMetaType::Bool:
        return value.toBool() ? "bool true" : "bool false";
    case QMetaType::Double:
        return "double " + describeDouble(value.toDouble());
    case QMetaType::QString:
        return "string " + describeText(value.toString());
    case QMetaType::QStringList:
        return "strings " + describeList(value.toList());
    case QMetaType::QVariantList:
        return describeList(value.toList());
    default:
        return QByteArray(value.typeName()) + ' ' + value.toString().toUtf8();
    }
}

/// A line `key = value` for every entry.
inline QByteArray describeLines(const QVariantMap &map)
{
    QByteArray result;
    for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        result += describeText(it.key()) + " = " + describe(it.value()) + '\n';
    return result;
}

#endif // DESCRIBE_H
