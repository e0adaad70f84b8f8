// SPDX-License-Identifier: MIT
#include "values/valuekind.h"

#include "values/passwords.h"

#include <QStringList>

#include <cmath>
#include <limits>

namespace {

bool isSwitch(const QVariant &value)
{
    return value.userType() == QMetaType::Bool;
}

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

bool isFilledText(const QVariant &value)
{
    return isText(value) && !value.toString().isEmpty();
}

bool isListOfTexts(const QVariant &value)
{
    return value.userType() == QMetaType::QStringList;
}

/// Not a number (NaN), which is in no range, for any other kind of value.
double number(const QVariant &value)
{
    const int type = value.userType();
    const bool isNumber =
        type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
    return isNumber ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

bool isFactor(const QVariant &value)
{
    return number(value) >= 0.1 && number(value) <= 10;
}

bool isFraction(const QVariant &value)
{
    return number(value) >= 0 && number(value) <= 1;
}

// A number that is written with a point, as in 9222.0, is whole as well.
bool isWholeUpTo(double largest, const QVariant &value)
{
    const double given = number(value);
    return given >= 0 && given <= largest && std::floor(given) >= given;
}

bool isPort(const QVariant &value)
{
    return isWholeUpTo(65535, value);
}

bool isNumberOfBytes(const QVariant &value)
{
    return isWholeUpTo(9007199254740991.0, value); // up to there every integer is a double
}

QString asText(const QVariant &value)
{
    return isListOfTexts(value) ? value.toStringList().join(QLatin1String(", ")) : value.toString();
}

QString masked(const QVariant &)
{
    return Passwords::mask();
}

QString asAddress(const QVariant &value)
{
    return Passwords::maskedAddress(value.toString());
}

QString asProxy(const QVariant &value)
{
    return Passwords::maskedAddress(value.toString(), Passwords::Proxy);
}

} // namespace

const ValueKind ValueKinds::onOff = { "true or false", isSwitch, asText };
const ValueKind ValueKinds::text = { "a string", isText, asText };
const ValueKind ValueKinds::address = { "a string with an address", isFilledText, asAddress };
const ValueKind ValueKinds::fileName = { "a string with the path of a readable file", isFilledText,
                                         asAddress };
const ValueKind ValueKinds::factor = { "a number from 0.1 to 10", isFactor, asText };
const ValueKind ValueKinds::fraction = { "a number from 0 to 1", isFraction, asText };
const ValueKind ValueKinds::port = { "an integer from 0 to 65535", isPort, asText };
const ValueKind ValueKinds::bytes = { "a number of bytes up to 9007199254740991", isNumberOfBytes,
                                      asText };
const ValueKind ValueKinds::domains = { "a list of domains such as tv.example", isListOfTexts,
                                        asText };
const ValueKind ValueKinds::secret = { "a string", isText, masked };
const ValueKind ValueKinds::proxy = { "a string such as host:port", isFilledText, asProxy };
const ValueKind ValueKinds::webAddress = { "a string such as http://host/path", isFilledText,
                                           asAddress };
