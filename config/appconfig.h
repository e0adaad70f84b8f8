// SPDX-License-Identifier: MIT
#ifndef APPCONFIG_H
#define APPCONFIG_H

/// \file
/// The settings of one web application.

#include "nuvlaunchersupport_export.h"

#include <QHash>
#include <QString>
#include <QVariant>

/// The browser settings of one web application, or of the global section of the configuration file:
/// a bag of named values.
///
/// The values are what the configuration file holds, unconverted: a QString, a bool, an int, a
/// qlonglong or a double; GrantBroadcastAccessRightDomains is a QStringList. What they mean, in which
/// unit and range, is the launcher's to say. A getter returns an invalid QVariant when the property is
/// not configured, and so does it after an invalid QVariant was set.
///
/// \code
/// AppConfig config;
/// if (getWebAppSettings()->getAppConfig(QLatin1String("tv"), config)) {
///     const QVariant scale = config.getScale();
///     if (scale.isValid())
///         view->setZoomFactor(scale.toDouble());
/// }
/// \endcode
///
/// Copies are cheap: they share their values until one of them is written. A copy that a caller
/// changes never changes the object that it was copied from. Objects are not synchronised; copies may
/// be read from different threads. No operation fails, but for the exceptions of the containers when
/// memory runs out.
class NUVLAUNCHERSUPPORT_EXPORT AppConfig
{
public:
    /// The value under `key`, which need not be one of the named properties; invalid when there is
    /// none. Keys are compared exactly, with their case.
    QVariant getProperty(QString const &key) const;

    /// Stores `value` under `key` and replaces what was there.
    void setProperty(QString const &key, QVariant const &value);

    /// \name The named properties
    /// Each reads and writes the key of its own name. The certificate's three come from "Path",
    /// "PrivateKey" and "PassPhrase" of the file's "Certificate".
    /// \{

    /// Reads or stores the value under the key that the function's name ends in. A getter returns an
    /// invalid value when that is not configured.
    QVariant getProhibitMainFrameScrolling() const;
    void setProhibitMainFrameScrolling(QVariant const &value);

    QVariant getGrantBroadcastRelatedSecurityClearance() const;
    void setGrantBroadcastRelatedSecurityClearance(QVariant const &value);

    QVariant getOfflineStorageDatabaseEnabled() const;
    void setOfflineStorageDatabaseEnabled(QVariant const &value);

    QVariant getOfflineWebApplicationCacheEnabled() const;
    void setOfflineWebApplicationCacheEnabled(QVariant const &value);

    QVariant getLocalContentCanAccessRemoteUrls() const;
    void setLocalContentCanAccessRemoteUrls(QVariant const &value);

    QVariant getNetworkSessionNoAutoClose() const;
    void setNetworkSessionNoAutoClose(QVariant const &value);

    QVariant getHttpReferrer() const;
    void setHttpReferrer(QVariant const &value);

    QVariant getGrantBroadcastAccessRightDomains() const;
    void setGrantBroadcastAccessRightDomains(QVariant const &value);

    QVariant getDisableSpatialNavigation() const;
    void setDisableSpatialNavigation(QVariant const &value);

    QVariant getHttpProxy() const;
    void setHttpProxy(QVariant const &value);

    QVariant getRemoteInspectorPort() const;
    void setRemoteInspectorPort(QVariant const &value);

    QVariant getFrameless() const;
    void setFrameless(QVariant const &value);

    QVariant getShowScrollbar() const;
    void setShowScrollbar(QVariant const &value);

    QVariant getWindowOpacity() const;
    void setWindowOpacity(QVariant const &value);

    QVariant getOfflineStorageDefaultQuotaSize() const;
    void setOfflineStorageDefaultQuotaSize(QVariant const &value);

    QVariant getEnableShowErrorPage() const;
    void setEnableShowErrorPage(QVariant const &value);

    QVariant getShowChrome() const;
    void setShowChrome(QVariant const &value);

    QVariant getScale() const;
    void setScale(QVariant const &value);

    QVariant getSuppressWebCoreWarningMessages() const;
    void setSuppressWebCoreWarningMessages(QVariant const &value);

    QVariant getUseTransparentBackground() const;
    void setUseTransparentBackground(QVariant const &value);

    QVariant getStartMaximized() const;
    void setStartMaximized(QVariant const &value);

    QVariant getPrintLoadedUrls() const;
    void setPrintLoadedUrls(QVariant const &value);

    QVariant getUseDiskCookies() const;
    void setUseDiskCookies(QVariant const &value);

    QVariant getUseOfflineWebApplicationCache() const;
    void setUseOfflineWebApplicationCache(QVariant const &value);

    QVariant getUseOfflineStorageDatabase() const;
    void setUseOfflineStorageDatabase(QVariant const &value);

    QVariant getUseLocalStorage() const;
    void setUseLocalStorage(QVariant const &value);

    QVariant getResizesToContents() const;
    void setResizesToContents(QVariant const &value);

    QVariant getShowFrameRate() const;
    void setShowFrameRate(QVariant const &value);

    QVariant getCacheWebView() const;
    void setCacheWebView(QVariant const &value);

    QVariant getUseFrameFlattening() const;
    void setUseFrameFlattening(QVariant const &value);

    QVariant getShowDebugBorders() const;
    void setShowDebugBorders(QVariant const &value);

    QVariant getUseWebGL() const;
    void setUseWebGL(QVariant const &value);

    QVariant getUseTiledBackingStore() const;
    void setUseTiledBackingStore(QVariant const &value);

    QVariant getUseCompositing() const;
    void setUseCompositing(QVariant const &value);

    QVariant getUseDiskCache() const;
    void setUseDiskCache(QVariant const &value);

    QVariant getUseGraphicsView() const;
    void setUseGraphicsView(QVariant const &value);

    QVariant getUrl() const;
    void setUrl(QVariant const &value);

    QVariant getUserScript() const;
    void setUserScript(QVariant const &value);

    QVariant getUserAgent() const;
    void setUserAgent(QVariant const &value);

    QVariant getCertPassPhrase() const;
    void setCertPassPhrase(QVariant const &value);

    QVariant getCertPrivateKey() const;
    void setCertPrivateKey(QVariant const &value);

    QVariant getCertPath() const;
    void setCertPath(QVariant const &value);

    /// \}

private:
    QHash<QString, QVariant> properties;
};

#endif // APPCONFIG_H
