// SPDX-License-Identifier: MIT
#ifndef USERAGENT_H
#define USERAGENT_H

#include "values/parsed.h"

/// The name of the browser, which becomes a line of each request: a line break in it would begin
/// another line. An empty one is the browser's own.
Parsed<QString> parseUserAgent(const QString &text);

#endif // USERAGENT_H
