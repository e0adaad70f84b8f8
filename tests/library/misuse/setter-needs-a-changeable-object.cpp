// expected: const
#include <AppConfig>

int main()
{
    const AppConfig config;
    config.setUrl(QVariant());
}
