// SPDX-License-Identifier: MIT
#ifndef PROXYADDRESS_H
#define PROXYADDRESS_H

#include "values/parsed.h"

/// Where a proxy is, and who uses it.
struct ProxyAddress {
    QString host; ///< normalized; a number of IPv6 has no brackets
    int port;
    QString user; ///< decoded; empty when there is none
    QString password; ///< decoded; secret

    ProxyAddress() : port(0) {}
};

/// Reads "host:port", "user:password@host:port" and the same after "http://", with or without a slash
/// at its end. The last "@" ends the password, which may hold any character, or its percent encoding.
Parsed<ProxyAddress> parseProxy(const QString &text);

#endif // PROXYADDRESS_H
