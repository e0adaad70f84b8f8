// SPDX-License-Identifier: MIT
// expected: no matching (function|constructor)
#include <ZarexExtBase>

int main()
{
    const ZarexExtBase extension(nullptr);
}
