// SPDX-License-Identifier: MIT
#ifndef MENDEDTEXT_H
#define MENDEDTEXT_H

#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/ranges.h"
#include "tools/nuv-apps-config/slips/slip.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <vector>

class Reading;

/// Takes back the slips of the hand in a document that the library rejects. For each syntax error all
/// changes of one or two bytes near it are tried, and the one after which the text reads on furthest is
/// what was meant. What no small change mends stays as it is.
class MendedText
{
public:
    /// `hasSlips` is false for a document in which nothing needs to be looked for.
    MendedText(const SourceText &source, bool hasSlips);

    /// Whether nothing had to be changed.
    bool isEmpty() const { return m_edits.empty(); }

    /// The text with all changes.
    const SourceText &text() const { return m_text; }

    /// Where in the file that is what the changed text has at `offset`.
    int original(int offset) const;

    /// The same for the end of what begins at `begin`: what was taken away after it is not part of it.
    int originalEnd(int begin, int end) const
    {
        return end > begin ? qMin(original(end - 1) + 1, m_source.size()) : original(end);
    }

    /// The change that does the same to the file.
    Edit original(const Edit &edit) const;

    const Findings &findings() const { return m_findings; }

    /// Where in the file a key or a value was changed: what it says is not to be relied on.
    const Ranges &doubtful() const { return m_doubtful; }

    /// Where something may be missing for a mistake: not for a comma or a colon.
    const Ranges &mended() const { return m_mended; }

    /// Where a comma was taken away that waited for an entry.
    const Ranges &loose() const { return m_loose; }

    /// Where brackets were put in, taken away or replaced.
    const Ranges &moved() const { return m_moved; }

private:
    void takeNulBytes();
    void takeConflicts();
    bool takeConflict(int begin);
    void takeMarkers();
    bool takeCutOff(const Reading &reading);
    bool mendOne(const Reading &reading);
    void change(const Edit &edit);
    void run();
    static Edit numberWritten(int place, const QByteArray &given);
    void take(const Slip &slip, int opened);
    bool isAffordable();

    const SourceText &m_source;
    SourceText m_text;
    std::vector<Edit> m_edits; ///< in the order of being made, each in the text as it was then
    Findings m_findings;
    Ranges m_doubtful;
    Ranges m_moved;
    Ranges m_mended;
    Ranges m_loose;
    qint64 m_budget;
};

#endif // MENDEDTEXT_H
