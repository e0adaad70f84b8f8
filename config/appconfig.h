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

    // The comments of the pairs are made from the table of nuv-apps-config:
    //     cmake --build BUILD --target documents

    /// \name The named properties
    /// Each reads and writes the key of its own name. The certificate's three come from "Path",
    /// "PrivateKey" and "PassPhrase" of the file's "Certificate". The kind is that of a value that is
    /// right; the file may have another one. A getter returns an invalid value for a property that is
    /// missing; what a launcher does then is said of each.
    /// \{

    /// The page as a whole cannot be scrolled. Parts of it that scroll by themselves still can.
    ///
    /// True or false. When missing: Off.
    QVariant getProhibitMainFrameScrolling() const;
    /// Stores ProhibitMainFrameScrolling: true or false. See getProhibitMainFrameScrolling().
    void setProhibitMainFrameScrolling(QVariant const &value);

    /// The application may use the interfaces that control the broadcast receiver.
    ///
    /// True or false. When missing: Off.
    QVariant getGrantBroadcastRelatedSecurityClearance() const;
    /// Stores GrantBroadcastRelatedSecurityClearance: true or false. See
    /// getGrantBroadcastRelatedSecurityClearance().
    void setGrantBroadcastRelatedSecurityClearance(QVariant const &value);

    /// The older name of UseOfflineStorageDatabase, which decides where an application has both.
    ///
    /// True or false. When missing: Off.
    QVariant getOfflineStorageDatabaseEnabled() const;
    /// Stores OfflineStorageDatabaseEnabled: true or false. See getOfflineStorageDatabaseEnabled().
    void setOfflineStorageDatabaseEnabled(QVariant const &value);

    /// The older name of UseOfflineWebApplicationCache, which decides where an application has
    /// both.
    ///
    /// True or false. When missing: Off.
    QVariant getOfflineWebApplicationCacheEnabled() const;
    /// Stores OfflineWebApplicationCacheEnabled: true or false. See
    /// getOfflineWebApplicationCacheEnabled().
    void setOfflineWebApplicationCacheEnabled(QVariant const &value);

    /// Pages from files may fetch from the network. Switch it on only for files that come with the
    /// device.
    ///
    /// True or false. When missing: Off.
    QVariant getLocalContentCanAccessRemoteUrls() const;
    /// Stores LocalContentCanAccessRemoteUrls: true or false. See
    /// getLocalContentCanAccessRemoteUrls().
    void setLocalContentCanAccessRemoteUrls(QVariant const &value);

    /// The network connection stays open when nothing was transferred for a while.
    ///
    /// True or false. When missing: Off.
    QVariant getNetworkSessionNoAutoClose() const;
    /// Stores NetworkSessionNoAutoClose: true or false. See getNetworkSessionNoAutoClose().
    void setNetworkSessionNoAutoClose(QVariant const &value);

    /// What the first request names as the page that it comes from.
    ///
    /// A string with an address. A password in it is a secret. When missing: The browser's own
    /// default.
    QVariant getHttpReferrer() const;
    /// Stores HttpReferrer: a string with an address. See getHttpReferrer().
    void setHttpReferrer(QVariant const &value);

    /// The domains whose pages may reach the broadcast. An array of objects with the key Domain
    /// each; plain strings are lost.
    ///
    /// A QStringList; in the file, an array of objects. When missing: The host of Url is the one
    /// domain.
    QVariant getGrantBroadcastAccessRightDomains() const;
    /// Stores GrantBroadcastAccessRightDomains: a QStringList; in the file, an array of objects.
    /// See getGrantBroadcastAccessRightDomains().
    void setGrantBroadcastAccessRightDomains(QVariant const &value);

    /// The arrow keys do not move the focus from link to link. For pages that handle the keys of
    /// the remote control themselves.
    ///
    /// True or false. When missing: The browser's own default.
    QVariant getDisableSpatialNavigation() const;
    /// Stores DisableSpatialNavigation: true or false. See getDisableSpatialNavigation().
    void setDisableSpatialNavigation(QVariant const &value);

    /// The proxy for the application's requests. It may carry a user name and a password, which are
    /// never shown.
    ///
    /// A string with a host and a port (host:port). A password in it is a secret. When missing:
    /// Direct connections.
    QVariant getHttpProxy() const;
    /// Stores HttpProxy: a string with a host and a port (host:port). See getHttpProxy().
    void setHttpProxy(QVariant const &value);

    /// The port of the remote inspector, instead of the global one. There is one inspector in a
    /// process, for all its applications: the port of the application that is opened first counts.
    ///
    /// An integer from 0 to 65535 (TCP port). When missing: The global port counts.
    QVariant getRemoteInspectorPort() const;
    /// Stores RemoteInspectorPort: an integer from 0 to 65535 (TCP port). See
    /// getRemoteInspectorPort().
    void setRemoteInspectorPort(QVariant const &value);

    /// The window has no frame and no title.
    ///
    /// True or false. When missing: Off.
    QVariant getFrameless() const;
    /// Stores Frameless: true or false. See getFrameless().
    void setFrameless(QVariant const &value);

    /// Scrollbars are shown where the page is larger than the window. Off hides them; the page can
    /// still be scrolled.
    ///
    /// True or false. When missing: The browser's own default.
    QVariant getShowScrollbar() const;
    /// Stores ShowScrollbar: true or false. See getShowScrollbar().
    void setShowScrollbar(QVariant const &value);

    /// How opaque the window is, from 0, invisible, to 1. The window system must support it.
    ///
    /// A number from 0 to 1 (fraction). When missing: 1, opaque.
    QVariant getWindowOpacity() const;
    /// Stores WindowOpacity: a number from 0 to 1 (fraction). See getWindowOpacity().
    void setWindowOpacity(QVariant const &value);

    /// How much the databases of one site may hold.
    ///
    /// An integer from 0 to 9007199254740991 (bytes). Needs UseOfflineStorageDatabase or
    /// OfflineStorageDatabaseEnabled. When missing: The browser's own default.
    QVariant getOfflineStorageDefaultQuotaSize() const;
    /// Stores OfflineStorageDefaultQuotaSize: an integer from 0 to 9007199254740991 (bytes). See
    /// getOfflineStorageDefaultQuotaSize().
    void setOfflineStorageDefaultQuotaSize(QVariant const &value);

    /// A page that cannot be loaded is replaced by one that says so.
    ///
    /// True or false. When missing: The browser's own default.
    QVariant getEnableShowErrorPage() const;
    /// Stores EnableShowErrorPage: true or false. See getEnableShowErrorPage().
    void setEnableShowErrorPage(QVariant const &value);

    /// The launcher's own controls, such as an address bar, are shown around the page.
    ///
    /// True or false. When missing: Off.
    QVariant getShowChrome() const;
    /// Stores ShowChrome: true or false. See getShowChrome().
    void setShowChrome(QVariant const &value);

    /// The zoom factor of the page: 2 shows everything at twice its size.
    ///
    /// A number from 0.1 to 10 (factor). When missing: 1, the page's own size.
    QVariant getScale() const;
    /// Stores Scale: a number from 0.1 to 10 (factor). See getScale().
    void setScale(QVariant const &value);

    /// The messages of the page and of the browser are not printed.
    ///
    /// True or false. When missing: The messages are printed.
    QVariant getSuppressWebCoreWarningMessages() const;
    /// Stores SuppressWebCoreWarningMessages: true or false. See
    /// getSuppressWebCoreWarningMessages().
    void setSuppressWebCoreWarningMessages(QVariant const &value);

    /// Where the page paints nothing, what is behind the window shows through: the video, for an
    /// overlay.
    ///
    /// True or false. When missing: Off.
    QVariant getUseTransparentBackground() const;
    /// Stores UseTransparentBackground: true or false. See getUseTransparentBackground().
    void setUseTransparentBackground(QVariant const &value);

    /// The window takes the whole screen when it opens.
    ///
    /// True or false. When missing: Off.
    QVariant getStartMaximized() const;
    /// Stores StartMaximized: true or false. See getStartMaximized().
    void setStartMaximized(QVariant const &value);

    /// The address of everything that is loaded is printed. For developers.
    ///
    /// True or false. When missing: Off.
    QVariant getPrintLoadedUrls() const;
    /// Stores PrintLoadedUrls: true or false. See getPrintLoadedUrls().
    void setPrintLoadedUrls(QVariant const &value);

    /// Cookies are kept on disk.
    ///
    /// True or false. When missing: Cookies are gone with the application.
    QVariant getUseDiskCookies() const;
    /// Stores UseDiskCookies: true or false. See getUseDiskCookies().
    void setUseDiskCookies(QVariant const &value);

    /// Pages may name the files that the browser keeps for use without a network.
    /// OfflineWebApplicationCacheEnabled is a second name for it; give one of them.
    ///
    /// True or false. When missing: Off.
    QVariant getUseOfflineWebApplicationCache() const;
    /// Stores UseOfflineWebApplicationCache: true or false. See getUseOfflineWebApplicationCache().
    void setUseOfflineWebApplicationCache(QVariant const &value);

    /// Scripts may keep databases on the device. OfflineStorageDatabaseEnabled is a second name for
    /// it; give one of them.
    ///
    /// True or false. When missing: Off.
    QVariant getUseOfflineStorageDatabase() const;
    /// Stores UseOfflineStorageDatabase: true or false. See getUseOfflineStorageDatabase().
    void setUseOfflineStorageDatabase(QVariant const &value);

    /// Scripts may keep values through the page's local storage.
    ///
    /// True or false. When missing: Off.
    QVariant getUseLocalStorage() const;
    /// Stores UseLocalStorage: true or false. See getUseLocalStorage().
    void setUseLocalStorage(QVariant const &value);

    /// The view grows to the size of the page, instead of scrolling in it.
    ///
    /// True or false. Needs UseGraphicsView. When missing: Off.
    QVariant getResizesToContents() const;
    /// Stores ResizesToContents: true or false. See getResizesToContents().
    void setResizesToContents(QVariant const &value);

    /// The frames painted in a second are shown. For developers.
    ///
    /// True or false. When missing: Off.
    QVariant getShowFrameRate() const;
    /// Stores ShowFrameRate: true or false. See getShowFrameRate().
    void setShowFrameRate(QVariant const &value);

    /// The view of the application is kept when it is closed, so that it is there at once the next
    /// time. Costs memory.
    ///
    /// True or false. When missing: Off.
    QVariant getCacheWebView() const;
    /// Stores CacheWebView: true or false. See getCacheWebView().
    void setCacheWebView(QVariant const &value);

    /// Frames grow to the size of their contents, so that only the page as a whole scrolls.
    ///
    /// True or false. When missing: Off.
    QVariant getUseFrameFlattening() const;
    /// Stores UseFrameFlattening: true or false. See getUseFrameFlattening().
    void setUseFrameFlattening(QVariant const &value);

    /// Layers and tiles have coloured borders. For developers.
    ///
    /// True or false. Needs UseCompositing. When missing: Off.
    QVariant getShowDebugBorders() const;
    /// Stores ShowDebugBorders: true or false. See getShowDebugBorders().
    void setShowDebugBorders(QVariant const &value);

    /// Scripts may draw three-dimensional graphics through WebGL.
    ///
    /// True or false. When missing: The browser's own default.
    QVariant getUseWebGL() const;
    /// Stores UseWebGL: true or false. See getUseWebGL().
    void setUseWebGL(QVariant const &value);

    /// The page is painted ahead in tiles, so that scrolling is smooth. Costs memory.
    ///
    /// True or false. Needs UseGraphicsView. When missing: Off.
    QVariant getUseTiledBackingStore() const;
    /// Stores UseTiledBackingStore: true or false. See getUseTiledBackingStore().
    void setUseTiledBackingStore(QVariant const &value);

    /// Parts of the page that move are layers of their own, put together by the graphics hardware.
    ///
    /// True or false. When missing: The browser's own default.
    QVariant getUseCompositing() const;
    /// Stores UseCompositing: true or false. See getUseCompositing().
    void setUseCompositing(QVariant const &value);

    /// What was fetched from the network is kept on disk for the next time.
    ///
    /// True or false. When missing: Off.
    QVariant getUseDiskCache() const;
    /// Stores UseDiskCache: true or false. See getUseDiskCache().
    void setUseDiskCache(QVariant const &value);

    /// The page is shown as an item of a graphics scene, which tiling and growing to the contents
    /// need.
    ///
    /// True or false. When missing: Off.
    QVariant getUseGraphicsView() const;
    /// Stores UseGraphicsView: true or false. See getUseGraphicsView().
    void setUseGraphicsView(QVariant const &value);

    /// The address of the first page. One without a scheme is a file next to the configuration
    /// file.
    ///
    /// A string with an address. A password in it is a secret. When missing: Nothing is shown.
    QVariant getUrl() const;
    /// Stores Url: a string with an address. See getUrl().
    void setUrl(QVariant const &value);

    /// A file with a script that is run in every page of the application.
    ///
    /// A string with the path of a file. When missing: No script is added.
    QVariant getUserScript() const;
    /// Stores UserScript: a string with the path of a file. See getUserScript().
    void setUserScript(QVariant const &value);

    /// The text by which the browser names itself to servers and to scripts.
    ///
    /// A string. When missing: The browser's own default.
    QVariant getUserAgent() const;
    /// Stores UserAgent: a string. See getUserAgent().
    void setUserAgent(QVariant const &value);

    /// What the private key is encrypted with. Never shown.
    ///
    /// A string. Needs CertPath. It is a secret. When missing: The private key is not encrypted.
    QVariant getCertPassPhrase() const;
    /// Stores CertPassPhrase: a string. See getCertPassPhrase().
    void setCertPassPhrase(QVariant const &value);

    /// The file with the private key that belongs to the certificate, in PEM form. Nobody but the
    /// launcher's user should be able to read it.
    ///
    /// A string with the path of a file. Needs CertPath. When missing: The reference launcher looks
    /// for the key in the file of the certificate.
    QVariant getCertPrivateKey() const;
    /// Stores CertPrivateKey: a string with the path of a file. See getCertPrivateKey().
    void setCertPrivateKey(QVariant const &value);

    /// The file with the certificate, in PEM form.
    ///
    /// A string with the path of a file. When missing: There is no certificate, and the two other
    /// keys are not read.
    QVariant getCertPath() const;
    /// Stores CertPath: a string with the path of a file. See getCertPath().
    void setCertPath(QVariant const &value);

    /// \}

private:
    QHash<QString, QVariant> properties;
};

#endif // APPCONFIG_H
