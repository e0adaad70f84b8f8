// SPDX-License-Identifier: MIT
// Asks for the configuration as a launcher does and prints what it is given, in lines that do not
// change from run to run: the port, the global section, then the applications with the given tags.
//
//     config_probe [--as-nobody] [--codec-for-c-strings NAME] [TAG...]

#include "config/webappsettings.h"

#include "tests/support/configdescription.h"
#include "tests/support/toolkitdifferences.h"

#include <QCoreApplication>
#include <QScopedPointer>

#include <cstdio>
#include <cstring>

#include <unistd.h>

static bool becomeNobody()
{
    const unsigned int nobody = 65534;
    return ::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
}

static void printPort()
{
    unsigned int port = 0;
    if (getWebAppSettings()->getGlobalRemoteInspectorPort(port))
        std::printf("port: %u\n", port);
    else
        std::printf("port: none\n");
}

static void printGlobal()
{
    AppConfig config;
    if (getWebAppSettings()->getGlobalConfig(config))
        std::printf("global: %s\n", describeConfig(config).constData());
    else
        std::printf("global: none\n");
}

static void printApplication(const char *tag)
{
    AppConfig config;
    if (getWebAppSettings()->getAppConfig(QLatin1String(tag), config))
        std::printf("%s: %s\n", tag, describeConfig(config).constData());
    else
        std::printf("%s: none\n", tag);
}

int main(int argc, char **argv)
{
    // The application object puts the locale of the environment in force.
    QCoreApplication application(argc, argv);
    int argument = 1;
    if (argument < argc && std::strcmp(argv[argument], "--as-nobody") == 0) {
        ++argument;
        if (!becomeNobody())
            return 1;
    }
    QScopedPointer<ToolkitDifferences::CodecForCStrings> codec;
    if (argument + 1 < argc && std::strcmp(argv[argument], "--codec-for-c-strings") == 0) {
        codec.reset(new ToolkitDifferences::CodecForCStrings(argv[argument + 1]));
        argument += 2;
    }
    printPort();
    printGlobal();
    for (; argument < argc; ++argument)
        printApplication(argv[argument]);
    // A settings object would write what was changed in it as soon as events are handled.
    application.processEvents();
    return 0;
}
