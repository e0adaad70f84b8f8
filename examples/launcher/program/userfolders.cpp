#include "program/userfolders.h"

#include <QDir>
#include <QFile>
#include <QUrl>

namespace {

QString folder(const char *variable, const char *otherwise)
{
    const QString named = QFile::decodeName(qgetenv(variable));
    const QString base = QDir::isAbsolutePath(named)
        ? named
        : QDir::homePath() + QLatin1Char('/') + QLatin1String(otherwise);
    return base + QLatin1String("/nuv-launcher");
}

} // namespace

QString UserFolders::data()
{
    return folder("XDG_DATA_HOME", ".local/share");
}

QString UserFolders::cache()
{
    return folder("XDG_CACHE_HOME", ".cache");
}

QString UserFolders::nameFor(const QString &tag)
{
    return QLatin1String("/tag-") + QString::fromLatin1(QUrl::toPercentEncoding(tag).constData());
}
