// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/conversions.h"

#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/tokens/literals.h"
#include "tools/nuv-apps-config/rules/textrules.h"
#include "tools/nuv-apps-config/text/matching.h"

#include <algorithm>
#include <cmath>

namespace {

struct Word {
    const char *spelling;
    bool meaning;
};

const Word switchWords[] = {
    { "true", true }, { "false", false }, { "yes", true }, { "no", false },
    { "on", true },   { "off", false },   { "1", true },   { "0", false },
};

bool isWhole(double number)
{
    return std::floor(number) == number;
}

QByteArray toSwitch(const Node &value)
{
    const bool isScalar = value.type == Node::Number || value.type == Node::Text;
    const QString given = isScalar ? value.value.toString().trimmed().toLower() : QString();
    for (const Word &word : switchWords) {
        if (given == QLatin1String(word.spelling))
            return word.meaning ? "true" : "false";
    }
    return QByteArray();
}

bool isInRange(const Property &property, double number)
{
    return number >= property.minimum && number <= property.maximum;
}

// The comma of other languages is a point.
QByteArray toNumber(const Property &property, const Node &value)
{
    const QByteArray number = value.value.toString().trimmed().toLatin1().replace(',', '.');
    const char *const begin = number.constData();
    const bool isPlain = value.type == Node::Text
        && Literals::isPlainNumber(begin, begin + number.size())
        && (number == "0" || !number.startsWith('0') || number.startsWith("0."));
    const bool mayHaveFraction = property.kind == Kind::Number;
    const double meant = number.toDouble();
    return isPlain && isInRange(property, meant) && (mayHaveFraction || isWhole(meant))
        ? number
        : QByteArray();
}

QByteArray toText(const Property &property, const Node &value, const QByteArray &source,
                  const DeviceFiles &files)
{
    const bool isScalar = value.type == Node::Number || value.type == Node::Bool;
    const QString given = QString::fromLatin1(source);
    return isScalar && TextRules::isUsable(property, given, files) ? Edits::quoted(given)
                                                                   : QByteArray();
}

QByteArray toObject(const Property &property, const Node &value)
{
    const QString given = value.type == Node::Text ? value.value.toString() : QString();
    const bool isPath = qstrcmp(property.key, "Certificate") == 0 && !given.isEmpty()
        && std::all_of(given.begin(), given.end(), [](QChar c) { return c.isPrint(); });
    return isPath ? "{ \"Path\": " + Edits::quoted(value.value.toString()) + " }" : QByteArray();
}

// One element without the array around it.
QByteArray toArray(const Property &property, const Node &value, const Document &document,
                   const QByteArray &source, const DeviceFiles &files)
{
    const bool isOfDomains = property.section == Section::Application;
    const char *const key = isOfDomains ? "Domain" : "Tag";
    if (value.type == Node::Object)
        return document.member(value, QLatin1String(key)) ? "[ " + source + " ]" : QByteArray();
    const Property &domain = *Properties::find(Section::Domain, QLatin1String("Domain"));
    const bool isDomain = isOfDomains && value.type == Node::Text
        && TextRules::isUsable(domain, value.value.toString(), files);
    return isDomain ? "[ { \"Domain\": " + Edits::quoted(value.value.toString()) + " } ]"
                    : QByteArray();
}

} // namespace

QByteArray Conversions::toKind(const Property &property, const Node &value,
                               const Document &document, const QByteArray &source,
                               const DeviceFiles &files)
{
    if (Properties::isText(property))
        return toText(property, value, source, files);
    switch (property.kind) {
    case Kind::Switch:
        return toSwitch(value);
    case Kind::Number:
    case Kind::Integer:
    case Kind::Port:
        return toNumber(property, value);
    case Kind::Version:
        return "1";
    case Kind::Object:
        return toObject(property, value);
    default:
        return toArray(property, value, document, source, files);
    }
}

QByteArray Conversions::withLostPoint(const Property &property, const QByteArray &written)
{
    if (property.kind != Kind::Number || !matches(written, "^0[0-9]+$"))
        return QByteArray();
    const QByteArray pointed = "0." + written.mid(1);
    return isInRange(property, pointed.toDouble()) ? pointed : QByteArray();
}

// A small number out of the range is as likely a slip of another kind.
QByteArray Conversions::fromPercentage(const Property &property, double number)
{
    const double smallest = 25;
    if (property.kind != Kind::Number || !isWhole(number) || number < smallest
        || number > 100 * property.maximum)
        return QByteArray();
    return QByteArray::number(number / 100, 'g', 15);
}
