// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/text/matching.h"

#include <QHash>

#include <new>

QRegularExpressionMatch matched(const QRegularExpression &expression, const QString &text, int from)
{
    const QRegularExpressionMatch match = expression.match(text, from);
    if (!match.isValid())
        throw std::bad_alloc();
    return match;
}

bool matches(const QByteArray &bytes, const char *pattern)
{
    static QHash<const char *, QRegularExpression> compiled;
    if (!compiled.contains(pattern))
        compiled.insert(pattern, QRegularExpression(QLatin1String(pattern)));
    return matched(compiled.value(pattern), QString::fromLatin1(bytes)).hasMatch();
}
