// SPDX-License-Identifier: MIT
#ifndef SCRIPTFILE_H
#define SCRIPTFILE_H

#include "values/parsed.h"

/// The absolute path of a script that can be read. A relative one begins at `folder`, which is that
/// of the configuration file.
Parsed<QString> findScript(const QString &text, const QString &folder);

/// Why a file cannot be read, as in "there is no such file"; `path` is absolute.
Objection judgeFile(const QString &path);

#endif // SCRIPTFILE_H
