// SPDX-License-Identifier: MIT
// expected: incomplete type
#include <ZarexExtBase>

int main()
{
    const ZarexExtFactory factory;
}
