// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/analysis/analysis.h"

#include "tools/nuv-apps-config/rules/meaning.h"
#include "tools/nuv-apps-config/analysis/ignores.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <algorithm>
#include <limits>

QString Analysis::danger() const
{
    if (document.depth > DeepestFlattened)
        return QLatin1String("the document is nested so deeply that its flat keys fill the memory");
    return QString();
}

namespace {

// Whether the tree may be another than the one that was meant.
bool isBroken(const Findings &findings)
{
    return std::any_of(findings.all().begin(), findings.all().end(), [](const Finding &finding) {
        const RuleGroup group = Rules::find(finding.rule).group;
        return finding.severity == Severity::Error
            && (group == RuleGroup::Syntax || group == RuleGroup::File);
    });
}

} // namespace

std::unique_ptr<Analysis> analyse(const QString &name, const QByteArray &bytes,
                                  const DeviceFiles &files, const ProgressSink &progress,
                                  const QStringList &ignored)
{
    std::unique_ptr<Analysis> analysis(new Analysis(SourceText(name, bytes)));
    Findings &findings = analysis->findings;
    for (const QString &rule : ignored)
        findings.ignore(rule.toLatin1(), 0, std::numeric_limits<int>::max());
    if (readDocument(analysis->source, analysis->document, findings, progress)) {
        Ignores ignores(analysis->document, findings);
        ignores.read();
        checkMeaning(analysis->source, analysis->document, files, findings);
        ignores.reportUnused();
    }
    analysis->findings.sort();
    analysis->secrets.reset(new Secrets(bytes, analysis->document, isBroken(analysis->findings)));
    const Secrets &secrets = *analysis->secrets;
    analysis->findings.rewrite([&secrets](const QString &text, const Finding &finding) {
        return secrets.sentence(text, finding.offset, finding.length);
    });
    return analysis;
}
