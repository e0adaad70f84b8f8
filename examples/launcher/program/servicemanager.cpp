// SPDX-License-Identifier: MIT
#include "program/servicemanager.h"

#include <QTimer>

#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

QByteArray taken(const char *variable)
{
    const QByteArray value = qgetenv(variable);
    unsetenv(variable); // NOLINT(concurrency-mt-unsafe): before there is a second thread
    return value;
}

// Half of the patience, so that one sign of life may be late. The variable's process may be another one,
// which handed its environment on.
int intervalFrom(const QByteArray &microseconds, const QByteArray &process)
{
    if (!process.isEmpty() && process != QByteArray::number(qint64(getpid())))
        return 0;
    const qint64 milliseconds = microseconds.toLongLong() / 2000;
    return int(qBound(qint64(0), milliseconds, qint64(24) * 60 * 60 * 1000));
}

/// Returns the length of the address, or 0 where the name is none.
socklen_t fill(sockaddr_un *address, const QByteArray &name)
{
    std::memset(address, 0, sizeof *address);
    address->sun_family = AF_UNIX;
    const bool isKnown = name.startsWith('/') || name.startsWith('@');
    if (!isKnown || name.size() < 2 || size_t(name.size()) >= sizeof address->sun_path)
        return 0;
    std::memcpy(address->sun_path, name.constData(), size_t(name.size()));
    if (name.startsWith('@'))
        address->sun_path[0] = '\0'; // a name in no file system
    return socklen_t(offsetof(sockaddr_un, sun_path)) + socklen_t(name.size());
}

} // namespace

ServiceManager::ServiceManager() : m_socket(taken("NOTIFY_SOCKET")), m_interval(0)
{
    const QByteArray patience = taken("WATCHDOG_USEC");
    const QByteArray process = taken("WATCHDOG_PID");
    if (!m_socket.isEmpty())
        m_interval = intervalFrom(patience, process);
}

void ServiceManager::tellReady()
{
    send("READY=1");
    if (m_interval > 0)
        tellAlive();
}

// Not a timer that repeats: what was late makes the next one late, too, so that they never queue up.
void ServiceManager::tellAlive()
{
    send("WATCHDOG=1");
    QTimer::singleShot(m_interval, this, SLOT(tellAlive()));
}

// Nothing can be done where nobody hears it, and the launcher does not wait for room.
void ServiceManager::send(const QByteArray &words)
{
    sockaddr_un address;
    const socklen_t length = fill(&address, m_socket);
    const int descriptor = length > 0 ? socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0) : -1;
    if (descriptor < 0)
        return;
    const ssize_t sent =
        sendto(descriptor, words.constData(), size_t(words.size()), MSG_NOSIGNAL | MSG_DONTWAIT,
               reinterpret_cast<const sockaddr *>(&address), length);
    static_cast<void>(sent);
    close(descriptor);
}
