// SPDX-License-Identifier: MIT
#include "tests/faults/allocations.h"

#include <cerrno>
#include <cstddef>

#include <malloc.h>

// Where the C library has the functions that it would otherwise call malloc() and so on.
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void __libc_free(void *block);
}

namespace {

// Without constructors: they are used before any could run.
thread_local long liveBlocks;
thread_local long liveBytes; ///< since startPeak()
thread_local long mostBytes; ///< as above
thread_local long untilFailure; ///< 0: none is to fail
thread_local bool failsFromThenOn;
thread_local bool hasFailed;

bool isToFail()
{
    if (hasFailed && failsFromThenOn)
        return true;
    if (untilFailure == 0 || --untilFailure > 0)
        return false;
    hasFailed = true;
    return true;
}

void *refused()
{
    errno = ENOMEM;
    return nullptr;
}

void addBytes(long bytes)
{
    liveBytes += bytes;
    if (liveBytes > mostBytes)
        mostBytes = liveBytes;
}

long sizeOf(void *block)
{
    return long(malloc_usable_size(block));
}

void *counted(void *block)
{
    liveBlocks += block ? 1 : 0;
    addBytes(sizeOf(block));
    return block;
}

} // namespace

// The toolkit must find them as well.
#pragma GCC visibility push(default)
extern "C" {

void *malloc(size_t size)
{
    return isToFail() ? refused() : counted(__libc_malloc(size));
}

void *calloc(size_t count, size_t size)
{
    return isToFail() ? refused() : counted(__libc_calloc(count, size));
}

void *realloc(void *block, size_t size)
{
    if (isToFail())
        return refused();
    const long before = sizeOf(block);
    void *const moved = __libc_realloc(block, size);
    if (!block)
        return counted(moved);
    if (moved)
        addBytes(sizeOf(moved) - before);
    return moved;
}

void free(void *block)
{
    liveBlocks -= block ? 1 : 0;
    liveBytes -= sizeOf(block);
    __libc_free(block);
}

} // extern "C"
#pragma GCC visibility pop

long Allocations::live()
{
    return liveBlocks;
}

long Allocations::peak()
{
    return mostBytes;
}

void Allocations::startPeak()
{
    liveBytes = 0;
    mostBytes = 0;
}

void Allocations::failAt(long n, Duration duration)
{
    hasFailed = false;
    failsFromThenOn = duration == FromThenOn;
    untilFailure = n;
}

bool Allocations::succeed()
{
    const bool result = hasFailed;
    failAt(0, Once);
    return result;
}
