// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/varianttree.h"
#include "settings/flatkeys.h"
#include "settings/jsonsettingsformat.h"
#include "tools/nuv-apps-config/commands/configurationfile.h"
#include "tools/nuv-apps-config/commands/readfile.h"
#include "tools/nuv-apps-config/report/layout.h"
#include "tools/nuv-apps-config/commands/replacefile.h"
#include "tools/nuv-apps-config/report/valuetext.h"

#include <QSet>

#include <algorithm>

namespace {

const int Step = 4; // spaces for a level

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QSettings::SettingsMap flatKeys(QVariant tree)
{
    const VariantTree::Disposer disposer(tree);
    QSettings::SettingsMap map;
    QString prefix;
    flattenVariant(prefix, map, tree);
    return map;
}

bool isSameMap(const QSettings::SettingsMap &a, const QSettings::SettingsMap &b)
{
    return a.keys() == b.keys() && std::equal(a.begin(), a.end(), b.begin(), ValueText::isSame);
}

/// What the library makes of a document.
class Parsed
{
public:
    explicit Parsed(const QByteArray &bytes)
        : m_tree(parseJson(bytes, &m_message)), m_disposer(m_tree)
    {
    }

    const QVariant &tree() const { return m_tree; }
    bool isParsed() const { return m_message.isEmpty(); }
    bool isSameAs(const Parsed &other) const
    {
        return isParsed() && isSameMap(flatKeys(m_tree), flatKeys(other.m_tree));
    }

private:
    QString m_message;
    QVariant m_tree;
    VariantTree::Disposer m_disposer;
};

// Keys that begin with _comment may stand twice for check, but one of them would be lost here.
bool hasTwins(const Document &document)
{
    for (const Node &node : document.nodes) {
        QSet<QString> known;
        for (const Node::Child &child : node.children) {
            if (node.type == Node::Object && known.contains(child.key))
                return true;
            known.insert(child.key);
        }
    }
    return false;
}

// What only sorting loses; empty: nothing.
QString lostBySorting(const Analysis &analysis)
{
    const Findings &findings = analysis.findings;
    QString lost;
    if (findings.has("lost-digits"))
        lost = text("it would lose digits of a number");
    for (const Finding &finding : findings.all()) {
        const bool isDuplicate = qstrcmp(finding.rule, "duplicate-key") == 0;
        if (!isDuplicate)
            continue;
        const Place place = analysis.source.place(finding.offset);
        lost = QString(QLatin1String("it has a duplicate key in line %1, column %2"))
                   .arg(QString::number(place.line), QString::number(place.column));
    }
    return lost.isEmpty() && hasTwins(analysis.document) ? text("it has a duplicate key") : lost;
}

// Why the file is not touched; empty: nothing is in the way.
QString refusal(const Analysis &analysis, const Parsed &parsed, bool isSorted)
{
    if (analysis.findings.has("empty-file"))
        return text("it is empty");
    if (!parsed.isParsed())
        return text("it could not be parsed; see check");
    if (analysis.document.depth > Analysis::DeepestFlattened)
        return text("it is nested too deeply");
    if (analysis.findings.isCut())
        return text("it was not read to its end; see check");
    return isSorted ? lostBySorting(analysis) : QString();
}

// Empty, with the reason, when it would not mean the same.
QByteArray formatted(const Analysis &analysis, bool isSorted, QString *error)
{
    const QByteArray &bytes = analysis.source.bytes();
    const Parsed before(bytes);
    *error = refusal(analysis, before, isSorted);
    if (!error->isEmpty())
        return QByteArray();
    const QByteArray result = isSorted ? JsonWriter::serialize(before.tree(), Step, 0)
                                       : Layout::of(analysis.document, bytes);
    if (Parsed(result).isSameAs(before))
        return result;
    *error = text("it would lose digits of a number");
    return QByteArray();
}

} // namespace

int Program::format(const Invocation &invocation, Output &output)
{
    const QString name = invocation.arguments.at(0);
    if (invocation.write && name == ConfigurationFile::standardInput()) {
        Output::complain(text("the standard input cannot be written in place"));
        return Trouble;
    }
    QString error;
    const std::unique_ptr<Analysis> analysis = readFile(name, invocation, &error);
    if (!analysis) {
        Output::complain(name + QLatin1String(": ") + error);
        return Trouble;
    }
    const QByteArray &bytes = analysis->source.bytes();
    const QByteArray result = formatted(*analysis, invocation.sort, &error);
    if (!error.isEmpty()) {
        Output::complain(name + text(": not touched, because ") + error);
        return Found;
    }
    if (!invocation.write) {
        output.writeBytes(result);
        return Success;
    }
    if (result != bytes && !replaceFile(name, bytes, result, &error)) {
        Output::complain(name + QLatin1String(": ") + error);
        return Trouble;
    }
    return Success;
}
