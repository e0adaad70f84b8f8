#include "tools/nuv-apps-config/program.h"

#include <QCoreApplication>

#include <cstdio>
#include <new>

namespace {

// The library says in a warning what check says better.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    Output output;
    QCoreApplication application(argc, argv);
    qInstallMessageHandler(dropMessage);
    try {
        return Program::run(application.arguments(), output);
    } catch (const std::bad_alloc &) {
        Output::complain(QLatin1String("there is not enough memory for this file"));
        return Trouble;
    }
}
