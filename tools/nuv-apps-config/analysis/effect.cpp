// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/analysis/effect.h"

#include "tools/nuv-apps-config/analysis/libraryview.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <algorithm>

namespace {

QString words(const char *latin1)
{
    return QLatin1String(latin1);
}

// The line of the first syntax error. The library notices it at the same place or later, since the
// place where a bracket or a comma is missing comes before the token that cannot follow.
int errorLine(const Analysis &analysis, int noticedAt)
{
    const std::vector<Finding> &findings = analysis.findings.all();
    const auto first = std::find_if(findings.begin(), findings.end(), [](const Finding &finding) {
        return Rules::isSyntaxError(finding.rule);
    });
    const bool isThere = first != findings.end() && first->offset <= noticedAt;
    return analysis.source.place(isThere ? first->offset : noticedAt).line;
}

QString unreadText(const Analysis &analysis, int noticedAt)
{
    if (analysis.findings.has("not-text"))
        return words("nothing is read of this file: it is not text that the library can read");
    return QString(words("nothing is read of this file: the library stops at the syntax error in "
                         "line %1"))
        .arg(errorLine(analysis, noticedAt));
}

QString counted(const QString &seen, int all)
{
    return QString(words("the launcher will see %1 of %2 %3"))
        .arg(seen, QString::number(all), words(all == 1 ? "application" : "applications"));
}

QString seenText(const WebAppSettingsPrivate &state, int seen, int all)
{
    if (all <= 0)
        return words("the launcher will see no application, for there is none in the file");
    if (state.isUsable())
        return counted(QString::number(seen), all);
    return counted(words("none"), all) + words(", for only versions from 1 to below 2 are loaded");
}

} // namespace

Effect Effect::of(const Analysis &analysis)
{
    Effect effect;
    QString error = analysis.danger();
    const std::unique_ptr<LibraryView> view =
        error.isEmpty() ? LibraryView::load(analysis.source.bytes(), &error) : nullptr;
    if (!view) {
        effect.text = words("what the launcher will see was not tried: ") + error;
        return effect;
    }
    if (analysis.source.size() == 0) {
        effect.text = words("nothing is read of this file: it is empty");
        return effect;
    }
    if (!view->isParsed()) {
        effect.text = unreadText(analysis, view->errorOffset());
        return effect;
    }
    effect.seen = view->state().applications.size();
    effect.all = qMax(0, view->elementCount());
    effect.text = seenText(view->state(), effect.seen, effect.all);
    return effect;
}
