#include "effects/enginesettings.h"

#include "program/console.h"
#include "effects/remoteinspector.h"
#include "effects/storagequota.h"
#include "program/userfolders.h"

bool EngineSettings::setSpatialNavigationDisabled(ApplicationView &view, const QVariant &on)
{
    return setAttribute<QWebSettings::SpatialNavigationEnabled>(view, !on.toBool());
}

bool EngineSettings::setLocalStorage(ApplicationView &view, const QVariant &on)
{
    view.page()->settings()->setLocalStoragePath(UserFolders::data()
                                                 + UserFolders::nameFor(view.tag()));
    return setAttribute<QWebSettings::LocalStorageEnabled>(view, on);
}

// Newer engines do not look at their attribute, and hand out databases in any case.
bool EngineSettings::setDatabases(ApplicationView &view, const QVariant &on)
{
    const char takeAway[] = "Object.defineProperty(window, 'openDatabase', { value: undefined })";
    view.page()->setDocumentScript("databases", QLatin1String(on.toBool() ? "" : takeAway));
    return setAttribute<QWebSettings::OfflineStorageDatabaseEnabled>(view, on);
}

bool EngineSettings::setDatabaseQuota(ApplicationView &view, const QVariant &bytes)
{
    new StorageQuota(view.page(), bytes.toLongLong());
    return true;
}

bool EngineSettings::setInspectorPort(ApplicationView &view, const QVariant &port)
{
    const QString problem = RemoteInspector::open(view.page(), quint16(port.toUInt()));
    if (!problem.isEmpty())
        Console::error(QString(QLatin1String("%1: RemoteInspectorPort = %2 has no effect: %3"))
                           .arg(view.tag(), port.toString(), problem));
    return true;
}

// The engine has no attribute for it. It looks into the environment whenever an attribute is set, and
// keeps for that page what it finds.
bool EngineSettings::setDebugBorders(ApplicationView &view, const QVariant &on)
{
    const char variable[] = "WEBKIT_SHOW_COMPOSITING_DEBUG_VISUALS";
    const QByteArray before = qgetenv(variable);
    qputenv(variable, on.toBool() ? "1" : "0");
    const QWebSettings::WebAttribute any = QWebSettings::AcceleratedCompositingEnabled;
    view.page()->settings()->setAttribute(any, view.page()->settings()->testAttribute(any));
    qputenv(variable, before);
    return true;
}

namespace {

bool isCompositing(const ApplicationView &view)
{
    return view.page()->settings()->testAttribute(QWebSettings::AcceleratedCompositingEnabled);
}

} // namespace

const Need EngineSettings::compositing = { "UseCompositing", isCompositing };
