// SPDX-License-Identifier: MIT
// expected: private
#include <WebAppSettings>

int main()
{
    return getWebAppSettings()->d ? 0 : 1;
}
