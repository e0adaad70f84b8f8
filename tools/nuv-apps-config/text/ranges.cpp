// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/text/ranges.h"

#include <algorithm>

void Ranges::settle()
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

// The first one that ends after the offset.
std::vector<Range>::const_iterator Ranges::firstAfter(int offset) const
{
    return std::upper_bound(m_all.begin(), m_all.end(), offset,
                            [](int at, const Range &range) { return at < range.end; });
}

const Range *Ranges::at(int offset) const
{
    const auto found = firstAfter(offset);
    return found != m_all.end() && found->begin <= offset ? &*found : nullptr;
}

std::vector<Range> Ranges::overlapping(int begin, int end) const
{
    const auto first = firstAfter(begin);
    return std::vector<Range>(
        first, std::find_if(first, m_all.end(), [end](const Range &r) { return r.begin >= end; }));
}

bool Ranges::touch(int begin, int end) const
{
    const auto first = firstAfter(begin - 1);
    return first != m_all.end() && first->begin <= end;
}
