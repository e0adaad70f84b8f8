#include "tools/nuv-apps-config/analysis/analysis.h"

#include "tools/nuv-apps-config/rules/meaning.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <algorithm>

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
                                  const QString &folder, const ProgressSink &progress)
{
    std::unique_ptr<Analysis> analysis(new Analysis(SourceText(name, bytes)));
    if (readDocument(analysis->source, analysis->document, analysis->findings, progress))
        checkMeaning(analysis->source, analysis->document, folder, analysis->findings);
    analysis->findings.sort();
    analysis->secrets.reset(new Secrets(bytes, analysis->document, isBroken(analysis->findings)));
    const Secrets &secrets = *analysis->secrets;
    analysis->findings.rewrite([&secrets](const QString &text, const Finding &finding) {
        return secrets.sentence(text, finding.offset, finding.length);
    });
    return analysis;
}
