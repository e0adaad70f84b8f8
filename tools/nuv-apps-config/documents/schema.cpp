// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/reference.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QJsonValue exampleOf(const Property &property)
{
    const QByteArray wrapped = QByteArray("[") + property.example + ']';
    return QJsonDocument::fromJson(wrapped).array().at(0);
}

// An escape such as \t is in a path that was written with single backslashes.
const char noControls[] = "^(?![\\s\\S]*[\\x08-\\x0a\\x0c\\x0d])";
const char webAddress[] = "[Hh][Tt][Tt][Pp][Ss]?://[^/?#]";
const char otherAddress[] =
    "[Ff][Tt][Pp]://[^/"
    "?#\\s]|([Aa][Bb][Oo][Uu][Tt]|[Dd][Aa][Tt][Aa]|[Ff][Ii][Ll][Ee]|[Qq][Rr][Cc]):";
const char filePath[] = "/(?!/)|[^:/?#\\s]([^:/?#]*$|[^:/?#]*[/?#])";
const char noOtherScheme[] = "^(?!(?![Hh][Tt][Tt][Pp]://)[A-Za-z][A-Za-z0-9+.-]*://)";
const char hostAndPort[] = "([^\\s:]|:[\\s\\S]*@)[\\s\\S]*:[0-9]+/?$";
const char noBlankAtEdge[] = "^[^\\s]([\\s\\S]*[^\\s])?$";
const char oneLine[] = "^[^\\x00-\\x1f\\x7f]*$";
const char hostAlone[] = "^(\\[?[0-9A-Fa-f:.]*:[0-9A-Fa-f:.]*\\]?|[^\\s/:*@?#]+)$";

// What a string of the kind must look like, as far as a pattern can tell; empty for any string.
QString patternOf(const Property &property)
{
    switch (property.kind) {
    case Kind::Address:
        return text(noControls) + QLatin1Char('(')
            + (QStringList() << text(webAddress) << text(otherAddress) << text(filePath))
                  .join(QLatin1Char('|'))
            + QLatin1Char(')');
    case Kind::Referrer:
        return QLatin1Char('^') + text(webAddress);
    case Kind::Proxy:
        return text(noOtherScheme) + text(hostAndPort);
    case Kind::UserAgent:
        return text(oneLine);
    case Kind::Domain:
        return text(hostAlone);
    case Kind::FilePath:
        return text(noControls) + text("[\\s\\S]");
    default:
        return qstrcmp(property.key, "Tag") == 0 ? text(noBlankAtEdge) : QString();
    }
}

// What the pattern means, for the hover text: linters refuse a schema with a keyword for it that is not of the
// standard.
QString sentenceOf(const Property &property)
{
    switch (property.kind) {
    case Kind::Address:
        return text(
            "An address begins with http://, https:// or file:///; one without a scheme is a "
            "file next to the configuration file. It has no control characters.");
    case Kind::Referrer:
        return text("A referrer begins with http:// or https://, and has a host.");
    case Kind::Proxy:
        return text("A proxy is a host and a port, as in proxy.example:8080.");
    case Kind::UserAgent:
        return text("A user agent is one line, without control characters.");
    case Kind::Domain:
        return text("A domain is a host alone, without a scheme, a port or a path, as in "
                    "broadcaster.example.");
    case Kind::FilePath:
        return text("A path has at least one character and no control characters: a backslash is "
                    "written twice.");
    default:
        return text("A tag has at least one character, and no blanks at its begin or end.");
    }
}

// What an editor shows when the pointer rests on a key.
QString hoverText(const Property &property)
{
    QString hover = text(property.description);
    if (property.unit[0])
        hover += text(" Unit: ") + text(property.unit) + QLatin1Char('.');
    const QStringList needs = Properties::neededKeys(property);
    if (!needs.isEmpty())
        hover += text(" Needs ") + needs.join(text(" or ")) + QLatin1Char('.');
    if (!patternOf(property).isEmpty())
        hover += QLatin1Char(' ') + sentenceOf(property);
    return hover + text(" When missing: ") + text(property.whenMissing);
}

QJsonObject sectionSchema(Section section);

QJsonObject typed(const char *type)
{
    QJsonObject schema;
    schema.insert(text("type"), text(type));
    return schema;
}

QJsonObject arrayOf(Section section)
{
    QJsonObject schema = typed("array");
    schema.insert(text("items"), sectionSchema(section));
    return schema;
}

void insertRange(const Property &property, QJsonObject *schema)
{
    schema->insert(text("minimum"), property.minimum);
    schema->insert(text("maximum"), property.maximum);
}

// A text that holds the number passes as well.
QJsonObject versionSchema()
{
    QJsonObject number = typed("number");
    number.insert(text("minimum"), 1);
    number.insert(text("exclusiveMaximum"), 2);
    QJsonObject words = typed("string");
    words.insert(text("pattern"), text("^1(\\.[0-9]+)?$"));
    QJsonObject schema;
    schema.insert(text("anyOf"), QJsonArray() << number << words);
    return schema;
}

QJsonObject textSchema(const Property &property)
{
    QJsonObject schema = typed("string");
    const QString pattern = patternOf(property);
    if (!pattern.isEmpty())
        schema.insert(text("pattern"), pattern);
    return schema;
}

QJsonObject kindSchema(const Property &property)
{
    if (Properties::isText(property))
        return textSchema(property);
    switch (property.kind) {
    case Kind::Switch:
        return typed("boolean");
    case Kind::Version:
        return versionSchema();
    case Kind::Object:
        return sectionSchema(qstrcmp(property.key, "Global") == 0 ? Section::Global
                                                                  : Section::Certificate);
    case Kind::Array:
        return arrayOf(property.section == Section::Document ? Section::Application
                                                             : Section::Domain);
    default:
        break;
    }
    QJsonObject schema = typed(property.kind == Kind::Number ? "number" : "integer");
    insertRange(property, &schema);
    return schema;
}

QJsonArray requiredIn(Section section)
{
    switch (section) {
    case Section::Document:
        return QJsonArray() << text("Global");
    case Section::Global:
        return QJsonArray() << text("Version");
    case Section::Application:
        return QJsonArray() << text("Tag");
    case Section::Domain:
        return QJsonArray() << text("Domain");
    case Section::Certificate:
        break;
    }
    return QJsonArray();
}

QJsonObject certificateDependencies()
{
    const QJsonArray path = QJsonArray() << text("Path");
    QJsonObject dependencies;
    dependencies.insert(text("PrivateKey"), path);
    dependencies.insert(text("PassPhrase"), path);
    return dependencies;
}

QJsonObject sectionSchema(Section section)
{
    QJsonObject properties;
    for (const Property *property : Properties::of(section)) {
        QJsonObject schema = kindSchema(*property);
        schema.insert(text("title"), text(property->key));
        schema.insert(text("description"), hoverText(*property));
        schema.insert(text("examples"), QJsonArray() << exampleOf(*property));
        properties.insert(text(property->key), schema);
    }
    QJsonObject ownName = typed("string");
    ownName.insert(text("description"),
                   text("The JSON Schema of the file, for editors. The library ignores it."));
    properties.insert(text("$schema"), ownName);
    QJsonObject remarks;
    remarks.insert(text("^_comment"), QJsonObject());

    QJsonObject schema = typed("object");
    schema.insert(text("properties"), properties);
    schema.insert(text("patternProperties"), remarks);
    schema.insert(text("additionalProperties"), false);
    if (!requiredIn(section).isEmpty())
        schema.insert(text("required"), requiredIn(section));
    if (section == Section::Certificate)
        schema.insert(text("dependencies"), certificateDependencies());
    return schema;
}

} // namespace

QByteArray Reference::schema()
{
    QJsonObject schema = sectionSchema(Section::Document);
    schema.insert(text("$schema"), text("http://json-schema.org/draft-07/schema#"));
    schema.insert(text("title"), text("AppsConfig.json"));
    schema.insert(text("description"),
                  text("The configuration of web applications that nuvlaunchersupport reads."));
    return QJsonDocument(schema).toJson();
}
