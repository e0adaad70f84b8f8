// SPDX-License-Identifier: MIT
#ifndef WRONGBYTES_H
#define WRONGBYTES_H

#include <QByteArray>
#include <QList>

#include <random>

/// Good configurations in the layouts that people write, each with one wrong byte.
namespace WrongBytes {

struct Layout {
    const char *name;
    QByteArray bytes;
};

const QList<Layout> &layouts();

/// A file with one slip of the hand, at `offset`.
struct Slip {
    QByteArray name; ///< what was done
    QByteArray bytes;
    int offset;
};

/// Some of all slips with the structural bytes, deleted, doubled, replaced and swapped, and of others
/// anywhere: the same ones in every run.
QList<Slip> some(const QByteArray &clean, unsigned seed, int count);

/// Takes a structural byte out of a line, or puts one in, so that the line alone shows it. False where
/// that cannot be.
bool breakLine(QByteArray *line, std::mt19937 &engine);

} // namespace WrongBytes

#endif // WRONGBYTES_H
