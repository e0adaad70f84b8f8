// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/report/jsontext.h"
#include "tools/nuv-apps-config/commands/loadedfile.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/text/spelling.h"
#include "tools/nuv-apps-config/report/valuetext.h"

#include <QSettings>

namespace {

// What a person may call a property, as the library calls it.
QString propertyNamed(const QString &name)
{
    const Property *property = Properties::findAnywhere(name);
    return property && property->property ? QString(QLatin1String(property->property)) : name;
}

QString noValue(const QString &tag, const QString &key)
{
    const QString property = propertyNamed(key);
    if (Properties::findProperty(property))
        return QString(QLatin1String("%1 has no value for %2")).arg(tag, key);
    QStringList names;
    for (const Property &known : Properties::all()) {
        if (known.property)
            names.append(QLatin1String(known.property));
    }
    return QString(QLatin1String("there is no key \"%1\"%2"))
        .arg(key, Spelling::didYouMean(key, names));
}

/// One difference between two files.
struct Difference {
    QString where; ///< the tag, or "Global"
    QString key;
    QVariant before; ///< invalid: was not there
    QVariant after;
};

class Comparison
{
public:
    Comparison(const LoadedFile &a, const LoadedFile &b) : m_a(a), m_b(b) {}

    QList<Difference> differences();

private:
    void compare(const QString &where, const QString &key, const QVariant &a, const QVariant &b);
    void compare(const QString &where, const AppConfig &a, const AppConfig &b);
    void compareGlobals();
    void compareApplications();

    const LoadedFile &m_a;
    const LoadedFile &m_b;
    QList<Difference> m_differences;
};

void Comparison::compare(const QString &where, const QString &key, const QVariant &a,
                         const QVariant &b)
{
    if (ValueText::isSame(a, b))
        return;
    m_differences.append(Difference { where, key, a, b });
}

void Comparison::compare(const QString &where, const AppConfig &a, const AppConfig &b)
{
    for (const Property &property : Properties::all()) {
        if (!property.property)
            continue;
        const QString name = QLatin1String(property.property);
        compare(where, name, a.getProperty(name), b.getProperty(name));
    }
}

void Comparison::compareGlobals()
{
    const QString global = QLatin1String("Global");
    compare(global, QLatin1String("Version"), m_a.version(), m_b.version());
    compare(global, QLatin1String("RemoteInspectorPort"), m_a.port(), m_b.port());
    compare(global, m_a.state().globalConfig, m_b.state().globalConfig);
}

void Comparison::compareApplications()
{
    const QString tagKey = QLatin1String("Tag");
    const QHash<QString, AppConfig> &before = m_a.state().applications;
    const QHash<QString, AppConfig> &after = m_b.state().applications;
    for (const QString &tag : m_a.tags()) {
        if (!after.contains(tag))
            compare(tag, tagKey, tag, QVariant());
        compare(tag, before.value(tag), after.value(tag));
    }
    for (const QString &tag : m_b.tags()) {
        if (before.contains(tag))
            continue;
        compare(tag, tagKey, QVariant(), tag);
        compare(tag, AppConfig(), after.value(tag));
    }
}

QList<Difference> Comparison::differences()
{
    compareGlobals();
    compareApplications();
    return m_differences;
}

QVariant maybeMasked(const QString &key, const QVariant &value, bool reveal)
{
    return reveal ? value : Secrets::shown(key, value);
}

QString side(const char *sign, const Difference &difference, const QVariant &value, bool reveal)
{
    if (!value.isValid())
        return QString();
    return QString(QLatin1String("%1 %2: %3 = %4\n"))
        .arg(QLatin1String(sign), Output::printable(difference.where), difference.key,
             ValueText::shown(maybeMasked(difference.key, value, reveal)));
}

QByteArray toJson(const QList<Difference> &differences, bool reveal)
{
    JsonText json;
    json.beginArray();
    for (const Difference &difference : differences) {
        const QString key = difference.key;
        json.beginObject();
        json.member("where", difference.where);
        json.member("key", key);
        if (difference.before.isValid())
            json.member("before", maybeMasked(key, difference.before, reveal));
        if (difference.after.isValid())
            json.member("after", maybeMasked(key, difference.after, reveal));
        json.endObject();
    }
    json.endArray();
    return json.document();
}

// `secrets` is null where they are to be revealed.
void writeKeysAsText(const QSettings &settings, const Secrets *secrets, Output &output)
{
    for (const QString &key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        output.write(QString(QLatin1String("%1 = %2  (%3)\n"))
                         .arg(Output::printable(secrets ? secrets->path(key) : key),
                              ValueText::shown(secrets ? secrets->value(key, value) : value),
                              ValueText::typeOf(value)));
    }
}

QByteArray keysAsJson(const QSettings &settings, const Secrets *secrets)
{
    JsonText json;
    json.beginObject();
    for (const QString &key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        json.key(secrets ? secrets->path(key) : key);
        json.beginObject();
        json.member("value", secrets ? secrets->value(key, value) : value);
        json.member("type", ValueText::typeOf(value));
        json.endObject();
    }
    json.endObject();
    return json.document();
}

} // namespace

int Program::get(const Invocation &invocation, Output &output)
{
    ExitStatus status;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, invocation, &status);
    if (!file)
        return status;
    const QString tag = invocation.arguments.at(0);
    const QString key = invocation.arguments.at(1);
    if (!file->isRead()) {
        file->complainUnread();
        return Found;
    }
    if (!file->hasTag(tag))
        return Found;
    const QVariant value = file->state().applications.value(tag).getProperty(propertyNamed(key));
    if (!value.isValid()) {
        Output::complain(noValue(tag, key));
        return Found;
    }
    output.write(ValueText::plain(value) + QLatin1Char('\n'));
    return Success;
}

int Program::keys(const Invocation &invocation, Output &output)
{
    ExitStatus status;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, invocation, &status);
    if (!file)
        return status;
    if (!file->isRead()) {
        file->complainUnread();
        return Found;
    }
    const Secrets *const secrets = invocation.reveal ? nullptr : file->analysis().secrets.get();
    if (invocation.format == Format::Json)
        output.writeBytes(keysAsJson(file->settings(), secrets));
    else
        writeKeysAsText(file->settings(), secrets, output);
    return Success;
}

int Program::diff(const Invocation &invocation, Output &output)
{
    ExitStatus status;
    const std::unique_ptr<LoadedFile> a =
        LoadedFile::open(invocation.arguments.at(0), invocation, &status);
    const std::unique_ptr<LoadedFile> b =
        a ? LoadedFile::open(invocation.arguments.at(1), invocation, &status) : nullptr;
    if (!b)
        return status;
    for (const LoadedFile *file : { a.get(), b.get() }) {
        if (file->isRead())
            continue;
        file->complainUnread();
        return Found;
    }
    const QList<Difference> differences = Comparison(*a, *b).differences();
    if (invocation.format == Format::Json) {
        output.writeBytes(toJson(differences, invocation.reveal));
        return differences.isEmpty() ? Success : Found;
    }
    for (const Difference &difference : differences)
        output.write(side("-", difference, difference.before, invocation.reveal)
                     + side("+", difference, difference.after, invocation.reveal));
    return differences.isEmpty() ? Success : Found;
}
