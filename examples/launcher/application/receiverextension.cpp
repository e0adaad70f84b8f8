// SPDX-License-Identifier: MIT
#include "application/receiverextension.h"

#include "application/receiver.h"

ReceiverExtension::ReceiverExtension(QObject *parent, QWebPage *servedPage)
    : LauncherExtension(parent, servedPage)
{
    connect(Receiver::instance(), SIGNAL(volumeChanged(int)), SIGNAL(volumeChanged(int)));
}

int ReceiverExtension::volume() const
{
    return Receiver::instance()->volume();
}

void ReceiverExtension::setVolume(int volume)
{
    Receiver::instance()->setVolume(volume);
}
