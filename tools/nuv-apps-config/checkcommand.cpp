#include "tools/nuv-apps-config/program.h"

#include "tools/nuv-apps-config/analysis.h"
#include "tools/nuv-apps-config/configurationfile.h"
#include "tools/nuv-apps-config/progress.h"
#include "tools/nuv-apps-config/reports.h"

namespace {

int statusOf(const Findings &findings, Severity failOn)
{
    const int errors = findings.count(Severity::Error);
    const int warnings = failOn == Severity::Warning ? findings.count(Severity::Warning) : 0;
    return errors + warnings > 0 ? Found : Success;
}

int checkFile(const QString &name, Severity failOn, Report &report)
{
    QByteArray bytes;
    QString error;
    if (!ConfigurationFile::read(name, &bytes, &error)) {
        Output::complain(name + QLatin1String(": ") + error);
        return Trouble;
    }
    const bool isInput = name == ConfigurationFile::standardInput();
    Progress progress(name, bytes.size());
    const std::unique_ptr<Analysis> analysis =
        analyse(isInput ? QString(QLatin1String("<stdin>")) : name, bytes,
                ConfigurationFile::folderOf(name), [&](int offset) { progress.reached(offset); });
    if (int(analysis->document.nodes.size()) > LargestDocument) {
        Output::complain(name + QLatin1String(": too many values for a configuration"));
        return Trouble;
    }
    report.add(*analysis);
    return statusOf(analysis->findings, failOn);
}

} // namespace

int Program::check(const Invocation &invocation, Output &output)
{
    const std::unique_ptr<Report> report = Report::make(invocation, output);
    QStringList files = invocation.arguments;
    int status = Success;
    if (files.isEmpty()) {
        const ConfigurationFile::Choice choice = ConfigurationFile::choice();
        if (choice.path.isEmpty()) {
            report->addMissing(QLatin1String("AppsConfig.json"),
                               QLatin1String("there is no configuration file: ") + choice.why);
            status = Found;
        } else {
            files.append(choice.path);
        }
    }
    for (const QString &file : files)
        status = qMax(status, checkFile(file, invocation.failOn, *report));
    report->finish();
    return status;
}
