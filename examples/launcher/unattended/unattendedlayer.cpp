// SPDX-License-Identifier: MIT
#include "program/launcher.h"
#include "program/launcherlayer.h"
#include "unattended/unattended.h"
#include "unattended/unattendedpage.h"

namespace {

QString keep(Options &options, const char *name, const QString &value, const char *needed)
{
    options.ofLayer.insert(name, value);
    return value.isEmpty() ? QString(QLatin1String(needed)) : QString();
}

QString takeOnce(Options &options, const QString &)
{
    options.ofLayer.insert("once", QString());
    return QString();
}

QString takeScreenshot(Options &options, const QString &value)
{
    return keep(options, "screenshot", value, "--screenshot needs the name of a file");
}

QString takeScript(Options &options, const QString &value)
{
    return keep(options, "eval", value, "--eval needs a script");
}

QString takeWait(Options &options, const QString &value)
{
    int wait = 0;
    options.ofLayer.insert("wait", value);
    return Options::takeMilliseconds("--wait", 0, value, &wait);
}

const Option ownOptions[] = {
    { "--screenshot", "FILE",
      "write a PNG picture of each window once all pages\n"
      "have loaded, and end; with several applications,\n"
      "out.png becomes out-TAG.png",
      takeScreenshot },
    { "--eval", "SCRIPT",
      "print what each page answers to a script once all\n"
      "pages have loaded, as JSON",
      takeScript },
    { "--once", nullptr, "end once all pages have loaded", takeOnce },
    { "--wait", "MS",
      "milliseconds from the loading of the pages to the\n"
      "pictures, the answers and the end",
      takeWait },
    { nullptr, nullptr, nullptr, nullptr },
};

const char ownHelp[] =
    "\n"
    "With --screenshot or --once nobody is there: a page's questions are printed and\n"
    "answered with no, a page has failed when it has not loaded whole in time, and\n"
    "none is tried again. A script that keeps the program busy for that time, and for\n"
    "five seconds at least, ends it with status 1.\n";

class UnattendedLayer : public LauncherLayer
{
public:
    const Option *options() const override { return ownOptions; }
    const char *help() const override { return ownHelp; }

    ApplicationPage::Maker pageMaker(const Options &options) const override
    {
        return Unattended::endsByItself(options) ? UnattendedPage::make : ApplicationPage::make;
    }

    void attach(Launcher *launcher) const override
    {
        new Unattended(launcher, launcher->options());
    }
};

const UnattendedLayer layer;

} // namespace
