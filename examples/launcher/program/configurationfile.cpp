// SPDX-License-Identifier: MIT
#include "program/configurationfile.h"

#include <WebAppSettings>
#include "application/guicompat.h"
#include "values/pattern.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const char fallback[] = "AppsConfig.json";

QString named()
{
    return QString::fromLatin1(qgetenv("NUV_APPS_CONFIG_FILE").constData());
}

// What the library sends for a file with a syntax error, in quotes and with a space after it.
bool isSyntaxError(QtMsgType type, const QString &message)
{
    Pattern pattern("^\"(Expected '.+')? at line [0-9]+ pos [0-9]+\" $");
    return type == QtWarningMsg && pattern.isIn(message);
}

} // namespace

QString ConfigurationFile::path()
{
    if (QFile::exists(named()))
        return named();
    return QFile::exists(QLatin1String(fallback)) ? QString(QLatin1String(fallback)) : QString();
}

QString ConfigurationFile::whyMissing()
{
    const QString first = named().isEmpty()
        ? QString(QLatin1String("NUV_APPS_CONFIG_FILE is not set"))
        : QLatin1String("NUV_APPS_CONFIG_FILE names ") + named()
            + QLatin1String(", which does not exist");
    return first + QLatin1String(", and there is no ") + QLatin1String(fallback)
        + QLatin1String(" in ") + QDir::currentPath();
}

QString ConfigurationFile::read()
{
    const GuiCompat::MessageKeeper keeper(isSyntaxError);
    getWebAppSettings();
    return keeper.messages().remove(QLatin1Char('"')).trimmed();
}

QString ConfigurationFile::resolve(const QString &name)
{
    const QDir folder = QFileInfo(path()).absoluteDir();
    return QDir::cleanPath(folder.absoluteFilePath(name));
}
