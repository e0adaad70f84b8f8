// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/analysis/ignores.h"

#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/text/spelling.h"
#include "tools/nuv-apps-config/tree/edits.h"

#include <QStringList>

#include <algorithm>

namespace {

const char Key[] = "_comment check";
const char Word[] = "ignore";

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// "ignore one, two: the reason" as its rules; a remark of another kind has none.
QStringList rulesOf(const QString &value)
{
    QString asked = value.section(QLatin1Char(':'), 0, 0);
    const auto isBetween = [](QChar c) { return c.isSpace() || c == QLatin1Char(','); };
    std::replace_if(asked.begin(), asked.end(), isBetween, QLatin1Char(' '));
    QStringList words = asked.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return !words.isEmpty() && words.takeFirst() == QLatin1String(Word) ? words : QStringList();
}

QString didYouMean(const QString &rule)
{
    QStringList ids;
    for (const Rule &known : Rules::all())
        ids.append(QLatin1String(known.id));
    const QString nearest = Spelling::nearest(rule, ids);
    return nearest.isEmpty() ? QString() : QString(QLatin1String("did you mean %1?")).arg(nearest);
}

} // namespace

void Ignores::read()
{
    for (const Node &node : m_document.nodes) {
        for (const Node::Child &member : node.children) {
            if (member.key.startsWith(QLatin1String(Key))) // an element has no key
                readMember(node, member);
        }
    }
}

void Ignores::readMember(const Node &object, const Node::Child &member)
{
    for (const QString &rule : rulesOf(m_document.at(member).value.toString()))
        add(object, member, rule);
}

void Ignores::add(const Node &object, const Node::Child &member, const QString &rule)
{
    const Rule *const known = Rules::lookUp(rule);
    if (known && Rules::canBeIgnored(*known))
        m_all.push_back(Ignore { &object, &member, rule,
                                 m_findings.ignore(rule.toLatin1(), object.begin, object.end) });
    else if (known)
        report(member,
               quoted(rule)
                   + QLatin1String(" cannot be ignored: the library reads nothing of such a file"),
               QString());
    else
        report(member, QLatin1String("there is no rule ") + quoted(rule), didYouMean(rule));
}

void Ignores::report(const Node::Child &member, const QString &what, const QString &hint)
{
    const Node &value = m_document.at(member);
    m_findings.add("unused-ignore", value.begin, value.length(), what, hint);
}

// In a file with a syntax error not everything was looked at.
void Ignores::reportUnused()
{
    if (m_findings.hasSyntaxError())
        return;
    for (const Ignore &ignore : m_all) {
        if (m_findings.isUsed(ignore.index))
            continue;
        const Node &value = m_document.at(*ignore.member);
        const bool isAlone = rulesOf(value.value.toString()).size() == 1;
        Finding &finding = m_findings.add(
            "unused-ignore", value.begin, value.length(),
            quoted(ignore.rule) + QLatin1String(" finds nothing here that could be ignored"),
            QLatin1String(isAlone ? "remove it" : ""));
        if (isAlone)
            finding.edit = Edits::removeMember(m_document, *ignore.object, *ignore.member);
    }
}
