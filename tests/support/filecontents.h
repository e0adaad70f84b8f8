// SPDX-License-Identifier: MIT
#ifndef FILECONTENTS_H
#define FILECONTENTS_H

#include <QByteArray>
#include <QFile>
#include <QString>

/// The bytes of a file; "cannot be read" where it is not there or is not to be read, so that such a file is
/// taken neither for an empty nor for a whole one.
inline QByteArray fileContents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

#endif // FILECONTENTS_H
