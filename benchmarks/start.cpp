// SPDX-License-Identifier: MIT
// A process that is started and ends. What it costs is what it is linked with.

#include <QtGlobal>

int main()
{
    return qVersion() ? 0 : 1;
}
