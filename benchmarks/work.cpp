#include "benchmarks/work.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <unistd.h>
#include <valgrind/callgrind.h>

// Of the heap's counter, where that is preloaded.
extern "C" {
__attribute__((weak)) void nuv_heap_begin();
__attribute__((weak)) void nuv_heap_end(long long *peak, long long *left);
}

namespace {

bool isToggled = false;
long long finished = 0;
long long heapPeak = 0;
long long heapLeft = 0;

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
        nuv_heap_end(&heapPeak, &heapLeft);
}

void Work::report(long long since)
{
    std::printf("%lld %lld %lld\n", finished - since, heapPeak, heapLeft);
    std::fflush(stdout);
    _exit(0);
}
