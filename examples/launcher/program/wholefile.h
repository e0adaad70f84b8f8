// SPDX-License-Identifier: MIT
#ifndef WHOLEFILE_H
#define WHOLEFILE_H

class QByteArray;
class QString;

/// Files that are never seen half-written.
namespace WholeFile {

/// Replaces the contents of a file, for its owner's eyes only. Whenever the program is killed or the
/// device loses its power, the file is the old one or the new one, whole. Returns an empty string, or
/// why the old file is still there.
QString replace(const QString &fileName, const QByteArray &contents);

/// Removes what a program that was killed left of its attempts to replace the file.
void removeLeftovers(const QString &fileName);

} // namespace WholeFile

#endif // WHOLEFILE_H
