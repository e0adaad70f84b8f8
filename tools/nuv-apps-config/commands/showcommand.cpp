// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/report/jsontext.h"
#include "tools/nuv-apps-config/commands/loadedfile.h"
#include "tools/nuv-apps-config/report/valuetext.h"

#include <algorithm>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

// The findings that say that something is not used at all.
const char *const skips[] = { "no-tag",
                              "duplicate-tag",
                              "duplicate-key",
                              "unknown-key",
                              "misplaced-key",
                              "top-level-certificate",
                              "needs-certificate",
                              "plain-domain",
                              "no-domain",
                              "null-value",
                              "slash-in-key",
                              "no-version",
                              "unusable-version",
                              "not-an-object",
                              "empty-file" };

// The findings that say that a file is not where the configuration says.
const char *const missing[] = { "missing-file", "missing-here", "certificate-missing" };

bool isMissing(const Finding &finding)
{
    return std::any_of(std::begin(missing), std::end(missing),
                       [&](const char *rule) { return qstrcmp(rule, finding.rule) == 0; });
}

bool isSkip(const Finding &finding, bool isRead)
{
    if (!isRead)
        return finding.severity == Severity::Error;
    return std::any_of(std::begin(skips), std::end(skips),
                       [&](const char *rule) { return qstrcmp(rule, finding.rule) == 0; });
}

typedef std::vector<const Finding *> Shown;

template<class Choice>
Shown chosenIn(const LoadedFile &file, const Choice &isChosen)
{
    Shown chosen;
    for (const Finding &finding : file.analysis().findings.all()) {
        if (isChosen(finding))
            chosen.push_back(&finding);
    }
    return chosen;
}

Shown skippedIn(const LoadedFile &file)
{
    const bool isRead = file.isRead();
    return chosenIn(file, [isRead](const Finding &finding) { return isSkip(finding, isRead); });
}

// Whether all the tags are there; says which are not.
bool haveTags(const LoadedFile &file, const QStringList &tags)
{
    bool haveAll = true;
    for (const QString &tag : tags)
        haveAll = file.hasTag(tag) && haveAll;
    return haveAll;
}

QStringList propertiesOf(const LoadedFile &file, const QString &tag)
{
    QStringList names;
    for (const ValueText::Entry &entry :
         ValueText::entriesOf(file.state().applications.value(tag), false))
        names.append(entry.property);
    return names;
}

QString gateText(const LoadedFile &file)
{
    if (!file.isRead())
        return file.analysis().source.size() == 0
            ? text("the file is empty")
            : text("the file has a syntax error, so nothing of it is read; see check");
    if (file.state().isUsable())
        return text("applications are loaded");
    return LoadedFile::unusableText();
}

QString versionText(const LoadedFile &file)
{
    return QString::number(file.version(), 'g', LoadedFile::DigitsOfVersion);
}

/// For people.
class ShownText
{
public:
    ShownText(const LoadedFile &file, bool reveal, Output &output)
        : m_file(file), m_reveal(reveal), m_output(output)
    {
    }

    void global();
    void application(const QString &tag);
    void findings(const char *title, const Shown &findings);

private:
    void config(const AppConfig &config, const Node *object);
    void line(const QString &what) { m_output.write(what + QLatin1Char('\n')); }

    const LoadedFile &m_file;
    bool m_reveal;
    Output &m_output;
};

void ShownText::global()
{
    line(QString(QLatin1String("File: %1 (%2)"))
             .arg(Output::printable(m_file.name()), Output::printable(m_file.why())));
    line(QString(QLatin1String("Version: %1 (%2)")).arg(versionText(m_file), gateText(m_file)));
    line(text("Remote inspector port: ")
         + (m_file.port().isValid() ? m_file.port().toString() : text("not set")));
    const AppConfig &global = m_file.state().globalConfig;
    const bool hasCertificate = global.getCertPath().isValid();
    line(text("Global certificate:") + (hasCertificate ? QString() : text(" not set")));
    config(global, m_file.global());
}

void ShownText::config(const AppConfig &config, const Node *object)
{
    const QList<ValueText::Entry> entries = ValueText::entriesOf(config, m_reveal);
    int width = 0;
    for (const ValueText::Entry &entry : entries)
        width = qMax(width, entry.property.size());
    for (const ValueText::Entry &entry : entries) {
        QStringList origin(ValueText::typeOf(entry.value));
        const Node *node = m_file.valueAt(object, entry.path, entry.value);
        if (node)
            origin.append(m_file.placeText(*node));
        line(QString(QLatin1String("    %1 = %2  (%3)"))
                 .arg(entry.property.leftJustified(width), ValueText::shown(entry.shown),
                      origin.join(text(", "))));
    }
}

void ShownText::application(const QString &tag)
{
    const Node *object = m_file.application(tag);
    const QString place =
        object ? text(" (") + m_file.placeText(*object) + QLatin1Char(')') : QString();
    line(QString(QLatin1String("\nApplication \"%1\"%2")).arg(Output::printable(tag), place));
    config(m_file.state().applications.value(tag), object);
}

void ShownText::findings(const char *title, const Shown &findings)
{
    if (!findings.empty())
        line(text(title));
    for (const Finding *finding : findings) {
        const Place place = m_file.analysis().source.place(finding->offset);
        line(QString(QLatin1String("    %1:%2: %3 [%4]"))
                 .arg(QString::number(place.line), QString::number(place.column),
                      Output::printable(finding->text), text(finding->rule)));
    }
}

/// The same as JSON.
class ShownJson
{
public:
    ShownJson(const LoadedFile &file, bool reveal) : m_file(file), m_reveal(reveal) {}

    QByteArray document(const QStringList &tags);

private:
    void global();
    void config(const AppConfig &config, const Node *object);
    void application(const QString &tag);
    void findings(const char *name, const Shown &findings);
    void place(int offset);

    const LoadedFile &m_file;
    bool m_reveal;
    JsonText m_json;
};

void ShownJson::place(int offset)
{
    const Place place = m_file.analysis().source.place(offset);
    m_json.member("line", place.line);
    m_json.member("column", place.column);
}

void ShownJson::config(const AppConfig &config, const Node *object)
{
    for (const ValueText::Entry &entry : ValueText::entriesOf(config, m_reveal)) {
        m_json.key(entry.property);
        m_json.beginObject();
        m_json.member("value", entry.shown);
        m_json.member("type", ValueText::typeOf(entry.value));
        const Node *node = m_file.valueAt(object, entry.path, entry.value);
        if (node)
            place(node->begin);
        m_json.endObject();
    }
}

void ShownJson::global()
{
    m_json.key("global");
    m_json.beginObject();
    if (m_file.port().isValid())
        m_json.member("RemoteInspectorPort", m_file.port());
    config(m_file.state().globalConfig, m_file.global());
    m_json.endObject();
}

void ShownJson::application(const QString &tag)
{
    const Node *object = m_file.application(tag);
    m_json.beginObject();
    m_json.member("tag", tag);
    if (object)
        place(object->begin);
    m_json.key("properties");
    m_json.beginObject();
    config(m_file.state().applications.value(tag), object);
    m_json.endObject();
    m_json.endObject();
}

void ShownJson::findings(const char *name, const Shown &findings)
{
    m_json.key(name);
    m_json.beginArray();
    for (const Finding *finding : findings) {
        m_json.beginObject();
        place(finding->offset);
        m_json.member("rule", text(finding->rule));
        m_json.member("text", finding->text);
        m_json.endObject();
    }
    m_json.endArray();
}

QByteArray ShownJson::document(const QStringList &tags)
{
    m_json.beginObject();
    m_json.member("file", m_file.name());
    m_json.member("why", m_file.why());
    m_json.member("version", m_file.version());
    m_json.member("usable", m_file.state().isUsable());
    global();
    m_json.key("applications");
    m_json.beginArray();
    for (const QString &tag : tags)
        application(tag);
    m_json.endArray();
    findings("skipped", skippedIn(m_file));
    findings("missingFiles", chosenIn(m_file, isMissing));
    m_json.endObject();
    return m_json.document();
}

} // namespace

int Program::show(const Invocation &invocation, Output &output)
{
    ExitStatus status;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, invocation, &status);
    if (!file)
        return status;
    if (file->isRead() && !haveTags(*file, invocation.arguments))
        return Found;
    const QStringList tags =
        file->isRead() && !invocation.arguments.isEmpty() ? invocation.arguments : file->tags();
    if (invocation.format == Format::Json) {
        output.writeBytes(ShownJson(*file, invocation.reveal).document(tags));
    } else {
        ShownText shown(*file, invocation.reveal, output);
        shown.global();
        for (const QString &tag : tags)
            shown.application(tag);
        shown.findings("\nSkipped or lost:", skippedIn(*file));
        shown.findings("\nFiles that are missing:", chosenIn(*file, isMissing));
    }
    return file->isRead() ? Success : Found;
}

int Program::list(const Invocation &invocation, Output &output)
{
    ExitStatus status;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, invocation, &status);
    if (!file)
        return status;
    if (!file->isRead()) {
        file->complainUnread();
        return Found;
    }
    if (!haveTags(*file, invocation.arguments))
        return Found;
    if (!file->state().isUsable())
        Output::complain(file->name() + text(": ") + LoadedFile::unusableText());
    const QStringList names = invocation.arguments.isEmpty()
        ? file->tags()
        : propertiesOf(*file, invocation.arguments.first());
    if (invocation.format == Format::Json) {
        JsonText json;
        json.value(names);
        output.writeBytes(json.document());
        return Success;
    }
    for (const QString &name : names)
        output.write(Output::printable(name) + QLatin1Char('\n'));
    return Success;
}
