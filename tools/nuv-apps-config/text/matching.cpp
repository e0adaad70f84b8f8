// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/text/matching.h"

#include <new>

QRegularExpressionMatch matched(const QRegularExpression &expression, const QString &text, int from)
{
    const QRegularExpressionMatch match = expression.match(text, from);
    if (!match.isValid())
        throw std::bad_alloc();
    return match;
}
