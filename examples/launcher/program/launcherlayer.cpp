// SPDX-License-Identifier: MIT
#include "program/launcherlayer.h"

namespace {

LauncherLayer *theLayer = nullptr; // a constant at first, so there is no order of initialisation

} // namespace

LauncherLayer::LauncherLayer()
{
    theLayer = this;
}

LauncherLayer::~LauncherLayer()
{
    theLayer = nullptr;
}

LauncherLayer *LauncherLayer::installed()
{
    return theLayer;
}
