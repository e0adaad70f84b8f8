// SPDX-License-Identifier: MIT
#include "network/launchernetwork.h"

#include "network/configuredaccess.h"
#include "program/console.h"
#include "network/trustedauthorities.h"

LauncherNetwork::LauncherNetwork(QObject *parent)
    : NetworkAccessManager(parent), m_access(new ConfiguredAccess(this))
{
}

void LauncherNetwork::setSslConfiguration(QString const &certificateFile, QString const &keyFile,
                                          QString const &passPhrase)
{
    m_certificateProblem = m_access->setCertificate(certificateFile, keyFile, passPhrase);
}

void LauncherNetwork::setSslConfiguration(QString const &certificateFile, QString const &keyFile)
{
    setSslConfiguration(certificateFile, keyFile, QString());
}

QNetworkAccessManager *LauncherNetwork::impl()
{
    return m_certificateProblem.isEmpty() ? m_access : nullptr;
}

QString LauncherNetwork::problem() const
{
    return m_certificateProblem;
}

LauncherNetworkFactory::LauncherNetworkFactory()
{
    const QString problem = TrustedAuthorities::addFromEnvironment();
    if (!problem.isEmpty())
        Console::error(problem);
}

NetworkAccessManager *LauncherNetworkFactory::create(QObject *parent)
{
    return new LauncherNetwork(parent);
}
