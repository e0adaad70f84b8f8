// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/replacefile.h"

#include "tools/nuv-apps-config/commands/configurationfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// The new file belongs to whom the old one did, as far as the caller may give files away.
void keepOwner(const QString &target, int newFile)
{
    struct stat old;
    if (::stat(QFile::encodeName(target).constData(), &old) != 0)
        return;
    if (::fchown(newFile, old.st_uid, old.st_gid) != 0
        && ::fchown(newFile, uid_t(-1), old.st_gid) != 0)
        return; // only root may: the content counts more
}

// A disk that has room for a part gives no reason before the next attempt. What is not on the disk before
// the file has its name can be missing after a loss of power. A file system without it refuses to sync.
bool isOnDisk(QSaveFile &file, QString *error)
{
    if (!file.flush() && !file.flush())
        return false;
    if (::fsync(file.handle()) == 0 || errno == EINVAL)
        return true;
    *error = qt_error_string(errno);
    return false;
}

// What somebody else wrote meanwhile must not be lost. It is asked as late as can be.
bool isUnchanged(const QString &target, const QByteArray &before, QString *error)
{
    QByteArray now;
    if (!ConfigurationFile::read(target, &now, error))
        return false;
    if (now != before)
        *error = QLatin1String("it was changed meanwhile, and is not touched");
    return now == before;
}

} // namespace

// What cannot be written is noticed before commit(), which forgets the reason.
bool replaceFile(const QString &name, const QByteArray &before, const QByteArray &bytes,
                 QString *error)
{
    const QString target = QFileInfo(name).canonicalFilePath();
    const QFile::Permissions mode = QFile::permissions(target);
    QSaveFile file(target);
    bool isWritten = file.open(QIODevice::WriteOnly);
    if (isWritten) {
        keepOwner(target, file.handle());
        isWritten =
            file.write(bytes) == bytes.size() && isOnDisk(file, error) && file.setPermissions(mode);
        if (isWritten && !isUnchanged(target, before, error))
            return false;
        isWritten = isWritten && file.commit();
    }
    if (!isWritten && error->isEmpty())
        *error = file.errorString();
    return isWritten;
}
