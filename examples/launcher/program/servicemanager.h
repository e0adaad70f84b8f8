// SPDX-License-Identifier: MIT
#ifndef SERVICEMANAGER_H
#define SERVICEMANAGER_H

#include <QByteArray>
#include <QObject>

/// Tells the service manager that started the launcher that it is ready and, where that wants to hear it,
/// again and again that it is alive. The words come from the event loop of the user interface, so that they
/// stop when that does, and the service manager starts the launcher anew.
///
/// The service manager names its socket in NOTIFY_SOCKET and its patience in WATCHDOG_USEC. Without the
/// first nothing is ever sent.
class ServiceManager : public QObject
{
    Q_OBJECT

public:
    /// Takes the variables out of the environment: they are not meant for what the launcher starts.
    ServiceManager();

    /// To be called when the applications have been opened.
    void tellReady();

private Q_SLOTS:
    void tellAlive();

private:
    void send(const QByteArray &words);

    QByteArray m_socket; ///< a path; "@" and a name for one without a file
    int m_interval; ///< milliseconds; 0 when nobody waits for signs of life
};

#endif // SERVICEMANAGER_H
