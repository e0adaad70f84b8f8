// SPDX-License-Identifier: MIT
#ifndef READFILE_H
#define READFILE_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commandline/invocation.h"

#include <memory>

/// Reads a file, or the standard input, and finds out all about it. Null, with the reason in `*error`,
/// when it cannot be read whole. The invocation says what to ignore, and where the device's files are.
std::unique_ptr<Analysis> readFile(const QString &path, const Invocation &invocation,
                                   QString *error);

#endif // READFILE_H
