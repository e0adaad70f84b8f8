// SPDX-License-Identifier: MIT
#include "settings/jsonsettingsformat.h"

// Runs when the library is loaded, before any code of the launcher. The toolkit has room for 16 such
// formats and never gives one back, hence once and in a library that is never unloaded.
QSettings::Format JsonSettingsFormat = QSettings::registerFormat(
    QLatin1String("json"), readJsonSettings, writeJsonSettings, Qt::CaseSensitive);
