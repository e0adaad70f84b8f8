// SPDX-License-Identifier: MIT
#include "values/useragent.h"

namespace {

bool isControl(QChar character)
{
    return character.unicode() < 0x20 || character.unicode() == 0x7f;
}

} // namespace

Parsed<QString> parseUserAgent(const QString &text)
{
    Parsed<QString> name;
    QString oneLine = text;
    for (int i = 0; i < oneLine.size(); ++i) {
        if (isControl(oneLine.at(i)))
            oneLine[i] = QLatin1Char(' ');
    }
    name.value = text;
    if (oneLine != text)
        name.objection =
            Objection("a line break or another control character ends the header in each request",
                      oneLine.simplified());
    return name;
}
