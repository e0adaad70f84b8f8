// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/tagrules.h"

#include "tools/nuv-apps-config/tree/edits.h"

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString quoted(const QString &name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

} // namespace

bool TagRules::check(const Node &application, bool mayBeMissing)
{
    ++m_count;
    const Node::Child *member = m_document.member(application, text("Tag"));
    const Node *tag = member ? &m_document.at(*member) : nullptr;
    if (tag ? tag->type == Node::Missing || m_document.isDoubtful(*tag) : mayBeMissing)
        return true;
    if (!tag || tag->type == Node::Null || tag->isContainer()) {
        reportMissing(application, tag);
        return false;
    }
    const QString name = tag->value.toString();
    if (tag->type != Node::Text)
        m_findings
            .add("tag-not-text", tag->begin, tag->length(),
                 text("the tag is not a string; it becomes ") + quoted(name),
                 text("put it in quotes"))
            .edit = Edits::replace(*tag, Edits::quoted(name));
    else if (name.isEmpty())
        m_findings
            .add("empty-tag", tag->begin, tag->length(), text("the tag is empty"),
                 text("write a name of its own, as in ") + QString::fromLatin1(proposedName()))
            .edit = Edits::replace(*tag, proposedName());
    if (reportDuplicate(application, *tag))
        return false;
    reportSimilar(*tag);
    return true;
}

QByteArray TagRules::proposedName() const
{
    return Edits::quoted(QString(QLatin1String("application-%1")).arg(m_count));
}

// A tag that is null or a container is where the mistake is.
void TagRules::reportMissing(const Node &application, const Node *tag)
{
    const QByteArray name = proposedName();
    if (tag) {
        m_findings
            .add("no-tag", tag->begin, tag->isContainer() ? 1 : tag->length(),
                 text("an application is skipped without a tag that is a string"),
                 text("write a name of its own, as in ") + QString::fromLatin1(name))
            .edit = Edits::replace(*tag, name);
        return;
    }
    m_findings
        .add("no-tag", application.begin, 1, text("an application without a tag is skipped"),
             text("add a name of its own, as in \"Tag\": ") + QString::fromLatin1(name))
        .edit = Edits::insertMember(application, "\"Tag\": " + name);
}

bool TagRules::reportDuplicate(const Node &application, const Node &tag)
{
    const QString name = tag.value.toString();
    const Node *const first = m_tags.value(name);
    if (!first) {
        m_tags.insert(name, &tag);
        return false;
    }
    const int lost = int(application.children.size()) - 1;
    Finding &finding = m_findings.add(
        "duplicate-tag", tag.begin, tag.length(),
        QString(QLatin1String("another application has the tag %1; this one is skipped whole, with "
                              "its %2 other %3"))
            .arg(quoted(name), QString::number(lost),
                 lost == 1 ? QLatin1String("key") : QLatin1String("keys")),
        text("give it another tag, or remove one of the two"));
    finding.remarks.push_back(Remark { first->begin, text("the first one is here") });
    return true;
}

// The launcher asks for a tag with its case, and gets the other application or none.
void TagRules::reportSimilar(const Node &tag)
{
    const QString name = tag.value.toString();
    const Node *&first = m_similar[name.toCaseFolded()];
    if (!first) {
        first = &tag;
        return;
    }
    m_findings
        .add("similar-tag", tag.begin, tag.length(),
             QString(QLatin1String("the tags %1 and %2 differ by case only"))
                 .arg(quoted(first->value.toString()), quoted(name)),
             text("give one of the two another name"))
        .remarks.push_back(Remark { first->begin, text("the first one is here") });
}
