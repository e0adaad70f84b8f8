#include "tools/nuv-apps-config/analysis.h"

#include "tools/nuv-apps-config/meaning.h"

QString Analysis::danger() const
{
    if (document.depth > DeepestFlattened)
        return QLatin1String("the document is nested so deeply that its flat keys fill the memory");
    return QString();
}

std::unique_ptr<Analysis> analyse(const QString &name, const QByteArray &bytes,
                                  const QString &folder, const ProgressSink &progress)
{
    std::unique_ptr<Analysis> analysis(new Analysis(SourceText(name, bytes)));
    if (readDocument(analysis->source, analysis->document, analysis->findings, progress))
        checkMeaning(analysis->source, analysis->document, folder, analysis->findings);
    analysis->findings.sort();
    analysis->secrets.reset(new SecretRanges(bytes, analysis->document));
    return analysis;
}
