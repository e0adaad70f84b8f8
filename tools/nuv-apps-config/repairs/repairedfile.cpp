// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/repairedfile.h"

#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/repairs/surerepairs.h"
#include "tools/nuv-apps-config/text/ranges.h"

#include <algorithm>
#include <cstring>

namespace {

// A round mends about a hundred mistakes of the syntax. Nobody makes so many by hand.
const int MostRounds = 50;

std::vector<Edit> editsOf(const std::vector<SureRepair> &repairs, size_t begin, size_t end)
{
    std::vector<Edit> edits;
    for (size_t i = begin; i < end; ++i)
        edits.insert(edits.end(), repairs[i].edits.begin(), repairs[i].edits.end());
    std::stable_sort(edits.begin(), edits.end(),
                     [](const Edit &a, const Edit &b) { return a.offset < b.offset; });
    return edits;
}

// Where a place is after the edits.
int moved(int offset, const std::vector<Edit> &edits)
{
    int shift = 0;
    for (const Edit &edit : edits) {
        if (edit.offset + edit.removed > offset)
            break;
        shift += edit.inserted.size() - edit.removed;
    }
    return offset + shift;
}

} // namespace

/// A file before and after some repairs.
struct RepairedFile::Attempt {
    const Analysis &before;
    const Analysis &after;
    const std::vector<SureRepair> &repairs;
    size_t begin;
    size_t end;
    Manner manner;

    bool isGood() const;
    int errorsIn(const Findings &findings, const std::vector<Edit> &edits) const;
    bool keepsTheOthers() const;
    bool isRepaired(const Finding &finding) const;
};

bool RepairedFile::Attempt::isRepaired(const Finding &finding) const
{
    for (size_t i = begin; i < end; ++i) {
        const std::vector<const Finding *> &all = repairs[i].findings;
        if (std::find(all.begin(), all.end(), &finding) != all.end())
            return true;
    }
    return false;
}

// Mistakes of the syntax that are not repaired now must be where they were: what was repaired has not
// changed how the rest is read.
bool RepairedFile::Attempt::keepsTheOthers() const
{
    const std::vector<Edit> edits = editsOf(repairs, begin, end);
    for (const Finding &finding : before.findings.all()) {
        if (!Rules::isSyntaxError(finding.rule) || isRepaired(finding))
            continue;
        const int offset = moved(finding.offset, edits);
        const auto isSame = [&](const Finding &other) {
            return other.offset == offset && std::strcmp(other.rule, finding.rule) == 0;
        };
        const std::vector<Finding> &all = after.findings.all();
        if (std::none_of(all.begin(), all.end(), isSame))
            return false;
    }
    return true;
}

// Without those in values that nobody judged before.
int RepairedFile::Attempt::errorsIn(const Findings &findings, const std::vector<Edit> &edits) const
{
    Ranges uncovered;
    for (size_t i = begin; i < end; ++i) {
        if (repairs[i].uncoveredEnd > repairs[i].uncoveredBegin)
            uncovered.add(moved(repairs[i].uncoveredBegin, edits),
                          moved(repairs[i].uncoveredEnd, edits));
    }
    uncovered.settle();
    return int(
        std::count_if(findings.all().begin(), findings.all().end(), [&](const Finding &finding) {
            return finding.severity == Severity::Error
                && !uncovered.touch(finding.offset, finding.offset);
        }));
}

// What the library read it still reads, and nothing more is wrong with it than before.
bool RepairedFile::Attempt::isGood() const
{
    const bool wasRead = !before.findings.hasSyntaxError();
    const bool isRead = !after.findings.hasSyntaxError();
    if (wasRead != isRead)
        return isRead;
    if (!isRead && manner == Trusting)
        return true;
    const int most = errorsIn(before.findings, {});
    return errorsIn(after.findings, editsOf(repairs, begin, end)) <= most
        && (isRead || keepsTheOthers());
}

RepairedFile::RepairedFile(std::unique_ptr<Analysis> before, const DeviceFiles &files,
                           const QStringList &ignored)
    : m_files(files),
      m_ignored(ignored),
      m_before(std::move(before)),
      m_pieces(m_before->source.bytes())
{
    run(Trusting);
    if (isChanged() && now().findings.hasSyntaxError())
        run(Careful);
    std::stable_sort(m_mistakes.begin(), m_mistakes.end(),
                     [](const Mistake &a, const Mistake &b) { return a.offset < b.offset; });
}

void RepairedFile::takeBack()
{
    m_now.reset();
    m_pieces = PieceTable(m_before->source.bytes());
    m_mistakes.clear();
}

void RepairedFile::run(Manner manner)
{
    m_manner = manner;
    takeBack();
    int rounds = 0;
    while (rounds < MostRounds && repairOnce())
        ++rounds;
    if (rounds == MostRounds)
        takeBack(); // half of the repairs would leave the rest for another call
}

bool RepairedFile::repairOnce()
{
    const std::vector<SureRepair> repairs = SureRepairs::of(now(), m_files);
    return !repairs.empty() && repair(repairs, 0, repairs.size());
}

// All at once. Where something is worse then, half of them.
bool RepairedFile::repair(const std::vector<SureRepair> &repairs, size_t begin, size_t end)
{
    const std::vector<Edit> edits = editsOf(repairs, begin, end);
    PieceTable pieces = m_pieces;
    pieces.apply(edits);
    std::unique_ptr<Analysis> after =
        analyse(now().source.name(), pieces.text(), m_files, ProgressSink(), m_ignored);
    if (!Attempt { now(), *after, repairs, begin, end, m_manner }.isGood()) {
        const size_t middle = begin + (end - begin) / 2;
        return end - begin > 1 && (repair(repairs, begin, middle) || repair(repairs, middle, end));
    }
    for (size_t i = begin; i < end; ++i) {
        for (const Finding *finding : repairs[i].findings)
            m_mistakes.push_back(
                Mistake { finding->rule, m_pieces.original(finding->offset), finding->text });
    }
    m_pieces = pieces;
    m_now = std::move(after);
    return true;
}
