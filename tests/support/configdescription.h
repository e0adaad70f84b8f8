// SPDX-License-Identifier: MIT
#ifndef CONFIGDESCRIPTION_H
#define CONFIGDESCRIPTION_H

#include "tests/support/appconfigproperties.h"
#include "tests/support/describe.h"

/// What a bag holds, as `Name = value` in the order of the properties, joined by "; ". Keys that
/// are no property count as a fault and are told as such.
inline QByteArray describeConfig(const AppConfig &config)
{
    QByteArray result;
    int named = 0;
    for (const AppConfigProperty &property : appConfigProperties) {
        if (!entriesOf(config).contains(QLatin1String(property.name)))
            continue;
        ++named;
        result += (result.isEmpty() ? "" : "; ") + QByteArray(property.name) + " = "
            + describe((config.*property.get)());
    }
    if (named != entriesOf(config).size())
        result += " and other keys";
    return result;
}

#endif // CONFIGDESCRIPTION_H
