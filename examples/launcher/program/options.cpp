#include "program/options.h"

namespace {

const int LargestSide = 16384; // of a picture; more only exhausts the memory

struct Option {
    const char *name;
    const char *value; // what the help calls its value; null when it takes none
    const char *help; // in lines
    QString (*take)(Options &options, const QString &value); // returns what is wrong with the value
};

QString takeHelp(Options &options, const QString &)
{
    options.help = true;
    return QString();
}

QString takeProperties(Options &options, const QString &)
{
    options.properties = true;
    return QString();
}

QString takeOnce(Options &options, const QString &)
{
    options.once = true;
    return QString();
}

QString takeScreenshot(Options &options, const QString &value)
{
    options.screenshot = value;
    return value.isEmpty() ? QString(QLatin1String("--screenshot needs the name of a file"))
                           : QString();
}

QString takeScript(Options &options, const QString &value)
{
    options.script = value;
    return value.isEmpty() ? QString(QLatin1String("--eval needs a script")) : QString();
}

int side(const QString &text)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    return ok && number <= LargestSide ? number : 0;
}

QString takeSize(Options &options, const QString &value)
{
    const QStringList sides = value.split(QLatin1Char('x'));
    if (sides.size() == 2)
        options.size = QSize(side(sides.at(0)), side(sides.at(1)));
    if (sides.size() != 2 || options.size.width() < 1 || options.size.height() < 1)
        return QLatin1String("--size needs WIDTHxHEIGHT, as in 1280x720, not ") + value;
    return QString();
}

QString takeMilliseconds(const char *option, int least, const QString &value, int *result)
{
    bool ok = false;
    *result = value.toInt(&ok);
    if (ok && *result >= least)
        return QString();
    return QLatin1String(option) + QLatin1String(" needs a number of milliseconds, not ") + value;
}

QString takeWait(Options &options, const QString &value)
{
    return takeMilliseconds("--wait", 0, value, &options.wait);
}

QString takeTimeout(Options &options, const QString &value)
{
    return takeMilliseconds("--timeout", 1, value, &options.timeout);
}

const Option knownOptions[] = {
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
    { "--size", "WxH", "the size of each window, 1280x720 unless given", takeSize },
    { "--wait", "MS",
      "milliseconds from the loading of the pages to the\n"
      "pictures, the answers and the end",
      takeWait },
    { "--timeout", "MS",
      "with --screenshot or --once: a page that has not\n"
      "loaded after so many milliseconds, 30000 unless\n"
      "given, has failed",
      takeTimeout },
    { "--properties", nullptr,
      "show what every property of an application does\n"
      "here, as a table in Markdown, and end",
      takeProperties },
    { "--help", nullptr, "show this help, and end", takeHelp },
};

const Option *findOption(const QString &name)
{
    for (const Option &option : knownOptions) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

QString described(const Option &option)
{
    const QString name = QLatin1String("  ") + QLatin1String(option.name) + QLatin1Char(' ')
        + QLatin1String(option.value ? option.value : "");
    QString help = QLatin1String(option.help);
    help.replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(22, QLatin1Char(' ')));
    return name.leftJustified(22) + help + QLatin1Char('\n');
}

const char beforeOptions[] =
    "Usage: nuv-launcher [OPTIONS] TAG...\n"
    "\n"
    "Opens each web application named by its tag in a window of its own, and prints\n"
    "the values that it was given. The applications stand in the file that\n"
    "NUV_APPS_CONFIG_FILE names; where that names none, in AppsConfig.json of the\n"
    "working directory.\n"
    "\n";

const char afterOptions[] =
    "\n"
    "Without DISPLAY, WAYLAND_DISPLAY and QT_QPA_PLATFORM nothing appears on a\n"
    "screen. With --screenshot or --once nobody is asked anything: a page's questions\n"
    "are printed and answered with no.\n"
    "\n"
    "Exit status: 0 when all that was asked for was done; 1 when there is no\n"
    "configuration file, an application is not configured, or its page, its picture\n"
    "or the script in it failed; 2 when the command line is wrong.\n";

} // namespace

Options::Options()
    : help(false), properties(false), size(1280, 720), wait(0), timeout(30000), once(false)
{
}

QString Options::parse(const QStringList &arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (!argument.startsWith(QLatin1Char('-'))) {
            tags.append(argument);
            continue;
        }
        const Option *option = findOption(argument);
        if (!option)
            return QLatin1String("unknown option ") + argument;
        if (option->value && ++i == arguments.size())
            return argument + QLatin1String(" needs ") + QLatin1String(option->value);
        const QString problem = option->take(*this, option->value ? arguments.at(i) : QString());
        if (!problem.isEmpty())
            return problem;
    }
    tags.removeDuplicates();
    const bool asksForText = help || properties;
    return asksForText || !tags.isEmpty() ? QString()
                                          : QString(QLatin1String("no application is named"));
}

bool Options::endsByItself() const
{
    return once || !screenshot.isEmpty();
}

QString Options::helpText()
{
    QString text = QLatin1String(beforeOptions);
    for (const Option &option : knownOptions)
        text += described(option);
    return text + QLatin1String(afterOptions);
}
