#include "examples/launcher/viewsettings.h"

#include "config/appconfig.h"
#include "examples/launcher/applicationview.h"
#include "examples/launcher/configurationfile.h"
#include "examples/launcher/console.h"
#include "examples/launcher/userfolders.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QStringList>
#include <QWebFrame>
#include <QWebSettings>

#include <cstring>
#include <limits>

namespace {

// What the values are read as. Each JSON kind stands for itself: "true" is a text, no switch.

bool isSwitch(const QVariant &value)
{
    return value.userType() == QMetaType::Bool;
}

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

/// Not a number (NaN) for any other kind of value.
double number(const QVariant &value)
{
    const int type = value.userType();
    const bool isNumber =
        type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
    return isNumber ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

// The effects. Each returns false, and does nothing, when it cannot use the value.

template<QWebSettings::WebAttribute attribute>
bool setAttribute(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value))
        view.settings()->setAttribute(attribute, value.toBool());
    return isSwitch(value);
}

bool setSpatialNavigation(ApplicationView &view, const QVariant &disabled)
{
    return isSwitch(disabled)
        && setAttribute<QWebSettings::SpatialNavigationEnabled>(view, !disabled.toBool());
}

bool setUrl(ApplicationView &view, const QVariant &value)
{
    if (!isText(value) || value.toString().isEmpty())
        return false;
    const QUrl base =
        QUrl::fromLocalFile(ConfigurationFile::resolve(QLatin1String(".")) + QLatin1Char('/'));
    view.setAddress(base.resolved(QUrl(value.toString())));
    return true;
}

bool setUserAgent(ApplicationView &view, const QVariant &value)
{
    if (isText(value))
        view.setUserAgent(value.toString());
    return isText(value);
}

bool setUserScript(ApplicationView &view, const QVariant &value)
{
    QFile file(ConfigurationFile::resolve(value.toString()));
    if (!isText(value) || !file.open(QIODevice::ReadOnly))
        return false;
    view.setUserScript(QString::fromUtf8(file.readAll().constData()));
    return true;
}

bool setScale(ApplicationView &view, const QVariant &value)
{
    const double factor = number(value);
    if (!(factor >= 0.1 && factor <= 10))
        return false;
    view.setZoomFactor(qreal(factor)); // a float in the Qt 4 of ARM devices
    return true;
}

bool setWindowOpacity(ApplicationView &view, const QVariant &value)
{
    const double opacity = number(value);
    if (!(opacity >= 0 && opacity <= 1))
        return false;
    view.setWindowOpacity(qreal(opacity));
    return true;
}

bool setFrameless(ApplicationView &view, const QVariant &value)
{
    const Qt::WindowFlags others = view.windowFlags() & ~Qt::FramelessWindowHint;
    if (isSwitch(value))
        view.setWindowFlags(value.toBool() ? others | Qt::FramelessWindowHint : others);
    return isSwitch(value);
}

bool setMaximized(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value))
        view.setWindowState(value.toBool() ? Qt::WindowMaximized : Qt::WindowNoState);
    return isSwitch(value);
}

bool setTransparentBackground(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value) && value.toBool()) {
        QPalette palette = view.page()->palette();
        palette.setBrush(QPalette::Base, Qt::transparent);
        view.page()->setPalette(palette);
        view.setAttribute(Qt::WA_TranslucentBackground);
        view.setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    return isSwitch(value);
}

bool setScrollbar(ApplicationView &view, const QVariant &value)
{
    if (!isSwitch(value))
        return false;
    const Qt::ScrollBarPolicy policy =
        value.toBool() ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
    view.page()->mainFrame()->setScrollBarPolicy(Qt::Horizontal, policy);
    view.page()->mainFrame()->setScrollBarPolicy(Qt::Vertical, policy);
    return true;
}

bool setDiskCache(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value) && value.toBool() && view.networkAccess()) {
        QNetworkDiskCache *cache = new QNetworkDiskCache(&view);
        cache->setCacheDirectory(UserFolders::cache() + UserFolders::nameFor(view.tag()));
        view.networkAccess()->setCache(cache);
    }
    return isSwitch(value);
}

bool setLocalStorage(ApplicationView &view, const QVariant &value)
{
    view.settings()->setLocalStoragePath(UserFolders::data() + UserFolders::nameFor(view.tag()));
    return setAttribute<QWebSettings::LocalStorageEnabled>(view, value);
}

bool setSuppressedMessages(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value))
        view.setConsoleIsShown(!value.toBool());
    return isSwitch(value);
}

bool setPrintLoadedUrls(ApplicationView &view, const QVariant &value)
{
    if (isSwitch(value))
        view.setLoadedUrlsArePrinted(value.toBool());
    return isSwitch(value);
}

// The view takes the three texts of a certificate together, after all others.
bool checkCertificateText(ApplicationView &, const QVariant &value)
{
    return isText(value);
}

struct Property {
    const char *name;
    QVariant (AppConfig::*get)() const;
    bool (*apply)(ApplicationView &view, const QVariant &value); // null: without effect here
};

// In the order in which they are printed and applied. Several properties have a second name; where
// an application has both, the later row decides.
const Property properties[] = {
    { "Url", &AppConfig::getUrl, setUrl },
    { "UserAgent", &AppConfig::getUserAgent, setUserAgent },
    { "UserScript", &AppConfig::getUserScript, setUserScript },

    { "Frameless", &AppConfig::getFrameless, setFrameless },
    { "StartMaximized", &AppConfig::getStartMaximized, setMaximized },
    { "WindowOpacity", &AppConfig::getWindowOpacity, setWindowOpacity },
    { "UseTransparentBackground", &AppConfig::getUseTransparentBackground,
      setTransparentBackground },
    { "Scale", &AppConfig::getScale, setScale },
    { "ShowScrollbar", &AppConfig::getShowScrollbar, setScrollbar },
    { "ShowChrome", &AppConfig::getShowChrome, nullptr },
    { "ResizesToContents", &AppConfig::getResizesToContents, nullptr },
    { "ProhibitMainFrameScrolling", &AppConfig::getProhibitMainFrameScrolling, nullptr },
    { "DisableSpatialNavigation", &AppConfig::getDisableSpatialNavigation, setSpatialNavigation },

    { "UseGraphicsView", &AppConfig::getUseGraphicsView, nullptr },
    { "UseCompositing", &AppConfig::getUseCompositing,
      setAttribute<QWebSettings::AcceleratedCompositingEnabled> },
    { "UseTiledBackingStore", &AppConfig::getUseTiledBackingStore,
      setAttribute<QWebSettings::TiledBackingStoreEnabled> },
    { "UseWebGL", &AppConfig::getUseWebGL, setAttribute<QWebSettings::WebGLEnabled> },
    { "UseFrameFlattening", &AppConfig::getUseFrameFlattening,
      setAttribute<QWebSettings::FrameFlatteningEnabled> },
    { "ShowDebugBorders", &AppConfig::getShowDebugBorders, nullptr },
    { "ShowFrameRate", &AppConfig::getShowFrameRate, nullptr },

    { "UseDiskCache", &AppConfig::getUseDiskCache, setDiskCache },
    { "UseDiskCookies", &AppConfig::getUseDiskCookies, nullptr },
    { "UseLocalStorage", &AppConfig::getUseLocalStorage, setLocalStorage },
    { "OfflineStorageDatabaseEnabled", &AppConfig::getOfflineStorageDatabaseEnabled,
      setAttribute<QWebSettings::OfflineStorageDatabaseEnabled> },
    { "UseOfflineStorageDatabase", &AppConfig::getUseOfflineStorageDatabase,
      setAttribute<QWebSettings::OfflineStorageDatabaseEnabled> },
    { "OfflineStorageDefaultQuotaSize", &AppConfig::getOfflineStorageDefaultQuotaSize, nullptr },
    { "OfflineWebApplicationCacheEnabled", &AppConfig::getOfflineWebApplicationCacheEnabled,
      setAttribute<QWebSettings::OfflineWebApplicationCacheEnabled> },
    { "UseOfflineWebApplicationCache", &AppConfig::getUseOfflineWebApplicationCache,
      setAttribute<QWebSettings::OfflineWebApplicationCacheEnabled> },
    { "CacheWebView", &AppConfig::getCacheWebView, nullptr },

    { "LocalContentCanAccessRemoteUrls", &AppConfig::getLocalContentCanAccessRemoteUrls,
      setAttribute<QWebSettings::LocalContentCanAccessRemoteUrls> },
    { "GrantBroadcastRelatedSecurityClearance",
      &AppConfig::getGrantBroadcastRelatedSecurityClearance, nullptr },
    { "GrantBroadcastAccessRightDomains", &AppConfig::getGrantBroadcastAccessRightDomains,
      nullptr },

    { "HttpProxy", &AppConfig::getHttpProxy, nullptr },
    { "HttpReferrer", &AppConfig::getHttpReferrer, nullptr },
    { "NetworkSessionNoAutoClose", &AppConfig::getNetworkSessionNoAutoClose, nullptr },
    { "CertPath", &AppConfig::getCertPath, checkCertificateText },
    { "CertPrivateKey", &AppConfig::getCertPrivateKey, checkCertificateText },
    { "CertPassPhrase", &AppConfig::getCertPassPhrase, checkCertificateText },

    { "EnableShowErrorPage", &AppConfig::getEnableShowErrorPage, nullptr },
    { "PrintLoadedUrls", &AppConfig::getPrintLoadedUrls, setPrintLoadedUrls },
    { "SuppressWebCoreWarningMessages", &AppConfig::getSuppressWebCoreWarningMessages,
      setSuppressedMessages },
    { "RemoteInspectorPort", &AppConfig::getRemoteInspectorPort, nullptr },
};

QString printable(const Property &property, const QVariant &value)
{
    if (property.get == &AppConfig::getCertPassPhrase)
        return Console::mask();
    // A proxy can stand without the slashes that tell where its password is.
    if (property.get == &AppConfig::getHttpProxy)
        return Console::shown(QLatin1String("//") + value.toString()).mid(2);
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1String(", "));
    return value.toString();
}

int longestName(const AppConfig &config)
{
    int longest = 0;
    for (const Property &property : properties) {
        if ((config.*property.get)().isValid())
            longest = qMax(longest, static_cast<int>(std::strlen(property.name)));
    }
    return longest;
}

void print(const ApplicationView &view, const Property &property, const QString &value, int width)
{
    const QString name = QString(QLatin1String(property.name)).leftJustified(width);
    const QString line = name + QLatin1String(" = ") + value;
    Console::note(view.tag(),
                  property.apply ? line : line + QLatin1String("  (without effect here)"));
}

} // namespace

void ViewSettings::apply(const AppConfig &config, ApplicationView &view)
{
    const int width = longestName(config);
    for (const Property &property : properties) {
        const QVariant value = (config.*property.get)();
        if (!value.isValid())
            continue;
        print(view, property, printable(property, value), width);
        if (property.apply && !property.apply(view, value))
            Console::error(
                QString(QLatin1String("%1: %2 = %3 cannot be used"))
                    .arg(view.tag(), QLatin1String(property.name), printable(property, value)));
    }
}
