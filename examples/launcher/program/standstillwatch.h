// SPDX-License-Identifier: MIT
#ifndef STANDSTILLWATCH_H
#define STANDSTILLWATCH_H

#include <QMutex>
#include <QString>
#include <QThread>
#include <QWaitCondition>

/// Notices from a thread of its own when the program does not come back to its event loop, as while a
/// page's script never ends: the engine cannot be told to stop one. One object, made and deleted by the
/// thread of the event loop.
class StandstillWatch : public QThread
{
    Q_OBJECT

public:
    enum Reaction { Report, EndProgram };

    /// Begins to watch. After a standstill of `limit` milliseconds it says so on the standard error,
    /// once for each standstill; with EndProgram, the program ends at once with `status`.
    StandstillWatch(int limit, Reaction reaction, int status = 0);
    ~StandstillWatch();

    /// Whose scripts may be the cause, as in "tv, news".
    void setSuspects(const QString &tags);

protected:
    void run() override;
    void timerEvent(QTimerEvent *event) override; ///< the event loop lives

private:
    void complain() const;

    const int m_limit;
    const Reaction m_reaction;
    const int m_status;
    QMutex m_mutex; ///< guards what follows
    QWaitCondition m_isStopped;
    QString m_suspects;
    int m_beats;
    bool m_stops;
};

#endif // STANDSTILLWATCH_H
