#ifndef READFILE_H
#define READFILE_H

#include "tools/nuv-apps-config/analysis/analysis.h"

#include <memory>

/// Reads a file, or the standard input, and finds out all about it. Null, with the reason in `*error`,
/// when it cannot be read whole.
std::unique_ptr<Analysis> readFile(const QString &path, QString *error);

#endif // READFILE_H
