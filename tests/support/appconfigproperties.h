// SPDX-License-Identifier: MIT
#ifndef APPCONFIGPROPERTIES_H
#define APPCONFIGPROPERTIES_H

#include "config/appconfig.h"

#include <type_traits>

/// A named property of AppConfig. The types of the two pointers pin the signatures of its
/// accessors.
struct AppConfigProperty {
    const char *name;
    QVariant (AppConfig::*get)() const;
    void (AppConfig::*set)(QVariant const &);
    const char *inFile; ///< the key of an application's entry in the configuration file
};

// clang-format off

/// All of them, in the order of their declaration.
const AppConfigProperty appConfigProperties[] = {
    { "ProhibitMainFrameScrolling", &AppConfig::getProhibitMainFrameScrolling, &AppConfig::setProhibitMainFrameScrolling, "ProhibitMainFrameScrolling" },
    { "GrantBroadcastRelatedSecurityClearance", &AppConfig::getGrantBroadcastRelatedSecurityClearance, &AppConfig::setGrantBroadcastRelatedSecurityClearance, "GrantBroadcastRelatedSecurityClearance" },
    { "OfflineStorageDatabaseEnabled", &AppConfig::getOfflineStorageDatabaseEnabled, &AppConfig::setOfflineStorageDatabaseEnabled, "OfflineStorageDatabaseEnabled" },
    { "OfflineWebApplicationCacheEnabled", &AppConfig::getOfflineWebApplicationCacheEnabled, &AppConfig::setOfflineWebApplicationCacheEnabled, "OfflineWebApplicationCacheEnabled" },
    { "LocalContentCanAccessRemoteUrls", &AppConfig::getLocalContentCanAccessRemoteUrls, &AppConfig::setLocalContentCanAccessRemoteUrls, "LocalContentCanAccessRemoteUrls" },
    { "NetworkSessionNoAutoClose", &AppConfig::getNetworkSessionNoAutoClose, &AppConfig::setNetworkSessionNoAutoClose, "NetworkSessionNoAutoClose" },
    { "HttpReferrer", &AppConfig::getHttpReferrer, &AppConfig::setHttpReferrer, "HttpReferrer" },
    { "GrantBroadcastAccessRightDomains", &AppConfig::getGrantBroadcastAccessRightDomains, &AppConfig::setGrantBroadcastAccessRightDomains, "GrantBroadcastAccessRightDomains" },
    { "DisableSpatialNavigation", &AppConfig::getDisableSpatialNavigation, &AppConfig::setDisableSpatialNavigation, "DisableSpatialNavigation" },
    { "HttpProxy", &AppConfig::getHttpProxy, &AppConfig::setHttpProxy, "HttpProxy" },
    { "RemoteInspectorPort", &AppConfig::getRemoteInspectorPort, &AppConfig::setRemoteInspectorPort, "RemoteInspectorPort" },
    { "Frameless", &AppConfig::getFrameless, &AppConfig::setFrameless, "Frameless" },
    { "ShowScrollbar", &AppConfig::getShowScrollbar, &AppConfig::setShowScrollbar, "ShowScrollbar" },
    { "WindowOpacity", &AppConfig::getWindowOpacity, &AppConfig::setWindowOpacity, "WindowOpacity" },
    { "OfflineStorageDefaultQuotaSize", &AppConfig::getOfflineStorageDefaultQuotaSize, &AppConfig::setOfflineStorageDefaultQuotaSize, "OfflineStorageDefaultQuotaSize" },
    { "EnableShowErrorPage", &AppConfig::getEnableShowErrorPage, &AppConfig::setEnableShowErrorPage, "EnableShowErrorPage" },
    { "ShowChrome", &AppConfig::getShowChrome, &AppConfig::setShowChrome, "ShowChrome" },
    { "Scale", &AppConfig::getScale, &AppConfig::setScale, "Scale" },
    { "SuppressWebCoreWarningMessages", &AppConfig::getSuppressWebCoreWarningMessages, &AppConfig::setSuppressWebCoreWarningMessages, "SuppressWebCoreWarningMessages" },
    { "UseTransparentBackground", &AppConfig::getUseTransparentBackground, &AppConfig::setUseTransparentBackground, "UseTransparentBackground" },
    { "StartMaximized", &AppConfig::getStartMaximized, &AppConfig::setStartMaximized, "StartMaximized" },
    { "PrintLoadedUrls", &AppConfig::getPrintLoadedUrls, &AppConfig::setPrintLoadedUrls, "PrintLoadedUrls" },
    { "UseDiskCookies", &AppConfig::getUseDiskCookies, &AppConfig::setUseDiskCookies, "UseDiskCookies" },
    { "UseOfflineWebApplicationCache", &AppConfig::getUseOfflineWebApplicationCache, &AppConfig::setUseOfflineWebApplicationCache, "UseOfflineWebApplicationCache" },
    { "UseOfflineStorageDatabase", &AppConfig::getUseOfflineStorageDatabase, &AppConfig::setUseOfflineStorageDatabase, "UseOfflineStorageDatabase" },
    { "UseLocalStorage", &AppConfig::getUseLocalStorage, &AppConfig::setUseLocalStorage, "UseLocalStorage" },
    { "ResizesToContents", &AppConfig::getResizesToContents, &AppConfig::setResizesToContents, "ResizesToContents" },
    { "ShowFrameRate", &AppConfig::getShowFrameRate, &AppConfig::setShowFrameRate, "ShowFrameRate" },
    { "CacheWebView", &AppConfig::getCacheWebView, &AppConfig::setCacheWebView, "CacheWebView" },
    { "UseFrameFlattening", &AppConfig::getUseFrameFlattening, &AppConfig::setUseFrameFlattening, "UseFrameFlattening" },
    { "ShowDebugBorders", &AppConfig::getShowDebugBorders, &AppConfig::setShowDebugBorders, "ShowDebugBorders" },
    { "UseWebGL", &AppConfig::getUseWebGL, &AppConfig::setUseWebGL, "UseWebGL" },
    { "UseTiledBackingStore", &AppConfig::getUseTiledBackingStore, &AppConfig::setUseTiledBackingStore, "UseTiledBackingStore" },
    { "UseCompositing", &AppConfig::getUseCompositing, &AppConfig::setUseCompositing, "UseCompositing" },
    { "UseDiskCache", &AppConfig::getUseDiskCache, &AppConfig::setUseDiskCache, "UseDiskCache" },
    { "UseGraphicsView", &AppConfig::getUseGraphicsView, &AppConfig::setUseGraphicsView, "UseGraphicsView" },
    { "Url", &AppConfig::getUrl, &AppConfig::setUrl, "Url" },
    { "UserScript", &AppConfig::getUserScript, &AppConfig::setUserScript, "UserScript" },
    { "UserAgent", &AppConfig::getUserAgent, &AppConfig::setUserAgent, "UserAgent" },
    { "CertPassPhrase", &AppConfig::getCertPassPhrase, &AppConfig::setCertPassPhrase, "Certificate/PassPhrase" },
    { "CertPrivateKey", &AppConfig::getCertPrivateKey, &AppConfig::setCertPrivateKey, "Certificate/PrivateKey" },
    { "CertPath", &AppConfig::getCertPath, &AppConfig::setCertPath, "Certificate/Path" },
};

// clang-format on

const int appConfigPropertyCount = int(sizeof appConfigProperties / sizeof appConfigProperties[0]);

static_assert(appConfigPropertyCount == 42, "an AppConfig has 42 named properties");
static_assert(sizeof(AppConfig) == sizeof(QHash<QString, QVariant>)
                  && std::is_standard_layout<AppConfig>::value,
              "an AppConfig is one hash");

/// The hash that `config` is, to count its entries and to see which objects share it.
inline const QHash<QString, QVariant> &entriesOf(const AppConfig &config)
{
    return reinterpret_cast<const QHash<QString, QVariant> &>(config);
}

#endif // APPCONFIGPROPERTIES_H
