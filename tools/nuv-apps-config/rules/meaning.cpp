// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/meaning.h"

#include "examples/launcher/values/hostname.h"
#include "tools/nuv-apps-config/rules/certificaterules.h"
#include "tools/nuv-apps-config/rules/keyrules.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/rules/tagrules.h"
#include "tools/nuv-apps-config/rules/valuerules.h"

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString quoted(const QString &name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

class Meaning
{
public:
    Meaning(const SourceText &source, const Document &document, const DeviceFiles &files,
            Findings &findings)
        : m_source(source),
          m_document(document),
          m_files(files),
          m_findings(findings),
          m_tags(document, findings),
          m_values(source, document, m_files, findings)
    {
    }

    void checkDocument();

private:
    void checkGlobal(const Node &global);
    void checkVersion();
    void checkApplications();
    void checkElements(const Node &applications);
    void checkNoApplication(const Node &element);
    void checkApplication(const Node &application);
    void checkAddress(const Node &application);
    void checkDomains(const Node &domains);
    void checkPlainDomain(const Node &element);
    void checkCertificate(const Node &certificate);
    void checkNeeds(const Node &application);
    void reportWithoutEffect(const Node &application, const Node::Child &member,
                             const QString &need);
    void checkSecondNames(const Node &application);
    void checkMembers(const Node &object, Section section);
    void checkMember(const Node &object, const Node::Child &member, Section section);
    bool mayBeOn(const Node &object, const QString &key) const;

    bool takesPlaceOf(const Node &object, const char *key, Section section, const char *rule,
                      const QString &what);
    bool isElsewhere(const Node &object, const char *key, const char *rule, const QString &what,
                     const QString &remedy);
    QByteArray unwrapped(const Node &array) const;

    const SourceText &m_source;
    const Document &m_document;
    DeviceFiles m_files;
    Findings &m_findings;
    TagRules m_tags;
    ValueRules m_values;
};

void Meaning::checkDocument()
{
    const Node &root = m_document.rootNode();
    if (root.type != Node::Object && m_document.isMended(root))
        return;
    if (root.type != Node::Object) {
        m_findings.add(
            "not-an-object", root.begin, 1, text("the document is not an object"),
            text("begin with { \"Global\": { \"Version\": 1 }, \"Applications\": [ ] }"));
        return;
    }
    KeyRules::checkEverywhere(m_document, m_findings);
    checkMembers(root, Section::Document);
    checkVersion();
    checkApplications();
}

void Meaning::checkMembers(const Node &object, Section section)
{
    for (const Node::Child &member : object.children)
        checkMember(object, member, section);
}

void Meaning::checkMember(const Node &object, const Node::Child &member, Section section)
{
    if (KeyRules::checkName(m_document, object, member, section, m_findings))
        return;
    const Property *property = Properties::find(section, member.key);
    const Node &value = m_document.at(member);
    if (m_document.isDoubtful(value))
        return;
    m_values.check(KnownValue { *property, object, member, value });
    if (value.type == Node::Object && member.key == QLatin1String("Global"))
        checkGlobal(value);
    else if (value.type == Node::Object && member.key == QLatin1String("Certificate"))
        checkCertificate(value);
    else if (value.type == Node::Array && qstrcmp(property->key, "Applications") == 0)
        checkElements(value);
    else if (value.type == Node::Array && property->kind == Kind::Array)
        checkDomains(value);
}

void Meaning::checkGlobal(const Node &global)
{
    checkMembers(global, Section::Global);
}

// A key that is missing because it is misspelt is one mistake, found where the misspelt one is, with the
// weight of what is missing.
bool Meaning::takesPlaceOf(const Node &object, const char *key, Section section, const char *rule,
                           const QString &what)
{
    const Node::Child *member = KeyRules::misspelt(object, section, text(key));
    if (!member)
        return false;
    if (m_document.isDoubtful(*member) || m_document.odd.touch(member->keyBegin, member->keyEnd))
        return true; // what is wrong with the key is reported already
    m_findings.remove("unknown-key", member->keyBegin);
    const bool isCaseOnly = member->key.compare(text(key), Qt::CaseInsensitive) == 0;
    m_findings
        .add(rule, member->keyBegin, member->keyEnd - member->keyBegin, what,
             QString(QLatin1String("did you mean %1?%2"))
                 .arg(quoted(text(key)),
                      text(isCaseOnly ? " Keys are compared with their case" : "")))
        .edit = Edits::renameKey(*member, text(key));
    return true;
}

// The same for a key that is in another object.
bool Meaning::isElsewhere(const Node &object, const char *key, const char *rule,
                          const QString &what, const QString &remedy)
{
    const Node::Child *member = m_document.member(object, text(key));
    if (!member)
        return false;
    m_findings.remove("misplaced-key", member->keyBegin);
    m_findings.add(rule, member->keyBegin, member->keyEnd - member->keyBegin, what, remedy);
    return true;
}

void Meaning::checkVersion()
{
    const Node &root = m_document.rootNode();
    const Node::Child *global = m_document.member(root, text("Global"));
    if (!global && m_document.isMended(root))
        return;
    if (!global) {
        const QString what =
            text("\"Global\" with the version is missing, so no application is loaded");
        if (takesPlaceOf(root, "Global", Section::Document, "no-version", what))
            return;
        m_findings
            .add("no-version", root.begin, 1, what, text("add \"Global\": { \"Version\": 1 }"))
            .edit = Edits::insertMember(root, "\"Global\": { \"Version\": 1 }");
        return;
    }
    const Node &object = m_document.at(*global);
    if (object.type != Node::Object || m_document.isDoubtful(object))
        return;
    const Node::Child *member = m_document.member(object, text("Version"));
    if (member ? m_document.isDoubtful(m_document.at(*member)) : m_document.isMended(object))
        return;
    const QString what = text("\"Version\" is missing in \"Global\", so no application is loaded");
    if (!member
        && (takesPlaceOf(object, "Version", Section::Global, "no-version", what)
            || isElsewhere(root, "Version", "no-version", what, text("move it into \"Global\""))))
        return;
    if (member && m_document.at(*member).type == Node::Null)
        m_findings
            .add("no-version", m_document.at(*member).begin, m_document.at(*member).length(),
                 text("\"Version\" is null, so no application is loaded"), text("write 1"))
            .edit = Edits::replace(m_document.at(*member), "1");
    else if (member)
        ValueRules::checkVersion(m_document.at(*member), m_findings);
    else
        m_findings.add("no-version", object.begin, 1, what, text("add \"Version\": 1")).edit =
            Edits::insertMember(object, "\"Version\": 1");
}

void Meaning::checkApplications()
{
    const Node &root = m_document.rootNode();
    const Node::Child *member = m_document.member(root, text("Applications"));
    if (m_document.isMended(member ? m_document.at(*member) : root))
        return;
    const QString what = text("there are no applications");
    const QByteArray element = "{ \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" }";
    const Node::Child *global = m_document.member(root, text("Global"));
    if (!member
        && (takesPlaceOf(root, "Applications", Section::Document, "no-applications", what)
            || (global
                && isElsewhere(m_document.at(*global), "Applications", "no-applications", what,
                               text("its place is next to \"Global\", not in it")))))
        return;
    if (!member)
        m_findings
            .add("no-applications", root.begin, 1, what,
                 text("add \"Applications\": [ ") + QString::fromLatin1(element) + text(" ]"))
            .edit = Edits::insertMember(root, "\"Applications\": [ " + element + " ]");
    else if (m_document.at(*member).type == Node::Array && m_document.at(*member).children.empty())
        m_findings
            .add("no-applications", m_document.at(*member).begin, 1, what,
                 text("add one, as in ") + QString::fromLatin1(element))
            .edit = Edits::replace(m_document.at(*member), "[ " + element + " ]");
}

void Meaning::checkElements(const Node &applications)
{
    for (const Node::Child &child : applications.children) {
        const Node &element = m_document.at(child);
        if (m_document.isDoubtful(element))
            continue;
        if (element.type == Node::Object)
            checkApplication(element);
        else
            checkNoApplication(element);
    }
}

void Meaning::checkNoApplication(const Node &element)
{
    const QByteArray inside = unwrapped(element);
    Finding &finding = m_findings.add(
        "wrong-kind", element.begin, element.isContainer() ? 1 : element.length(),
        text("an application is an object, not ") + ValueRules::kindOf(element),
        text(inside.isEmpty() ? "for instance { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" }"
                              : "remove it and its closing bracket"));
    if (!inside.isEmpty())
        finding.edit = Edits::replace(element, inside);
}

// The objects of an array that holds nothing else; empty for any other node.
QByteArray Meaning::unwrapped(const Node &array) const
{
    for (const Node::Child &child : array.children) {
        if (m_document.at(child).type != Node::Object)
            return QByteArray();
    }
    if (array.type != Node::Array || array.children.empty())
        return QByteArray();
    const int begin = m_document.at(array.children.front()).begin;
    return m_source.bytes().mid(begin, m_document.at(array.children.back()).end - begin);
}

void Meaning::checkApplication(const Node &application)
{
    checkMembers(application, Section::Application);
    const bool mayLackTag = m_document.isMended(application)
        || KeyRules::misspelt(application, Section::Application, text("Tag"));
    if (m_tags.check(application, mayLackTag))
        checkAddress(application);
    checkNeeds(application);
    checkSecondNames(application);
}

// Null counts as not configured, too.
void Meaning::checkAddress(const Node &application)
{
    const Node::Child *member = m_document.member(application, text("Url"));
    const bool isNull = member && m_document.at(*member).type == Node::Null;
    if (member ? m_document.isDoubtful(m_document.at(*member)) : m_document.isMended(application))
        return;
    if (isNull)
        m_findings.add("no-address", m_document.at(*member).begin, m_document.at(*member).length(),
                       text("an application shows nothing while its \"Url\" is null"));
    else if (!member && !KeyRules::misspelt(application, Section::Application, text("Url")))
        m_findings.add("no-address", application.begin, 1,
                       text("an application without \"Url\" shows nothing"));
}

void Meaning::checkDomains(const Node &domains)
{
    for (const Node::Child &child : domains.children) {
        const Node &element = m_document.at(child);
        if (m_document.isDoubtful(element))
            continue;
        if (element.type == Node::Object) {
            checkMembers(element, Section::Domain);
            const QString what = text("an element without \"Domain\" grants nothing");
            if (!m_document.member(element, text("Domain")) && !m_document.isMended(element)
                && !takesPlaceOf(element, "Domain", Section::Domain, "no-domain", what))
                m_findings.add("no-domain", element.begin, 1, what,
                               text("for instance { \"Domain\": \"tv.example\" }, or remove it"));
        } else {
            checkPlainDomain(element);
        }
    }
}

void Meaning::checkPlainDomain(const Node &element)
{
    const QString what = text("each domain is an object, not ") + ValueRules::kindOf(element)
        + text("; of this element nothing is used");
    const QByteArray inside = unwrapped(element);
    if (!inside.isEmpty()) {
        m_findings
            .add("plain-domain", element.begin, 1, what, text("remove it and its closing bracket"))
            .edit = Edits::replace(element, inside);
        return;
    }
    const Parsed<QString> domain =
        HostName::parseDomain(element.type == Node::Text ? element.value.toString() : QString());
    const QString meant = domain.isUsable() ? element.value.toString() : domain.objection.instead;
    const QString proposed = meant.isEmpty() ? text("tv.example") : meant;
    const QByteArray object = "{ \"Domain\": " + Edits::quoted(proposed) + " }";
    m_findings
        .add("plain-domain", element.begin, element.isContainer() ? 1 : element.length(), what,
             text(meant.isEmpty() ? "write it as in " : "write ") + QString::fromLatin1(object))
        .edit = Edits::replace(element, object);
}

void Meaning::checkCertificate(const Node &certificate)
{
    checkMembers(certificate, Section::Certificate);
    const Node::Child *path = m_document.member(certificate, text("Path"));
    const bool hasPath = path && m_document.at(*path).type != Node::Null;
    const Node::Child *key = m_document.member(certificate, text("PrivateKey"));
    const Node::Child *passPhrase = m_document.member(certificate, text("PassPhrase"));
    const bool mayLackMembers = m_document.isMended(certificate);
    for (const Node::Child *member : { key, passPhrase }) {
        if (member && !hasPath && !mayLackMembers)
            m_findings.add("needs-certificate", member->keyBegin, member->keyEnd - member->keyBegin,
                           quoted(member->key) + text(" is not read without \"Path\""),
                           text("\"Path\" names the file of the certificate"));
    }
    const bool isDoubtful = m_document.doubtful.touch(certificate.begin, certificate.end)
        || m_document.isMoved(certificate);
    if (hasPath && !isDoubtful && m_document.at(*path).type == Node::Text)
        CertificateRules::check(m_document, certificate, m_files, m_findings);
}

// Whether the switch may be on: what is not given goes by the browser's default.
bool Meaning::mayBeOn(const Node &object, const QString &key) const
{
    const Node::Child *member = m_document.member(object, key);
    if (!member || m_document.at(*member).type == Node::Null)
        return !Properties::isOffWhenMissing(*Properties::findProperty(key));
    return m_document.at(*member).value.toBool();
}

void Meaning::checkNeeds(const Node &application)
{
    for (const Node::Child &member : application.children) {
        const Property *property = Properties::find(Section::Application, member.key);
        const Node &value = m_document.at(member);
        const bool isOff = value.type == Node::Bool && !value.value.toBool();
        if (!property || isOff || value.type == Node::Null)
            continue;
        const QStringList needs = Properties::needed(*property);
        bool isMet = needs.isEmpty();
        for (const QString &need : needs)
            isMet = isMet || mayBeOn(application, need);
        if (!isMet && !m_document.isMended(application))
            reportWithoutEffect(application, member, needs.first());
    }
}

void Meaning::reportWithoutEffect(const Node &application, const Node::Child &member,
                                  const QString &need)
{
    const Node::Child *off = m_document.member(application, need);
    const QString needed = quoted(need) + text(": true");
    m_findings
        .add("no-effect", member.keyBegin, member.keyEnd - member.keyBegin,
             QString(QLatin1String("%1 has no effect without %2")).arg(quoted(member.key), needed),
             (off ? text("write ") : text("add ")) + needed)
        .edit = off ? Edits::replace(m_document.at(*off), "true")
                    : Edits::insertMember(application, needed.toLatin1());
}

// Two properties have an older name. The one that begins with "Use" decides.
void Meaning::checkSecondNames(const Node &application)
{
    const char *const names[][2] = {
        { "UseOfflineStorageDatabase", "OfflineStorageDatabaseEnabled" },
        { "UseOfflineWebApplicationCache", "OfflineWebApplicationCacheEnabled" },
    };
    for (const auto &pair : names) {
        const Node::Child *newer = m_document.member(application, text(pair[0]));
        const Node::Child *older = m_document.member(application, text(pair[1]));
        if (!newer || !older
            || m_document.at(*newer).value.toBool() == m_document.at(*older).value.toBool())
            continue;
        Finding &finding = m_findings.add(
            "two-names", older->keyBegin, older->keyEnd - older->keyBegin,
            QString(QLatin1String("\"%1\" is the older name of \"%2\", which has another value and "
                                  "decides"))
                .arg(text(pair[1]), text(pair[0])),
            text("remove it"));
        finding.edit = Edits::removeMember(m_document, application, *older);
        finding.remarks.push_back(Remark { newer->keyBegin, text("the deciding one is here") });
    }
}

} // namespace

void checkMeaning(const SourceText &source, const Document &document, const DeviceFiles &files,
                  Findings &findings)
{
    if (!document.isEmpty())
        Meaning(source, document, files, findings).checkDocument();
}
