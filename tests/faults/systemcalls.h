// SPDX-License-Identifier: MIT
#ifndef SYSTEMCALLS_H
#define SYSTEMCALLS_H

/// The calls with which this process reads and writes the files of a folder: read(), write(), fsync(),
/// fchmod() and rename(). The test program brings functions of its own for them, which come before those
/// of the C library.
namespace SystemCalls {

enum Fault {
    None,
    Kill, ///< the process is killed before the call
    KillInside, ///< after half of what is to be written, or else after the call
    Fail, ///< the call does nothing, with EIO
    Interrupt, ///< a signal comes first: EINTR
    Shorten ///< half of it is read or written
};

/// What happens to the n-th call from now, counted from 1, for a file in the folder. All others are as usual.
/// The folder's name, without links, must stay where it is.
void plan(Fault fault, int n, const char *folder);

/// What is called before the n-th call; null for nothing.
extern void (*beforeFault)();

/// How many calls there were since then.
int count();

/// The name of the call that suffered; empty as long as none has.
const char *suffered();

} // namespace SystemCalls

#endif // SYSTEMCALLS_H
