#include "tools/nuv-apps-config/program.h"

#include "settings/jsonsettingsformat.h"
#include "tools/nuv-apps-config/loadedfile.h"
#include "tools/nuv-apps-config/properties.h"
#include "tools/nuv-apps-config/secrets.h"
#include "tools/nuv-apps-config/valuetext.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// What a person may call a property, as the library calls it.
QString propertyNamed(const QString &name)
{
    const Property *property = Properties::findAnywhere(name);
    return property && property->property ? QString(QLatin1String(property->property)) : name;
}

QJsonObject entryObject(const QVariant &value, const QVariant &shown)
{
    QJsonObject entry;
    entry.insert(QLatin1String("value"), ValueText::json(shown));
    entry.insert(QLatin1String("type"), ValueText::typeOf(value));
    return entry;
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

    static QVariant portOf(const LoadedFile &file)
    {
        const quint32 port = file.state().remoteInspectorPort;
        return port == WebAppSettingsPrivate::NoPort ? QVariant() : QVariant(port);
    }

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
    compare(global, QLatin1String("Version"), m_a.state().version, m_b.state().version);
    compare(global, QLatin1String("RemoteInspectorPort"), portOf(m_a), portOf(m_b));
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

QString side(char sign, const Difference &difference, const QVariant &value, bool reveal)
{
    if (!value.isValid())
        return QString();
    return QString(QLatin1String("%1 %2: %3 = %4\n"))
        .arg(QLatin1Char(sign))
        .arg(Output::printable(difference.where), difference.key,
             ValueText::shown(maybeMasked(difference.key, value, reveal)));
}

QJsonArray toJson(const QList<Difference> &differences, bool reveal)
{
    QJsonArray array;
    for (const Difference &difference : differences) {
        QJsonObject entry;
        entry.insert(QLatin1String("where"), difference.where);
        entry.insert(QLatin1String("key"), difference.key);
        const QString key = difference.key;
        if (difference.before.isValid())
            entry.insert(QLatin1String("before"),
                         ValueText::json(maybeMasked(key, difference.before, reveal)));
        if (difference.after.isValid())
            entry.insert(QLatin1String("after"),
                         ValueText::json(maybeMasked(key, difference.after, reveal)));
        array.append(entry);
    }
    return array;
}

} // namespace

int Program::get(const Invocation &invocation, Output &output)
{
    QString error;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, &error);
    if (!file) {
        Output::complain(error);
        return Trouble;
    }
    const QString tag = invocation.arguments.at(0);
    const QString key = invocation.arguments.at(1);
    if (!file->state().applications.contains(tag)) {
        Output::complain(
            QString(QLatin1String("%1 has no application \"%2\"")).arg(file->name(), tag));
        return Found;
    }
    const QVariant value = file->state().applications.value(tag).getProperty(propertyNamed(key));
    if (!value.isValid()) {
        Output::complain(QString(QLatin1String("%1 has no value for %2")).arg(tag, key));
        return Found;
    }
    output.write(ValueText::plain(value) + QLatin1Char('\n'));
    return Success;
}

int Program::keys(const Invocation &invocation, Output &output)
{
    QString error;
    const std::unique_ptr<LoadedFile> file = LoadedFile::open(invocation.file, &error);
    if (!file) {
        Output::complain(error);
        return Trouble;
    }
    if (!file->isParsed()) {
        Output::complain(file->name()
                         + QLatin1String(": a syntax error, so there are no keys; see check"));
        return Found;
    }
    const QSettings &settings = *file->state().settings;
    QJsonObject root;
    for (const QString &key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        const QVariant shown = maybeMasked(key, value, invocation.reveal);
        root.insert(key, entryObject(value, shown));
        if (invocation.format == Format::Text)
            output.write(QString(QLatin1String("%1 = %2  (%3)\n"))
                             .arg(Output::printable(key), ValueText::shown(shown),
                                  ValueText::typeOf(value)));
    }
    if (invocation.format == Format::Json)
        output.writeBytes(QJsonDocument(root).toJson());
    return Success;
}

int Program::diff(const Invocation &invocation, Output &output)
{
    QString error;
    const std::unique_ptr<LoadedFile> a = LoadedFile::open(invocation.arguments.at(0), &error);
    const std::unique_ptr<LoadedFile> b =
        a ? LoadedFile::open(invocation.arguments.at(1), &error) : nullptr;
    if (!b) {
        Output::complain(error);
        return Trouble;
    }
    for (const LoadedFile *file : { a.get(), b.get() }) {
        if (file->isParsed())
            continue;
        Output::complain(file->name() + QLatin1String(": a syntax error; see check"));
        return Trouble;
    }
    const QList<Difference> differences = Comparison(*a, *b).differences();
    if (invocation.format == Format::Json)
        output.writeBytes(QJsonDocument(toJson(differences, invocation.reveal)).toJson());
    for (const Difference &difference : differences) {
        if (invocation.format == Format::Text)
            output.write(side('-', difference, difference.before, invocation.reveal)
                         + side('+', difference, difference.after, invocation.reveal));
    }
    return differences.isEmpty() ? Success : Found;
}
