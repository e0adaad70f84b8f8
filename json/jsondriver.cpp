#include "json/jsondriver.h"

#include <QStringList>

// Only what can be shifted counts as expected. More than two things to expect are not listed: the
// message would be long and say little.
JsonSyntaxError::JsonSyntaxError(const JsonLexer &lexer, int state)
    : line(lexer.line()), pos(lexer.pos())
{
    QStringList names;
    for (int token = 0; token < JsonGrammar::TERMINAL_COUNT; ++token) {
        if (JsonGrammar::tAction(state, token) > 0)
            names +=
                QLatin1Char('\'') + QLatin1String(JsonGrammar::spell[token]) + QLatin1Char('\'');
    }
    if (names.size() == 1 || names.size() == 2)
        expected = QLatin1String("Expected ") + names.join(QLatin1String(", "));
}

QString JsonSyntaxError::toString() const
{
    return QString::fromLatin1("%1 at line %2 pos %3").arg(expected).arg(line).arg(pos);
}
