// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/slips/slip.h"

#include "tools/nuv-apps-config/tokens/numbers.h"

namespace {

struct Wording {
    const char *rule;
    const char *text; ///< %1 is what the file holds, %2 what belongs there, %3 the number
    const char *hint;
};

// In the order of Slip::Kind.
const Wording wordings[] = {
    { "extra-comma", "one comma too many", "remove it" },
    { "trailing-comma", "a comma after the last entry", "remove it" },
    { "trailing-comma", "the comma belongs after the %1", "" },
    { "missing-comma", "a comma is missing here", "" },
    { "missing-comma", "a comma belongs here, not %1", "" },
    { "missing-colon", "a colon is missing after the key", "" },
    { "missing-colon", "a colon belongs here, not %1", "" },
    { "unexpected-token", "one colon too many", "remove it" },
    { "missing-value", "a key without a value", "remove the key, or give it a value" },
    { "missing-opening-bracket", "a %2 is missing here", "" },
    { "unexpected-token", "this %1 opens one level too many", "remove it" },
    { "missing-closing-brace", "a %2 is missing here", "" },
    { "extra-closing-bracket", "this %1 closes one level too many", "remove it" },
    { "wrong-bracket", "a %2 belongs here, not %1", "" },
    { "missing-opening-quote", "the opening quote is missing", "" },
    { "unterminated-string", "the closing quote is missing",
      "the string would go on to the next quote in the file" },
    { "missing-opening-quote", "a quote belongs here, not %1", "" },
    { "unescaped-quote", "this quote ends the string", "write \\\" for a quote inside a string" },
    { "extra-quote", "one quote too many", "remove it" },
    { "unterminated-string", "the backslash makes the closing quote a part of the string",
      "write \\\\ for a backslash" },
    { "unexpected-token", "these two characters have changed places", "write %2" },
    { "unexpected-token", "this cannot be here", "remove it" },
    { "bad-number", "%1 is not a number", "%3" },
    { "bad-number", "a number has a point, not a comma", "%3" },
};

} // namespace

Finding &Slips::report(const Slip &slip, const QByteArray &given, int place, Findings &findings)
{
    const Wording &wording = wordings[slip.kind];
    const QByteArray number = Numbers::meant(given);
    const QByteArray advice =
        number.isEmpty() ? QByteArray("write digits alone") : "write " + number;
    const auto filled = [&](const char *pattern) {
        return QString(QLatin1String(pattern))
            .replace(QLatin1String("%1"), QString::fromLatin1(given))
            .replace(QLatin1String("%2"), QString::fromLatin1(slip.edit.inserted))
            .replace(QLatin1String("%3"), QString::fromLatin1(advice));
    };
    return findings.add(wording.rule, place, slip.length, filled(wording.text),
                        filled(wording.hint));
}
