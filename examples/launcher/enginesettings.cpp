#include "examples/launcher/enginesettings.h"

#include "examples/launcher/userfolders.h"

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
