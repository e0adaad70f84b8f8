// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/documents/reference.h"
#include "tools/nuv-apps-config/text/matching.h"
#include "tools/nuv-apps-config/text/spelling.h"

namespace {

QStringList names()
{
    QStringList names;
    for (const Property &property : Properties::all()) {
        if (!names.contains(QLatin1String(property.key)))
            names.append(QLatin1String(property.key));
    }
    for (const Rule &rule : Rules::all())
        names.append(QLatin1String(rule.id));
    return names;
}

// "Applications[2].Tag" and "Applications[].Tag" are one place.
QString withoutIndexes(QString place)
{
    static const QRegularExpression index(QLatin1String("\\[[0-9]*\\]"));
    QRegularExpressionMatch match = matched(index, place);
    for (; match.hasMatch(); match = matched(index, place, match.capturedStart()))
        place.remove(match.capturedStart(), match.capturedLength());
    return place;
}

const Property *atPlace(const QString &name)
{
    const QString place = withoutIndexes(name);
    for (const Property &property : Properties::all()) {
        const QStringList places =
            withoutIndexes(Properties::place(property)).split(QLatin1String(" and "));
        if (places.contains(place))
            return &property;
    }
    return nullptr;
}

// The sample of a rule as check would have it; empty where there is no single change.
QByteArray corrected(const Rule &rule)
{
    const QByteArray sample = Rules::sample(rule);
    const auto analysis = analyse(QString(), sample, DeviceFiles(QLatin1String("/")));
    for (const Finding &finding : analysis->findings.all()) {
        if (qstrcmp(finding.rule, rule.id) == 0 && !finding.edit.isNothing())
            return finding.edit.appliedTo(sample);
    }
    return QByteArray();
}

void listAll(Output &output)
{
    output.write(QLatin1String("Keys of the file:\n"));
    for (const Property &property : Properties::all())
        output.write(QLatin1String("  ") + Properties::place(property) + QLatin1Char('\n'));
    output.write(QLatin1String("\nRules of check:\n"));
    for (const Rule &rule : Rules::all())
        output.write(QLatin1String("  ") + QString(QLatin1String(rule.id)).leftJustified(25)
                     + QLatin1Char(' ') + QLatin1String(rule.title) + QLatin1Char('\n'));
}

void explainRule(const Rule &rule, Output &output)
{
    const QString entry = Reference::explain(rule);
    output.write(entry);
    const bool isShown = entry.endsWith(QString::fromUtf8(Rules::sample(rule)));
    const QByteArray right = corrected(rule);
    if (isShown && !right.isEmpty())
        output.write(QLatin1String("\nThe same file, corrected:\n\n") + QString::fromUtf8(right));
}

// A key that several sections have is explained once for each.
void explainKey(const Property &found, Output &output)
{
    output.write(Reference::explain(found));
    for (const Property &property : Properties::all()) {
        if (&property != &found && qstrcmp(property.key, found.key) == 0)
            output.write(QLatin1String("\n") + Reference::explain(property));
    }
}

} // namespace

int Program::explain(const Invocation &invocation, Output &output)
{
    if (invocation.arguments.isEmpty()) {
        listAll(output);
        return Success;
    }
    const QString name = invocation.arguments.at(0);
    const Rule *const rule = Rules::lookUp(name);
    const Property *const place = atPlace(name);
    const Property *const key = Properties::findAnywhere(name);
    if (rule)
        explainRule(*rule, output);
    else if (place && name != QLatin1String(place->key))
        output.write(Reference::explain(*place));
    else if (key)
        explainKey(*key, output);
    else
        Output::complain(QString(QLatin1String("there is no key and no rule \"%1\"%2"))
                             .arg(name, Spelling::didYouMean(name, names())));
    return rule || place || key ? Success : Found;
}
