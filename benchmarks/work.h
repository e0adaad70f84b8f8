// SPDX-License-Identifier: MIT
#ifndef WORK_H
#define WORK_H

/// What the programs that do a user's work have in common. Each does one thing once, in a process of
/// its own and on its fresh heap, as a launcher does.
namespace Work {

/// Nanoseconds of a clock that all processes share.
long long now();

/// The moment at which this process was started, as NUV_STARTED in its environment says; now() where
/// it says nothing.
long long started();

/// To be called right before and right after what is measured: what callgrind counts and the heap's peak
/// are taken between the two. Where the start of the process is to be counted, too, callgrind is told
/// nothing.
void begin();
void beginInStartedProcess();
void end();

/// Prints the nanoseconds since `since`, the heap's peak and what is left of it, in bytes beyond begin()
/// (both 0 without the heap's counter), and ends the process at once.
[[noreturn]] void report(long long since);

} // namespace Work

#endif // WORK_H
