// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/valuerules.h"

#include "tools/nuv-apps-config/rules/conversions.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/tokens/literals.h"
#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/rules/textrules.h"

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
    if (Properties::isText(property))
        return value.type == Node::Text;
    switch (property.kind) {
    case Kind::Switch:
        return value.type == Node::Bool;
    case Kind::Integer:
    case Kind::Port:
        return value.type == Node::Number && isWhole(value.value.toDouble());
    case Kind::Version:
        return value.type == Node::Number || value.type == Node::Text;
    case Kind::Object:
        return value.type == Node::Object;
    case Kind::Array:
        return value.type == Node::Array;
    default:
        return value.type == Node::Number;
    }
}

// An example of a secret would be masked. One of objects is long, or has a certificate in it.
bool isExampleShown(const Property &property)
{
    return property.secret != Secret::Whole && property.kind != Kind::Object
        && property.kind != Kind::Array;
}

// How `bytes`, which are to be written instead, differ from what is there.
QString hintFor(const Property &property, const Node &value, const QByteArray &bytes)
{
    if (bytes.isEmpty() && property.kind == Kind::Switch)
        return text("write true or false");
    if (bytes.isEmpty())
        return isExampleShown(property) ? text("for instance ") + text(property.example)
                                        : QString();
    if (Properties::isText(property))
        return text("put it in quotes");
    if (value.isContainer())
        return text("put it in [ ]");
    if (property.kind == Kind::Object) // which part of a certificate it is nobody knows
        return text("write it as { \"Path\": ... }");
    const QString shown = Secrets::shown(text(property.key), QString::fromLatin1(bytes)).toString();
    const bool isTheSame = value.value.toString() == QString::fromLatin1(bytes);
    return text("write ") + shown + (isTheSame ? text(" without quotes") : QString());
}

// What becomes of a value of the wrong kind, where another finding would be expected: an encrypted key
// is not opened then.
QString effect(const Property &property)
{
    return qstrcmp(property.key, "PassPhrase") == 0 ? text("; the launcher ignores it") : QString();
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
        return isWhole(value.value.toDouble()) ? text("an integer") : text("a number");
    case Node::Text:
        return text("a string");
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
    const double given = version.value.toDouble();
    const bool isRoundedUp = given >= 1 && given < 2;
    findings.remove("odd-number", version.begin); // one mistake, and this is what comes of it
    findings
        .add("unusable-version", version.begin, version.length(),
             text(isRoundedUp ? "this version is rounded to 2, and does not load any application"
                              : "this version does not load any application"),
             text("versions from 1 up to, but not including, 2 pass: write 1"))
        .edit = Edits::replace(version, "1");
}

// An object that names its size serves the loader as an array.
bool ValueRules::isArrayInDisguise(const KnownValue &known) const
{
    return known.property.kind == Kind::Array && known.value.type == Node::Object
        && m_document.member(known.value, text("size"));
}

void ValueRules::check(const KnownValue &known)
{
    const Property &property = known.property;
    const Node &value = known.value;
    const char *const bytes = m_source.bytes().constData();
    const bool isTag =
        property.section == Section::Application && qstrcmp(property.key, "Tag") == 0;
    const bool isOdd = value.type == Node::Number
        && !Literals::isPlainNumber(bytes + value.begin, bytes + value.end);
    if (value.type == Node::Missing || isOdd || isArrayInDisguise(known))
        return;
    if (value.type == Node::Null)
        return checkNull(known);
    if (fits(property, value) && Properties::isText(property))
        return TextRules::check(m_source, property, value, m_files, m_findings);
    if (isTag)
        return;
    if (!fits(property, value))
        checkKind(known);
    else if (property.kind == Kind::Port)
        checkPort(known);
    else if (property.kind == Kind::Number || property.kind == Kind::Integer)
        checkRange(known);
}

// What an application or the file cannot do without is missing then, which is reported as that.
void ValueRules::checkNull(const KnownValue &known)
{
    const char *const needed[] = { "Tag", "Url", "Version" };
    for (const char *key : needed) {
        if (qstrcmp(known.property.key, key) == 0)
            return;
    }
    m_findings
        .add("null-value", known.value.begin, known.value.length(),
             name(known.property) + text(" is null, which counts as not configured"),
             text("remove it, or write a value"))
        .edit = Edits::removeMember(m_document, known.object, known.member);
}

void ValueRules::checkKind(const KnownValue &known)
{
    const Node &value = known.value;
    const bool isUnusableVersion =
        known.property.kind == Kind::Version && value.type == Node::Bool && !value.value.toBool();
    if (isUnusableVersion)
        return; // found as such
    const QByteArray bytes =
        Conversions::toKind(known.property, value, m_document,
                            m_source.bytes().mid(value.begin, value.length()), m_files);
    Finding &finding = m_findings.add(
        "wrong-kind", value.begin, value.isContainer() ? 1 : value.length(),
        QString(QLatin1String("%1 must be %2, not %3"))
                .arg(name(known.property), Properties::kindName(known.property.kind), kindOf(value))
            + effect(known.property),
        hintFor(known.property, value, bytes));
    if (!bytes.isEmpty())
        finding.edit = Edits::replace(value, bytes);
}

void ValueRules::checkPort(const KnownValue &known)
{
    const Node &value = known.value;
    const double port = value.value.toDouble();
    if (port == -1 || port == PortNotSet)
        m_findings
            .add("port-means-unset", value.begin, value.length(),
                 text("this port means \"not set\""), text("leave the key out"))
            .edit = Edits::removeMember(m_document, known.object, known.member);
    else if (port < known.property.minimum || port > known.property.maximum)
        m_findings.add("port-out-of-range", value.begin, value.length(),
                       text("there is no such port: ports go from 1 to 65535, and 0 is none"));
}

void ValueRules::checkRange(const KnownValue &known)
{
    const Node &value = known.value;
    const double number = value.value.toDouble();
    if (number >= known.property.minimum && number <= known.property.maximum)
        return;
    const QByteArray pointed = Conversions::withLostPoint(
        known.property, m_source.bytes().mid(value.begin, value.length()));
    const bool hasLostPoint = !pointed.isEmpty();
    if (hasLostPoint) // one slip: the zero in front is not the mistake
        m_findings.remove("leading-zero", value.begin);
    const QByteArray fraction =
        hasLostPoint ? pointed : Conversions::fromPercentage(known.property, number);
    const char *const cause =
        hasLostPoint ? "the point is missing: write " : "it is no percentage: write ";
    Finding &finding = m_findings.add(
        "out-of-range", value.begin, value.length(),
        QString(QLatin1String("%1 must be %2"))
            .arg(name(known.property), Properties::rangeText(known.property)),
        fraction.isEmpty() ? QString() : text(cause) + QString::fromLatin1(fraction));
    if (!fraction.isEmpty())
        finding.edit = Edits::replace(value, fraction);
}
