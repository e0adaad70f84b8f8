#include "tools/nuv-apps-config/valuerules.h"

#include "tools/nuv-apps-config/literals.h"

#include <cmath>

namespace {

const double PortNotSet = 4294967295.0;

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString name(const Property &property)
{
    return QLatin1Char('"') + QLatin1String(property.key) + QLatin1Char('"');
}

bool isWhole(double number)
{
    return std::floor(number) == number;
}

bool fits(const Property &property, const Node &value)
{
    switch (property.kind) {
    case Kind::Switch:
        return value.type == Node::Bool;
    case Kind::Text:
    case Kind::Address:
    case Kind::FilePath:
        return value.type == Node::Text;
    case Kind::Number:
        return value.type == Node::Number;
    case Kind::Integer:
    case Kind::Port:
        return value.type == Node::Number && isWhole(value.value.toDouble());
    case Kind::Version:
        return value.type == Node::Number || value.type == Node::Text;
    case Kind::Object:
        return value.type == Node::Object;
    case Kind::Array:
        return value.type == Node::Array;
    }
    return true;
}

// What to write, for the mistakes that are made most.
QString hintFor(const Property &property, const Node &value)
{
    const QString given = value.value.toString();
    const bool isText = value.type == Node::Text;
    bool isNumber = false;
    given.toDouble(&isNumber);
    if (property.kind == Kind::Switch && isText
        && (given.toLower() == text("true") || given.toLower() == text("false")))
        return text("write ") + given.toLower() + text(" without quotes");
    if (property.kind == Kind::Switch && value.type == Node::Number)
        return text("write true or false");
    if (isText && isNumber && Properties::hasRange(property))
        return text("write the number without quotes");
    return QString();
}

void checkPort(const Property &property, const Node &value, Findings &findings)
{
    const double port = value.value.toDouble();
    if (port == -1 || port == PortNotSet)
        findings.add("port-means-unset", value.begin, value.length(),
                     text("this port means \"not set\""), text("leave the key out"));
    else if (port < property.minimum || port > property.maximum)
        findings.add("port-out-of-range", value.begin, value.length(),
                     text("there is no such port: ports go from 1 to 65535"));
}

void checkRange(const Property &property, const Node &value, Findings &findings)
{
    const double number = value.value.toDouble();
    if (number >= property.minimum && number <= property.maximum)
        return;
    const bool isPercentage = property.maximum <= 10 && number > property.maximum && number <= 1000;
    findings.add("out-of-range", value.begin, value.length(),
                 QString(QLatin1String("%1 must be %2"))
                     .arg(name(property), Properties::rangeText(property)),
                 isPercentage
                     ? QString(QLatin1String("it is no percentage: write %1")).arg(number / 100)
                     : QString());
}

// An object that names its size serves the loader as an array.
bool isArrayInDisguise(const Property &property, const Node &value, const Document &document)
{
    return property.kind == Kind::Array && value.type == Node::Object
        && document.member(value, text("size"));
}

} // namespace

QString ValueRules::kindOf(const Node &value)
{
    switch (value.type) {
    case Node::Null:
        return text("null");
    case Node::Bool:
        return value.value.toBool() ? text("true") : text("false");
    case Node::Number:
        return isWhole(value.value.toDouble()) ? text("a whole number") : text("a number");
    case Node::Text:
        return text("a text");
    case Node::Object:
        return text("an object");
    case Node::Array:
        return text("an array");
    case Node::Missing:
        break;
    }
    return text("nothing");
}

void ValueRules::checkVersion(const Node &version, Findings &findings)
{
    const float number = static_cast<float>(version.value.toDouble());
    if (version.type == Node::Missing || version.isContainer() || (number >= 1.0f && number < 2.0f))
        return;
    findings.add("unusable-version", version.begin, version.length(),
                 text("this version does not load any application"),
                 text("versions from 1 up to, but not including, 2 pass: write 1"));
}

void ValueRules::check(const SourceText &source, const Property &property, const Node &value,
                       const Document &document, Findings &findings)
{
    const char *const bytes = source.bytes().constData();
    const bool isTag =
        property.section == Section::Application && qstrcmp(property.key, "Tag") == 0;
    const bool isOdd = value.type == Node::Number
        && !Literals::isPlainNumber(bytes + value.begin, bytes + value.end);
    if (value.type == Node::Missing || isTag || isOdd
        || isArrayInDisguise(property, value, document))
        return;
    if (value.type == Node::Null) {
        if (property.kind != Kind::Version)
            findings.add("null-value", value.begin, value.length(),
                         name(property) + text(" is null, which counts as not configured"));
    } else if (!fits(property, value)) {
        findings.add("wrong-kind", value.begin, value.isContainer() ? 1 : value.length(),
                     QString(QLatin1String("%1 must be %2, not %3"))
                         .arg(name(property), Properties::kindName(property.kind), kindOf(value)),
                     hintFor(property, value));
    } else if (property.kind == Kind::Port) {
        checkPort(property, value, findings);
    } else if (property.kind == Kind::Number || property.kind == Kind::Integer) {
        checkRange(property, value, findings);
    }
}
