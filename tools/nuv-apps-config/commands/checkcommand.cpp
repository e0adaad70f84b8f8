// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/commands/configurationfile.h"
#include "tools/nuv-apps-config/commands/readfile.h"
#include "tools/nuv-apps-config/commands/replacefile.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/report/reports.h"
#include "tools/nuv-apps-config/report/unifieddiff.h"

#include <unistd.h>

namespace {

// In the text form on the standard error, so that a list of findings can be kept.
void reportUnread(const Invocation &invocation, const QString &name, const QString &error,
                  Report &report)
{
    if (invocation.format == Format::Text)
        Output::complain(name + QLatin1String(": ") + error);
    else
        report.addUnread("unreadable-file", name, error);
}

bool isRepairing(const Invocation &invocation)
{
    return invocation.fix || invocation.diff;
}

// The repaired text of the standard input goes to the standard output.
bool writeRepaired(const QString &name, const RepairedFile &file, Output &output)
{
    QString error;
    if (name == ConfigurationFile::standardInput())
        output.writeBytes(file.bytes());
    else if (file.isChanged()
             && !replaceFile(name, file.before().source.bytes(), file.bytes(), &error))
        Output::complain(name + QLatin1String(": ") + error);
    return error.isEmpty();
}

ExitStatus repairFile(const Invocation &invocation, const QString &name,
                      std::unique_ptr<Analysis> analysis, Report &report, Output &output)
{
    const DeviceFiles files(ConfigurationFile::folderOf(name), invocation.root);
    const RepairedFile file(std::move(analysis), files, invocation.ignored);
    if (invocation.diff) {
        output.writeBytes(unifiedDiff(file));
        return file.isChanged() ? Found : Success;
    }
    if (!writeRepaired(name, file, output)) {
        report.add(file.before(), Effect::of(file.before()));
        return Trouble;
    }
    report.addRepaired(file);
    report.add(file.now(), Effect::of(file.now()));
    return file.now().findings.hasFrom(invocation.failOn) ? Found : Success;
}

ExitStatus checkFile(const Invocation &invocation, const QString &name, Report &report,
                     Output &output)
{
    QString error;
    std::unique_ptr<Analysis> analysis = readFile(name, invocation, &error);
    if (!analysis) {
        reportUnread(invocation, name, error, report);
        return Trouble;
    }
    if (isRepairing(invocation))
        return repairFile(invocation, name, std::move(analysis), report, output);
    report.add(*analysis, Effect::of(*analysis));
    return analysis->findings.hasFrom(invocation.failOn) ? Found : Success;
}

ExitStatus checkChosenFile(const Invocation &invocation, Report &report, Output &output)
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
    const ExitStatus status = checkFile(invocation, choice.path, report, output);
    return isPassedBy && invocation.failOn <= Severity::Warning ? qMax(status, Found) : status;
}

} // namespace

// What is written instead of a file leaves the standard output to itself: the report goes to the standard
// error then.
int Program::check(const Invocation &invocation, Output &output)
{
    Output errors(STDERR_FILENO);
    const bool isAside = invocation.diff
        || (invocation.fix && invocation.arguments.contains(ConfigurationFile::standardInput()));
    const std::unique_ptr<Report> report = Report::make(invocation, isAside ? errors : output);
    ExitStatus status = Success;
    if (invocation.arguments.isEmpty())
        status = checkChosenFile(invocation, *report, output);
    for (const QString &file : invocation.arguments)
        status = qMax(status, checkFile(invocation, file, *report, output));
    if (!invocation.diff)
        report->finish();
    errors.flush();
    return status;
}
