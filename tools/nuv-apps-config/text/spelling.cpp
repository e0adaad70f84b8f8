// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/text/spelling.h"

#include <cstdlib>
#include <vector>

int Spelling::distance(const QString &a, const QString &b, int limit)
{
    if (std::abs(a.size() - b.size()) > limit)
        return limit + 1;
    const size_t width = size_t(b.size()) + 1;
    std::vector<int> beforeLast(width), last(width), row(width);
    for (size_t j = 0; j < width; ++j)
        last[j] = int(j);
    for (int i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const size_t at = size_t(j);
            const int changed = last[at - 1] + (a.at(i - 1) != b.at(j - 1));
            row[at] = qMin(changed, qMin(last[at], row[at - 1]) + 1);
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                row[at] = qMin(row[at], beforeLast[at - 2] + 1);
        }
        beforeLast.swap(last);
        last.swap(row);
    }
    return qMin(last[width - 1], limit + 1);
}

QString Spelling::nearest(const QString &name, const QStringList &names)
{
    const int longest = 64;
    if (name.size() > longest)
        return QString();
    const QString lower = name.toLower();
    int best = qMin(3, lower.size() / 3) + 1;
    QString found;
    for (const QString &candidate : names) {
        const int now = distance(lower, candidate.toLower(), best - 1);
        if (now < best) {
            best = now;
            found = candidate;
        }
    }
    return found;
}

QStringList Spelling::similar(const QString &name, const QStringList &names)
{
    const int fewest = 3; // letters that tell something
    const int most = 5;
    QStringList found;
    const QString near = nearest(name, names);
    if (!near.isEmpty())
        found.append(near);
    for (const QString &candidate : names) {
        const bool isPart = name.size() >= fewest && candidate.contains(name, Qt::CaseInsensitive);
        if (isPart && found.size() < most && !found.contains(candidate))
            found.append(candidate);
    }
    return found;
}

QString Spelling::didYouMean(const QString &name, const QStringList &names)
{
    const QStringList found = similar(name, names);
    return found.isEmpty() ? QString()
                           : QString(QLatin1String("; did you mean \"%1\"?"))
                                 .arg(found.join(QLatin1String("\" or \"")));
}
