// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/configurationfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

const char Variable[] = "NUV_APPS_CONFIG_FILE";
const char Fallback[] = "AppsConfig.json";

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

// The library reads the variable as Latin-1.
QString named()
{
    return QString::fromLatin1(qgetenv(Variable).constData());
}

QString whyNotNamed()
{
    if (!qEnvironmentVariableIsSet(Variable))
        return text("NUV_APPS_CONFIG_FILE is not set");
    if (named().isEmpty())
        return text("NUV_APPS_CONFIG_FILE is empty");
    const QString why =
        text("NUV_APPS_CONFIG_FILE names ") + named() + text(", which does not exist");
    return QFile::exists(QFile::decodeName(qgetenv(Variable)))
        ? why + text(" (the library reads the name as Latin-1)")
        : why;
}

// What a shell makes of <(COMMAND).
bool isOpenAlready(const QString &name)
{
    return name.startsWith(text("/dev/fd/")) || name.startsWith(text("/proc/self/fd/"));
}

const qint64 pieceSize = qint64(1) << 20; // the toolkit takes memory for as much as it is asked for

// A pipe gives what is there; all of it has come when it gives nothing.
bool readAll(QFile &file, QByteArray *bytes, QString *error)
{
    QByteArray piece;
    do {
        piece = file.read(pieceSize);
        *bytes += piece;
    } while (!piece.isEmpty() && bytes->size() <= ConfigurationFile::LargestFile);
    if (file.error() != QFile::NoError) {
        *error = file.errorString();
        return false;
    }
    if (bytes->size() > ConfigurationFile::LargestFile) {
        *error = text("larger than 256 MiB, which is no configuration");
        return false;
    }
    return true;
}

} // namespace

ConfigurationFile::Choice ConfigurationFile::choice()
{
    Choice found;
    if (QFile::exists(named())) {
        found.path = named();
        found.why = text("named by NUV_APPS_CONFIG_FILE");
        return found;
    }
    if (QFile::exists(text(Fallback))) {
        found.path = text(Fallback);
        found.why = text("in the working directory, as ") + whyNotNamed();
        if (!named().isEmpty())
            found.warning = whyNotNamed() + text(", so the library reads this file instead");
        return found;
    }
    found.why = whyNotNamed() + text(", and there is no AppsConfig.json in ") + QDir::currentPath();
    return found;
}

QString ConfigurationFile::standardInput()
{
    return text("-");
}

bool ConfigurationFile::read(const QString &name, QByteArray *bytes, QString *error)
{
    const bool isInput = name == standardInput();
    const QFileInfo info(name);
    const bool mayWait = !isInput && info.exists() && !info.isFile() && !isOpenAlready(name);
    if (mayWait) { // opening a pipe would wait for its writer
        *error = info.isDir() ? text("a directory")
                              : text("not a file but a pipe or a device; standard input is -");
        return false;
    }
    QFile file(name);
    if (!(isInput ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly))) {
        *error = file.errorString();
        return false;
    }
    return readAll(file, bytes, error);
}

QString ConfigurationFile::folderOf(const QString &name)
{
    return name == standardInput() ? QDir::currentPath() : QFileInfo(name).absolutePath();
}
