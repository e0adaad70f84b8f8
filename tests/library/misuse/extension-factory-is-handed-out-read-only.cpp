// expected: const ZarexExtFactory
#include <ZarexExtBase>

int main()
{
    ZarexExtFactory *factory = getZarexExtFactory();
    registerZarexExtFactory(factory);
}
