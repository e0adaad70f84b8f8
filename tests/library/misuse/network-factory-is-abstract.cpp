// expected: abstract
#include <NetworkAccessManagerFactory>

int main()
{
    NetworkAccessManagerFactory factory;
}
