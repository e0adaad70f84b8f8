// Does one thing once and tells what it took of the heap:
//
//   memory ACTION FILE WHO
//
// The actions and who does them are listed in subjects.h. Prints the units, the allocations, the peak
// and what is left at the end, in bytes beyond those that were in use before. A block counts with the
// size that the allocator gave it.

#include "benchmarks/subjects.h"
#include "json/varianttree.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>

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

extern "C" {

__attribute__((visibility("default"))) void *malloc(size_t size)
{
    return noted(__libc_malloc(size));
}

__attribute__((visibility("default"))) void *calloc(size_t count, size_t size)
{
    return noted(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void *realloc(void *block, size_t size)
{
    forget(block);
    return noted(__libc_realloc(block, size));
}

__attribute__((visibility("default"))) void *aligned_alloc(size_t alignment, size_t size)
{
    return noted(__libc_memalign(alignment, size));
}

__attribute__((visibility("default"))) int posix_memalign(void **block, size_t alignment,
                                                          size_t size)
{
    *block = aligned_alloc(alignment, size);
    return *block ? 0 : 12; // ENOMEM
}

__attribute__((visibility("default"))) void free(void *block)
{
    forget(block);
    __libc_free(block);
}

} // extern "C"

int main(int argc, char **argv)
{
    const Subject subject =
        argc == 4 ? Subjects::prepare(argv[1], argv[2], argv[3]) : Subject { nullptr, 0 };
    if (!subject.run) {
        std::fprintf(stderr, "usage: memory ACTION FILE WHO\n");
        return 2;
    }
    const long long before = inUse;
    peak = inUse;
    allocations = 0;
    QVariant result = subject.run();
    const long long made = allocations;
    const long long highest = peak - before;
    const long long left = inUse - before;
    std::printf("%d %lld %lld %lld\n", Subjects::units(subject, result), made, highest, left);
    VariantTree::dispose(result);
    return 0;
}
