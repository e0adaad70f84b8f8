// SPDX-License-Identifier: MIT
#ifndef PLACES_H
#define PLACES_H

#include <algorithm>
#include <vector>

/// Some places of a file, each with a beginning and an end.
class Places
{
public:
    void add(int begin, int end) { m_all.push_back(Range { begin, end }); }

    /// In order, and those that touch made one; must come before the first question.
    void settle()
    {
        std::sort(m_all.begin(), m_all.end(),
                  [](const Range &a, const Range &b) { return a.begin < b.begin; });
        std::vector<Range> settled;
        for (const Range &range : m_all) {
            if (!settled.empty() && range.begin <= settled.back().end)
                settled.back().end = std::max(settled.back().end, range.end);
            else
                settled.push_back(range);
        }
        m_all.swap(settled);
    }

    /// Whether one of them is in the bytes, or next to them.
    bool touch(int begin, int end) const
    {
        const auto first =
            std::lower_bound(m_all.begin(), m_all.end(), begin,
                             [](const Range &range, int offset) { return range.end < offset; });
        return first != m_all.end() && first->begin <= end;
    }

private:
    struct Range {
        int begin;
        int end;
    };
    std::vector<Range> m_all;
};

#endif // PLACES_H
