// SPDX-License-Identifier: MIT
// expected: abstract
#include <NetworkAccessManagerFactory>

int main()
{
    NetworkAccessManagerFactory factory;
}
