// SPDX-License-Identifier: MIT
#include "effects/viewsettings.h"

#include <AppConfig>
#include "application/applicationview.h"
#include "program/console.h"
#include "effects/enginesettings.h"
#include "effects/extensionsettings.h"
#include "effects/networksettings.h"
#include "effects/pagesettings.h"
#include "values/valuekind.h"
#include "effects/windowsettings.h"

#include <cstring>

namespace {

const char webSettings[] = "web settings";
const char page[] = "page";
const char view[] = "view";
const char window[] = "window";
const char network[] = "network access";
const char cookieJar[] = "cookie jar";
const char diskCache[] = "cache";
const char proxy[] = "proxy";
const char extension[] = "extension object";
const char process[] = "whole process";

const char atStart[] = "before the first page";
const char always[] = "always";
const char eachDocument[] = "in each new document";
const char eachRequest[] = "with each request";
const char atFailure[] = "when a page does not load";
const char atFullQuota[] = "when a site asks for room";
const char atClosing[] = "when the window is closed";

} // namespace

// The later row of two properties for the same thing decides.
const ViewSetting ViewSettings::table[] = {
    { "Url", &AppConfig::getUrl, &ValueKinds::address, page, atStart,
      "the first page; a relative address is one from the directory of the configuration file",
      nullptr, PageSettings::setUrl },
    { "UserAgent", &AppConfig::getUserAgent, &ValueKinds::text, page, eachRequest,
      "the name that servers and scripts get; an empty one is the browser's own", nullptr,
      PageSettings::setUserAgent },
    { "UserScript", &AppConfig::getUserScript, &ValueKinds::fileName, page, eachDocument,
      "a script, in UTF-8, that runs in the main frame before the scripts of the page", nullptr,
      PageSettings::setUserScript },

    { "UseGraphicsView", &AppConfig::getUseGraphicsView, &ValueKinds::onOff, view, atStart,
      "the page is an item of a graphics scene instead of a widget", nullptr,
      WindowSettings::setGraphicsView },
    { "Frameless", &AppConfig::getFrameless, &ValueKinds::onOff, window, atStart,
      "a window without frame and title", nullptr, WindowSettings::setFrameless },
    { "StartMaximized", &AppConfig::getStartMaximized, &ValueKinds::onOff, window, atStart,
      "a window as large as the screen, with or without a window manager, unless a picture is "
      "asked "
      "for",
      nullptr, WindowSettings::setMaximized },
    { "WindowOpacity", &AppConfig::getWindowOpacity, &ValueKinds::fraction, window, always,
      "from 0, invisible, to 1, opaque, where the window system can do it", nullptr,
      WindowSettings::setOpacity },
    { "UseTransparentBackground", &AppConfig::getUseTransparentBackground, &ValueKinds::onOff, page,
      always, "what is behind the window shines through where the page paints nothing", nullptr,
      PageSettings::setTransparentBackground },
    { "Scale", &AppConfig::getScale, &ValueKinds::factor, page, always,
      "the zoom factor: at 2 everything is twice as large", nullptr, PageSettings::setScale },
    { "ShowScrollbar", &AppConfig::getShowScrollbar, &ValueKinds::onOff, page, always,
      "off: the page and its frames scroll without scroll bars; parts of them keep theirs", nullptr,
      PageSettings::setScrollbar },
    { "ShowChrome", &AppConfig::getShowChrome, &ValueKinds::onOff, window, always,
      "a bar with back, forward, reload, stop and the address; the context menu, the choice of "
      "files "
      "for forms, and what is dropped on the page come with it",
      nullptr, WindowSettings::setChrome },
    { "ResizesToContents", &AppConfig::getResizesToContents, &ValueKinds::onOff, view, always,
      "the item grows to the size of the page, and the view scrolls over it",
      &WindowSettings::graphicsView, WindowSettings::setGrowing },
    { "ProhibitMainFrameScrolling", &AppConfig::getProhibitMainFrameScrolling, &ValueKinds::onOff,
      page, eachDocument,
      "the page goes back to its top left corner whenever it is scrolled; parts of it can be "
      "scrolled",
      nullptr, PageSettings::setScrollingProhibited },
    { "DisableSpatialNavigation", &AppConfig::getDisableSpatialNavigation, &ValueKinds::onOff,
      webSettings, always, "off: the arrow keys move the focus from link to link", nullptr,
      EngineSettings::setSpatialNavigationDisabled },

    { "UseCompositing", &AppConfig::getUseCompositing, &ValueKinds::onOff, webSettings, atStart,
      "parts of the page that move are layers of their own; with Qt 4 they are unless this is "
      "off, in a graphics scene alone",
      nullptr, EngineSettings::setAttribute<QWebSettings::AcceleratedCompositingEnabled> },
    { "UseTiledBackingStore", &AppConfig::getUseTiledBackingStore, &ValueKinds::onOff, webSettings,
      atStart, "the page is painted ahead in tiles", &WindowSettings::tiles,
      EngineSettings::setAttribute<QWebSettings::TiledBackingStoreEnabled> },
    { "UseWebGL", &AppConfig::getUseWebGL, &ValueKinds::onOff, webSettings, eachDocument,
      "scripts get a WebGL context; it needs a display with OpenGL", nullptr,
      EngineSettings::setAttribute<QWebSettings::WebGLEnabled> },
    { "UseFrameFlattening", &AppConfig::getUseFrameFlattening, &ValueKinds::onOff, webSettings,
      eachDocument, "inner frames grow to the size of their contents", nullptr,
      EngineSettings::setAttribute<QWebSettings::FrameFlatteningEnabled> },
    { "ShowFrameRate", &AppConfig::getShowFrameRate, &ValueKinds::onOff, view, always,
      "the corner of the window shows how often the page was painted in the last second", nullptr,
      WindowSettings::setFrameRate },

    { "UseDiskCache", &AppConfig::getUseDiskCache, &ValueKinds::onOff, diskCache, eachRequest,
      "what was fetched is kept below XDG_CACHE_HOME, for the next start, too; the server is asked "
      "whether what came without an expiry date is still so",
      nullptr, NetworkSettings::setDiskCache },
    { "UseDiskCookies", &AppConfig::getUseDiskCookies, &ValueKinds::onOff, cookieJar, eachRequest,
      "cookies with an expiry date are kept below XDG_DATA_HOME, for the next start, too", nullptr,
      NetworkSettings::setDiskCookies },
    { "UseLocalStorage", &AppConfig::getUseLocalStorage, &ValueKinds::onOff, webSettings,
      eachDocument, "scripts get localStorage, kept in a directory for the tag of the application",
      nullptr, EngineSettings::setAttribute<QWebSettings::LocalStorageEnabled> },
    { "OfflineStorageDatabaseEnabled", &AppConfig::getOfflineStorageDatabaseEnabled,
      &ValueKinds::onOff, webSettings, eachDocument,
      "scripts get databases, which all applications keep in one directory; without it no "
      "document finds openDatabase",
      nullptr, EngineSettings::setDatabases },
    { "UseOfflineStorageDatabase", &AppConfig::getUseOfflineStorageDatabase, &ValueKinds::onOff,
      webSettings, eachDocument, "the same; this name decides where an application has both",
      nullptr, EngineSettings::setDatabases },
    { "OfflineStorageDefaultQuotaSize", &AppConfig::getOfflineStorageDefaultQuotaSize,
      &ValueKinds::bytes, page, atFullQuota,
      "what the databases of one site may hold in bytes; a site that has databases is given it "
      "with "
      "its next document",
      &EngineSettings::databases, EngineSettings::setDatabaseQuota },
    { "OfflineWebApplicationCacheEnabled", &AppConfig::getOfflineWebApplicationCacheEnabled,
      &ValueKinds::onOff, webSettings, eachDocument,
      "pages with a cache manifest are kept, in one directory for all applications", nullptr,
      EngineSettings::setAttribute<QWebSettings::OfflineWebApplicationCacheEnabled> },
    { "UseOfflineWebApplicationCache", &AppConfig::getUseOfflineWebApplicationCache,
      &ValueKinds::onOff, webSettings, eachDocument,
      "the same; this name decides where an application has both", nullptr,
      EngineSettings::setAttribute<QWebSettings::OfflineWebApplicationCacheEnabled> },
    { "CacheWebView", &AppConfig::getCacheWebView, &ValueKinds::onOff, window, atClosing,
      "the page lives on in a hidden window, which is shown when the application is opened again",
      nullptr, WindowSettings::setKeptWhenClosed },

    { "LocalContentCanAccessRemoteUrls", &AppConfig::getLocalContentCanAccessRemoteUrls,
      &ValueKinds::onOff, webSettings, eachDocument, "scripts of files may fetch from the network",
      nullptr, EngineSettings::setAttribute<QWebSettings::LocalContentCanAccessRemoteUrls> },
    { "GrantBroadcastRelatedSecurityClearance",
      &AppConfig::getGrantBroadcastRelatedSecurityClearance, &ValueKinds::onOff, extension,
      eachDocument,
      "zarexExt has the members that control the broadcast receiver: volume and volumeChanged",
      nullptr, ExtensionSettings::setBroadcastClearance },
    { "GrantBroadcastAccessRightDomains", &AppConfig::getGrantBroadcastAccessRightDomains,
      &ValueKinds::domains, extension, eachDocument,
      "zarexExt is there for pages of these domains, of what is below them, and of the "
      "application's "
      "own files; without it, the host of Url is the one domain",
      nullptr, ExtensionSettings::setBroadcastDomains },

    { "HttpProxy", &AppConfig::getHttpProxy, &ValueKinds::proxy, proxy, eachRequest,
      "the HTTP proxy that all requests but WebSockets go through, with its user and password "
      "where "
      "it asks for them",
      nullptr, NetworkSettings::setProxy },
    { "HttpReferrer", &AppConfig::getHttpReferrer, &ValueKinds::webAddress, page, atStart,
      "the page that the first one is said to be linked from; the next ones get the true one",
      nullptr, NetworkSettings::setReferrer },
    { "NetworkSessionNoAutoClose", &AppConfig::getNetworkSessionNoAutoClose, &ValueKinds::onOff,
      network, always,
      "none: no toolkit on Linux closes a network session, so that each stays open",
      &NetworkSettings::closingSessions, nullptr },
    { "CertPath", &AppConfig::getCertPath, &ValueKinds::text, network, eachRequest,
      "the certificate for servers of the host of Url and of the granted domains; without "
      "it, the global one is used; no page is shown where it cannot be used",
      nullptr, nullptr },
    { "CertPrivateKey", &AppConfig::getCertPrivateKey, &ValueKinds::text, network, eachRequest,
      "the RSA or EC key of the certificate; without it, the file of the certificate holds both",
      nullptr, nullptr },
    { "CertPassPhrase", &AppConfig::getCertPassPhrase, &ValueKinds::secret, network, eachRequest,
      "opens the private key, and is never shown", nullptr, nullptr },

    { "EnableShowErrorPage", &AppConfig::getEnableShowErrorPage, &ValueKinds::onOff, page,
      atFailure,
      "a page that says why takes its place; without it the window is closed unless the page is "
      "tried again",
      nullptr, PageSettings::setErrorPage },
    { "PrintLoadedUrls", &AppConfig::getPrintLoadedUrls, &ValueKinds::onOff, network, eachRequest,
      "every address that was loaded is printed, and every other one with the reason", nullptr,
      PageSettings::setLoadedUrlsPrinted },
    { "SuppressWebCoreWarningMessages", &AppConfig::getSuppressWebCoreWarningMessages,
      &ValueKinds::onOff, page, always,
      "messages to the console of the page, and errors of its scripts, are not printed", nullptr,
      PageSettings::setConsoleSuppressed },
    { "RemoteInspectorPort", &AppConfig::getRemoteInspectorPort, &ValueKinds::port, process,
      atStart,
      "the port of the one inspector of all applications, unless an earlier one or the global port "
      "decided about it; 0 is none",
      nullptr, EngineSettings::setInspectorPort },

    // The engine forgets it when another of the web settings is applied.
    { "ShowDebugBorders", &AppConfig::getShowDebugBorders, &ValueKinds::onOff, webSettings, always,
      "the layers of the page have coloured borders; with Qt 4 they have none",
      &EngineSettings::compositing, EngineSettings::setDebugBorders },
};

const int ViewSettings::count = int(sizeof table / sizeof table[0]);

namespace {

int longestName(const AppConfig &config)
{
    int longest = 0;
    for (const ViewSetting &row : ViewSettings::table) {
        if ((config.*row.get)().isValid())
            longest = qMax(longest, static_cast<int>(std::strlen(row.property)));
    }
    return longest;
}

QString whyWithoutEffect(const ViewSetting &row, const ApplicationView &application)
{
    if (!row.need || row.need->isMet(application))
        return QString();
    return QLatin1String("  (without effect: needs ") + QLatin1String(row.need->name)
        + QLatin1Char(')');
}

void print(const ViewSetting &row, const QString &value, int width,
           const ApplicationView &application)
{
    const QString name = QString(QLatin1String(row.property)).leftJustified(width);
    Console::note(application.tag(),
                  name + QLatin1String(" = ") + value + whyWithoutEffect(row, application));
}

// Without one of these the launcher would ask others than it was told to, tell them something else, or
// let others in.
const char *const indispensable[] = { "HttpProxy", "HttpReferrer",
                                      "GrantBroadcastAccessRightDomains" };

bool isIndispensable(const ViewSetting &row)
{
    for (const char *property : indispensable) {
        if (std::strcmp(row.property, property) == 0)
            return true;
    }
    return false;
}

QString objectionTo(const ViewSetting &row, const QVariant &value)
{
    QString shown = row.kind->shown(value);
    if (value.userType() == QMetaType::QString)
        shown = QLatin1Char('"') + shown + QLatin1Char('"');
    const QString format = QLatin1String("%1 = %2 cannot be used; it takes %3");
    return format.arg(QLatin1String(row.property), shown, QLatin1String(row.kind->name));
}

void complain(const ViewSetting &row, const QVariant &value, ApplicationView &application)
{
    const QString objection = objectionTo(row, value);
    if (isIndispensable(row))
        application.refuse(objection);
    else
        Console::warning(application.tag() + QLatin1String(": ") + objection);
}

bool use(const ViewSetting &row, const QVariant &value, ApplicationView &application)
{
    return row.kind->accepts(value) && (!row.apply || row.apply(application, value));
}

} // namespace

void ViewSettings::apply(const AppConfig &config, ApplicationView &application)
{
    const int width = longestName(config);
    for (const ViewSetting &row : table) {
        const QVariant value = (config.*row.get)();
        if (!value.isValid())
            continue;
        print(row, row.kind->shown(value), width, application);
        if (!use(row, value, application))
            complain(row, value, application);
    }
}

QString ViewSettings::description()
{
    QString result = QLatin1String("| property | takes | applied to | when | effect | needs |\n"
                                   "|---|---|---|---|---|---|\n");
    for (const ViewSetting &row : table) {
        const char *const cells[] = {
            row.property, row.kind->name, row.target,
            row.moment,   row.effect,     row.need ? row.need->name : ""
        };
        for (const char *cell : cells)
            result += QLatin1String("| ") + QLatin1String(cell) + QLatin1Char(' ');
        result += QLatin1String("|\n");
    }
    return result;
}
