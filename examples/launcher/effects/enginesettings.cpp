// SPDX-License-Identifier: MIT
#include "effects/enginesettings.h"

#include "application/guicompat.h"
#include "program/console.h"
#include "effects/debugborders.h"
#include "effects/remoteinspector.h"
#include "effects/storagequota.h"

bool EngineSettings::setSpatialNavigationDisabled(ApplicationView &view, const QVariant &on)
{
    return setAttribute<QWebSettings::SpatialNavigationEnabled>(view, !on.toBool());
}

bool EngineSettings::setDatabases(ApplicationView &view, const QVariant &on)
{
    view.page()->setDatabasesAreOffered(on.toBool());
    StorageQuota::of(view.page());
    GuiCompat::switchDatabases(view.page()->settings(), on.toBool());
    return true;
}

bool EngineSettings::setDatabaseQuota(ApplicationView &view, const QVariant &bytes)
{
    StorageQuota::of(view.page())->setBytes(bytes.toLongLong());
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

bool EngineSettings::setDebugBorders(ApplicationView &view, const QVariant &on)
{
    DebugBorders::show(view.page(), on.toBool());
    return true;
}

namespace {

bool isCompositing(const ApplicationView &view)
{
    return view.page()->settings()->testAttribute(QWebSettings::AcceleratedCompositingEnabled);
}

bool hasDatabases(const ApplicationView &view)
{
    return view.page()->databasesAreOffered();
}

} // namespace

const Need EngineSettings::compositing = { "UseCompositing", isCompositing };
const Need EngineSettings::databases = { "UseOfflineStorageDatabase", hasDatabases };
