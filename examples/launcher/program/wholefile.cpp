// SPDX-License-Identifier: MIT
#include "program/wholefile.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

const int longestAttempt = 60; // seconds; a younger file can be that of another launcher at work

// The new name is as lasting as the directory that holds it. A file system that cannot do it says so,
// and does it by itself or not at all.
void syncDirectory(const QString &path)
{
    const int directory =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return;
    ::fsync(directory);
    ::close(directory);
}

/// Returns what failed. A file system can tell of a full disk as late as when the file is synced.
QString fill(int descriptor, const QByteArray &contents)
{
    for (int done = 0; done < contents.size();) {
        const ssize_t written =
            ::write(descriptor, contents.constData() + done, size_t(contents.size() - done));
        if (written < 0 && errno != EINTR)
            return qt_error_string(errno);
        done += int(qMax(written, ssize_t(0)));
    }
    return ::fsync(descriptor) == 0 ? QString() : qt_error_string(errno);
}

} // namespace

// The toolkit's own ways lose what they know of a failed write, and do not replace a file by renaming
// another. A temporary file is for its owner's eyes only from the beginning.
QString WholeFile::replace(const QString &fileName, const QByteArray &contents)
{
    QTemporaryFile file(fileName + QLatin1String(".XXXXXX"));
    if (!file.open())
        return file.errorString();
    const QString problem = fill(file.handle(), contents);
    if (!problem.isEmpty())
        return problem;
    const QByteArray temporary = QFile::encodeName(file.fileName());
    if (std::rename(temporary.constData(), QFile::encodeName(fileName).constData()) != 0)
        return qt_error_string(errno);
    file.setAutoRemove(false);
    syncDirectory(QFileInfo(fileName).path());
    return QString();
}

void WholeFile::removeLeftovers(const QString &fileName)
{
    const QFileInfo info(fileName);
    const QFileInfoList candidates =
        info.dir().entryInfoList(QStringList(info.fileName() + QLatin1String(".??????")),
                                 QDir::Files | QDir::Hidden | QDir::System);
    const QDateTime limit = QDateTime::currentDateTime().addSecs(-longestAttempt);
    for (int i = 0; i < candidates.size(); ++i) {
        if (candidates.at(i).lastModified() < limit)
            QFile::remove(candidates.at(i).filePath());
    }
}
