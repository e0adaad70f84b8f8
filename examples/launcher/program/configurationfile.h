// SPDX-License-Identifier: MIT
#ifndef CONFIGURATIONFILE_H
#define CONFIGURATIONFILE_H

#include <QString>

/// The configuration file that the library reads. The library does not tell which one it is, so its
/// rule is repeated here, for messages and for relative paths.
namespace ConfigurationFile {

/// The path of the file; empty when there is none.
QString path();

/// Why path() is empty: the two places that were looked at.
QString whyMissing();

/// Has the library read the file. Returns what is wrong with its syntax, where the library found that:
/// then nothing of the file counts.
QString read();

/// A relative path of the configuration, which begins at the directory of the file, so that the
/// launcher can be started anywhere. An absolute one stays as it is.
QString resolve(const QString &name);

} // namespace ConfigurationFile

#endif // CONFIGURATIONFILE_H
