// SPDX-License-Identifier: MIT
#include "config/appconfig.h"

#include "global/qtcompat.h"

QVariant AppConfig::getProperty(QString const &key) const
{
    return properties.value(key);
}

void AppConfig::setProperty(QString const &key, QVariant const &value)
{
    properties.insert(key, value);
}

// clang-format off

QVariant AppConfig::getProhibitMainFrameScrolling() const { return getProperty(NUV_STRING("ProhibitMainFrameScrolling")); }
void AppConfig::setProhibitMainFrameScrolling(QVariant const &value) { setProperty(NUV_STRING("ProhibitMainFrameScrolling"), value); }

QVariant AppConfig::getGrantBroadcastRelatedSecurityClearance() const { return getProperty(NUV_STRING("GrantBroadcastRelatedSecurityClearance")); }
void AppConfig::setGrantBroadcastRelatedSecurityClearance(QVariant const &value) { setProperty(NUV_STRING("GrantBroadcastRelatedSecurityClearance"), value); }

QVariant AppConfig::getOfflineStorageDatabaseEnabled() const { return getProperty(NUV_STRING("OfflineStorageDatabaseEnabled")); }
void AppConfig::setOfflineStorageDatabaseEnabled(QVariant const &value) { setProperty(NUV_STRING("OfflineStorageDatabaseEnabled"), value); }

QVariant AppConfig::getOfflineWebApplicationCacheEnabled() const { return getProperty(NUV_STRING("OfflineWebApplicationCacheEnabled")); }
void AppConfig::setOfflineWebApplicationCacheEnabled(QVariant const &value) { setProperty(NUV_STRING("OfflineWebApplicationCacheEnabled"), value); }

QVariant AppConfig::getLocalContentCanAccessRemoteUrls() const { return getProperty(NUV_STRING("LocalContentCanAccessRemoteUrls")); }
void AppConfig::setLocalContentCanAccessRemoteUrls(QVariant const &value) { setProperty(NUV_STRING("LocalContentCanAccessRemoteUrls"), value); }

QVariant AppConfig::getNetworkSessionNoAutoClose() const { return getProperty(NUV_STRING("NetworkSessionNoAutoClose")); }
void AppConfig::setNetworkSessionNoAutoClose(QVariant const &value) { setProperty(NUV_STRING("NetworkSessionNoAutoClose"), value); }

QVariant AppConfig::getHttpReferrer() const { return getProperty(NUV_STRING("HttpReferrer")); }
void AppConfig::setHttpReferrer(QVariant const &value) { setProperty(NUV_STRING("HttpReferrer"), value); }

QVariant AppConfig::getGrantBroadcastAccessRightDomains() const { return getProperty(NUV_STRING("GrantBroadcastAccessRightDomains")); }
void AppConfig::setGrantBroadcastAccessRightDomains(QVariant const &value) { setProperty(NUV_STRING("GrantBroadcastAccessRightDomains"), value); }

QVariant AppConfig::getDisableSpatialNavigation() const { return getProperty(NUV_STRING("DisableSpatialNavigation")); }
void AppConfig::setDisableSpatialNavigation(QVariant const &value) { setProperty(NUV_STRING("DisableSpatialNavigation"), value); }

QVariant AppConfig::getHttpProxy() const { return getProperty(NUV_STRING("HttpProxy")); }
void AppConfig::setHttpProxy(QVariant const &value) { setProperty(NUV_STRING("HttpProxy"), value); }

QVariant AppConfig::getRemoteInspectorPort() const { return getProperty(NUV_STRING("RemoteInspectorPort")); }
void AppConfig::setRemoteInspectorPort(QVariant const &value) { setProperty(NUV_STRING("RemoteInspectorPort"), value); }

QVariant AppConfig::getFrameless() const { return getProperty(NUV_STRING("Frameless")); }
void AppConfig::setFrameless(QVariant const &value) { setProperty(NUV_STRING("Frameless"), value); }

QVariant AppConfig::getShowScrollbar() const { return getProperty(NUV_STRING("ShowScrollbar")); }
void AppConfig::setShowScrollbar(QVariant const &value) { setProperty(NUV_STRING("ShowScrollbar"), value); }

QVariant AppConfig::getWindowOpacity() const { return getProperty(NUV_STRING("WindowOpacity")); }
void AppConfig::setWindowOpacity(QVariant const &value) { setProperty(NUV_STRING("WindowOpacity"), value); }

QVariant AppConfig::getOfflineStorageDefaultQuotaSize() const { return getProperty(NUV_STRING("OfflineStorageDefaultQuotaSize")); }
void AppConfig::setOfflineStorageDefaultQuotaSize(QVariant const &value) { setProperty(NUV_STRING("OfflineStorageDefaultQuotaSize"), value); }

QVariant AppConfig::getEnableShowErrorPage() const { return getProperty(NUV_STRING("EnableShowErrorPage")); }
void AppConfig::setEnableShowErrorPage(QVariant const &value) { setProperty(NUV_STRING("EnableShowErrorPage"), value); }

QVariant AppConfig::getShowChrome() const { return getProperty(NUV_STRING("ShowChrome")); }
void AppConfig::setShowChrome(QVariant const &value) { setProperty(NUV_STRING("ShowChrome"), value); }

QVariant AppConfig::getScale() const { return getProperty(NUV_STRING("Scale")); }
void AppConfig::setScale(QVariant const &value) { setProperty(NUV_STRING("Scale"), value); }

QVariant AppConfig::getSuppressWebCoreWarningMessages() const { return getProperty(NUV_STRING("SuppressWebCoreWarningMessages")); }
void AppConfig::setSuppressWebCoreWarningMessages(QVariant const &value) { setProperty(NUV_STRING("SuppressWebCoreWarningMessages"), value); }

QVariant AppConfig::getUseTransparentBackground() const { return getProperty(NUV_STRING("UseTransparentBackground")); }
void AppConfig::setUseTransparentBackground(QVariant const &value) { setProperty(NUV_STRING("UseTransparentBackground"), value); }

QVariant AppConfig::getStartMaximized() const { return getProperty(NUV_STRING("StartMaximized")); }
void AppConfig::setStartMaximized(QVariant const &value) { setProperty(NUV_STRING("StartMaximized"), value); }

QVariant AppConfig::getPrintLoadedUrls() const { return getProperty(NUV_STRING("PrintLoadedUrls")); }
void AppConfig::setPrintLoadedUrls(QVariant const &value) { setProperty(NUV_STRING("PrintLoadedUrls"), value); }

QVariant AppConfig::getUseDiskCookies() const { return getProperty(NUV_STRING("UseDiskCookies")); }
void AppConfig::setUseDiskCookies(QVariant const &value) { setProperty(NUV_STRING("UseDiskCookies"), value); }

QVariant AppConfig::getUseOfflineWebApplicationCache() const { return getProperty(NUV_STRING("UseOfflineWebApplicationCache")); }
void AppConfig::setUseOfflineWebApplicationCache(QVariant const &value) { setProperty(NUV_STRING("UseOfflineWebApplicationCache"), value); }

QVariant AppConfig::getUseOfflineStorageDatabase() const { return getProperty(NUV_STRING("UseOfflineStorageDatabase")); }
void AppConfig::setUseOfflineStorageDatabase(QVariant const &value) { setProperty(NUV_STRING("UseOfflineStorageDatabase"), value); }

QVariant AppConfig::getUseLocalStorage() const { return getProperty(NUV_STRING("UseLocalStorage")); }
void AppConfig::setUseLocalStorage(QVariant const &value) { setProperty(NUV_STRING("UseLocalStorage"), value); }

QVariant AppConfig::getResizesToContents() const { return getProperty(NUV_STRING("ResizesToContents")); }
void AppConfig::setResizesToContents(QVariant const &value) { setProperty(NUV_STRING("ResizesToContents"), value); }

QVariant AppConfig::getShowFrameRate() const { return getProperty(NUV_STRING("ShowFrameRate")); }
void AppConfig::setShowFrameRate(QVariant const &value) { setProperty(NUV_STRING("ShowFrameRate"), value); }

QVariant AppConfig::getCacheWebView() const { return getProperty(NUV_STRING("CacheWebView")); }
void AppConfig::setCacheWebView(QVariant const &value) { setProperty(NUV_STRING("CacheWebView"), value); }

QVariant AppConfig::getUseFrameFlattening() const { return getProperty(NUV_STRING("UseFrameFlattening")); }
void AppConfig::setUseFrameFlattening(QVariant const &value) { setProperty(NUV_STRING("UseFrameFlattening"), value); }

QVariant AppConfig::getShowDebugBorders() const { return getProperty(NUV_STRING("ShowDebugBorders")); }
void AppConfig::setShowDebugBorders(QVariant const &value) { setProperty(NUV_STRING("ShowDebugBorders"), value); }

QVariant AppConfig::getUseWebGL() const { return getProperty(NUV_STRING("UseWebGL")); }
void AppConfig::setUseWebGL(QVariant const &value) { setProperty(NUV_STRING("UseWebGL"), value); }

QVariant AppConfig::getUseTiledBackingStore() const { return getProperty(NUV_STRING("UseTiledBackingStore")); }
void AppConfig::setUseTiledBackingStore(QVariant const &value) { setProperty(NUV_STRING("UseTiledBackingStore"), value); }

QVariant AppConfig::getUseCompositing() const { return getProperty(NUV_STRING("UseCompositing")); }
void AppConfig::setUseCompositing(QVariant const &value) { setProperty(NUV_STRING("UseCompositing"), value); }

QVariant AppConfig::getUseDiskCache() const { return getProperty(NUV_STRING("UseDiskCache")); }
void AppConfig::setUseDiskCache(QVariant const &value) { setProperty(NUV_STRING("UseDiskCache"), value); }

QVariant AppConfig::getUseGraphicsView() const { return getProperty(NUV_STRING("UseGraphicsView")); }
void AppConfig::setUseGraphicsView(QVariant const &value) { setProperty(NUV_STRING("UseGraphicsView"), value); }

QVariant AppConfig::getUrl() const { return getProperty(NUV_STRING("Url")); }
void AppConfig::setUrl(QVariant const &value) { setProperty(NUV_STRING("Url"), value); }

QVariant AppConfig::getUserScript() const { return getProperty(NUV_STRING("UserScript")); }
void AppConfig::setUserScript(QVariant const &value) { setProperty(NUV_STRING("UserScript"), value); }

QVariant AppConfig::getUserAgent() const { return getProperty(NUV_STRING("UserAgent")); }
void AppConfig::setUserAgent(QVariant const &value) { setProperty(NUV_STRING("UserAgent"), value); }

QVariant AppConfig::getCertPassPhrase() const { return getProperty(NUV_STRING("CertPassPhrase")); }
void AppConfig::setCertPassPhrase(QVariant const &value) { setProperty(NUV_STRING("CertPassPhrase"), value); }

QVariant AppConfig::getCertPrivateKey() const { return getProperty(NUV_STRING("CertPrivateKey")); }
void AppConfig::setCertPrivateKey(QVariant const &value) { setProperty(NUV_STRING("CertPrivateKey"), value); }

QVariant AppConfig::getCertPath() const { return getProperty(NUV_STRING("CertPath")); }
void AppConfig::setCertPath(QVariant const &value) { setProperty(NUV_STRING("CertPath"), value); }
