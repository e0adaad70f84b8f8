// SPDX-License-Identifier: MIT
#include "hooks/networkaccessmanager.h"

#include <QtDebug>

namespace {

NetworkAccessManagerFactory *registeredFactory = nullptr;

// With a space at its end, as the debug stream of Qt 4 writes it.
void reportNotImplemented(const char *function)
{
    qDebug("[NetworkAccessManager::%s]: NOT Implement. ", function);
}

} // namespace

NetworkAccessManager::NetworkAccessManager(QObject *parent) : QObject(parent) {}

NetworkAccessManager::~NetworkAccessManager() {}

void NetworkAccessManager::setSslConfiguration(QString const &, QString const &, QString const &)
{
    reportNotImplemented("setSslConfiguration");
}

void NetworkAccessManager::setSslConfiguration(QString const &, QString const &)
{
    reportNotImplemented("setSslConfiguration");
}

QNetworkAccessManager *NetworkAccessManager::impl()
{
    reportNotImplemented("impl");
    return nullptr;
}

void registerNetworkAccessManagerFactory(NetworkAccessManagerFactory *factory)
{
    registeredFactory = factory;
}

NetworkAccessManager *createNetworkAccessManager(QObject *parent)
{
    if (registeredFactory)
        return registeredFactory->create(parent);
    return new NetworkAccessManager(parent);
}
