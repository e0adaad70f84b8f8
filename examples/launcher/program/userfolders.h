#ifndef USERFOLDERS_H
#define USERFOLDERS_H

#include <QString>

/// The launcher's folders in the home of its user.
namespace UserFolders {

/// For what pages store: below XDG_DATA_HOME, else below ~/.local/share.
QString data();

/// For what can be loaded again: below XDG_CACHE_HOME, else below ~/.cache.
QString cache();

/// The name of an application's own folder below one of these. A tag is any text, ".." too.
QString nameFor(const QString &tag);

} // namespace UserFolders

#endif // USERFOLDERS_H
