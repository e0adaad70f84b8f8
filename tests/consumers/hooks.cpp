// SPDX-License-Identifier: MIT
#include <NetworkAccessManager>
#include <NetworkAccessManagerFactory>
#include <ZarexExtBase>
#include <networkaccessmanager.h>
#include <zarexextbase.h>

#include <QString>

#include <cstdio>

// The interface that a launcher and its platform module agree on.
class ZarexExtFactory
{
public:
    virtual ~ZarexExtFactory() {}
    virtual ZarexExtBase *create(QObject *parent, QWebPage *page) const = 0;
};

class ExtensionFactory : public ZarexExtFactory
{
public:
    ZarexExtBase *create(QObject *parent, QWebPage *page) const override
    {
        return new ZarexExtBase(parent, page);
    }
};

class PlatformManager : public NetworkAccessManager
{
public:
    explicit PlatformManager(QObject *parent) : NetworkAccessManager(parent) {}

    void setSslConfiguration(QString const &, QString const &, QString const &) override
    {
        std::printf("three strings\n");
    }
    void setSslConfiguration(QString const &, QString const &) override
    {
        std::printf("two strings\n");
    }
    QNetworkAccessManager *impl() override
    {
        std::printf("impl\n");
        return nullptr;
    }
};

class PlatformFactory : public NetworkAccessManagerFactory
{
public:
    NetworkAccessManager *create(QObject *parent) override { return new PlatformManager(parent); }
};

void useExtension(QObject *parent)
{
    const ExtensionFactory factory;
    registerZarexExtFactory(&factory);
    ZarexExtBase *extension = getZarexExtFactory()->create(parent, nullptr);
    extension->attachObject();
    std::printf("%s, %s frame, %s view\n", qPrintable(extension->objectName()),
                extension->hostFrame() ? "a" : "no", extension->hostView() ? "a" : "no");
    registerZarexExtFactory(nullptr);
}

void useNetwork(QObject *parent)
{
    PlatformFactory factory;
    registerNetworkAccessManagerFactory(&factory);
    NetworkAccessManager *manager = createNetworkAccessManager(parent);
    manager->setSslConfiguration(QString(), QString());
    manager->setSslConfiguration(QString(), QString(), QString());
    manager->impl();
    registerNetworkAccessManagerFactory(nullptr);
}

int main()
{
    QObject parent;
    useExtension(&parent);
    useNetwork(&parent);
    std::printf("%d children\n", int(parent.children().size()));
    std::printf("%s\n",
                qobject_cast<ZarexExtBase *>(parent.children().at(0)) ? "cast" : "not cast");
    return 0;
}
