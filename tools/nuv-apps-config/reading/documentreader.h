// SPDX-License-Identifier: MIT
#ifndef DOCUMENTREADER_H
#define DOCUMENTREADER_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <functional>

/// Called now and then with the number of bytes that were read.
typedef std::function<void(int)> ProgressSink;

/// Reads a whole file and reports every mistake in its syntax. What the library accepts gives no
/// error, and what it rejects gives at least one. The tree holds what could be made out.
///
/// Returns false when so little of it made sense that the tree should not be looked at.
bool readDocument(const SourceText &source, Document &document, Findings &findings,
                  const ProgressSink &progress = ProgressSink());

/// How many values a file may hold. A configuration has some thousands; beyond this the tree would
/// take the memory of a whole machine.
const int LargestDocument = 12 * 1000 * 1000;

#endif // DOCUMENTREADER_H
