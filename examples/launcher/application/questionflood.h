// SPDX-License-Identifier: MIT
#ifndef QUESTIONFLOOD_H
#define QUESTIONFLOOD_H

#include <QElapsedTimer>

/// Tells a page that asks its user again and again, without end, from one that has some questions: the
/// next question of a flood follows at once upon the answer.
class QuestionFlood
{
public:
    /// So many in a row are no flood yet.
    enum { Most = 10 };

    /// Milliseconds after an answer, within which only a script asks again.
    enum { Pause = 300 };

    QuestionFlood();

    /// A question comes. Returns its number in the row that it continues or begins.
    int next();

    /// It has its answer.
    void answered();

private:
    QElapsedTimer m_sinceAnswer;
    int m_number;
};

#endif // QUESTIONFLOOD_H
