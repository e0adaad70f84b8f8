// SPDX-License-Identifier: MIT
#ifndef NETWORKACCESSMANAGER_H
#define NETWORKACCESSMANAGER_H

/// \file
/// A platform's network access, and where the platform registers the factory of it.

#include "nuvlaunchersupport_export.h"

#include <QObject>

class QNetworkAccessManager;
class QString;

/// The hook through which a platform supplies the object that performs the network access of its
/// pages. It is not such an object itself, it hands one out.
///
/// A platform module derives from it, overrides all three virtual functions, and registers a factory
/// for its class. What it does not override only says that it is not implemented, in one debug
/// message a call. Everything belongs to the thread of the pages.
class NUVLAUNCHERSUPPORT_EXPORT NetworkAccessManager : public QObject
{
    Q_OBJECT

public:
    /// An object that belongs to `parent`, which may be null.
    explicit NetworkAccessManager(QObject *parent);

    virtual ~NetworkAccessManager();

    /// Sets the client certificate for the connections to come. The platform module and the
    /// launcher agree which of the three strings is the certificate, which its key and which the pass
    /// phrase.
    virtual void setSslConfiguration(QString const &, QString const &, QString const &);

    /// The same without a third string.
    virtual void setSslConfiguration(QString const &, QString const &);

    /// The object to be installed in pages, which remains the owner's; null when there is none, as
    /// here in the base class: then the platform has no network access to offer.
    virtual QNetworkAccessManager *impl();
};

/// Makes the network access managers of a platform.
class NetworkAccessManagerFactory
{
public:
    virtual ~NetworkAccessManagerFactory() {}

    /// A new object with the given parent, or null.
    virtual NetworkAccessManager *create(QObject *parent) = 0;
};

/// Stores `factory`, which is not owned, instead of an earlier one; null clears it. Meant to be called
/// once, at start-up; nothing is locked.
NUVLAUNCHERSUPPORT_EXPORT void
registerNetworkAccessManagerFactory(NetworkAccessManagerFactory *factory);

/// What the registered factory makes with `parent`, which may be null; without a factory, a new object
/// of the base class. The result belongs to `parent`, or to the caller when that is null.
NUVLAUNCHERSUPPORT_EXPORT NetworkAccessManager *createNetworkAccessManager(QObject *parent);

#endif // NETWORKACCESSMANAGER_H
