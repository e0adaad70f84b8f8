#include "config/appconfig.h"

QVariant AppConfig::getProperty(QString const &key) const
{
    return properties.value(key);
}

void AppConfig::setProperty(QString const &key, QVariant const &value)
{
    properties.insert(key, value);
}

// clang-format off

QVariant AppConfig::getProhibitMainFrameScrolling() const { return getProperty(QLatin1String("ProhibitMainFrameScrolling")); }
void AppConfig::setProhibitMainFrameScrolling(QVariant const &value) { setProperty(QLatin1String("ProhibitMainFrameScrolling"), value); }

QVariant AppConfig::getGrantBroadcastRelatedSecurityClearance() const { return getProperty(QLatin1String("GrantBroadcastRelatedSecurityClearance")); }
void AppConfig::setGrantBroadcastRelatedSecurityClearance(QVariant const &value) { setProperty(QLatin1String("GrantBroadcastRelatedSecurityClearance"), value); }

QVariant AppConfig::getOfflineStorageDatabaseEnabled() const { return getProperty(QLatin1String("OfflineStorageDatabaseEnabled")); }
void AppConfig::setOfflineStorageDatabaseEnabled(QVariant const &value) { setProperty(QLatin1String("OfflineStorageDatabaseEnabled"), value); }

QVariant AppConfig::getOfflineWebApplicationCacheEnabled() const { return getProperty(QLatin1String("OfflineWebApplicationCacheEnabled")); }
void AppConfig::setOfflineWebApplicationCacheEnabled(QVariant const &value) { setProperty(QLatin1String("OfflineWebApplicationCacheEnabled"), value); }

QVariant AppConfig::getLocalContentCanAccessRemoteUrls() const { return getProperty(QLatin1String("LocalContentCanAccessRemoteUrls")); }
void AppConfig::setLocalContentCanAccessRemoteUrls(QVariant const &value) { setProperty(QLatin1String("LocalContentCanAccessRemoteUrls"), value); }

QVariant AppConfig::getNetworkSessionNoAutoClose() const { return getProperty(QLatin1String("NetworkSessionNoAutoClose")); }
void AppConfig::setNetworkSessionNoAutoClose(QVariant const &value) { setProperty(QLatin1String("NetworkSessionNoAutoClose"), value); }

QVariant AppConfig::getHttpReferrer() const { return getProperty(QLatin1String("HttpReferrer")); }
void AppConfig::setHttpReferrer(QVariant const &value) { setProperty(QLatin1String("HttpReferrer"), value); }

QVariant AppConfig::getGrantBroadcastAccessRightDomains() const { return getProperty(QLatin1String("GrantBroadcastAccessRightDomains")); }
void AppConfig::setGrantBroadcastAccessRightDomains(QVariant const &value) { setProperty(QLatin1String("GrantBroadcastAccessRightDomains"), value); }

QVariant AppConfig::getDisableSpatialNavigation() const { return getProperty(QLatin1String("DisableSpatialNavigation")); }
void AppConfig::setDisableSpatialNavigation(QVariant const &value) { setProperty(QLatin1String("DisableSpatialNavigation"), value); }

QVariant AppConfig::getHttpProxy() const { return getProperty(QLatin1String("HttpProxy")); }
void AppConfig::setHttpProxy(QVariant const &value) { setProperty(QLatin1String("HttpProxy"), value); }

QVariant AppConfig::getRemoteInspectorPort() const { return getProperty(QLatin1String("RemoteInspectorPort")); }
void AppConfig::setRemoteInspectorPort(QVariant const &value) { setProperty(QLatin1String("RemoteInspectorPort"), value); }

QVariant AppConfig::getFrameless() const { return getProperty(QLatin1String("Frameless")); }
void AppConfig::setFrameless(QVariant const &value) { setProperty(QLatin1String("Frameless"), value); }

QVariant AppConfig::getShowScrollbar() const { return getProperty(QLatin1String("ShowScrollbar")); }
void AppConfig::setShowScrollbar(QVariant const &value) { setProperty(QLatin1String("ShowScrollbar"), value); }

QVariant AppConfig::getWindowOpacity() const { return getProperty(QLatin1String("WindowOpacity")); }
void AppConfig::setWindowOpacity(QVariant const &value) { setProperty(QLatin1String("WindowOpacity"), value); }

QVariant AppConfig::getOfflineStorageDefaultQuotaSize() const { return getProperty(QLatin1String("OfflineStorageDefaultQuotaSize")); }
void AppConfig::setOfflineStorageDefaultQuotaSize(QVariant const &value) { setProperty(QLatin1String("OfflineStorageDefaultQuotaSize"), value); }

QVariant AppConfig::getEnableShowErrorPage() const { return getProperty(QLatin1String("EnableShowErrorPage")); }
void AppConfig::setEnableShowErrorPage(QVariant const &value) { setProperty(QLatin1String("EnableShowErrorPage"), value); }

QVariant AppConfig::getShowChrome() const { return getProperty(QLatin1String("ShowChrome")); }
void AppConfig::setShowChrome(QVariant const &value) { setProperty(QLatin1String("ShowChrome"), value); }

QVariant AppConfig::getScale() const { return getProperty(QLatin1String("Scale")); }
void AppConfig::setScale(QVariant const &value) { setProperty(QLatin1String("Scale"), value); }

QVariant AppConfig::getSuppressWebCoreWarningMessages() const { return getProperty(QLatin1String("SuppressWebCoreWarningMessages")); }
void AppConfig::setSuppressWebCoreWarningMessages(QVariant const &value) { setProperty(QLatin1String("SuppressWebCoreWarningMessages"), value); }

QVariant AppConfig::getUseTransparentBackground() const { return getProperty(QLatin1String("UseTransparentBackground")); }
void AppConfig::setUseTransparentBackground(QVariant const &value) { setProperty(QLatin1String("UseTransparentBackground"), value); }

QVariant AppConfig::getStartMaximized() const { return getProperty(QLatin1String("StartMaximized")); }
void AppConfig::setStartMaximized(QVariant const &value) { setProperty(QLatin1String("StartMaximized"), value); }

QVariant AppConfig::getPrintLoadedUrls() const { return getProperty(QLatin1String("PrintLoadedUrls")); }
void AppConfig::setPrintLoadedUrls(QVariant const &value) { setProperty(QLatin1String("PrintLoadedUrls"), value); }

QVariant AppConfig::getUseDiskCookies() const { return getProperty(QLatin1String("UseDiskCookies")); }
void AppConfig::setUseDiskCookies(QVariant const &value) { setProperty(QLatin1String("UseDiskCookies"), value); }

QVariant AppConfig::getUseOfflineWebApplicationCache() const { return getProperty(QLatin1String("UseOfflineWebApplicationCache")); }
void AppConfig::setUseOfflineWebApplicationCache(QVariant const &value) { setProperty(QLatin1String("UseOfflineWebApplicationCache"), value); }

QVariant AppConfig::getUseOfflineStorageDatabase() const { return getProperty(QLatin1String("UseOfflineStorageDatabase")); }
void AppConfig::setUseOfflineStorageDatabase(QVariant const &value) { setProperty(QLatin1String("UseOfflineStorageDatabase"), value); }

QVariant AppConfig::getUseLocalStorage() const { return getProperty(QLatin1String("UseLocalStorage")); }
void AppConfig::setUseLocalStorage(QVariant const &value) { setProperty(QLatin1String("UseLocalStorage"), value); }

QVariant AppConfig::getResizesToContents() const { return getProperty(QLatin1String("ResizesToContents")); }
void AppConfig::setResizesToContents(QVariant const &value) { setProperty(QLatin1String("ResizesToContents"), value); }

QVariant AppConfig::getShowFrameRate() const { return getProperty(QLatin1String("ShowFrameRate")); }
void AppConfig::setShowFrameRate(QVariant const &value) { setProperty(QLatin1String("ShowFrameRate"), value); }

QVariant AppConfig::getCacheWebView() const { return getProperty(QLatin1String("CacheWebView")); }
void AppConfig::setCacheWebView(QVariant const &value) { setProperty(QLatin1String("CacheWebView"), value); }

QVariant AppConfig::getUseFrameFlattening() const { return getProperty(QLatin1String("UseFrameFlattening")); }
void AppConfig::setUseFrameFlattening(QVariant const &value) { setProperty(QLatin1String("UseFrameFlattening"), value); }

QVariant AppConfig::getShowDebugBorders() const { return getProperty(QLatin1String("ShowDebugBorders")); }
void AppConfig::setShowDebugBorders(QVariant const &value) { setProperty(QLatin1String("ShowDebugBorders"), value); }

QVariant AppConfig::getUseWebGL() const { return getProperty(QLatin1String("UseWebGL")); }
void AppConfig::setUseWebGL(QVariant const &value) { setProperty(QLatin1String("UseWebGL"), value); }

QVariant AppConfig::getUseTiledBackingStore() const { return getProperty(QLatin1String("UseTiledBackingStore")); }
void AppConfig::setUseTiledBackingStore(QVariant const &value) { setProperty(QLatin1String("UseTiledBackingStore"), value); }

QVariant AppConfig::getUseCompositing() const { return getProperty(QLatin1String("UseCompositing")); }
void AppConfig::setUseCompositing(QVariant const &value) { setProperty(QLatin1String("UseCompositing"), value); }

QVariant AppConfig::getUseDiskCache() const { return getProperty(QLatin1String("UseDiskCache")); }
void AppConfig::setUseDiskCache(QVariant const &value) { setProperty(QLatin1String("UseDiskCache"), value); }

QVariant AppConfig::getUseGraphicsView() const { return getProperty(QLatin1String("UseGraphicsView")); }
void AppConfig::setUseGraphicsView(QVariant const &value) { setProperty(QLatin1String("UseGraphicsView"), value); }

QVariant AppConfig::getUrl() const { return getProperty(QLatin1String("Url")); }
void AppConfig::setUrl(QVariant const &value) { setProperty(QLatin1String("Url"), value); }

QVariant AppConfig::getUserScript() const { return getProperty(QLatin1String("UserScript")); }
void AppConfig::setUserScript(QVariant const &value) { setProperty(QLatin1String("UserScript"), value); }

QVariant AppConfig::getUserAgent() const { return getProperty(QLatin1String("UserAgent")); }
void AppConfig::setUserAgent(QVariant const &value) { setProperty(QLatin1String("UserAgent"), value); }

QVariant AppConfig::getCertPassPhrase() const { return getProperty(QLatin1String("CertPassPhrase")); }
void AppConfig::setCertPassPhrase(QVariant const &value) { setProperty(QLatin1String("CertPassPhrase"), value); }

QVariant AppConfig::getCertPrivateKey() const { return getProperty(QLatin1String("CertPrivateKey")); }
void AppConfig::setCertPrivateKey(QVariant const &value) { setProperty(QLatin1String("CertPrivateKey"), value); }

QVariant AppConfig::getCertPath() const { return getProperty(QLatin1String("CertPath")); }
void AppConfig::setCertPath(QVariant const &value) { setProperty(QLatin1String("CertPath"), value); }
