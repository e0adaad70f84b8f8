// SPDX-License-Identifier: MIT
#ifndef USERFOLDERS_H
#define USERFOLDERS_H

#include <QString>

/// The launcher's directories in the home of its user.
///
/// Where neither the home nor the XDG variable names an absolute path, both are below a path where
/// nothing can be made: nothing is kept then, and nothing is written to the root of the file system or
/// to the working directory.
namespace UserFolders {

/// For what pages store: below XDG_DATA_HOME, else below ~/.local/share.
QString data();

/// For what can be loaded again: below XDG_CACHE_HOME, else below ~/.cache.
QString cache();

/// An application's own directory below one of these. A tag is any string, ".." too.
QString dataOf(const QString &tag);
QString cacheOf(const QString &tag);

/// Makes a directory and what is missing above it, all for their user alone, and takes the access of
/// others from one that is there. Returns an empty string, or why it cannot.
QString make(const QString &path);

/// Takes relative paths from the environment. Not all libraries ignore them, as the standard wants it;
/// they would write to the working directory. To be called before anything else.
void forgetRelativePaths();

/// Makes data() and cache(), if that is possible: what the engine makes below them is as private as
/// they are.
void prepare();

} // namespace UserFolders

#endif // USERFOLDERS_H
