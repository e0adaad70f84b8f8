// SPDX-License-Identifier: MIT
#ifndef CERTIFICATES_H
#define CERTIFICATES_H

#include <QByteArray>

/// Certificates and private keys, by OpenSSL's library. It is loaded at the first question, so that a
/// file without certificates costs nothing.
namespace Certificates {

/// Whether the library could be loaded.
bool areAvailable();

struct Certificate {
    bool isValid; ///< a certificate in PEM form
    bool isBinary; ///< not that, but one in DER form
    bool isExpired;
    bool isTooEarly;
};

Certificate readCertificate(const QByteArray &bytes);

enum KeyState { NoKey, WrongPassPhrase, Usable };

KeyState readKey(const QByteArray &bytes, const QByteArray &passPhrase);

bool belongTogether(const QByteArray &certificate, const QByteArray &key,
                    const QByteArray &passPhrase);

} // namespace Certificates

#endif // CERTIFICATES_H
