// SPDX-License-Identifier: MIT
#ifndef LAUNCHERLAYER_H
#define LAUNCHERLAYER_H

#include "application/applicationpage.h"

class Launcher;
class Options;
struct Option;

/// What a directory of sources adds to the launcher by being linked to it, so that nothing but the build
/// names the folder. A launcher has one layer or none.
class LauncherLayer
{
public:
    /// Registers the layer, which lasts as long as the process. To be made before main().
    LauncherLayer();
    virtual ~LauncherLayer();

    /// Null when there is none.
    static LauncherLayer *installed();

    /// Options of its own, up to a row without a name.
    virtual const Option *options() const = 0;

    /// Paragraphs of the help, which follow those of the launcher.
    virtual const char *help() const = 0;

    /// Makes the page of each view.
    virtual ApplicationPage::Maker pageMaker(const Options &options) const = 0;

    /// Follows the signals of a launcher that is about to open its applications. What it makes for that
    /// belongs to the launcher.
    virtual void attach(Launcher *launcher) const = 0;

private:
    Q_DISABLE_COPY(LauncherLayer)
};

#endif // LAUNCHERLAYER_H
