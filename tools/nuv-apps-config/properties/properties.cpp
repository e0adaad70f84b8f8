// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/properties/properties.h"

#include <algorithm>

namespace {

const double None = 0, NoRange = -1;
const Section Doc = Section::Document, Glob = Section::Global, App = Section::Application;
const Section Cert = Section::Certificate, Dom = Section::Domain;
const char BrowserDefault[] = "The browser's own default.";
const char Off[] = "Off.";

// clang-format off
const std::vector<Property> table = {
    { Doc, "Global", nullptr, Kind::Object, "", None, NoRange, "Nothing is loaded: the version is missing.",
      "{ \"Version\": 1 }", Secret::No, "",
      "What holds for the whole device: the version of the format, the port of the remote inspector and the certificate of last resort. Applications inherit nothing from it." },
    { Doc, "Applications", nullptr, Kind::Array, "", None, NoRange, "There is no application to show.",
      "[ { \"Tag\": \"tv\" } ]", Secret::No, "",
      "The applications, one object each. The launcher asks for one of them by its tag." },

    { Glob, "Version", nullptr, Kind::Version, "", 1, 2, "No application is loaded.", "1", Secret::No, "",
      "The version of the format. Every number from 1 up to, but not including, 2 passes; it is narrowed to single precision first, so 0.99999999 passes and 1.99999999 does not. Anything else, and no application is loaded." },
    { Glob, "RemoteInspectorPort", nullptr, Kind::Port, "TCP port", 0, 65535, "The launcher opens no remote inspector.", "9222", Secret::No, "",
      "The port on which the launcher offers its remote inspector for all applications, unless the application that is opened first has a port of its own. -1 and 4294967295 are what the library itself uses for \"not set\"." },
    { Glob, "Certificate", nullptr, Kind::Object, "", None, NoRange, "No client certificate of last resort.",
      "{ \"Path\": \"certificates/device.pem\", \"PrivateKey\": \"certificates/device.key\" }", Secret::No, "",
      "The client certificate that the launcher may use where an application has none of its own." },

    { App, "Tag", nullptr, Kind::Text, "", None, NoRange, "The whole application is skipped.", "\"tv\"", Secret::No, "",
      "The name by which the launcher asks for the application. Compared exactly, with its case; the first application with a tag wins whole." },
    { App, "Url", "Url", Kind::Address, "", None, NoRange, "Nothing is shown.", "\"http://tv.example/\"", Secret::Password, "",
      "The address of the first page. One without a scheme is a file next to the configuration file." },
    { App, "UserAgent", "UserAgent", Kind::UserAgent, "", None, NoRange, BrowserDefault, "\"Mozilla/5.0 (Linux; television) Example/1.0\"", Secret::No, "",
      "The text by which the browser names itself to servers and to scripts." },
    { App, "UserScript", "UserScript", Kind::ScriptFile, "", None, NoRange, "No script is added.", "\"scripts/tv.js\"", Secret::No, "",
      "A file with a script that is run in every page of the application." },
    { App, "HttpProxy", "HttpProxy", Kind::Proxy, "host:port", None, NoRange, "Direct connections.", "\"proxy.example:8080\"", Secret::Password, "",
      "The proxy for the application's requests. It may carry a user name and a password, which are never shown." },
    { App, "HttpReferrer", "HttpReferrer", Kind::Referrer, "", None, NoRange, BrowserDefault, "\"http://portal.example/\"", Secret::Password, "",
      "What the first request names as the page that it comes from." },
    { App, "RemoteInspectorPort", "RemoteInspectorPort", Kind::Port, "TCP port", 0, 65535, "The global port counts.", "9223", Secret::No, "",
      "The port of the remote inspector, instead of the global one. There is one inspector in a process, for all its applications: the port of the application that is opened first counts." },
    { App, "Scale", "Scale", Kind::Number, "factor", 0.1, 10, "1, the page's own size.", "1.5", Secret::No, "",
      "The zoom factor of the page: 2 shows everything at twice its size." },
    { App, "WindowOpacity", "WindowOpacity", Kind::Number, "fraction", 0, 1, "1, opaque.", "0.9", Secret::No, "",
      "How opaque the window is, from 0, invisible, to 1. The window system must support it." },
    { App, "UseTransparentBackground", "UseTransparentBackground", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "Where the page paints nothing, what is behind the window shows through: the video, for an overlay." },
    { App, "Frameless", "Frameless", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The window has no frame and no title." },
    { App, "StartMaximized", "StartMaximized", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The window takes the whole screen when it opens." },
    { App, "ShowChrome", "ShowChrome", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "",
      "The launcher's own controls, such as an address bar, are shown around the page." },
    { App, "ShowScrollbar", "ShowScrollbar", Kind::Switch, "", None, NoRange, BrowserDefault, "false", Secret::No, "",
      "Scrollbars are shown where the page is larger than the window. Off hides them; the page can still be scrolled." },
    { App, "ProhibitMainFrameScrolling", "ProhibitMainFrameScrolling", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The page as a whole cannot be scrolled. Parts of it that scroll by themselves still can." },
    { App, "ResizesToContents", "ResizesToContents", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "UseGraphicsView",
      "The view grows to the size of the page, instead of scrolling in it." },
    { App, "DisableSpatialNavigation", "DisableSpatialNavigation", Kind::Switch, "", None, NoRange, BrowserDefault, "true", Secret::No, "",
      "The arrow keys do not move the focus from link to link. For pages that handle the keys of the remote control themselves." },
    { App, "UseGraphicsView", "UseGraphicsView", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The page is shown as an item of a graphics scene, which tiling and growing to the contents need." },
    { App, "UseCompositing", "UseCompositing", Kind::Switch, "", None, NoRange, BrowserDefault, "true", Secret::No, "",
      "Parts of the page that move are layers of their own, put together by the graphics hardware." },
    { App, "UseTiledBackingStore", "UseTiledBackingStore", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "UseGraphicsView",
      "The page is painted ahead in tiles, so that scrolling is smooth. Costs memory." },
    { App, "UseWebGL", "UseWebGL", Kind::Switch, "", None, NoRange, BrowserDefault, "true", Secret::No, "",
      "Scripts may draw three-dimensional graphics through WebGL." },
    { App, "UseFrameFlattening", "UseFrameFlattening", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "Frames grow to the size of their contents, so that only the page as a whole scrolls." },
    { App, "ShowDebugBorders", "ShowDebugBorders", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "UseCompositing",
      "Layers and tiles have coloured borders. For developers." },
    { App, "ShowFrameRate", "ShowFrameRate", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "",
      "The frames painted in a second are shown. For developers." },
    { App, "CacheWebView", "CacheWebView", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The view of the application is kept when it is closed, so that it is there at once the next time. Costs memory." },
    { App, "UseDiskCache", "UseDiskCache", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "What was fetched from the network is kept on disk for the next time." },
    { App, "UseDiskCookies", "UseDiskCookies", Kind::Switch, "", None, NoRange, "Cookies are gone with the application.", "true", Secret::No, "",
      "Cookies are kept on disk." },
    { App, "UseLocalStorage", "UseLocalStorage", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "Scripts may keep values through the page's local storage." },
    { App, "UseOfflineStorageDatabase", "UseOfflineStorageDatabase", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "Scripts may keep databases on the device. OfflineStorageDatabaseEnabled is a second name for it; give one of them." },
    { App, "OfflineStorageDatabaseEnabled", "OfflineStorageDatabaseEnabled", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The older name of UseOfflineStorageDatabase, which decides where an application has both." },
    { App, "OfflineStorageDefaultQuotaSize", "OfflineStorageDefaultQuotaSize", Kind::Integer, "bytes", 0, 9007199254740991.0, BrowserDefault, "5242880", Secret::No,
      "UseOfflineStorageDatabase|OfflineStorageDatabaseEnabled",
      "How much the databases of one site may hold." },
    { App, "UseOfflineWebApplicationCache", "UseOfflineWebApplicationCache", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "Pages may name the files that the browser keeps for use without a network. OfflineWebApplicationCacheEnabled is a second name for it; give one of them." },
    { App, "OfflineWebApplicationCacheEnabled", "OfflineWebApplicationCacheEnabled", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The older name of UseOfflineWebApplicationCache, which decides where an application has both." },
    { App, "LocalContentCanAccessRemoteUrls", "LocalContentCanAccessRemoteUrls", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "",
      "Pages from files may fetch from the network. Switch it on only for files that come with the device." },
    { App, "GrantBroadcastRelatedSecurityClearance", "GrantBroadcastRelatedSecurityClearance", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "",
      "The application may use the interfaces that control the broadcast receiver." },
    { App, "GrantBroadcastAccessRightDomains", "GrantBroadcastAccessRightDomains", Kind::Array, "", None, NoRange, "The host of Url is the one domain.",
      "[ { \"Domain\": \"broadcaster.example\" } ]", Secret::No, "",
      "The domains whose pages may reach the broadcast. An array of objects with the key Domain each; plain strings are lost." },
    { App, "NetworkSessionNoAutoClose", "NetworkSessionNoAutoClose", Kind::Switch, "", None, NoRange, Off, "true", Secret::No, "",
      "The network connection stays open when nothing was transferred for a while." },
    { App, "EnableShowErrorPage", "EnableShowErrorPage", Kind::Switch, "", None, NoRange, BrowserDefault, "true", Secret::No, "",
      "A page that cannot be loaded is replaced by one that says so." },
    { App, "PrintLoadedUrls", "PrintLoadedUrls", Kind::Switch, "", None, NoRange, Off, "false", Secret::No, "",
      "The address of everything that is loaded is printed. For developers." },
    { App, "SuppressWebCoreWarningMessages", "SuppressWebCoreWarningMessages", Kind::Switch, "", None, NoRange, "The messages are printed.", "true", Secret::No, "",
      "The messages of the page and of the browser are not printed." },
    { App, "Certificate", nullptr, Kind::Object, "", None, NoRange, "The application has no client certificate of its own.",
      "{ \"Path\": \"certificates/tv.pem\", \"PrivateKey\": \"certificates/tv.key\", \"PassPhrase\": \"correct horse\" }", Secret::No, "",
      "The client certificate by which the application names itself to servers." },

    { Cert, "Path", "CertPath", Kind::FilePath, "", None, NoRange, "There is no certificate, and the two other keys are not read.",
      "\"certificates/tv.pem\"", Secret::No, "",
      "The file with the certificate, in PEM form." },
    { Cert, "PrivateKey", "CertPrivateKey", Kind::FilePath, "", None, NoRange, "The reference launcher looks for the key in the file of the certificate.",
      "\"certificates/tv.key\"", Secret::No, "CertPath",
      "The file with the private key that belongs to the certificate, in PEM form. Nobody but the launcher's user should be able to read it." },
    { Cert, "PassPhrase", "CertPassPhrase", Kind::Text, "", None, NoRange, "The private key is not encrypted.",
      "\"correct horse\"", Secret::Whole, "CertPath",
      "What the private key is encrypted with. Never shown." },

    { Dom, "Domain", nullptr, Kind::Domain, "", None, NoRange, "The element grants nothing.", "\"broadcaster.example\"", Secret::No, "",
      "A domain whose pages may reach the broadcast." },
};
// clang-format on

const Property *findIf(bool (*matches)(const Property &, const QString &, Qt::CaseSensitivity),
                       const QString &name)
{
    for (Qt::CaseSensitivity sensitivity : { Qt::CaseSensitive, Qt::CaseInsensitive }) {
        for (const Property &row : table) {
            if (matches(row, name, sensitivity))
                return &row;
        }
    }
    return nullptr;
}

bool isSame(const char *a, const QString &b, Qt::CaseSensitivity sensitivity)
{
    return a && b.compare(QLatin1String(a), sensitivity) == 0;
}

bool hasProperty(const Property &row, const QString &name, Qt::CaseSensitivity sensitivity)
{
    return isSame(row.property, name, sensitivity);
}

bool hasKey(const Property &row, const QString &name, Qt::CaseSensitivity sensitivity)
{
    return isSame(row.key, name, sensitivity);
}

bool hasPath(const Property &row, const QString &name, Qt::CaseSensitivity sensitivity)
{
    const QString path =
        Properties::sectionName(row.section) + QLatin1Char('/') + QLatin1String(row.key);
    return path.compare(name, sensitivity) == 0;
}

} // namespace

const std::vector<Property> &Properties::all()
{
    return table;
}

std::vector<const Property *> Properties::of(Section section)
{
    std::vector<const Property *> rows;
    for (const Property &row : table) {
        if (row.section == section)
            rows.push_back(&row);
    }
    return rows;
}

const Property *Properties::find(Section section, const QString &key)
{
    for (const Property &row : table) {
        if (row.section == section && key == QLatin1String(row.key))
            return &row;
    }
    return nullptr;
}

const Property *Properties::findProperty(const QString &property)
{
    const auto it = std::find_if(table.begin(), table.end(), [&](const Property &row) {
        return row.property && property == QLatin1String(row.property);
    });
    return it == table.end() ? nullptr : &*it;
}

const Property *Properties::findAnywhere(const QString &name)
{
    for (const auto matches : { hasProperty, hasPath, hasKey }) {
        if (const Property *row = findIf(matches, name))
            return row;
    }
    return nullptr;
}

QString Properties::place(const Property &property)
{
    const QString key = QLatin1String(property.key);
    switch (property.section) {
    case Section::Document:
        return key;
    case Section::Global:
        return QLatin1String("Global.") + key;
    case Section::Application:
        return QLatin1String("Applications[].") + key;
    case Section::Certificate:
        return QLatin1String("Global.Certificate.") + key
            + QLatin1String(" and Applications[].Certificate.") + key;
    case Section::Domain:
        break;
    }
    return QLatin1String("Applications[].GrantBroadcastAccessRightDomains[].") + key;
}

QString Properties::sectionName(Section section)
{
    switch (section) {
    case Section::Document:
        return QLatin1String("the document");
    case Section::Global:
        return QLatin1String("Global");
    case Section::Application:
        return QLatin1String("Applications");
    case Section::Certificate:
        return QLatin1String("Certificate");
    case Section::Domain:
        break;
    }
    return QLatin1String("GrantBroadcastAccessRightDomains");
}

QString Properties::kindName(Kind kind)
{
    switch (kind) {
    case Kind::Switch:
        return QLatin1String("true or false");
    case Kind::Text:
    case Kind::UserAgent:
        return QLatin1String("a string");
    case Kind::Address:
    case Kind::Referrer:
        return QLatin1String("a string with an address");
    case Kind::Proxy:
        return QLatin1String("a string with a host and a port");
    case Kind::Domain:
        return QLatin1String("a string with a domain");
    case Kind::FilePath:
    case Kind::ScriptFile:
        return QLatin1String("a string with the path of a file");
    case Kind::Number:
        return QLatin1String("a number");
    case Kind::Integer:
    case Kind::Port:
        return QLatin1String("an integer");
    case Kind::Version:
        return QLatin1String("a number");
    case Kind::Object:
        return QLatin1String("an object");
    case Kind::Array:
        break;
    }
    return QLatin1String("an array of objects");
}

bool Properties::hasRange(const Property &property)
{
    return property.minimum <= property.maximum;
}

QString Properties::rangeText(const Property &property)
{
    if (property.kind == Kind::Version)
        return QLatin1String("from 1 to below 2");
    return QString(QLatin1String("from %1 to %2"))
        .arg(QString::number(property.minimum, 'g', 16),
             QString::number(property.maximum, 'g', 16));
}

bool Properties::isText(const Property &property)
{
    switch (property.kind) {
    case Kind::Text:
    case Kind::Address:
    case Kind::Referrer:
    case Kind::Proxy:
    case Kind::UserAgent:
    case Kind::Domain:
    case Kind::FilePath:
    case Kind::ScriptFile:
        return true;
    default:
        return false;
    }
}

bool Properties::isOffWhenMissing(const Property &property)
{
    return qstrcmp(property.whenMissing, Off) == 0;
}

QStringList Properties::needed(const Property &property)
{
    const QString needs = QLatin1String(property.needs);
    return needs.isEmpty() ? QStringList() : needs.split(QLatin1Char('|'));
}

QStringList Properties::neededKeys(const Property &property)
{
    QStringList keys;
    for (const QString &name : needed(property))
        keys.append(QLatin1String(findProperty(name)->key));
    return keys;
}

bool Properties::isPassed(const QString &key)
{
    return key == QLatin1String("$schema") || key.startsWith(QLatin1String("_comment"));
}
