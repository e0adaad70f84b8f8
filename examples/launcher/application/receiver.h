// SPDX-License-Identifier: MIT
#ifndef RECEIVER_H
#define RECEIVER_H

#include <QObject>

/// The broadcast receiver of the device, of which there is one for all applications. Here is none, so
/// that it only remembers its volume.
class Receiver : public QObject
{
    Q_OBJECT

public:
    static Receiver *instance();

    /// From 0 to 100; what is set beyond is brought back to it.
    int volume() const;
    void setVolume(int volume);

Q_SIGNALS:
    void volumeChanged(int volume);

private:
    Receiver();

    int m_volume;
};

#endif // RECEIVER_H
