// SPDX-License-Identifier: MIT
#include "tests/faults/systemcalls.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

// Without its header, whose own definitions of read() and others could be in the way.
extern "C" long syscall(long number, ...) noexcept;

namespace {

SystemCalls::Fault planned = SystemCalls::None;
int untilFault = 0;
int calls = 0;
const char *watched = "";
const char *sufferer = "";

bool isWatched(const char *path)
{
    return *watched && std::strncmp(path, watched, std::strlen(watched)) == 0;
}

bool isWatched(int descriptor)
{
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    char path[512] = {};
    const long size = syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
    struct stat status;
    return size > 0 && isWatched(path) && ::fstat(descriptor, &status) == 0
        && S_ISREG(status.st_mode);
}

void end()
{
    syscall(SYS_kill, syscall(SYS_getpid), SIGKILL);
}

// What this call suffers.
SystemCalls::Fault next(const char *name)
{
    ++calls;
    if (--untilFault != 0)
        return SystemCalls::None;
    sufferer = name;
    if (SystemCalls::beforeFault)
        SystemCalls::beforeFault();
    if (planned == SystemCalls::Kill)
        end();
    return planned;
}

bool isRefused(SystemCalls::Fault fault)
{
    errno = fault == SystemCalls::Interrupt ? EINTR : EIO;
    return fault == SystemCalls::Interrupt || fault == SystemCalls::Fail;
}

// The system calls themselves are not interrupted here, unless they wait.
template<typename... Arguments>
int call(const char *name, bool isCounted, long number, Arguments... arguments)
{
    const SystemCalls::Fault fault = isCounted ? next(name) : SystemCalls::None;
    if (fault == SystemCalls::Fail) {
        errno = EIO;
        return -1;
    }
    const int result = static_cast<int>(syscall(number, arguments...));
    if (fault == SystemCalls::KillInside)
        end();
    return result;
}

template<typename Bytes>
long transfer(const char *name, long number, int descriptor, Bytes *bytes, size_t size)
{
    const SystemCalls::Fault fault = isWatched(descriptor) ? next(name) : SystemCalls::None;
    if (isRefused(fault))
        return -1;
    const bool isHalf = fault == SystemCalls::Shorten || fault == SystemCalls::KillInside;
    const long result = syscall(number, descriptor, bytes, isHalf && size > 1 ? size / 2 : size);
    if (fault == SystemCalls::KillInside)
        end();
    return result;
}

} // namespace

// The toolkit must find them as well.
#pragma GCC visibility push(default)
extern "C" {

long read(int descriptor, void *bytes, size_t size)
{
    return transfer("read", SYS_read, descriptor, bytes, size);
}

long write(int descriptor, const void *bytes, size_t size)
{
    return transfer("write", SYS_write, descriptor, bytes, size);
}

int fsync(int descriptor)
{
    return call("fsync", isWatched(descriptor), SYS_fsync, descriptor);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    return call("fchmod", isWatched(descriptor), SYS_fchmod, descriptor, mode);
}

int rename(const char *from, const char *to) noexcept
{
    return call("rename", isWatched(to), SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}

} // extern "C"
#pragma GCC visibility pop

void (*SystemCalls::beforeFault)() = nullptr;

void SystemCalls::plan(Fault fault, int n, const char *folder)
{
    watched = folder;
    planned = fault;
    untilFault = n;
    calls = 0;
    sufferer = "";
}

int SystemCalls::count()
{
    return calls;
}

const char *SystemCalls::suffered()
{
    return sufferer;
}
