// SPDX-License-Identifier: MIT
// expected: const ZarexExtFactory
#include <ZarexExtBase>

int main()
{
    ZarexExtFactory *factory = getZarexExtFactory();
    registerZarexExtFactory(factory);
}
