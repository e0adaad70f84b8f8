// SPDX-License-Identifier: MIT
#ifndef LITERALS_H
#define LITERALS_H

#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <QVariant>

/// What the library makes of words and numbers that JSON does not know.
namespace Literals {

/// `begin` and `end` are those of the text with its quotes.
void checkText(const SourceText &source, int begin, int end, Findings &findings);

void checkNumber(const SourceText &source, int begin, int end, const QVariant &value,
                 Findings &findings);

/// Whether the bytes are a number for JSON as well, but for zeros in front.
bool isPlainNumber(const char *begin, const char *end);

} // namespace Literals

#endif // LITERALS_H
