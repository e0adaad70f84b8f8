// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/reports.h"

#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"

namespace {

QString escaped(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%25"))
        .replace(QLatin1Char('\r'), QLatin1String("%0D"))
        .replace(QLatin1Char('\n'), QLatin1String("%0A"));
}

QString escapedProperty(const QString &text)
{
    return escaped(text)
        .replace(QLatin1Char(':'), QLatin1String("%3A"))
        .replace(QLatin1Char(','), QLatin1String("%2C"));
}

/// The commands that make annotations in the builds of GitHub.
class GithubReport : public Report
{
public:
    explicit GithubReport(Output &output) : m_output(output) {}

    void addChoice(const QString &name, const QString &why) override
    {
        addNotice(name, QLatin1String("file"), why);
    }

    void add(const Analysis &analysis, const Effect &effect) override
    {
        for (const Finding &finding : analysis.findings.all())
            addFinding(analysis, finding);
        if (!analysis.findings.all().empty()) // an annotation for each clean file would be noise
            addNotice(analysis.source.name(), QLatin1String("effect"), effect.text);
    }

    void addRepaired(const RepairedFile &file) override
    {
        const SourceText &source = file.before().source;
        for (const RepairedFile::Mistake &mistake : file.mistakes())
            addAt(source, mistake.offset, QLatin1String("notice"), mistake.rule,
                  QLatin1String("repaired: ") + mistake.text);
    }

    void addUnread(const char *rule, const QString &name, const QString &text) override
    {
        m_output.write(QString(QLatin1String("::%1 file=%2,title=%3::%4\n"))
                           .arg(Rules::severityName(Rules::find(rule).severity),
                                escapedProperty(name), QLatin1String(rule), escaped(text)));
    }

    void finish() override {}

private:
    void addNotice(const QString &name, const QString &title, const QString &text)
    {
        m_output.write(QString(QLatin1String("::notice file=%1,title=%2::%3\n"))
                           .arg(escapedProperty(name), title, escaped(text)));
    }

    void addFinding(const Analysis &analysis, const Finding &finding)
    {
        QString text = finding.text;
        if (!finding.hint.isEmpty())
            text += QLatin1String("\nhint: ") + finding.hint;
        const QString severity = finding.severity == Severity::Note
            ? QString(QLatin1String("notice"))
            : Rules::severityName(finding.severity);
        addAt(analysis.source, finding.offset, severity, finding.rule, text);
    }

    void addAt(const SourceText &source, int offset, const QString &severity, const char *rule,
               const QString &text)
    {
        const Place place = source.place(offset);
        m_output.write(QString(QLatin1String("::%1 file=%2,line=%3,col=%4,title=%5::%6\n"))
                           .arg(severity, escapedProperty(source.name()),
                                QString::number(place.line), QString::number(place.column),
                                QLatin1String(rule), escaped(text)));
    }

    Output &m_output;
};

} // namespace

std::unique_ptr<Report> makeGithubReport(Output &output)
{
    return std::unique_ptr<Report>(new GithubReport(output));
}
