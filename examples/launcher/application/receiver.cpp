// SPDX-License-Identifier: MIT
#include "application/receiver.h"

Receiver::Receiver() : m_volume(30) {}

Receiver *Receiver::instance()
{
    static Receiver receiver;
    return &receiver;
}

int Receiver::volume() const
{
    return m_volume;
}

void Receiver::setVolume(int volume)
{
    const int bounded = qBound(0, volume, 100);
    if (bounded == m_volume)
        return;
    m_volume = bounded;
    emit volumeChanged(m_volume);
}
