// SPDX-License-Identifier: MIT
#ifndef CONFIGURATIONFILE_H
#define CONFIGURATIONFILE_H

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Which file the library reads, and the reading of files in general.
namespace ConfigurationFile {

struct Choice {
    QString path; ///< empty when there is none
    QString why; ///< a sentence without a full stop
    QString warning; ///< that the variable names nothing and another file is chosen; else empty
};

/// What the library would pick now.
Choice choice();

/// The name of the standard input among files.
QString standardInput();

/// Reads a file whole. Returns false, and says why, when that cannot be done.
bool read(const QString &name, QByteArray *bytes, QString *error);

/// Where relative paths in the file begin.
QString folderOf(const QString &name);

/// Larger files are refused: they are no configuration.
const qint64 LargestFile = Q_INT64_C(256) * 1024 * 1024;

} // namespace ConfigurationFile

#endif // CONFIGURATIONFILE_H
