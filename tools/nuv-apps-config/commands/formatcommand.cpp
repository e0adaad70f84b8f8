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
    if (a.size() != b.size())
        return false;
    for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j) {
        if (i.key() != j.key() || !ValueText::isSame(i.value(), j.value()))
            return false;
    }
    return true;
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
    const QString &message() const { return m_message; }
    bool isSameAs(const Parsed &other) const
    {
        return m_message.isEmpty() && isSameMap(flatKeys(m_tree), flatKeys(other.m_tree));
    }

private:
    QString m_message;
    QVariant m_tree;
    VariantTree::Disposer m_disposer;
};

// Empty, with the reason, when it would not mean the same.
QByteArray formatted(const Analysis &analysis, bool isSorted, QString *error)
{
    const QByteArray &bytes = analysis.source.bytes();
    const Parsed before(bytes);
    if (!before.message().isEmpty()) {
        *error = text("it could not be parsed: ") + before.message().trimmed();
        return QByteArray();
    }
    const QByteArray result = isSorted ? JsonWriter::serialize(before.tree(), Step, 0)
                                       : Layout::of(analysis.document, bytes);
    if (Parsed(result).isSameAs(before))
        return result;
    *error = isSorted ? text("it would lose digits of a number") : text("it would change");
    return QByteArray();
}

// What only sorting loses.
bool isRefused(const Analysis &analysis, QString *error)
{
    const Findings &findings = analysis.findings;
    if (findings.has("lost-digits"))
        *error = text("it would lose digits of a number");
    for (const Finding &finding : findings.all()) {
        const bool isDuplicate = qstrcmp(finding.rule, "duplicate-key") == 0;
        if (!isDuplicate)
            continue;
        const Place place = analysis.source.place(finding.offset);
        *error = QString(QLatin1String("it has a duplicate key in line %1, column %2"))
                     .arg(QString::number(place.line), QString::number(place.column));
    }
    return !error->isEmpty();
}

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
    if (analysis->findings.has("empty-file"))
        error = text("it is empty");
    else if (analysis->findings.hasSyntaxError())
        error = text("it could not be parsed; see check");
    else if (analysis->document.depth > Analysis::DeepestFlattened)
        error = text("it is nested too deeply");
    else if (invocation.sort && !isRefused(*analysis, &error) && hasTwins(analysis->document))
        error = text("it has a duplicate key");
    const QByteArray result =
        error.isEmpty() ? formatted(*analysis, invocation.sort, &error) : QByteArray();
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
