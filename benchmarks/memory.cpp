// SPDX-License-Identifier: MIT
// Does one thing once and tells what it took of the heap:
//
//   memory ACTION FILE WHO
//
// The actions and who does them are listed in subjects.h. Prints the units, the allocations, the peak
// and what is left at the end, in bytes beyond those that were in use before. A block counts with the
// size that the allocator gave it.

#include "benchmarks/heapcount.h"
#include "benchmarks/subjects.h"
#include "json/varianttree.h"

#include <cstdio>

int main(int argc, char **argv)
{
    const Subject subject =
        argc == 4 ? Subjects::prepare(argv[1], argv[2], argv[3]) : Subject { nullptr, 0 };
    if (!subject.run) {
        std::fprintf(stderr, "usage: memory ACTION FILE WHO\n");
        return 2;
    }
    if (subject.renew)
        subject.renew();
    HeapCount count;
    nuv_heap_begin();
    QVariant result = subject.run();
    nuv_heap_end(&count);
    std::printf("%d %lld %lld %lld\n", Subjects::units(subject, result), count.allocations,
                count.peak, count.left);
    VariantTree::dispose(result);
    return 0;
}
