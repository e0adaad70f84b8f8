// SPDX-License-Identifier: MIT
#ifndef HOSTNAME_H
#define HOSTNAME_H

#include "values/parsed.h"

/// Names and numbers of hosts, as in addresses and in the list of domains.
namespace HostName {

/// A host as it is compared: in lower case, in ASCII, without a dot at its end, a number of IPv6
/// without brackets. Empty when it is no host.
QString normalized(const QString &host);

/// Whether a normalized host is a number, so that no name can be below it.
bool isNumber(const QString &host);

/// Whether a normalized host is the normalized domain, or below it. A number is only itself.
bool isWithin(const QString &host, const QString &domain);

/// An element of the list of domains, normalized: the name of a host or of a domain, or the number of
/// a host, and nothing around it.
Parsed<QString> parseDomain(const QString &text);

/// The port that the text names; 0 where it names none from 1 to 65535.
int toPort(const QString &text);

} // namespace HostName

#endif // HOSTNAME_H
