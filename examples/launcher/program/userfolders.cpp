// SPDX-License-Identifier: MIT
#include "program/userfolders.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#include <cerrno>
#include <cstdlib>

#include <sys/stat.h>

namespace {

// A device is no directory, whoever asks.
const char nowhere[] = "/dev/null";

/// Empty unless the variable holds an absolute path: the standard wants a relative one ignored.
QString absolutePathIn(const char *variable)
{
    const QString path = QFile::decodeName(qgetenv(variable));
    return QDir::isAbsolutePath(path) ? path : QString();
}

QString directory(const char *variable, const char *belowHome)
{
    const QString home = absolutePathIn("HOME");
    QString base = absolutePathIn(variable);
    if (base.isEmpty())
        base = home.isEmpty() ? QString(QLatin1String(nowhere))
                              : home + QLatin1Char('/') + QLatin1String(belowHome);
    return base + QLatin1String("/nuv-launcher");
}

QString nameFor(const QString &tag)
{
    return QLatin1String("/tag-") + QString::fromLatin1(QUrl::toPercentEncoding(tag).constData());
}

const QFile::Permissions ownersOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

} // namespace

QString UserFolders::data()
{
    return directory("XDG_DATA_HOME", ".local/share");
}

QString UserFolders::cache()
{
    return directory("XDG_CACHE_HOME", ".cache");
}

QString UserFolders::dataOf(const QString &tag)
{
    return data() + nameFor(tag);
}

QString UserFolders::cacheOf(const QString &tag)
{
    return cache() + nameFor(tag);
}

// Made one by one with the right mode: a moment of another one would be enough to look inside.
QString UserFolders::make(const QString &path)
{
    const QStringList names = QDir::cleanPath(path).split(QLatin1Char('/'));
    QString made;
    for (int i = 1; i < names.size(); ++i) { // the first is before the first slash
        made += QLatin1Char('/') + names.at(i);
        if (::mkdir(QFile::encodeName(made).constData(), S_IRWXU) != 0 && !QDir(made).exists())
            return qt_error_string(errno == EEXIST ? ENOTDIR : errno);
    }
    return QFile::setPermissions(made, ownersOnly) ? QString() : qt_error_string(errno);
}

void UserFolders::forgetRelativePaths()
{
    const char *const variables[] = { "HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                                      "XDG_DATA_HOME" };
    for (const char *variable : variables) {
        if (absolutePathIn(variable).isEmpty())
            ::unsetenv(variable); // NOLINT(concurrency-mt-unsafe): before there is a second thread
    }
}

void UserFolders::prepare()
{
    make(data());
    make(cache());
}
