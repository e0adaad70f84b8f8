#include "tools/nuv-apps-config/program.h"

#include "tools/nuv-apps-config/loadedfile.h"
#include "tools/nuv-apps-config/secrets.h"
#include "tools/nuv-apps-config/valuetext.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

bool isSkip(const Finding &finding, bool isParsed)
{
    if (!isParsed)
        return finding.severity == Severity::Error;
    return std::any_of(std::begin(skips), std::end(skips),
                       [&](const char *rule) { return qstrcmp(rule, finding.rule) == 0; });
}

// Whether all the tags are there; says which are not.
bool haveTags(const LoadedFile &file, const QStringList &tags)
{
    bool haveAll = true;
    for (const QString &tag : tags) {
        if (file.state().applications.contains(tag))
            continue;
        Output::complain(
            QString(QLatin1String("%1 has no application \"%2\"")).arg(file.name(), tag));
        haveAll = false;
    }
    return haveAll;
}

QString gateText(const LoadedFile &file)
{
    if (!file.isParsed())
        return text("the file has a syntax error, so nothing of it is read; see check");
    if (file.state().isUsable())
        return text("applications are loaded");
    return text("no application is loaded: the version must be at least 1 and below 2");
}

QString versionText(const LoadedFile &file)
{
    return QString::number(double(file.state().version), 'g', 9);
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
    void skipped();

private:
    void config(const AppConfig &config, const Node *object);
    void line(const QString &what) { m_output.write(what + QLatin1Char('\n')); }

    const LoadedFile &m_file;
    bool m_reveal;
    Output &m_output;
};

void ShownText::global()
{
    const WebAppSettingsPrivate &state = m_file.state();
    line(QString(QLatin1String("File: %1 (%2)"))
             .arg(Output::printable(m_file.name()), Output::printable(m_file.why())));
    line(QString(QLatin1String("Version: %1 (%2)")).arg(versionText(m_file), gateText(m_file)));
    line(text("Remote inspector port: ")
         + (state.remoteInspectorPort == WebAppSettingsPrivate::NoPort
                ? text("not set")
                : QString::number(state.remoteInspectorPort)));
    const bool hasCertificate = state.globalConfig.getCertPath().isValid();
    line(text("Global certificate: ") + (hasCertificate ? QString() : text("not set")));
    config(state.globalConfig, m_file.global());
}

void ShownText::config(const AppConfig &config, const Node *object)
{
    const QList<ValueText::Entry> entries = ValueText::entriesOf(config, m_reveal);
    int width = 0;
    for (const ValueText::Entry &entry : entries)
        width = qMax(width, entry.property.size());
    for (const ValueText::Entry &entry : entries) {
        const Node *node = object ? m_file.valueAt(*object, entry.path) : nullptr;
        line(QString(QLatin1String("    %1 = %2  (%3, %4)"))
                 .arg(entry.property.leftJustified(width), ValueText::shown(entry.value),
                      ValueText::typeOf(config.getProperty(entry.property)),
                      m_file.placeText(node)));
    }
}

void ShownText::application(const QString &tag)
{
    const Node *object = m_file.application(tag);
    line(QString(QLatin1String("\nApplication \"%1\" (%2)"))
             .arg(Output::printable(tag), m_file.placeText(object)));
    config(m_file.state().applications.value(tag), object);
}

void ShownText::skipped()
{
    bool isFirst = true;
    for (const Finding &finding : m_file.analysis().findings.all()) {
        if (!isSkip(finding, m_file.isParsed()))
            continue;
        if (isFirst)
            line(text("\nSkipped or lost:"));
        isFirst = false;
        const Place place = m_file.analysis().source.place(finding.offset);
        line(QString(QLatin1String("    %1:%2: %3 [%4]"))
                 .arg(place.line)
                 .arg(place.column)
                 .arg(Output::printable(finding.text), text(finding.rule)));
    }
}

/// The same as JSON.
class ShownJson
{
public:
    ShownJson(const LoadedFile &file, bool reveal) : m_file(file), m_reveal(reveal) {}

    QByteArray document(const QStringList &tags) const;

private:
    QJsonObject config(const AppConfig &config, const Node *object) const;
    QJsonObject global() const;
    QJsonArray skipped() const;
    static void insertPlace(QJsonObject &object, const Place &place);

    const LoadedFile &m_file;
    bool m_reveal;
};

void ShownJson::insertPlace(QJsonObject &object, const Place &place)
{
    object.insert(text("line"), place.line);
    object.insert(text("column"), place.column);
}

QJsonObject ShownJson::config(const AppConfig &config, const Node *object) const
{
    QJsonObject result;
    for (const ValueText::Entry &entry : ValueText::entriesOf(config, m_reveal)) {
        QJsonObject value;
        value.insert(text("value"), ValueText::json(entry.value));
        value.insert(text("type"), ValueText::typeOf(config.getProperty(entry.property)));
        const Node *node = object ? m_file.valueAt(*object, entry.path) : nullptr;
        if (node)
            insertPlace(value, m_file.analysis().source.place(node->begin));
        result.insert(entry.property, value);
    }
    return result;
}

QJsonObject ShownJson::global() const
{
    const WebAppSettingsPrivate &state = m_file.state();
    QJsonObject result = config(state.globalConfig, m_file.global());
    if (state.remoteInspectorPort != WebAppSettingsPrivate::NoPort)
        result.insert(text("RemoteInspectorPort"), double(state.remoteInspectorPort));
    return result;
}

QJsonArray ShownJson::skipped() const
{
    QJsonArray result;
    for (const Finding &finding : m_file.analysis().findings.all()) {
        if (!isSkip(finding, m_file.isParsed()))
            continue;
        QJsonObject entry;
        insertPlace(entry, m_file.analysis().source.place(finding.offset));
        entry.insert(text("rule"), text(finding.rule));
        entry.insert(text("text"), finding.text);
        result.append(entry);
    }
    return result;
}

QByteArray ShownJson::document(const QStringList &tags) const
{
    QJsonArray applications;
    for (const QString &tag : tags) {
        QJsonObject entry;
        const Node *object = m_file.application(tag);
        entry.insert(text("tag"), tag);
        if (object)
            insertPlace(entry, m_file.analysis().source.place(object->begin));
        entry.insert(text("properties"), config(m_file.state().applications.value(tag), object));
        applications.append(entry);
    }
    QJsonObject root;
    root.insert(text("file"), m_file.name());
    root.insert(text("why"), m_file.why());
    root.insert(text("version"), double(m_file.state().version));
    root.insert(text("usable"), m_file.state().isUsable());
    root.insert(text("global"), global());
    root.insert(text("applications"), applications);
    root.insert(text("skipped"), skipped());
    return QJsonDocument(root).toJson();
}

} // namespace

int Program::show(const Invocation &invocation, Output &output)
{
    QString error;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, &error);
    if (!file) {
        Output::complain(error);
        return Trouble;
    }
    if (!haveTags(*file, invocation.arguments))
        return Found;
    const QStringList tags = invocation.arguments.isEmpty() ? file->tags() : invocation.arguments;
    if (invocation.format == Format::Json) {
        output.writeBytes(ShownJson(*file, invocation.reveal).document(tags));
        return Success;
    }
    ShownText shown(*file, invocation.reveal, output);
    shown.global();
    for (const QString &tag : tags)
        shown.application(tag);
    shown.skipped();
    return Success;
}

int Program::list(const Invocation &invocation, Output &output)
{
    QString error;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, &error);
    if (!file) {
        Output::complain(error);
        return Trouble;
    }
    const QStringList tags = file->tags();
    if (invocation.format == Format::Json)
        output.writeBytes(QJsonDocument(QJsonArray::fromStringList(tags)).toJson());
    else if (!tags.isEmpty())
        output.write(Output::printable(tags.join(QChar(0))).replace(text("\\u0000"), text("\n"))
                     + QLatin1Char('\n'));
    return Success;
}
