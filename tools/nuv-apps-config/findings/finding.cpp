// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/findings/finding.h"

#include <algorithm>
#include <cstring>

Finding &Findings::add(const char *rule, int offset, int length, const QString &text,
                       const QString &hint)
{
    const Finding finding = {
        rule, Rules::find(rule).severity, offset, length, text, hint, {}, {}
    };
    const bool isUnwanted = isIgnored(rule, offset);
    if (isUnwanted || isFull()) {
        if (!isUnwanted)
            m_worstDropped = std::max(m_worstDropped, finding.severity);
        m_dropped += !isUnwanted;
        m_unkept = finding;
        return m_unkept;
    }
    m_all.push_back(finding);
    return m_all.back();
}

bool Findings::hasFrom(Severity severity) const
{
    if (m_isCut || (m_dropped > 0 && m_worstDropped >= severity))
        return true;
    return std::any_of(m_all.begin(), m_all.end(),
                       [severity](const Finding &finding) { return finding.severity >= severity; });
}

size_t Findings::ignore(const QByteArray &rule, int begin, int end)
{
    m_ignores.push_back(Ignore { rule, begin, end, false });
    const auto isMeant = [this](const Finding &finding) {
        return isIgnored(finding.rule, finding.offset);
    };
    m_all.erase(std::remove_if(m_all.begin(), m_all.end(), isMeant), m_all.end());
    return m_ignores.size() - 1;
}

// All that apply are used, not only the first.
bool Findings::isIgnored(const char *rule, int offset)
{
    bool isAny = false;
    for (Ignore &ignore : m_ignores) {
        if (ignore.rule != rule || offset < ignore.begin || offset >= ignore.end)
            continue;
        ignore.isUsed = true;
        isAny = true;
    }
    return isAny;
}

void Findings::remove(const char *rule, int offset)
{
    const auto isMeant = [rule, offset](const Finding &finding) {
        return finding.offset == offset && std::strcmp(finding.rule, rule) == 0;
    };
    m_all.erase(std::remove_if(m_all.begin(), m_all.end(), isMeant), m_all.end());
}

bool Findings::has(const char *rule) const
{
    return std::any_of(m_all.begin(), m_all.end(), [rule](const Finding &finding) {
        return std::strcmp(finding.rule, rule) == 0;
    });
}

bool Findings::hasSyntaxError() const
{
    return std::any_of(m_all.begin(), m_all.end(),
                       [](const Finding &finding) { return Rules::isSyntaxError(finding.rule); });
}

int Findings::count(Severity severity) const
{
    return int(std::count_if(m_all.begin(), m_all.end(), [severity](const Finding &finding) {
        return finding.severity == severity;
    }));
}

void Findings::rewrite(const Change &change)
{
    for (Finding &finding : m_all) {
        finding.text = change(finding.text, finding);
        finding.hint = change(finding.hint, finding);
        for (Remark &remark : finding.remarks)
            remark.text = change(remark.text, finding);
    }
}

void Findings::sort()
{
    std::stable_sort(m_all.begin(), m_all.end(),
                     [](const Finding &a, const Finding &b) { return a.offset < b.offset; });
}
