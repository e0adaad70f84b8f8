// SPDX-License-Identifier: MIT
#include "benchmarks/documents.h"

#include <QList>
#include <QVariant>

#include <algorithm>
#include <cmath>

#include "json/jsonparser.h"
#include "json/jsonwriter.h"

namespace {

// A generator of our own, so that the documents do not depend on a library's distributions.
class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed * 2 + 1) {}

    quint32 next()
    {
        m_state = m_state * Q_UINT64_C(6364136223846793005) + Q_UINT64_C(1442695040888963407);
        return quint32(m_state >> 32);
    }

    int below(int limit) { return int(next() % quint32(limit)); }
    int between(int low, int high) { return low + below(high - low + 1); }

    template<typename Container>
    void shuffle(Container &container)
    {
        for (int i = int(container.size()) - 1; i > 0; --i)
            std::swap(container[i], container[below(i + 1)]);
    }

private:
    quint64 m_state;
};

const char letters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

QByteArray word(Random &random, int size)
{
    QByteArray text;
    for (int i = 0; i < size; ++i)
        text += letters[random.below(int(sizeof letters) - 1)];
    return text;
}

enum Kind { Switch, Url, Agent, Script, Number, Fraction, Proxy };

struct Property {
    const char *key;
    Kind kind;
};

const Property properties[] = {
    { "UserAgent", Agent },
    { "UserScript", Script },
    { "Url", Url },
    { "UseGraphicsView", Switch },
    { "UseDiskCache", Switch },
    { "UseCompositing", Switch },
    { "UseTiledBackingStore", Switch },
    { "UseWebGL", Switch },
    { "ShowDebugBorders", Switch },
    { "UseFrameFlattening", Switch },
    { "CacheWebView", Switch },
    { "ShowFrameRate", Switch },
    { "ResizesToContents", Switch },
    { "UseLocalStorage", Switch },
    { "UseOfflineStorageDatabase", Switch },
    { "UseOfflineWebApplicationCache", Switch },
    { "UseDiskCookies", Switch },
    { "PrintLoadedUrls", Switch },
    { "StartMaximized", Switch },
    { "UseTransparentBackground", Switch },
    { "SuppressWebCoreWarningMessages", Switch },
    { "Scale", Fraction },
    { "ShowChrome", Switch },
    { "EnableShowErrorPage", Switch },
    { "OfflineStorageDefaultQuotaSize", Number },
    { "WindowOpacity", Fraction },
    { "ShowScrollbar", Switch },
    { "Frameless", Switch },
    { "RemoteInspectorPort", Number },
    { "HttpProxy", Proxy },
    { "DisableSpatialNavigation", Switch },
    { "HttpReferrer", Url },
    { "NetworkSessionNoAutoClose", Switch },
    { "LocalContentCanAccessRemoteUrls", Switch },
    { "OfflineWebApplicationCacheEnabled", Switch },
    { "OfflineStorageDatabaseEnabled", Switch },
    { "GrantBroadcastRelatedSecurityClearance", Switch },
    { "ProhibitMainFrameScrolling", Switch },
};

// Most switches are as they should be; people also write 1 and "yes".
QByteArray switchValue(Random &random)
{
    const int kind = random.below(10);
    if (kind == 0)
        return QByteArray::number(random.below(100));
    if (kind == 1)
        return "\"" + word(random, random.between(3, 8)).toLower() + "\"";
    return random.below(2) ? "true" : "false";
}

QByteArray valueOf(Kind kind, Random &random)
{
    switch (kind) {
    case Switch:
        return switchValue(random);
    case Url:
        return "\"http://" + word(random, 8).toLower() + ".example/" + word(random, 12) + "\"";
    case Agent:
        return "\"Mozilla/5.0 (Linux; U; en) AppleWebKit/534.34 " + word(random, 6) + "/1."
            + QByteArray::number(random.below(90)) + "\"";
    case Script:
        return "\"document.addEventListener(\\\"" + word(random, 6)
            + "\\\", function () {\\n    window." + word(random, 7) + " = true;\\n});\"";
    case Number:
        return QByteArray::number(random.between(1, 60000));
    case Fraction:
        return QByteArray::number(random.between(1, 199) / 100.0);
    case Proxy:
        return "\"10.0." + QByteArray::number(random.below(250)) + ".1:8080\"";
    }
    return QByteArray();
}

QByteArray member(const QByteArray &key, const QByteArray &value)
{
    return "\"" + key + "\": " + value;
}

// The text between the brackets, one member or element to the line.
QByteArray indented(const QByteArrayList &lines, int level)
{
    const QByteArray inner = "\n" + QByteArray(2 * level + 2, ' ');
    return inner + lines.join("," + inner) + "\n" + QByteArray(2 * level, ' ');
}

QByteArray certificate(Random &random, int level)
{
    const QByteArray name = word(random, 6).toLower();
    return "{"
        + indented({ member("Path", "\"/etc/" + name + ".pem\""),
                     member("PrivateKey", "\"/etc/" + name + ".key\""),
                     member("PassPhrase", "\"" + word(random, 8) + "\"") },
                   level)
        + "}";
}

QByteArray domains(Random &random, int level)
{
    QByteArrayList elements;
    for (int i = 0; i < 4; ++i) {
        const QByteArray domain = "\"" + word(random, 8).toLower() + ".example\"";
        elements.append("{" + indented({ member("Domain", domain) }, level + 1) + "}");
    }
    return "[" + indented(elements, level) + "]";
}

QByteArray application(int index, Random &random)
{
    QList<int> chosen;
    for (int i = 0; i < int(sizeof properties / sizeof *properties); ++i)
        chosen.append(i);
    random.shuffle(chosen);
    QByteArrayList members;
    members.append(member("Tag", "\"app" + QByteArray::number(index) + "\""));
    const int count = random.between(20, 38);
    for (int i = 0; i < count; ++i) {
        const Property &property = properties[chosen.at(i)];
        members.append(member(property.key, valueOf(property.kind, random)));
    }
    members.append(member("Certificate", certificate(random, 3)));
    members.append(member("GrantBroadcastAccessRightDomains", domains(random, 3)));
    return "{" + indented(members, 2) + "}";
}

// One object whose keys are random words.
QByteArray object(int count, bool ascendingKeys)
{
    Random random { quint64(count) };
    QByteArrayList keys;
    for (int i = 0; i < count; ++i)
        keys.append(word(random, random.between(8, 24)));
    if (ascendingKeys)
        std::sort(keys.begin(), keys.end());
    QByteArrayList members;
    for (const QByteArray &key : qAsConst(keys))
        members.append("\"" + key + "\":" + QByteArray::number(random.below(100000)));
    return "{" + members.join(",") + "}";
}

template<typename Element>
QByteArray array(int count, quint64 seed, Element element)
{
    Random random(seed);
    QByteArray text = "[";
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            text += ',';
        text += element(random, i);
    }
    return text + ']';
}

QByteArray integer(Random &random, int)
{
    return QByteArray::number(random.between(-99999999, 99999999));
}

QByteArray shortString(Random &random, int)
{
    return "\"" + word(random, random.between(4, 24)) + "\"";
}

// A quarter of the characters are "\u" escapes, of letters of other scripts.
QByteArray escapedString(Random &random, int)
{
    QByteArray text = "\"";
    const int size = random.between(5, 20);
    for (int i = 0; i < size; ++i) {
        if (random.below(4) == 0)
            text += "\\u0" + QByteArray::number(random.between(0x400, 0x4ff), 16);
        else
            text += letters[random.below(52)];
    }
    return text + "\"";
}

QByteArray fraction(Random &random, int index)
{
    const int sign = random.below(2) ? 1 : -1;
    if (index % 2 == 0)
        return QByteArray::number(sign * random.between(1, 9999999) / 100.0, 'f', 2);
    const double digits = sign * (double(random.next()) * 0x1p32 + double(random.next()));
    return QByteArray::number(std::ldexp(digits, random.between(-130, 10)), 'e', 16);
}

// Lines of prose.
QByteArray longString(Random &random, int)
{
    QByteArray text = "\"";
    for (int line = 0; line < 16; ++line)
        text += word(random, 60) + "\\n";
    return text + "\"";
}

QByteArray nested(int depth, const char *open, const char *innermost, const char *close)
{
    return QByteArray(open).repeated(depth) + innermost + QByteArray(close).repeated(depth);
}

} // namespace

QByteArray Documents::applications(int count, bool ascendingKeys)
{
    Random random(7);
    QByteArrayList elements;
    for (int i = 0; i < count; ++i)
        elements.append(application(i, random));
    const QByteArray global = "{"
        + indented({ member("Version", "1"), member("RemoteInspectorPort", "9222"),
                     member("Certificate", certificate(random, 2)) },
                   1)
        + "}";
    const QByteArray text = "{"
        + indented({ member("Global", global),
                     member("Applications", "[" + indented(elements, 1) + "]") },
                   0)
        + "}\n";
    return ascendingKeys ? JsonWriter::serialize(parseJson(text, nullptr), 2, 0) : text;
}

std::vector<const char *> Documents::applicationKeys()
{
    std::vector<const char *> keys(1, "Tag");
    for (const Property &property : properties)
        keys.push_back(property.key);
    return keys;
}

QByteArrayList Documents::names()
{
    return { "typical",
             "applications-10",
             "applications-100",
             "applications-1000",
             "applications-10000",
             "applications-1000-ascending",
             "object-1000",
             "object-10000",
             "object-100000",
             "object-100000-ascending",
             "integers-1000",
             "integers-10000",
             "integers-100000",
             "integers-1000000",
             "strings",
             "escapes",
             "doubles",
             "long-strings",
             "nested-arrays",
             "nested-objects",
             "smallest" };
}

QByteArray Documents::make(const QByteArray &name)
{
    const QByteArrayList pieces = name.split('-');
    const int count = pieces.value(1).toInt();
    const bool ascending = pieces.last() == "ascending";
    if (name == "typical")
        return applications(5, false);
    if (pieces.first() == "applications")
        return applications(count, ascending);
    if (pieces.first() == "object")
        return object(count, ascending);
    if (pieces.first() == "integers")
        return array(count, 11, integer);
    if (name == "strings")
        return array(100000, 12, shortString);
    if (name == "escapes")
        return array(100000, 13, escapedString);
    if (name == "doubles")
        return array(200000, 14, fraction);
    if (name == "long-strings")
        return array(1000, 15, longString);
    if (name == "nested-arrays")
        return nested(1000, "[", "", "]");
    if (name == "nested-objects")
        return nested(1000, "{\"a\":", "1", "}");
    if (name == "smallest")
        return "{\"a\":1}";
    return QByteArray();
}
