// SPDX-License-Identifier: MIT
#ifndef RANGES_H
#define RANGES_H

#include <vector>

/// Bytes of a text, from one offset to before another.
struct Range {
    int begin;
    int end;
};

/// Ranges of one text. An empty one is a place between two bytes.
class Ranges
{
public:
    void add(int begin, int end) { m_all.push_back(Range { begin, end }); }

    /// Puts them in order, and makes one of those that touch; must come before the first question.
    void settle();

    const std::vector<Range> &all() const { return m_all; }

    /// The range that holds the byte at `offset`; null when none does.
    const Range *at(int offset) const;

    /// Those that share a byte with the piece, or are a place within it.
    std::vector<Range> overlapping(int begin, int end) const;

    /// Whether one of them is in the piece, or next to it.
    bool touch(int begin, int end) const;

private:
    std::vector<Range>::const_iterator firstAfter(int offset) const;

    std::vector<Range> m_all;
};

#endif // RANGES_H
