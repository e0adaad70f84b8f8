// SPDX-License-Identifier: MIT
#ifndef PROGRESS_H
#define PROGRESS_H

#include <QElapsedTimer>
#include <QString>

/// Says on the standard error how far the work on a file is, if that is a terminal and the work takes
/// longer than a second.
class Progress
{
public:
    Progress(const QString &name, int size);
    ~Progress();

    void reached(int offset);

private:
    QString m_name;
    int m_size;
    bool m_isShown = false;
    QElapsedTimer m_timer;
};

#endif // PROGRESS_H
