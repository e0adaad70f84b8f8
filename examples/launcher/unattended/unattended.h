// SPDX-License-Identifier: MIT
#ifndef UNATTENDED_H
#define UNATTENDED_H

#include "program/options.h"

#include <QImage>
#include <QObject>

class ApplicationView;
class Launcher;

/// What the options --screenshot, --eval, --once and --wait ask of a launcher whose pages have loaded.
class Unattended : public QObject
{
    Q_OBJECT

public:
    /// Belongs to the launcher.
    Unattended(Launcher *launcher, const Options &options);

    /// Whether the launcher ends without its user.
    static bool endsByItself(const Options &options);

private Q_SLOTS:
    void prepare(ApplicationView *view);
    void waitOnce();
    void finish();

private:
    void ask(ApplicationView *view);
    void takePicture(ApplicationView *view);
    QString pictureFile(const QString &tag) const;
    QString value(const char *option) const;

    Launcher *m_launcher;
    Options m_options;
    bool m_finished; ///< what was asked for
};

#endif // UNATTENDED_H
