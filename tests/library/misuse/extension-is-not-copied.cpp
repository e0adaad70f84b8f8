// SPDX-License-Identifier: MIT
// expected: deleted|private
#include <ZarexExtBase>

int main()
{
    const ZarexExtBase extension(nullptr, nullptr);
    const ZarexExtBase copy(extension);
}
