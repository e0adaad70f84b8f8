// SPDX-License-Identifier: MIT
#ifndef TERMINATIONSIGNALS_H
#define TERMINATIONSIGNALS_H

#include <QObject>

/// Hears SIGHUP, SIGINT and SIGTERM, the ways in which a program is told to end from outside, so that
/// it can end in order. One object in a process. The second signal of a kind ends the program at once,
/// as without this object: a page's script that never ends keeps the first from being heard.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals();

Q_SIGNALS:
    void received();

private Q_SLOTS:
    void read();

private:
    int m_readEnd;
};

#endif // TERMINATIONSIGNALS_H
