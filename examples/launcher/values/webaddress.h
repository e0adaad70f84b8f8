// SPDX-License-Identifier: MIT
#ifndef WEBADDRESS_H
#define WEBADDRESS_H

#include "values/parsed.h"

#include <QUrl>

namespace WebAddress {

/// What is before the first colon of an address, in lower case, without the colon; empty when there is
/// no scheme.
QString schemeOf(const QString &text);

/// Why an address that begins with "http:", "https:" or "ftp:" leads to no server.
Objection judge(const QString &text);

} // namespace WebAddress

/// Reads the address of the page that the first one claims to be linked from: of http or https, with a
/// host. What a browser does not tell to others is left out: user, password and fragment.
Parsed<QUrl> parseReferrer(const QString &text);

#endif // WEBADDRESS_H
