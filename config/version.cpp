// SPDX-License-Identifier: MIT
#include "nuvlaunchersupport_version.h"

const char *nuvLauncherSupportVersion()
{
    return NUVLAUNCHERSUPPORT_VERSION_STR;
}
