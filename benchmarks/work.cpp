// SPDX-License-Identifier: MIT
#include "benchmarks/work.h"

#include "benchmarks/heapcount.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <unistd.h>
#include <valgrind/callgrind.h>

// The heap's counter is preloaded, or is not there.
#pragma weak nuv_heap_begin
#pragma weak nuv_heap_end

namespace {

bool isToggled = false;
long long finished = 0;
HeapCount heap = { 0, 0, 0 };

} // namespace

long long Work::now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

long long Work::started()
{
    const char *const given = std::getenv("NUV_STARTED");
    return given ? std::atoll(given) : now();
}

void Work::begin()
{
    beginInStartedProcess();
    isToggled = true;
    CALLGRIND_TOGGLE_COLLECT;
}

void Work::beginInStartedProcess()
{
    if (nuv_heap_begin)
        nuv_heap_begin();
}

void Work::end()
{
    finished = now();
    if (isToggled)
        CALLGRIND_TOGGLE_COLLECT;
    if (nuv_heap_end)
        nuv_heap_end(&heap);
}

void Work::report(long long since)
{
    std::printf("%lld %lld %lld\n", finished - since, heap.peak, heap.left);
    std::fflush(stdout);
    _exit(0);
}
