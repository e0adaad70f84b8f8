// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include <QCoreApplication>

#include <cstdio>
#include <new>

#include <sys/resource.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace {

// The library says in a warning what check says better.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

// The pass phrases of the file would stand in a core file. The limit keeps it off the disk; only a
// process that is not to be dumped is kept from a program that collects core files, too.
void leaveNoCoreFile()
{
    const rlimit nothing = { 0, 0 };
    setrlimit(RLIMIT_CORE, &nothing);
#ifdef Q_OS_LINUX
    prctl(PR_SET_DUMPABLE, 0);
#endif
}

} // namespace

int main(int argc, char **argv)
{
    leaveNoCoreFile();
    try {
        Output output;
        const QCoreApplication application(argc, argv);
        qInstallMessageHandler(dropMessage);
        return Program::run(application.arguments(), output);
    } catch (const std::bad_alloc &) { // to say so must not take any
        std::fputs("nuv-apps-config: there is not enough memory for this file\n", stderr);
        return Trouble;
    }
}
