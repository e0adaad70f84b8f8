// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/output.h"

#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

bool isClosed(int descriptor)
{
    return fcntl(descriptor, F_GETFD) < 0;
}

bool writeAll(int descriptor, const char *bytes, int size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, size_t(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        size -= int(written);
    }
    return true;
}

// By the signal, which the shell and its "set -o pipefail" know. It is ignored otherwise, since a
// standard error without a reader is no reason to end.
void endAsOthersDo()
{
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGPIPE);
    pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    std::raise(SIGPIPE);
}

} // namespace

// The numbers 0 to 2 must not go to a file that is opened later.
Output::Output(int descriptor) : m_descriptor(descriptor), m_isClosed(isClosed(descriptor))
{
    std::signal(SIGPIPE, SIG_IGN);
    for (int number = 0; number <= 2; ++number) {
        if (isClosed(number))
            ::open("/dev/null", O_RDWR); // takes the lowest number, which is this one
    }
}

bool Output::flush()
{
    const QByteArray bytes = m_pending;
    m_pending.clear();
    if (bytes.isEmpty() || m_hasFailed)
        return !m_hasFailed;
    errno = EBADF;
    if (m_isClosed || !writeAll(m_descriptor, bytes.constData(), bytes.size())) {
        m_hasFailed = true;
        if (errno == EPIPE)
            endAsOthersDo();
        complain(QString(QLatin1String("cannot write to the standard output: %1"))
                     .arg(qt_error_string(errno)));
    }
    return !m_hasFailed;
}

void Output::complain(const QString &text)
{
    std::fputs(("nuv-apps-config: " + printable(text).toUtf8() + '\n').constData(), stderr);
}

QString Output::printable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (code == '\n')
            result += QLatin1String("\\n");
        else if (code == '\t')
            result += QLatin1String("\\t");
        else if (code < 0x20 || (code >= 0x7f && code < 0xa0))
            result += QString(QLatin1String("\\u%1")).arg(code, 4, 16, QLatin1Char('0'));
        else
            result += c;
    }
    return result;
}
