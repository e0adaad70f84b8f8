// SPDX-License-Identifier: MIT
// A block counts with the size that the allocator gave it. For one thread.

#include "benchmarks/heapcount.h"

#include <malloc.h>

#include <algorithm>

// The allocator of the C library under its other names.
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *block);
}

namespace {

long long allocations = 0;
long long inUse = 0;
long long peak = 0;
long long before = 0;

void *noted(void *block)
{
    ++allocations;
    inUse += static_cast<long long>(malloc_usable_size(block));
    peak = std::max(peak, inUse);
    return block;
}

void forget(void *block)
{
    inUse -= static_cast<long long>(malloc_usable_size(block));
}

} // namespace

#define EXPORTED __attribute__((visibility("default")))

extern "C" {

EXPORTED void nuv_heap_begin()
{
    allocations = 0;
    before = inUse;
    peak = inUse;
}

EXPORTED void nuv_heap_end(HeapCount *count)
{
    count->allocations = allocations;
    count->peak = peak - before;
    count->left = inUse - before;
}

EXPORTED void *malloc(size_t size)
{
    return noted(__libc_malloc(size));
}

EXPORTED void *calloc(size_t count, size_t size)
{
    return noted(__libc_calloc(count, size));
}

EXPORTED void *realloc(void *block, size_t size)
{
    forget(block);
    return noted(__libc_realloc(block, size));
}

EXPORTED void *aligned_alloc(size_t alignment, size_t size)
{
    return noted(__libc_memalign(alignment, size));
}

EXPORTED int posix_memalign(void **block, size_t alignment, size_t size)
{
    *block = aligned_alloc(alignment, size);
    return *block ? 0 : 12; // ENOMEM
}

EXPORTED void free(void *block)
{
    forget(block);
    __libc_free(block);
}

} // extern "C"
