// SPDX-License-Identifier: MIT
#ifndef VALUERULES_H
#define VALUERULES_H

#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

/// A value of a known key, and where it is.
struct KnownValue {
    const Property &property;
    const Node &object; ///< that has the member
    const Node::Child &member;
    const Node &value;
};

/// What can be wrong with a value.
class ValueRules
{
public:
    /// `files` is where the named files are.
    ValueRules(const SourceText &source, const Document &document, const DeviceFiles &files,
               Findings &findings)
        : m_source(source), m_document(document), m_files(files), m_findings(findings)
    {
    }

    void check(const KnownValue &known);

    /// The version gate of the loader.
    static void checkVersion(const Node &version, Findings &findings);

    /// "a string", "a number" and so on.
    static QString kindOf(const Node &value);

private:
    bool isArrayInDisguise(const KnownValue &known) const;
    void checkNull(const KnownValue &known);
    void checkKind(const KnownValue &known);
    void checkPort(const KnownValue &known);
    void checkRange(const KnownValue &known);

    const SourceText &m_source;
    const Document &m_document;
    const DeviceFiles &m_files;
    Findings &m_findings;
};

#endif // VALUERULES_H
