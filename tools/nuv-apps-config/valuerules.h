#ifndef VALUERULES_H
#define VALUERULES_H

#include "tools/nuv-apps-config/document.h"
#include "tools/nuv-apps-config/finding.h"
#include "tools/nuv-apps-config/properties.h"
#include "tools/nuv-apps-config/sourcetext.h"

/// What can be wrong with a value.
namespace ValueRules {

void check(const SourceText &source, const Property &property, const Node &value,
           const Document &document, Findings &findings);

/// The version gate of the loader.
void checkVersion(const Node &version, Findings &findings);

/// "a text", "a number" and so on.
QString kindOf(const Node &value);

} // namespace ValueRules

#endif // VALUERULES_H
