// SPDX-License-Identifier: MIT
#ifndef SECRETRANGE_H
#define SECRETRANGE_H

/// A piece of a file that is secret.
struct SecretRange {
    int begin;
    int end;
};

#endif // SECRETRANGE_H
