// SPDX-License-Identifier: MIT
#ifndef HEAPCOUNT_H
#define HEAPCOUNT_H

// What a program has of the heap between two calls. The counter is linked into the program, or preloaded;
// who can do without it declares the two weak.

struct HeapCount {
    long long allocations;
    long long peak; ///< bytes beyond those that were in use at the beginning
    long long left; ///< the same, at the end
};

extern "C" {
void nuv_heap_begin();
void nuv_heap_end(HeapCount *count);
}

#endif // HEAPCOUNT_H
