#include "examples/launcher/options.h"

namespace {

const int LargestSide = 16384; // of a picture; more only exhausts the memory

struct Option {
    const char *name;
    const char *value; // what the help calls its value; null when it takes none
    QString (*take)(Options &options, const QString &value); // returns what is wrong with the value
};

QString takeHelp(Options &options, const QString &)
{
    options.help = true;
    return QString();
}

QString takeScreenshot(Options &options, const QString &value)
{
    options.screenshot = value;
    return value.isEmpty() ? QString(QLatin1String("--screenshot needs the name of a file"))
                           : QString();
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

QString takeWait(Options &options, const QString &value)
{
    bool ok = false;
    options.wait = value.toInt(&ok);
    if (!ok || options.wait < 0)
        return QLatin1String("--wait needs a number of milliseconds, not ") + value;
    return QString();
}

const Option knownOptions[] = {
    { "--screenshot", "FILE", takeScreenshot },
    { "--size", "WxH", takeSize },
    { "--wait", "MS", takeWait },
    { "--help", nullptr, takeHelp },
};

const Option *findOption(const QString &name)
{
    for (const Option &option : knownOptions) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

} // namespace

Options::Options() : help(false), size(1280, 720), wait(0) {}

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
    return help || !tags.isEmpty() ? QString() : QString(QLatin1String("no application is named"));
}

QString Options::helpText()
{
    return QLatin1String(
        "Usage: nuv-launcher [OPTIONS] TAG...\n"
        "\n"
        "Opens each web application named by its tag in a view of its own, and prints the values\n"
        "that it was given. The applications stand in the file that NUV_APPS_CONFIG_FILE names;\n"
        "where that names none, in AppsConfig.json of the working directory.\n"
        "\n"
        "  --screenshot FILE  write a PNG picture of each page once all have loaded, and end; "
        "with\n"
        "                     several applications, out.png becomes out-TAG.png\n"
        "  --size WxH         the size of each view, 1280x720 unless given\n"
        "  --wait MS          milliseconds from the loading of the pages to the pictures\n"
        "  --help             show this help, and end\n"
        "\n"
        "Without DISPLAY, WAYLAND_DISPLAY and QT_QPA_PLATFORM nothing appears on a screen.\n"
        "\n"
        "Exit status: 0 when all that was asked for was done; 1 when there is no configuration\n"
        "file, an application is not configured, or its page or picture failed; 2 when the "
        "command\n"
        "line is wrong.\n");
}
