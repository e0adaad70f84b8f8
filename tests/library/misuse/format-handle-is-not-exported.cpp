// SPDX-License-Identifier: MIT
// expected: undefined (reference to|symbol).*JsonSettingsFormat
#include "settings/jsonsettingsformat.h"

int main()
{
    return int(JsonSettingsFormat);
}
