// SPDX-License-Identifier: MIT
#include "application/questionflood.h"

QuestionFlood::QuestionFlood() : m_number(0) {}

int QuestionFlood::next()
{
    const bool continues = m_sinceAnswer.isValid() && m_sinceAnswer.elapsed() < Pause;
    m_number = continues ? qMin(m_number + 1, Most + 2) : 1;
    return m_number;
}

void QuestionFlood::answered()
{
    m_sinceAnswer.start();
}
