// SPDX-License-Identifier: MIT
#include "network/localfiles.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sys/stat.h>

namespace {

bool isFile(const QUrl &url)
{
    return url.scheme() == QLatin1String("file");
}

// An address can name the own host, or none.
QString pathOf(QUrl url)
{
    url.setHost(QString());
    return url.toLocalFile();
}

/// Where an absolute path leads to, as the system opens it: ".." after a link is above where the link
/// leads to. What is not there is where it would be made.
QString target(const QString &path)
{
    const QString found = QFileInfo(path).canonicalFilePath();
    if (!found.isEmpty())
        return found;
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash <= 0 ? path : target(path.left(slash)) + path.mid(slash);
}

bool isWithin(const QString &path, const QString &directory)
{
    const QString beginning =
        directory.endsWith(QLatin1Char('/')) ? directory : directory + QLatin1Char('/');
    return path == directory || path.startsWith(beginning);
}

// A file can have several names that are no links to each other.
bool isSameFile(const QString &one, const QString &other)
{
    struct stat a;
    struct stat b;
    return ::stat(QFile::encodeName(one).constData(), &a) == 0
        && ::stat(QFile::encodeName(other).constData(), &b) == 0 && a.st_dev == b.st_dev
        && a.st_ino == b.st_ino;
}

} // namespace

LocalFiles::LocalFiles() : m_isBounded(false) {}

void LocalFiles::setBounds(const QUrl &home, const QString &configurationDirectory)
{
    m_isBounded = true;
    m_directory.clear();
    if (!isFile(home))
        return;
    const QString page = target(pathOf(home));
    const QString shared = target(configurationDirectory);
    m_directory = isWithin(page, shared) ? shared : QFileInfo(page).path();
}

void LocalFiles::keepBack(const QString &path)
{
    m_keptBack.append(path);
}

QString LocalFiles::objectionTo(const QUrl &url) const
{
    if (!m_isBounded || !isFile(url))
        return QString();
    if (m_directory.isEmpty())
        return QLatin1String("an application of the web loads no files");
    const QString path = target(pathOf(url));
    if (!isWithin(path, m_directory))
        return QLatin1String("it is not in the directory of the application");
    for (int i = 0; i < m_keptBack.size(); ++i) {
        const QString &kept = m_keptBack.at(i);
        if (isSameFile(path, kept) || isWithin(path, target(kept)))
            return QLatin1String("no page loads the launcher's own files");
    }
    return QString();
}
