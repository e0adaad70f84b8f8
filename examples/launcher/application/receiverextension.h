// SPDX-License-Identifier: MIT
#ifndef RECEIVEREXTENSION_H
#define RECEIVEREXTENSION_H

#include "application/launcherextension.h"

/// The extension object of an application that may control the broadcast receiver:
///
/// \code
/// zarexExt.volumeChanged.connect(showVolume);   // a signal
/// zarexExt.volume = 40;                         // showVolume(40) is called
/// \endcode
class ReceiverExtension : public LauncherExtension
{
    Q_OBJECT
    Q_PROPERTY(int volume READ volume WRITE setVolume NOTIFY volumeChanged)

public:
    ReceiverExtension(QObject *parent, QWebPage *servedPage);

    int volume() const;
    void setVolume(int volume);

Q_SIGNALS:
    /// By whichever application.
    void volumeChanged(int volume);
};

#endif // RECEIVEREXTENSION_H
