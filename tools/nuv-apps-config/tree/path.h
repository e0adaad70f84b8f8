// SPDX-License-Identifier: MIT
#ifndef PATH_H
#define PATH_H

#include "tools/nuv-apps-config/tree/document.h"

#include <QString>

/// Where in a document something is, as people say it: "Applications[0].Certificate.Path". A key that is
/// no word is in quotes: ["a key"].
namespace Path {

/// Of the innermost key or value at `offset`; empty for the document itself, and where there is none.
QString at(const Document &document, int offset);

} // namespace Path

#endif // PATH_H
