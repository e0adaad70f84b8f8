// SPDX-License-Identifier: MIT
// The format around QJsonDocument instead of ours, for the loader of the library.

#include "benchmarks/formats.h"
#include "settings/jsonsettingsformat.h"

QSettings::Format JsonSettingsFormat = Formats::prepare("qt");
