// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/secretranges.h"

#include "examples/launcher/values/passwords.h"
#include "tools/nuv-apps-config/secrets/secretlines.h"
#include "tools/nuv-apps-config/secrets/secretnodes.h"

#include <algorithm>

namespace {

// The lines of a private key say nothing of what they are.
void findPrivateKeys(const QByteArray &bytes, std::vector<SecretRange> &ranges)
{
    for (const Passwords::Piece &key : Passwords::findPrivateKeys(QString::fromLatin1(bytes)))
        ranges.push_back({ key.begin, key.end });
}

} // namespace

SecretRanges::SecretRanges(const QByteArray &bytes, const Document &document, bool hasSyntaxErrors)
{
    SecretNodes(bytes, document, m_ranges).find();
    if (hasSyntaxErrors) {
        SecretLines(bytes, m_ranges).find();
        findPrivateKeys(bytes, m_ranges);
    }
    merge();
}

const SecretRange *SecretRanges::at(int offset) const
{
    const auto it =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), offset,
                         [](int at, const SecretRange &range) { return at < range.end; });
    return it != m_ranges.end() && it->begin <= offset ? &*it : nullptr;
}

bool SecretRanges::touches(int offset, int length) const
{
    const auto it =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), offset,
                         [](int at, const SecretRange &range) { return at < range.end; });
    return it != m_ranges.end() && it->begin < offset + qMax(1, length);
}

void SecretRanges::merge()
{
    std::sort(m_ranges.begin(), m_ranges.end(),
              [](const SecretRange &a, const SecretRange &b) { return a.begin < b.begin; });
    std::vector<SecretRange> merged;
    for (const SecretRange &range : m_ranges) {
        if (range.begin >= range.end)
            continue;
        if (!merged.empty() && range.begin <= merged.back().end)
            merged.back().end = qMax(merged.back().end, range.end);
        else
            merged.push_back(range);
    }
    m_ranges.swap(merged);
}
