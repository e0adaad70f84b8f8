// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/meantkey.h"

#include "tools/nuv-apps-config/text/spelling.h"

#include <algorithm>

namespace {

QString withoutSeparators(const QString &key)
{
    QString result = key.toLower();
    for (const char separator : { '_', '-', ' ' })
        result.remove(QLatin1Char(separator));
    return result;
}

bool isLetter(QChar c)
{
    return c >= QLatin1Char('a') && c <= QLatin1Char('z');
}

// Whether `key` is `meant` with a slip inside of it. Short ones are near to too much.
bool isSlipOf(const QString &key, const QString &meant)
{
    const int shortest = 5;
    const bool isLonger = key.startsWith(meant) || key.endsWith(meant);
    const int farthest = meant.size() < 8 ? 1 : 2;
    return meant.size() >= shortest && !isLonger
        && Spelling::distance(key, meant, farthest) <= farthest;
}

// Whether one more letter would make it as near to another key.
bool isNearToOthers(const QString &key, const QString &meant, Section section)
{
    const int near = Spelling::distance(key, meant, 3) + 1;
    for (const Property *property : Properties::of(section)) {
        const QString other = QString(QLatin1String(property->key)).toLower();
        if (other != meant && Spelling::distance(key, other, near) <= near)
            return true;
    }
    return false;
}

} // namespace

QString meantKey(Section section, const QString &key)
{
    if (Properties::find(section, key))
        return key;
    const int longest = 64;
    const QString lower = withoutSeparators(key);
    if (key.size() > longest || lower.isEmpty() || !key.at(0).isLetter()
        || !key.at(key.size() - 1).isLetter() || !std::all_of(lower.begin(), lower.end(), isLetter))
        return QString();
    QString found;
    for (const Property *property : Properties::of(section)) {
        const QString candidate = QLatin1String(property->key);
        const QString meant = candidate.toLower();
        if (lower == meant)
            return candidate;
        if (isSlipOf(lower, meant) && !isNearToOthers(lower, meant, section))
            found = candidate;
    }
    return found;
}
