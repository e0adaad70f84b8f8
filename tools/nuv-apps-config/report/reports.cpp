// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/reports.h"

std::unique_ptr<Report> Report::make(const Invocation &invocation, Output &output)
{
    switch (invocation.format) {
    case Format::Json:
        return makeJsonReport(output);
    case Format::Sarif:
        return makeSarifReport(output);
    case Format::Github:
        return makeGithubReport(output);
    case Format::Text:
        break;
    }
    return makeTextReport(invocation.useColour, qMax(1, invocation.arguments.size()), output);
}

QString Report::counted(int count, const char *what)
{
    return QString(QLatin1String("%1 %2%3"))
        .arg(QString::number(count), QLatin1String(what),
             count == 1 ? QString() : QString(QLatin1Char('s')));
}

QString Report::summary(int files, int errors, int warnings, int notes)
{
    QStringList parts;
    if (errors > 0)
        parts.append(counted(errors, "error"));
    if (warnings > 0)
        parts.append(counted(warnings, "warning"));
    if (notes > 0)
        parts.append(counted(notes, "note"));
    if (parts.isEmpty())
        parts.append(QLatin1String("nothing found"));
    return parts.join(QLatin1String(", ")) + QLatin1String(" in ") + counted(files, "file");
}
