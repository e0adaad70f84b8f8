// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/reference.h"

#include "tools/nuv-apps-config/documents/deviceexamples.h"

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

const Section sections[] = { Section::Document, Section::Global, Section::Application,
                             Section::Certificate, Section::Domain };

QString headingOf(Section section)
{
    switch (section) {
    case Section::Document:
        return text("The document");
    case Section::Global:
        return text("Global");
    case Section::Application:
        return text("An application");
    case Section::Certificate:
        return text("A certificate");
    case Section::Domain:
        break;
    }
    return text("A domain");
}

QString keyEntry(const Property &property)
{
    QString entry =
        QString(text("### %1\n\n%2\n\n")).arg(text(property.key), text(property.description));
    for (const auto &fact : Reference::facts(property)) {
        const bool isExample = fact.first == text("example");
        entry += QString(isExample ? text("- %1: `%2`\n") : text("- %1: %2\n"))
                     .arg(fact.first, fact.second);
    }
    return entry + QLatin1Char('\n');
}

// Samples that a page cannot show are too long to be read, or have bytes that are no text, or that vanish
// in one.
bool isPrintable(const Rule &rule)
{
    const int longest = 1000;
    const QByteArray sample = Rules::sample(rule);
    if (sample.size() > longest || sample.startsWith("\xef\xbb\xbf"))
        return false;
    for (const char byte : sample) {
        if (static_cast<unsigned char>(byte) < 0x20 && byte != '\n')
            return false;
    }
    return true;
}

QString ruleEntry(const Rule &rule)
{
    QString entry = QString(text("### %1\n\n%2 (%3). %4\n\n"))
                        .arg(text(rule.id), text(rule.title), Rules::severityName(rule.severity),
                             text(rule.description));
    const QByteArray sample = Rules::sample(rule);
    if (sample.isEmpty() || !isPrintable(rule))
        return entry;
    return entry
        + QString(text("```json mistake\n%1%2```\n\n"))
              .arg(QString::fromUtf8(sample), sample.endsWith('\n') ? QString() : text("\n"));
}

QString deviceEntry(const DeviceExample &example)
{
    return QString(text("### %1\n\n%2\n\n[%3.json](../examples/configurations/%3.json):\n\n"
                        "```json\n%4```\n\n"))
        .arg(text(example.title), text(example.description), text(example.name),
             QString::fromLatin1(DeviceExamples::configuration(example)));
}

QString deviceEntries()
{
    QString entries = text("## Common devices\n\n"
                           "Each is a whole file to begin with; `check` finds nothing in any of "
                           "them. Switches that are off by default are written down where someone "
                           "could expect them on.\n\n");
    for (const DeviceExample &example : DeviceExamples::all())
        entries += deviceEntry(example);
    return entries;
}

} // namespace

QString Reference::wrapped(const QString &paragraph, int width)
{
    QString result;
    int column = 0;
    for (const QString &word : paragraph.split(QLatin1Char(' '))) {
        if (column > 0 && column + 1 + word.size() > width) {
            result += QLatin1Char('\n');
            column = 0;
        } else if (column > 0) {
            result += QLatin1Char(' ');
            ++column;
        }
        result += word;
        column += word.size();
    }
    return result + QLatin1Char('\n');
}

QList<QPair<QString, QString>> Reference::facts(const Property &property)
{
    QList<QPair<QString, QString>> facts;
    facts.append({ text("place"), Properties::place(property) });
    if (property.property)
        facts.append({ text("property"), text(property.property) });
    QString kind = Properties::kindName(property.kind);
    if (Properties::hasRange(property))
        kind += QLatin1Char(' ') + Properties::rangeText(property);
    facts.append({ text("value"), kind });
    if (property.unit[0])
        facts.append({ text("unit"), text(property.unit) });
    facts.append({ text("when missing"), text(property.whenMissing) });
    const QStringList needs = Properties::neededKeys(property);
    if (!needs.isEmpty())
        facts.append({ text("needs"), needs.join(text(" or ")) });
    if (property.secret == Secret::Whole)
        facts.append({ text("secret"), text("yes") });
    if (property.secret == Secret::Password)
        facts.append({ text("secret"), text("a password in it") });
    facts.append({ text("example"), text(property.example) });
    return facts;
}

QString Reference::explain(const Property &property)
{
    QString entry =
        text(property.key) + QLatin1Char('\n') + wrapped(text(property.description), 78);
    for (const auto &fact : facts(property))
        entry += QString(text("  %1 %2\n"))
                     .arg((fact.first + QLatin1Char(':')).leftJustified(14), fact.second);
    return entry;
}

QString Reference::explain(const Rule &rule)
{
    QString entry = QString(text("%1 (%2)\n%3\n\n"))
                        .arg(text(rule.id), Rules::severityName(rule.severity), text(rule.title))
        + wrapped(text(rule.description), 78);
    const QString sample = QString::fromUtf8(Rules::sample(rule));
    if (!sample.isEmpty() && isPrintable(rule))
        entry += text("\nA file in which it is found:\n\n") + sample;
    return entry;
}

QByteArray Reference::configurationPage()
{
    QString page = text(
        "# The configuration file\n\n"
        "<!-- Made from the table of properties; do not edit. -->\n\n"
        "The library reads one file: the one that the environment variable `NUV_APPS_CONFIG_FILE` "
        "names, if that exists, or else `AppsConfig.json` in the working directory of the "
        "launcher. "
        "It is read once. Mistakes are ignored without a message; `nuv-apps-config check` finds "
        "them, "
        "and "
        "`nuv-apps-config show` shows what the launcher will see.\n\n"
        "```json\n"
        "{\n"
        "    \"Global\": { \"Version\": 1, \"RemoteInspectorPort\": 9222 },\n"
        "    \"Applications\": [\n"
        "        { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\", \"Scale\": 1.5, \"UseWebGL\": "
        "true },\n"
        "        { \"Tag\": \"overlay\", \"Url\": \"overlay.html\", \"UseTransparentBackground\": "
        "true }\n"
        "    ]\n"
        "}\n"
        "```\n\n"
        "Keys are compared with their case. Keys that begin with `_comment`, and `$schema`, pass "
        "everywhere. null counts as not configured. The rules that `check` goes by are in "
        "[rules.md](rules.md); editors take their help from "
        "[AppsConfig.schema.json](AppsConfig.schema.json).\n\n");
    page += deviceEntries();
    for (const Section section : sections) {
        page += QString(text("## %1\n\n")).arg(headingOf(section));
        for (const Property *property : Properties::of(section))
            page += keyEntry(*property);
    }
    return page.trimmed().toUtf8() + '\n';
}

QByteArray Reference::rulesPage()
{
    QString page = text("# The rules of nuv-apps-config check\n\n"
                        "<!-- Made from the table of rules; do not edit. -->\n\n"
                        "An error under Syntax means that the library reads nothing of the file at "
                        "all. Each rule comes with a file in which it is found.\n\n");
    for (const RuleGroup group : { RuleGroup::File, RuleGroup::Syntax, RuleGroup::Dialect,
                                   RuleGroup::Meaning, RuleGroup::Certificate }) {
        page += QString(text("## %1\n\n")).arg(Rules::groupName(group));
        for (const Rule &rule : Rules::all()) {
            if (rule.group == group)
                page += ruleEntry(rule);
        }
    }
    return page.trimmed().toUtf8() + '\n';
}
