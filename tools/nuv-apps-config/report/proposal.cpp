// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/proposal.h"

namespace {

// Whether it has part in a secret, or brings bytes that are no text.
bool mustStay(const Analysis &analysis, const Edit &edit, const QString &inserted)
{
    return analysis.secrets->areIn(edit.offset, edit.removed)
        || analysis.secrets->text(inserted) != inserted || inserted.toUtf8() != edit.inserted;
}

} // namespace

Proposal Proposal::of(const Analysis &analysis, const Finding &finding)
{
    Proposal proposal;
    const Edit &edit = finding.edit;
    proposal.inserted = QString::fromUtf8(edit.inserted);
    if (edit.isNothing() || mustStay(analysis, edit, proposal.inserted))
        return Proposal();
    proposal.isGiven = true;
    proposal.begin = analysis.source.place(edit.offset);
    proposal.end = analysis.source.place(edit.offset + edit.removed);
    return proposal;
}
