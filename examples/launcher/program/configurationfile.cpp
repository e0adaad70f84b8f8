// SPDX-License-Identifier: MIT
#include "program/configurationfile.h"

#include <WebAppSettings>
#include "application/guicompat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const char fallback[] = "AppsConfig.json";

QString named()
{
    return QString::fromLatin1(qgetenv("NUV_APPS_CONFIG_FILE").constData());
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

// The library tells it to the toolkit's message handler, in quotes.
QString ConfigurationFile::read()
{
    const GuiCompat::MessageKeeper keeper;
    getWebAppSettings();
    QString message = keeper.messages().trimmed();
    return message.remove(QLatin1Char('"'));
}

QString ConfigurationFile::resolve(const QString &name)
{
    const QDir folder = QFileInfo(path()).absoluteDir();
    return QDir::cleanPath(folder.absoluteFilePath(name));
}
