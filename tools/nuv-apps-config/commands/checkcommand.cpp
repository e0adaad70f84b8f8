#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/commands/configurationfile.h"
#include "tools/nuv-apps-config/commands/readfile.h"
#include "tools/nuv-apps-config/report/reports.h"

namespace {

// In the text form on the standard error, beside which a list of findings can be kept.
void reportUnread(const Invocation &invocation, const QString &name, const QString &error,
                  Report &report)
{
    if (invocation.format == Format::Text)
        Output::complain(name + QLatin1String(": ") + error);
    else
        report.addUnread("unreadable-file", name, error);
}

ExitStatus checkFile(const Invocation &invocation, const QString &name, Report &report)
{
    QString error;
    const std::unique_ptr<Analysis> analysis = readFile(name, invocation, &error);
    if (!analysis) {
        reportUnread(invocation, name, error, report);
        return Trouble;
    }
    report.add(*analysis, Effect::of(*analysis));
    return analysis->findings.hasFrom(invocation.failOn) ? Found : Success;
}

ExitStatus checkChosenFile(const Invocation &invocation, Report &report)
{
    const ConfigurationFile::Choice choice = ConfigurationFile::choice();
    if (choice.path.isEmpty()) {
        report.addUnread("no-file", QLatin1String("AppsConfig.json"),
                         QLatin1String("there is no configuration file: ") + choice.why);
        return Trouble;
    }
    report.addChoice(choice.path, choice.why);
    const char *const passedBy = "variable-names-nothing";
    const bool isPassedBy =
        !choice.warning.isEmpty() && !invocation.ignored.contains(QLatin1String(passedBy));
    if (isPassedBy)
        report.addUnread(passedBy, choice.path, choice.warning);
    const ExitStatus status = checkFile(invocation, choice.path, report);
    return isPassedBy && invocation.failOn <= Severity::Warning ? qMax(status, Found) : status;
}

} // namespace

int Program::check(const Invocation &invocation, Output &output)
{
    const std::unique_ptr<Report> report = Report::make(invocation, output);
    ExitStatus status = Success;
    if (invocation.arguments.isEmpty())
        status = checkChosenFile(invocation, *report);
    for (const QString &file : invocation.arguments)
        status = qMax(status, checkFile(invocation, file, *report));
    report->finish();
    return status;
}
