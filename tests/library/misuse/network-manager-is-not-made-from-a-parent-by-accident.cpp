// SPDX-License-Identifier: MIT
// expected: QObject ?\*
#include <NetworkAccessManager>

void use(NetworkAccessManager const &manager);

int main()
{
    QObject *parent = nullptr;
    use(parent);
}
