// SPDX-License-Identifier: MIT
#ifndef CHILDCALL_H
#define CHILDCALL_H

#include <QByteArray>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

#ifdef NUV_COVERAGE
extern "C" void __gcov_dump();
#endif

/// Calls in processes of their own, made by fork(): what a call changes in its process, as the instance
/// of getWebAppSettings(), is gone afterwards.
namespace ChildCall {

inline void writeAll(int descriptor, const QByteArray &bytes)
{
    for (int done = 0; done < bytes.size();) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done));
        if (count <= 0)
            return;
        done += int(count);
    }
}

inline QByteArray readAll(int descriptor)
{
    QByteArray bytes;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count <= 0)
            return bytes;
        bytes.append(buffer, int(count));
    }
}

/// What scripts/coverage counts, which a process writes at its regular end.
inline void writeCounts()
{
#ifdef NUV_COVERAGE
    __gcov_dump();
#endif
}

/// What the call came to.
struct Result {
    int status; ///< of waitpid()
    QByteArray output;

    bool isEnded() const { return WIFEXITED(status); }
    int exitStatus() const { return WEXITSTATUS(status); }
};

/// Runs `work` with a pipe as its standard output. Its standard error goes nowhere.
inline Result run(const std::function<int()> &work)
{
    int ends[2];
    if (::pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("no process");
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        ::close(STDERR_FILENO);
        const int status = work();
        writeCounts();
        ::_exit(status);
    }
    ::close(ends[1]);
    Result result = { 0, readAll(ends[0]) };
    ::close(ends[0]);
    ::waitpid(child, &result.status, 0);
    return result;
}

} // namespace ChildCall

#endif // CHILDCALL_H
