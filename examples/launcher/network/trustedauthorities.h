// SPDX-License-Identifier: MIT
#ifndef TRUSTEDAUTHORITIES_H
#define TRUSTEDAUTHORITIES_H

#include <QString>

/// The authorities whose certificates make a server trusted: the system's, and those that the user
/// names. None is ever taken away, and no server is trusted without one of them.
namespace TrustedAuthorities {

/// Adds the authorities in the PEM file that the environment variable SSL_CERT_FILE names, for the
/// whole process. Returns an empty text, or why nothing was added.
QString addFromEnvironment();

} // namespace TrustedAuthorities

#endif // TRUSTEDAUTHORITIES_H
