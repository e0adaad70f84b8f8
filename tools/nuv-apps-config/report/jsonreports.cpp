// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/reports.h"

#include "tools/nuv-apps-config/report/excerpt.h"
#include "tools/nuv-apps-config/report/proposal.h"
#include "tools/nuv-apps-config/tree/path.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/commandline/version.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

namespace {

QString key(const char *name)
{
    return QLatin1String(name);
}

QJsonObject textObject(const QString &text)
{
    QJsonObject object;
    object.insert(key("text"), text);
    return object;
}

// After the last character of what is found, or after one where nothing has a length.
Place endOf(const SourceText &source, const Finding &finding)
{
    return source.place(qMin(finding.offset + qMax(1, finding.length), source.size()));
}

/// The findings as they are.
class JsonReport : public Report
{
public:
    explicit JsonReport(Output &output) : m_output(output) {}

    void addChoice(const QString &, const QString &why) override { m_why = why; }

    void add(const Analysis &analysis, const Effect &effect) override
    {
        QJsonArray findings;
        for (const Finding &finding : analysis.findings.all())
            findings.append(finding_(analysis, finding));
        QJsonObject file = fileObject(analysis.source.name(), findings);
        if (!m_why.isEmpty())
            file.insert(key("why"), m_why);
        if (!m_repaired.isEmpty())
            file.insert(key("repaired"), m_repaired);
        m_repaired = QJsonArray();
        file.insert(key("effect"), effect.text);
        file.insert(key("applications"), effect.all);
        file.insert(key("seen"), effect.seen);
        m_files.append(file);
        m_errors += analysis.findings.count(Severity::Error);
        m_warnings += analysis.findings.count(Severity::Warning);
    }

    void addRepaired(const RepairedFile &file) override
    {
        for (const RepairedFile::Mistake &mistake : file.mistakes()) {
            QJsonObject object;
            object.insert(key("rule"), QLatin1String(mistake.rule));
            object.insert(key("text"), mistake.text);
            insertPlace(object, file.before().source, mistake.offset);
            m_repaired.append(object);
        }
    }

    void addUnread(const char *rule, const QString &name, const QString &text) override
    {
        const Severity severity = Rules::find(rule).severity;
        QJsonObject object;
        object.insert(key("rule"), QLatin1String(rule));
        object.insert(key("severity"), Rules::severityName(severity));
        object.insert(key("text"), text);
        m_files.append(fileObject(name, QJsonArray() << object));
        ++(severity == Severity::Error ? m_errors : m_warnings);
    }

    void finish() override
    {
        QJsonObject root;
        root.insert(key("files"), m_files);
        root.insert(key("errors"), m_errors);
        root.insert(key("warnings"), m_warnings);
        m_output.writeBytes(QJsonDocument(root).toJson());
    }

private:
    static QJsonObject fileObject(const QString &name, const QJsonArray &findings)
    {
        QJsonObject file;
        file.insert(key("file"), name);
        file.insert(key("findings"), findings);
        return file;
    }

    static void insertPlace(QJsonObject &object, const SourceText &source, int offset)
    {
        const Place place = source.place(offset);
        object.insert(key("line"), place.line);
        object.insert(key("column"), place.column);
    }

    static QJsonObject repair(const Proposal &proposal)
    {
        QJsonObject object;
        object.insert(key("line"), proposal.begin.line);
        object.insert(key("column"), proposal.begin.column);
        object.insert(key("endLine"), proposal.end.line);
        object.insert(key("endColumn"), proposal.end.column);
        object.insert(key("text"), proposal.inserted);
        return object;
    }

    static QJsonObject finding_(const Analysis &analysis, const Finding &finding)
    {
        QJsonObject object;
        object.insert(key("rule"), QLatin1String(finding.rule));
        object.insert(key("severity"), Rules::severityName(finding.severity));
        object.insert(key("text"), finding.text);
        if (!finding.hint.isEmpty())
            object.insert(key("hint"), finding.hint);
        insertPlace(object, analysis.source, finding.offset);
        const Place end = endOf(analysis.source, finding);
        object.insert(key("endLine"), end.line);
        object.insert(key("endColumn"), end.column);
        const QString path = Path::at(analysis.document, finding.offset);
        if (!path.isEmpty())
            object.insert(key("path"), analysis.secrets->text(path));
        const Proposal proposal = Proposal::of(analysis, finding);
        if (proposal.isGiven)
            object.insert(key("repair"), repair(proposal));
        object.insert(
            key("excerpt"),
            makeExcerpt(analysis.source, finding.offset, finding.length, *analysis.secrets).line);
        QJsonArray remarks;
        for (const Remark &remark : finding.remarks) {
            QJsonObject entry;
            insertPlace(entry, analysis.source, remark.offset);
            entry.insert(key("text"), remark.text);
            remarks.append(entry);
        }
        if (!remarks.isEmpty())
            object.insert(key("remarks"), remarks);
        return object;
    }

    Output &m_output;
    QString m_why; ///< empty where the file was named
    QJsonArray m_repaired; ///< in the file that comes next, at the places where it was
    QJsonArray m_files;
    int m_errors = 0;
    int m_warnings = 0;
};

/// The Static Analysis Results Interchange Format, version 2.1.0.
class SarifReport : public Report
{
public:
    explicit SarifReport(Output &output) : m_output(output) {}

    void addChoice(const QString &name, const QString &why) override { describe(name, why); }

    void add(const Analysis &analysis, const Effect &effect) override
    {
        for (const Finding &finding : analysis.findings.all())
            m_results.append(result(analysis, finding));
        describe(analysis.source.name(), effect.text);
    }

    // What is no more is no result.
    void addRepaired(const RepairedFile &file) override
    {
        const SourceText &source = file.before().source;
        for (const RepairedFile::Mistake &mistake : file.mistakes()) {
            QJsonObject rule;
            rule.insert(key("id"), QLatin1String(mistake.rule));
            QJsonObject notification = noteAt(location(source, mistake.offset, 1),
                                              QLatin1String("repaired: ") + mistake.text);
            notification.insert(key("associatedRule"), rule);
            m_notifications.append(notification);
        }
    }

    // A reader of the log must not take the results for all that there are.
    void addUnread(const char *rule, const QString &name, const QString &text) override
    {
        QJsonObject place;
        place.insert(key("artifactLocation"), artifact(name));
        const Severity severity = Rules::find(rule).severity;
        m_results.append(makeResult(rule, severity, text, place, QJsonArray()));
        if (severity == Severity::Error)
            m_isComplete = false;
    }

    void finish() override;

private:
    static QJsonObject artifact(const QString &name)
    {
        const QString uri = QFileInfo(name).isAbsolute()
            ? QUrl::fromLocalFile(name).toString(QUrl::FullyEncoded)
            : QString::fromLatin1(QUrl::toPercentEncoding(name, "/"));
        QJsonObject object;
        object.insert(key("uri"), uri);
        return object;
    }

    static QString levelOf(Severity severity) { return Rules::severityName(severity); }

    static QJsonObject location(const SourceText &source, int offset, int length)
    {
        const Place begin = source.place(offset);
        const Place end = source.place(qMin(offset + qMax(1, length), source.size()));
        QJsonObject region;
        region.insert(key("startLine"), begin.line);
        region.insert(key("startColumn"), begin.column);
        if (end.line == begin.line && end.column > begin.column)
            region.insert(key("endColumn"), end.column);
        QJsonObject place;
        place.insert(key("artifactLocation"), artifact(source.name()));
        place.insert(key("region"), region);
        return place;
    }

    static QJsonObject wrapped(const QJsonObject &place)
    {
        QJsonObject object;
        object.insert(key("physicalLocation"), place);
        return object;
    }

    QJsonObject result(const Analysis &analysis, const Finding &finding)
    {
        QString text = finding.text;
        if (!finding.hint.isEmpty())
            text += QLatin1String(". Hint: ") + finding.hint;
        QJsonArray related;
        for (const Remark &remark : finding.remarks) {
            QJsonObject entry = wrapped(location(analysis.source, remark.offset, 1));
            entry.insert(key("message"), textObject(remark.text));
            related.append(entry);
        }
        QJsonObject object =
            makeResult(finding.rule, finding.severity, text,
                       location(analysis.source, finding.offset, finding.length), related);
        const Proposal proposal = Proposal::of(analysis, finding);
        if (proposal.isGiven)
            object.insert(key("fixes"),
                          QJsonArray() << fix(analysis.source, proposal, finding.hint));
        return object;
    }

    static QJsonObject fix(const SourceText &source, const Proposal &proposal, const QString &hint)
    {
        QJsonObject region;
        region.insert(key("startLine"), proposal.begin.line);
        region.insert(key("startColumn"), proposal.begin.column);
        region.insert(key("endLine"), proposal.end.line);
        region.insert(key("endColumn"), proposal.end.column);
        QJsonObject replacement;
        replacement.insert(key("deletedRegion"), region);
        if (!proposal.inserted.isEmpty())
            replacement.insert(key("insertedContent"), textObject(proposal.inserted));
        QJsonObject change;
        change.insert(key("artifactLocation"), artifact(source.name()));
        change.insert(key("replacements"), QJsonArray() << replacement);
        QJsonObject object;
        if (!hint.isEmpty())
            object.insert(key("description"), textObject(hint));
        object.insert(key("artifactChanges"), QJsonArray() << change);
        return object;
    }

    // A remark on a file that is no finding.
    void describe(const QString &name, const QString &text)
    {
        QJsonObject place;
        place.insert(key("artifactLocation"), artifact(name));
        m_notifications.append(noteAt(place, text));
    }

    static QJsonObject noteAt(const QJsonObject &place, const QString &text)
    {
        QJsonObject notification;
        notification.insert(key("level"), QLatin1String("note"));
        notification.insert(key("message"), textObject(text));
        notification.insert(key("locations"), QJsonArray() << wrapped(place));
        return notification;
    }

    static QJsonObject makeResult(const char *rule, Severity severity, const QString &text,
                                  const QJsonObject &place, const QJsonArray &related)
    {
        QJsonObject object;
        object.insert(key("ruleId"), QLatin1String(rule));
        object.insert(key("level"), levelOf(severity));
        object.insert(key("message"), textObject(text));
        object.insert(key("locations"), QJsonArray() << wrapped(place));
        if (!related.isEmpty())
            object.insert(key("relatedLocations"), related);
        return object;
    }

    // What a viewer shows next to a result.
    static QString helpText(const Rule &rule)
    {
        return QString(QLatin1String("%1. %2 \"nuv-apps-config explain %3\" says more."))
            .arg(QLatin1String(rule.title), QLatin1String(rule.description),
                 QLatin1String(rule.id));
    }

    static QJsonArray rules()
    {
        QJsonArray array;
        for (const Rule &rule : Rules::all()) {
            QJsonObject configuration;
            configuration.insert(key("level"), levelOf(rule.severity));
            QJsonObject object;
            object.insert(key("id"), QLatin1String(rule.id));
            object.insert(key("shortDescription"), textObject(QLatin1String(rule.title)));
            object.insert(key("fullDescription"), textObject(QLatin1String(rule.description)));
            object.insert(key("help"), textObject(helpText(rule)));
            object.insert(key("defaultConfiguration"), configuration);
            array.append(object);
        }
        return array;
    }

    Output &m_output;
    QJsonArray m_results;
    QJsonArray m_notifications;
    bool m_isComplete = true; ///< all files could be read
};

void SarifReport::finish()
{
    QJsonObject driver;
    driver.insert(key("name"), QLatin1String("nuv-apps-config"));
    driver.insert(key("version"), QLatin1String(ProgramVersion));
    driver.insert(key("informationUri"), QLatin1String("man:nuv-apps-config(1)"));
    driver.insert(key("rules"), rules());
    QJsonObject tool;
    tool.insert(key("driver"), driver);
    QJsonObject invocation;
    invocation.insert(key("executionSuccessful"), m_isComplete);
    invocation.insert(key("toolExecutionNotifications"), m_notifications);
    QJsonObject run;
    run.insert(key("tool"), tool);
    run.insert(key("columnKind"), QLatin1String("unicodeCodePoints"));
    run.insert(key("invocations"), QJsonArray() << invocation);
    run.insert(key("results"), m_results);
    QJsonObject root;
    root.insert(key("$schema"), QLatin1String("https://json.schemastore.org/sarif-2.1.0.json"));
    root.insert(key("version"), QLatin1String("2.1.0"));
    root.insert(key("runs"), QJsonArray() << run);
    m_output.writeBytes(QJsonDocument(root).toJson());
}

} // namespace

std::unique_ptr<Report> makeJsonReport(Output &output)
{
    return std::unique_ptr<Report>(new JsonReport(output));
}

std::unique_ptr<Report> makeSarifReport(Output &output)
{
    return std::unique_ptr<Report>(new SarifReport(output));
}
