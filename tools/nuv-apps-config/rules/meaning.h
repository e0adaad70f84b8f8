#ifndef MEANING_H
#define MEANING_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// Checks what the keys and values of a file say. `folder` is where relative paths begin.
void checkMeaning(const SourceText &source, const Document &document, const QString &folder,
                  Findings &findings);

#endif // MEANING_H
