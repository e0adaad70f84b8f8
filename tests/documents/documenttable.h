// SPDX-License-Identifier: MIT
#ifndef DOCUMENTTABLE_H
#define DOCUMENTTABLE_H

#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

typedef QList<QStringList> Table;

/// The rows of the first table below a heading of a document, cell by cell, without the table's own
/// head. `document` is a path from the root of the project.
inline Table tableBelow(const QString &document, const char *heading)
{
    QFile file(QLatin1String(SOURCE_FOLDER "/") + document);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(file.fileName()));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    int line = lines.indexOf(QLatin1String("## ") + QLatin1String(heading));
    while (line >= 0 && line < lines.size() && !lines.at(line).startsWith(QLatin1String("|---")))
        ++line;

    Table table;
    for (++line; line > 0 && line < lines.size() && lines.at(line).startsWith(QLatin1Char('|'));
         ++line) {
        QStringList row;
        const QStringList cells = lines.at(line).split(QLatin1Char('|'));
        for (int i = 1; i < cells.size() - 1; ++i)
            row.append(cells.at(i).trimmed());
        table.append(row);
    }
    return table;
}

#endif // DOCUMENTTABLE_H
