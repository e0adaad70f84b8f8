// SPDX-License-Identifier: MIT
#include "program/terminationsignals.h"

#include <QSocketNotifier>
#include <QtDebug>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace {

const int numbers[] = { SIGHUP, SIGINT, SIGTERM };

int writeEnd = -1;

// Of all that the program does, only a write to a pipe may happen in the midst of anything else.
void hear(int)
{
    const ssize_t written = write(writeEnd, "!", 1);
    static_cast<void>(written); // a full pipe has signals enough
}

void handleOnce(int number)
{
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = hear;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals() : m_readEnd(-1)
{
    int ends[2];
    if (pipe(ends) != 0) {
        qWarning("no pipe for signals: %s", qPrintable(qt_error_string(errno)));
        return;
    }
    m_readEnd = ends[0];
    writeEnd = ends[1];
    connect(new QSocketNotifier(m_readEnd, QSocketNotifier::Read, this), SIGNAL(activated(int)),
            SLOT(read()));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the notifier goes with its parent
    for (int number : numbers)
        handleOnce(number);
}

TerminationSignals::~TerminationSignals()
{
    for (int number : numbers)
        std::signal(number, SIG_DFL);
    if (m_readEnd < 0)
        return;
    close(m_readEnd);
    close(writeEnd);
}

void TerminationSignals::read()
{
    char byte;
    if (::read(m_readEnd, &byte, 1) == 1)
        emit received();
}
