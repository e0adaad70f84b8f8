// SPDX-License-Identifier: MIT
#ifndef ALLOCATIONS_H
#define ALLOCATIONS_H

/// The allocations of the calling thread: those of the toolkit and of the C++ library as well, since the
/// test program brings functions of its own for malloc() and its kin, and these come first.
namespace Allocations {

/// The blocks that were taken and not given back.
long live();

/// The bytes of the blocks that were taken and not given back, where they were most since startPeak(), beyond
/// those of then. With what the blocks have at their ends.
long peak();
void startPeak();

enum Duration { Once, FromThenOn };

/// Lets the n-th allocation from now fail, counted from 1, and with FromThenOn all that follow.
void failAt(long n, Duration duration);

/// Lets them succeed again. Returns whether one has failed.
bool succeed();

} // namespace Allocations

#endif // ALLOCATIONS_H
