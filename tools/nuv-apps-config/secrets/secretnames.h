// SPDX-License-Identifier: MIT
#ifndef SECRETNAMES_H
#define SECRETNAMES_H

#include <QString>

/// The keys that are shown in any output, and those whose values are not, however they are misspelt.
namespace SecretNames {

/// Whether all of the value of that key is secret: "PassPhrase", "pass_phrase", "Password", "PassPhrse".
bool isSecret(const QString &key);

/// Whether the key is that of a certificate, or means it.
bool isCertificate(const QString &key);

/// Whether the key is that of a proxy, or means it.
bool isProxy(const QString &key);

/// Where the first name of a secret in the text ends; -1 when there is none. What is no letter of
/// ASCII does not count: it may be a mistake.
int endOfSecretName(const QString &text);

/// The same for the name of a certificate.
int endOfCertificateName(const QString &text);

/// Whether the word is a key of the configuration, true, false or null.
bool isKnown(const QString &word);

/// Whether it is one whose value the library reads, which that of a remark is not: somebody's own words.
bool isRead(const QString &key);

/// Whether the word is a key that somebody meant to write, though it is none.
bool isMeant(const QString &key);

} // namespace SecretNames

#endif // SECRETNAMES_H
