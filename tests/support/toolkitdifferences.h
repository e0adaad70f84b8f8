#ifndef TOOLKITDIFFERENCES_H
#define TOOLKITDIFFERENCES_H

#include <QLocale>

#include <limits>

/// Where the two toolkits give different answers, and why. Tests ask here, so that no other test
/// source needs to know which toolkit it is built with.
namespace ToolkitDifferences {

inline bool isQt4()
{
    return QT_VERSION < QT_VERSION_CHECK(5, 0, 0);
}

/// Qt 4 converts text to a number in the default locale first and in the "C" locale only when that
/// fails; Qt 5 knows the "C" locale alone. So "1,5" is 1.5 under Qt 4 where the comma is the
/// decimal sign, and no number anywhere else.
inline bool readsCommaAsDecimalSign()
{
    return isQt4() && QLocale().decimalPoint() == QLatin1Char(',');
}

/// What a number becomes that is too large for a double: infinity under Qt 5, zero under Qt 4, which
/// takes it for no number at all.
inline double overflownNumber()
{
    return isQt4() ? 0.0 : std::numeric_limits<double>::infinity();
}

} // namespace ToolkitDifferences

#endif // TOOLKITDIFFERENCES_H
