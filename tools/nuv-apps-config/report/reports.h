// SPDX-License-Identifier: MIT
#ifndef REPORTS_H
#define REPORTS_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/analysis/effect.h"
#include "tools/nuv-apps-config/commandline/invocation.h"
#include "tools/nuv-apps-config/report/output.h"

#include <memory>

class RepairedFile;

/// Puts the findings of files into one of the forms of --format.
class Report
{
public:
    virtual ~Report() {}

    /// Which file was chosen where none was named, and why. Comes before what is found in it.
    virtual void addChoice(const QString &name, const QString &why) = 0;
    virtual void add(const Analysis &analysis, const Effect &effect) = 0;

    /// What was repaired in a file. Comes before what is left in it.
    virtual void addRepaired(const RepairedFile &file) = 0;

    /// A finding about a file that could not be read. `rule` is one of the group of files.
    virtual void addUnread(const char *rule, const QString &name, const QString &text) = 0;
    virtual void finish() = 0;

    static std::unique_ptr<Report> make(const Invocation &invocation, Output &output);

    /// "2 errors".
    static QString counted(int count, const char *what);

    /// "2 errors and 1 warning in 3 files".
    static QString summary(int files, int errors, int warnings, int notes);
};

std::unique_ptr<Report> makeTextReport(bool useColour, int fileCount, Output &output);
std::unique_ptr<Report> makeJsonReport(Output &output);
std::unique_ptr<Report> makeSarifReport(Output &output);
std::unique_ptr<Report> makeGithubReport(Output &output);

#endif // REPORTS_H
