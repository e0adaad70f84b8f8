// SPDX-License-Identifier: MIT
#ifndef SIZES_H
#define SIZES_H

#include <QSettings>
#include <QString>
#include <QVariant>

/// How many elements an input may claim without having them. A count of 2147483647 is a matter of
/// minutes for the loader and of all memory for the writer, so that a fuzzing engine would find
/// nothing else any more.
inline bool claimsTooMuch(const QSettings::SettingsMap &map)
{
    const int mostClaimed = 1000;
    qint64 claimed = 0;
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
        if (it.key().endsWith(QLatin1String("size")))
            claimed += qMax(0, it.value().toInt());
    }
    return claimed > mostClaimed;
}

#endif // SIZES_H
