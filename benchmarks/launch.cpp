// SPDX-License-Identifier: MIT
// What a launcher does first, once: from the start of the process to the first answer.
//
//   launch STEP FILE
//
// Does everything up to STEP and ends the process at once, so that what a step costs is the difference
// to the one before it:
//
//   link      nothing: main() is reached
//   open      reads the bytes of FILE
//   parse     makes a tree of them
//   flatten   makes a settings map of the tree
//   settings  instead of these three, opens FILE through QSettings and asks it one question: beyond
//             `flatten` comes the toolkit's own second map
//   answer    instead of all that, asks getWebAppSettings() for an application: beyond `settings`
//             come the questions of the loader
//
// Linked with the parts of the library, or with the whole library, which knows `link` and `answer`
// alone.

#include "benchmarks/work.h"
#include "config/appconfig.h"
#include "config/webappsettings.h"
#ifndef NUV_WHOLE_LIBRARY
#include "json/jsonparser.h"
#include "settings/flatkeys.h"
#include "settings/jsonsettingsformat.h"

#include <QFile>
#endif

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstdio>

namespace {

#ifndef NUV_WHOLE_LIBRARY
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isReadUpTo(const QByteArray &step, const QString &path)
{
    const QByteArray bytes = contentOf(path);
    if (step == "open")
        return !bytes.isEmpty();
    QVariant tree = parseJson(bytes, nullptr);
    if (step == "parse")
        return tree.isValid();
    QString prefix;
    QSettings::SettingsMap map;
    flattenVariant(prefix, map, tree);
    return !map.isEmpty();
}

bool isOpenedAsSettings(const QString &path)
{
    const QSettings settings(path, JsonSettingsFormat);
    return settings.value(QLatin1String("Global/Version")).isValid();
}
#endif

bool isAnswered(const char *file)
{
    qputenv("NUV_APPS_CONFIG_FILE", file);
    AppConfig config;
    return getWebAppSettings()->getAppConfig(QLatin1String("app3"), config)
        && config.getUrl().isValid();
}

bool isDoneUpTo(const QByteArray &step, const char *file)
{
    if (step == "answer")
        return isAnswered(file);
#ifndef NUV_WHOLE_LIBRARY
    const QString path = QString::fromLocal8Bit(file);
    if (step == "open" || step == "parse" || step == "flatten")
        return isReadUpTo(step, path);
    if (step == "settings")
        return isOpenedAsSettings(path);
#endif
    return step == "link";
}

} // namespace

int main(int argc, char **argv)
{
    const long long since = Work::started();
    Work::beginInStartedProcess();
    const bool done = argc == 3 && isDoneUpTo(argv[1], argv[2]);
    Work::end();
    if (done)
        Work::report(since);
    std::fprintf(stderr, "usage: launch STEP FILE\n");
    return 2;
}
