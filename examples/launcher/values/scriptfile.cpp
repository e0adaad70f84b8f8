// SPDX-License-Identifier: MIT
#include "values/scriptfile.h"

#include "values/pattern.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace {

// What has more than one line, calls something or ends a statement is no path.
bool isScript(const QString &text)
{
    return Pattern("[\n;{}]|\\w\\(.*\\)").isIn(text);
}

bool isForShell(const QString &text)
{
    return text.startsWith(QLatin1Char('~')) || text.startsWith(QLatin1Char('$'));
}

Objection judgeText(const QString &text)
{
    if (text.isEmpty())
        return Objection("it is empty");
    if (isScript(text))
        return Objection("it is a script, not the path of a file");
    if (isForShell(text))
        return Objection("~ and $ mean something to a shell only: the path is written out");
    if (text.startsWith(QLatin1String("file:")))
        return Objection("it is an address, not a path", QUrl(text).toLocalFile());
    return Objection();
}

} // namespace

Objection judgeFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return Objection("there is no such file");
    if (info.isDir())
        return Objection("it is a directory");
    if (!info.isFile()) // opening a pipe would wait for its writer
        return Objection("it is not a file but a pipe or a device");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? Objection() : Objection("the file cannot be read");
}

Parsed<QString> findScript(const QString &text, const QString &folder)
{
    Parsed<QString> file;
    file.value = QDir::cleanPath(QDir(folder).absoluteFilePath(text));
    const Objection found = judgeFile(file.value);
    if (found.isNone())
        return file;
    const Objection better = judgeText(text);
    file.objection = better.isNone() ? found : better;
    return file;
}
