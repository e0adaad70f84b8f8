// SPDX-License-Identifier: MIT
#include "effects/extensionsettings.h"

#include "application/applicationview.h"
#include "application/broadcastaccess.h"

#include <QVariant>

bool ExtensionSettings::setBroadcastClearance(ApplicationView &view, const QVariant &on)
{
    view.broadcastAccess().setClearance(on.toBool());
    return true;
}

bool ExtensionSettings::setBroadcastDomains(ApplicationView &view, const QVariant &domains)
{
    return view.broadcastAccess().setDomains(domains.toStringList());
}
