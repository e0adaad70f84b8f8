// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/nearbyfiles.h"

#include "tools/nuv-apps-config/text/spelling.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace {

const int MostEntries = 1000; // in a larger directory the search would take long, and find anything

QString nearestEntry(const QDir &folder, const QString &name, QDir::Filters filters)
{
    const QStringList entries = folder.entryList(filters);
    return entries.size() > MostEntries ? QString() : Spelling::nearest(name, entries);
}

} // namespace

QString NearbyFiles::nearest(const QString &path, const QString &folder)
{
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QDir place(folder);
    QStringList found;
    for (int i = 0; i < parts.size(); ++i) {
        const bool isLast = i + 1 == parts.size();
        QString entry = parts.at(i);
        if (!place.exists(entry))
            entry = nearestEntry(place, entry.trimmed(), isLast ? QDir::Files : QDir::Dirs);
        if (entry.isEmpty() || (!isLast && !place.cd(entry)))
            return QString();
        found.append(entry);
    }
    const QString result = found.join(QLatin1Char('/'));
    return QFileInfo(QDir(folder), result).isFile() ? result : QString();
}
