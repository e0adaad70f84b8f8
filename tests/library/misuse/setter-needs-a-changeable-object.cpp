// SPDX-License-Identifier: MIT
// expected: const
#include <AppConfig>

int main()
{
    const AppConfig config;
    config.setUrl(QVariant());
}
