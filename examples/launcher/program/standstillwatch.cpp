// SPDX-License-Identifier: MIT
#include "program/standstillwatch.h"

#include "program/console.h"

#include <unistd.h>

namespace {

// A pause of the whole machine is not taken for one of the program alone: what counts are silent pieces
// of the limit, each waited for by itself.
const int piecesOfTheLimit = 10;

} // namespace

StandstillWatch::StandstillWatch(int limit, Reaction reaction, int status)
    : m_limit(limit), m_reaction(reaction), m_status(status), m_beats(0), m_stops(false)
{
    startTimer(m_limit / piecesOfTheLimit);
    start();
}

StandstillWatch::~StandstillWatch()
{
    m_mutex.lock();
    m_stops = true;
    m_isStopped.wakeAll();
    m_mutex.unlock();
    wait();
}

void StandstillWatch::setSuspects(const QString &tags)
{
    const QMutexLocker lock(&m_mutex);
    m_suspects = tags;
    ++m_beats;
}

void StandstillWatch::timerEvent(QTimerEvent *)
{
    const QMutexLocker lock(&m_mutex);
    ++m_beats;
}

void StandstillWatch::run()
{
    const QMutexLocker lock(&m_mutex);
    int silentPieces = 0;
    int beats = -1; // of no piece so far
    while (!m_stops) {
        silentPieces = m_beats == beats ? silentPieces + 1 : 0;
        beats = m_beats;
        if (silentPieces == piecesOfTheLimit)
            complain();
        m_isStopped.wait(&m_mutex, static_cast<unsigned long>(m_limit / piecesOfTheLimit));
    }
}

// Destructors would wait for the script, and so would whatever else ends in order.
void StandstillWatch::complain() const
{
    const QString text = QString(QLatin1String("%1: a script has not come to an end in %2 ms"))
                             .arg(m_suspects, QString::number(m_limit));
    if (m_reaction == Report) {
        Console::warning(text);
        return;
    }
    Console::error(text);
    _exit(m_status);
}
