// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/readfile.h"

#include "tools/nuv-apps-config/commands/configurationfile.h"
#include "tools/nuv-apps-config/report/progress.h"

std::unique_ptr<Analysis> readFile(const QString &path, const Invocation &invocation,
                                   QString *error)
{
    QByteArray bytes;
    if (!ConfigurationFile::read(path, &bytes, error))
        return nullptr;
    Progress progress(path, bytes.size());
    const bool isInput = path == ConfigurationFile::standardInput();
    std::unique_ptr<Analysis> analysis = analyse(
        isInput ? QString(QLatin1String("<stdin>")) : path, bytes,
        DeviceFiles(ConfigurationFile::folderOf(path), invocation.root),
        [&](int offset) { progress.reached(offset); }, invocation.ignored);
    if (int(analysis->document.nodes.size()) <= LargestDocument)
        return analysis;
    *error = QLatin1String("too many values for a configuration");
    return nullptr;
}
