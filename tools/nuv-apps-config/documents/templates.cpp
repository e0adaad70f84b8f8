// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/templates.h"

#include "json/jsonwriter.h"
#include "tools/nuv-apps-config/documents/deviceexamples.h"
#include "tools/nuv-apps-config/properties/properties.h"

#include <QStringList>

#include <algorithm>

namespace {

// What is in the template as a remark only: values that a device must have its own of, and older
// names of others.
const char *const remarkOnly[] = { "UserAgent",
                                   "UserScript",
                                   "HttpProxy",
                                   "HttpReferrer",
                                   "RemoteInspectorPort",
                                   "Certificate",
                                   "OfflineStorageDatabaseEnabled",
                                   "OfflineWebApplicationCacheEnabled" };

bool isRemarkOnly(const Property &property)
{
    return std::any_of(std::begin(remarkOnly), std::end(remarkOnly),
                       [&](const char *key) { return qstrcmp(key, property.key) == 0; });
}

QByteArray member(const QByteArray &key, const QByteArray &value, int indentation)
{
    return QByteArray(indentation, ' ') + '"' + key + "\": " + value;
}

QByteArray quoted(const QByteArray &text)
{
    return '"' + JsonWriter::escapeString(QString::fromLatin1(text)) + '"';
}

QByteArray remark(const Property &property, int indentation)
{
    QByteArray text = property.description;
    if (isRemarkOnly(property))
        text += QByteArray(" For example: ") + property.example;
    return member(QByteArray("_comment ") + property.key, quoted(text), indentation);
}

QByteArray members(Section section, int indentation)
{
    QList<QByteArray> lines;
    for (const Property *property : Properties::of(section)) {
        lines.append(remark(*property, indentation));
        if (!isRemarkOnly(*property))
            lines.append(member(property->key, property->example, indentation));
    }
    return lines.join(",\n") + '\n';
}

// Every key, with what it means.
QByteArray everything()
{
    return "{\n"
        + member(
               "_comment",
               quoted("A configuration to start from. Keys that begin with _comment are ignored."),
               4)
        + ",\n    \"Global\": {\n" + members(Section::Global, 8)
        + "    },\n    \"Applications\": [\n        {\n" + members(Section::Application, 12)
        + "        }\n    ]\n}\n";
}

// What a launcher needs to show a page.
QByteArray minimal()
{
    return "{\n    \"Global\": { \"Version\": 1 },\n    \"Applications\": [\n"
           "        { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" }\n    ]\n}\n";
}

} // namespace

QStringList Templates::names()
{
    QStringList names(QLatin1String("minimal"));
    for (const DeviceExample &example : DeviceExamples::all())
        names.append(QLatin1String(example.name));
    return names << QLatin1String("all");
}

QByteArray Templates::text(const QString &name)
{
    if (name == QLatin1String("minimal"))
        return minimal();
    if (name == QLatin1String("all"))
        return everything();
    for (const DeviceExample &example : DeviceExamples::all()) {
        if (name == QLatin1String(example.name))
            return DeviceExamples::configuration(example);
    }
    return QByteArray();
}
