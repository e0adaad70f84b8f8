// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/keyrules.h"

#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/text/spelling.h"

#include <QHash>
#include <QSet>

namespace {

// The loader makes about a million elements in a second, on a fast machine.
const int LargestSize = 100000;

const int DeepestNesting = 1000;

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString quoted(const QString &name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

Finding &addAtKey(Findings &findings, const char *rule, const Node::Child &member,
                  const QString &what, const QString &hint = QString())
{
    return findings.add(rule, member.keyBegin, member.keyEnd - member.keyBegin, what, hint);
}

void checkSlash(const Node::Child &member, Findings &findings)
{
    if (member.key.contains(QLatin1Char('/')))
        addAtKey(findings, "slash-in-key", member,
                 text("a / in a key moves the keys after it to other places in the flat settings"),
                 text("choose a key without /; a remark can be the value of \"_comment\""));
}

// The objects that the loader would read as arrays. A key with a slash, or one that comes twice, may
// bring any other to one of those places.
class WalkedObjects
{
public:
    explicit WalkedObjects(const Document &document);
    bool contains(const Node &object) const { return m_isAny || m_all.contains(&object); }

private:
    void add(const Document &document, const Node &object, const char *key, bool isDeep);

    bool m_isAny = false;
    QSet<const Node *> m_all;
};

WalkedObjects::WalkedObjects(const Document &document)
{
    for (const Node &node : document.nodes) {
        for (const Node::Child &child : node.children)
            m_isAny = m_isAny || child.key.contains(QLatin1Char('/'));
    }
    add(document, document.rootNode(), "Applications", true);
}

void WalkedObjects::add(const Document &document, const Node &object, const char *key, bool isDeep)
{
    for (const Node::Child &child : object.children) {
        if (child.key != QLatin1String(key))
            continue;
        const Node &walked = document.at(child);
        m_all.insert(&walked);
        for (const Node::Child &element : walked.children) {
            if (isDeep)
                add(document, document.at(element), "GrantBroadcastAccessRightDomains", false);
        }
    }
}

void checkSize(const Document &document, const Node &object, const Node::Child &member,
               bool isWalked, Findings &findings)
{
    const Node &value = document.at(member);
    const bool isSize = member.key == QLatin1String("size");
    if (!isSize && !member.key.endsWith(QLatin1String("/size")))
        return;
    const int size =
        value.value.toInt(); // as the settings convert it: what does not fit counts as 0
    if (isWalked && size > LargestSize)
        findings
            .add("huge-size", value.begin, value.length(),
                 text("the loader would ask for that many elements, and be busy for minutes"),
                 text("remove the key; a list is written in [ ]"))
            .edit = Edits::removeMember(document, object, member);
    else if (isSize)
        addAtKey(findings, "size-key", member,
                 text("\"size\" counts the elements of an array in the flat settings"),
                 text("choose another key"));
}

QString fateOfDuplicate(const Node &first, const Node &later)
{
    if (first.type == Node::Object && later.type == Node::Object)
        return text("the two objects are merged, and the earlier values survive");
    if (first.type == Node::Array && later.type == Node::Array)
        return text("the two arrays are merged element by element, and the earlier size survives");
    if (first.isContainer() || later.isContainer())
        return text("the flat settings get the keys of both");
    return text("the earlier value survives, this one is lost");
}

// Only what is lost can be taken away without another meaning of the file.
bool isLost(const Node &first, const Node &later)
{
    return !first.isContainer() && !later.isContainer();
}

void checkDuplicates(const Document &document, const Node &object, Findings &findings)
{
    QHash<QString, const Node::Child *> known;
    known.reserve(int(object.children.size()));
    for (const Node::Child &member : object.children) {
        if (document.isDoubtful(member))
            continue;
        const Node::Child *&first = known[member.key];
        if (!first) {
            first = &member;
            continue;
        }
        if (Properties::isPassed(member.key))
            continue;
        const bool canGo = isLost(document.at(*first), document.at(member));
        Finding &finding = addAtKey(
            findings, "duplicate-key", member,
            QString(QLatin1String("the key %1 appears twice in one object: %2"))
                .arg(quoted(member.key), fateOfDuplicate(document.at(*first), document.at(member))),
            canGo ? text("remove it") : QString());
        finding.remarks.push_back(Remark { first->keyBegin, text("the earlier one is here") });
        if (canGo)
            finding.edit = Edits::removeMember(document, object, member);
    }
}

// The section that reads the key; null when none does.
const Property *elsewhere(const QString &key)
{
    for (const Property &property : Properties::all()) {
        if (key == QLatin1String(property.key)
            || (property.property && key == QLatin1String(property.property)))
            return &property;
    }
    return nullptr;
}

QStringList keysOf(Section section)
{
    QStringList keys;
    for (const Property *property : Properties::of(section))
        keys.append(QLatin1String(property->key));
    return keys;
}

// The keys of the section that a part was written of, as "WebGL" of "UseWebGL".
QString keysWith(const QString &part, Section section)
{
    const QStringList similar = Spelling::similar(part, keysOf(section));
    return similar.isEmpty()
        ? QString()
        : QString(QLatin1String("there is \"%1\"")).arg(similar.join(QLatin1String("\" and \"")));
}

void reportUnknown(const Document &document, const Node &object, const Node::Child &member,
                   Section section, Findings &findings)
{
    const QString nearest = Spelling::nearest(member.key, keysOf(section));
    if (!nearest.isEmpty() && document.odd.touch(member.keyBegin, member.keyEnd))
        return; // what is odd about the key is said already
    const bool isCaseOnly = nearest.compare(member.key, Qt::CaseInsensitive) == 0;
    const bool isTaken =
        !nearest.isEmpty() && !findings.isFull() && document.member(object, nearest);
    QString hint;
    if (isTaken)
        hint = QString(QLatin1String("%1 is there as well")).arg(quoted(nearest));
    else if (!nearest.isEmpty())
        hint = QString(QLatin1String("did you mean %1?")).arg(quoted(nearest));
    else
        hint = keysWith(member.key, section);
    if (!nearest.isEmpty() && isCaseOnly)
        hint += text(isTaken ? "; keys are compared with their case"
                             : " Keys are compared with their case");
    Finding &finding = addAtKey(findings, "unknown-key", member,
                                QString(QLatin1String("%1 does not know the key %2"))
                                    .arg(Properties::sectionName(section), quoted(member.key)),
                                hint);
    if (!nearest.isEmpty() && !isTaken)
        finding.edit = Edits::renameKey(member, nearest);
}

} // namespace

void KeyRules::checkEverywhere(const Document &document, Findings &findings)
{
    if (document.depth > DeepestNesting)
        findings.add(
            "too-deep", 0, 0,
            QString(QLatin1String("the document is nested %1 levels deep")).arg(document.depth));
    const WalkedObjects walked(document);
    for (const Node &node : document.nodes) {
        if (node.type != Node::Object)
            continue;
        for (const Node::Child &member : node.children) {
            if (document.isDoubtful(member))
                continue;
            checkSlash(member, findings);
            checkSize(document, node, member, walked.contains(node), findings);
        }
        if (!document.isMoved(node))
            checkDuplicates(document, node, findings);
    }
}

bool KeyRules::checkName(const Document &document, const Node &object, const Node::Child &member,
                         Section section, Findings &findings)
{
    if (Properties::find(section, member.key))
        return false;
    if (document.isDoubtful(member))
        return true;
    const bool isReported =
        member.key == QLatin1String("size") || member.key.contains(QLatin1Char('/'));
    if (Properties::isPassed(member.key) || isReported)
        return true;
    const Property *other = elsewhere(member.key);
    if (other && document.isMoved(object))
        return true;
    if (section == Section::Document && member.key == QLatin1String("Certificate"))
        addAtKey(findings, "top-level-certificate", member,
                 text("a certificate is read inside \"Global\" and inside an application only"),
                 text("move it into one of them"));
    else if (other)
        addAtKey(findings, "misplaced-key", member,
                 QString(QLatin1String("%1 is not read here")).arg(quoted(member.key)),
                 QString(QLatin1String("its place is %1")).arg(Properties::place(*other)));
    else
        reportUnknown(document, object, member, section, findings);
    return true;
}

const Node::Child *KeyRules::misspelt(const Node &object, Section section, const QString &key)
{
    const QStringList keys = keysOf(section);
    for (const Node::Child &member : object.children) {
        if (!keys.contains(member.key) && Spelling::nearest(member.key, keys) == key)
            return &member;
    }
    return nullptr;
}
