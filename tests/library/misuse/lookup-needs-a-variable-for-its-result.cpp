// SPDX-License-Identifier: MIT
// expected: (cannot bind|no matching|lvalue)
#include <AppConfig>
#include <WebAppSettings>

int main()
{
    getWebAppSettings()->getGlobalConfig(AppConfig());
}
