// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/progress.h"

#include "tools/nuv-apps-config/report/output.h"

#include <cstdio>

#include <unistd.h>

Progress::Progress(const QString &name, int size) : m_name(Output::printable(name)), m_size(size)
{
    m_timer.start();
}

Progress::~Progress()
{
    if (m_isShown)
        std::fputs("\r\033[K", stderr);
}

void Progress::reached(int offset)
{
    const qint64 patience = 1000;
    if (m_timer.elapsed() < patience || !isatty(STDERR_FILENO))
        return;
    m_isShown = true;
    const int percent = int(qint64(offset) * 100 / qMax(1, m_size));
    std::fprintf(stderr, "\r%s: %d %%", qPrintable(m_name), percent);
    std::fflush(stderr);
}
