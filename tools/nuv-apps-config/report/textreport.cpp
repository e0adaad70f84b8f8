// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/reports.h"

#include "tools/nuv-apps-config/report/columns.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/report/excerpt.h"
#include "tools/nuv-apps-config/findings/rules.h"

namespace {

const char Bold[] = "\033[1m";
const char Plain[] = "\033[0m";
const char Faint[] = "\033[2m";

const char *colourOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return "\033[1;31m";
    case Severity::Warning:
        return "\033[1;35m";
    case Severity::Note:
        break;
    }
    return "\033[1;36m";
}

/// The compilers' form: file:line:column: severity: text [rule], the line, and a caret.
class TextReport : public Report
{
public:
    TextReport(bool useColour, int fileCount, Output &output)
        : m_useColour(useColour), m_output(output), m_fileCount(fileCount)
    {
        const int columns = Columns::ofTerminal();
        if (columns > 0)
            m_columns = qMax(columns, NarrowestTerminal);
    }

    void addChoice(const QString &name, const QString &why) override;
    void add(const Analysis &analysis, const Effect &effect) override;
    void addRepaired(const RepairedFile &file) override;
    void addUnread(const char *rule, const QString &name, const QString &text) override;
    void finish() override;

private:
    void addFinding(const Analysis &analysis, const Finding &finding);
    void addLine(const Analysis &analysis, int offset, Severity severity, const QString &text);
    void addExcerpt(const Analysis &analysis, const Finding &finding);
    QString coloured(const char *colour, const QString &text) const;

    static constexpr int NarrowestTerminal = 40;

    bool m_useColour;
    Output &m_output;
    int m_columns = Excerpt::UsualColumns + 8; ///< as wide as a line of the source may be shown
    int m_files = 0;
    int m_fileCount;
    QString m_effect; ///< of a file that is the only one
    int m_counts[3] = { 0, 0, 0 };
    int m_repaired = 0;
};

QString TextReport::coloured(const char *colour, const QString &text) const
{
    return m_useColour ? QLatin1String(colour) + text + QLatin1String(Plain) : text;
}

void TextReport::addLine(const Analysis &analysis, int offset, Severity severity,
                         const QString &text)
{
    const Place place = analysis.source.place(offset);
    const QString where = QString(QLatin1String("%1:%2:%3: "))
                              .arg(Output::printable(analysis.source.name()),
                                   QString::number(place.line), QString::number(place.column));
    m_output.write(
        coloured(Bold, where)
        + coloured(colourOf(severity), Rules::severityName(severity) + QLatin1String(": "))
        + Output::printable(text));
}

void TextReport::addExcerpt(const Analysis &analysis, const Finding &finding)
{
    const QString number =
        QString::number(analysis.source.place(finding.offset).line).rightJustified(5)
        + QLatin1String(" | ");
    const Excerpt excerpt = makeExcerpt(analysis.source, finding.offset, finding.length,
                                        *analysis.secrets, m_columns - number.size());
    if (excerpt.line.trimmed().isEmpty())
        return;
    QString mark = QString(excerpt.caret, QLatin1Char(' ')) + QLatin1Char('^');
    mark += QString(excerpt.width - 1, QLatin1Char('~'));
    m_output.write(number + excerpt.line + QLatin1Char('\n')
                   + QString(number.size() - 3, QLatin1Char(' ')) + QLatin1String(" | ")
                   + coloured(colourOf(finding.severity), mark) + QLatin1Char('\n'));
}

void TextReport::addFinding(const Analysis &analysis, const Finding &finding)
{
    ++m_counts[int(finding.severity)];
    addLine(analysis, finding.offset, finding.severity, finding.text);
    m_output.write(coloured(Faint, QString(QLatin1String(" [%1]")).arg(QLatin1String(finding.rule)))
                   + QLatin1Char('\n'));
    addExcerpt(analysis, finding);
    if (!finding.hint.isEmpty())
        m_output.write(QString(8, QLatin1Char(' ')) + QLatin1String("hint: ")
                       + Output::printable(finding.hint) + QLatin1Char('\n'));
    for (const Remark &remark : finding.remarks) {
        addLine(analysis, remark.offset, Severity::Note, remark.text);
        m_output.write(QLatin1String("\n"));
    }
}

void TextReport::addChoice(const QString &name, const QString &why)
{
    m_output.write(QString(QLatin1String("File: %1 (%2)\n"))
                       .arg(Output::printable(name), Output::printable(why)));
}

void TextReport::add(const Analysis &analysis, const Effect &effect)
{
    ++m_files;
    for (const Finding &finding : analysis.findings.all())
        addFinding(analysis, finding);
    if (analysis.findings.dropped() > 0)
        m_output.write(QString(QLatin1String("%1: %2 more findings are not shown\n"))
                           .arg(Output::printable(analysis.source.name()),
                                QString::number(analysis.findings.dropped())));
    if (analysis.findings.isCut())
        m_output.write(
            QString(QLatin1String("%1: after so many findings the rest was not looked at\n"))
                .arg(Output::printable(analysis.source.name())));
    m_effect = effect.text;
    if (m_fileCount > 1)
        m_output.write(Output::printable(analysis.source.name()) + QLatin1String(": ") + effect.text
                       + QLatin1Char('\n'));
    m_output.flush();
}

void TextReport::addRepaired(const RepairedFile &file)
{
    for (const RepairedFile::Mistake &mistake : file.mistakes()) {
        const Place place = file.before().source.place(mistake.offset);
        const QString where = QString(QLatin1String("%1:%2:%3: "))
                                  .arg(Output::printable(file.before().source.name()),
                                       QString::number(place.line), QString::number(place.column));
        m_output.write(
            coloured(Bold, where) + QLatin1String("repaired: ") + Output::printable(mistake.text)
            + coloured(Faint, QString(QLatin1String(" [%1]")).arg(QLatin1String(mistake.rule)))
            + QLatin1Char('\n'));
    }
    m_repaired += int(file.mistakes().size());
}

void TextReport::addUnread(const char *rule, const QString &name, const QString &text)
{
    const Severity severity = Rules::find(rule).severity;
    ++m_counts[int(severity)];
    m_output.write(
        coloured(Bold, Output::printable(name) + QLatin1String(": "))
        + coloured(colourOf(severity), Rules::severityName(severity) + QLatin1String(": "))
        + Output::printable(text)
        + coloured(Faint, QString(QLatin1String(" [%1]")).arg(QLatin1String(rule)))
        + QLatin1Char('\n'));
}

void TextReport::finish()
{
    if (m_repaired > 0)
        m_output.write(counted(m_repaired, "mistake") + QLatin1String(" repaired\n"));
    m_output.write(summary(m_files, m_counts[int(Severity::Error)],
                           m_counts[int(Severity::Warning)], m_counts[int(Severity::Note)])
                   + QLatin1Char('\n'));
    if (m_fileCount == 1 && m_files == 1)
        m_output.write(m_effect + QLatin1Char('\n'));
}

} // namespace

std::unique_ptr<Report> makeTextReport(bool useColour, int fileCount, Output &output)
{
    return std::unique_ptr<Report>(new TextReport(useColour, fileCount, output));
}
