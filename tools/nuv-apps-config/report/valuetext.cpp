// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/valuetext.h"

#include "tools/nuv-apps-config/report/jsontext.h"
#include "tools/nuv-apps-config/report/output.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/secrets/secrets.h"

#include <QStringList>

#include <cmath>
#include <cstring>
#include <functional>

namespace {

bool isNumber(const QVariant &value)
{
    const int type = value.userType();
    return type == QMetaType::Int || type == QMetaType::UInt || type == QMetaType::LongLong
        || type == QMetaType::Float || type == QMetaType::Double;
}

bool isSameNumber(const QVariant &a, const QVariant &b)
{
    const double limit = 9007199254740992.0; // from there on a double means several integers
    const double first = a.toDouble();
    const double second = b.toDouble();
    return std::equal_to<double>()(first, second) && std::fabs(first) < limit;
}

// Shorter than in JSON, where 1.0 is no integer.
QString doubleText(double value)
{
    if (std::isinf(value))
        return QLatin1String(value < 0 ? "-inf" : "inf");
    QByteArray digits = JsonText::number(value);
    if (digits.endsWith(".0"))
        digits.chop(2);
    return QLatin1String(digits);
}

} // namespace

bool ValueText::isSame(const QVariant &a, const QVariant &b)
{
    if (isNumber(a) && isNumber(b) && a.userType() != b.userType())
        return isSameNumber(a, b);
    if (a.userType() != b.userType())
        return false;
    if (a.userType() == QMetaType::Double) {
        const double first = a.toDouble();
        const double second = b.toDouble();
        return std::memcmp(&first, &second, sizeof first) == 0;
    }
    return a == b;
}

QString ValueText::typeOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QLatin1String("null");
    case QMetaType::Bool:
        return QLatin1String("bool");
    case QMetaType::Int:
        return QLatin1String("int");
    case QMetaType::LongLong:
        return QLatin1String("int64");
    case QMetaType::Double:
        return QLatin1String("double");
    case QMetaType::QStringList:
        return QLatin1String("list");
    default:
        return QLatin1String("string");
    }
}

QString ValueText::shown(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QLatin1String("null");
    case QMetaType::QString:
        return QLatin1Char('"') + Output::printable(value.toString()) + QLatin1Char('"');
    case QMetaType::QStringList: {
        QStringList texts;
        for (const QString &text : value.toStringList())
            texts.append(shown(text));
        return QLatin1Char('[') + texts.join(QLatin1String(", ")) + QLatin1Char(']');
    }
    default:
        return plain(value);
    }
}

QString ValueText::plain(const QVariant &value)
{
    if (value.userType() == QMetaType::Double)
        return doubleText(value.toDouble());
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char('\n'));
    return value.toString();
}

QList<ValueText::Entry> ValueText::entriesOf(const AppConfig &config, bool reveal)
{
    QList<Entry> entries;
    for (const Property &property : Properties::all()) {
        if (!property.property)
            continue;
        const QString name = QLatin1String(property.property);
        const QString key = QLatin1String(property.key);
        const QVariant value = config.getProperty(name);
        if (!value.isValid())
            continue;
        const QString path =
            property.section == Section::Certificate ? QLatin1String("Certificate/") + key : key;
        entries.append(Entry { name, path, value, reveal ? value : Secrets::shown(path, value) });
    }
    return entries;
}
