// SPDX-License-Identifier: MIT
#include "program/options.h"

#include "program/launcherlayer.h"

namespace {

const int LargestSide = 16384; // of a picture; more only exhausts the memory

QString takeHelp(Options &options, const QString &)
{
    options.help = true;
    return QString();
}

QString takeVersion(Options &options, const QString &)
{
    options.version = true;
    return QString();
}

QString takeProperties(Options &options, const QString &)
{
    options.properties = true;
    return QString();
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

QString takeTimeout(Options &options, const QString &value)
{
    return Options::takeMilliseconds("--timeout", 1, value, &options.timeout);
}

const Option knownOptions[] = {
    { "--size", "WxH", "the size of each window, 1280x720 unless given", takeSize },
    { "--timeout", "MS",
      "a page of which nothing is there after so many\n"
      "milliseconds, 30000 unless given, has failed",
      takeTimeout },
    { "--properties", nullptr,
      "show what every property of an application does\n"
      "here, as a table in Markdown, and end",
      takeProperties },
    { "--version", nullptr, "show the version, and end", takeVersion },
    { "--help", nullptr, "show this help, and end; -h does so, too", takeHelp },
    { nullptr, nullptr, nullptr, nullptr },
};

/// What is on the command line for an option.
struct Argument {
    QString name;
    QString value;
    bool hasValue; ///< after an equals sign
};

const Option *findIn(const Option *row, const QString &name)
{
    while (row && row->name) {
        if (name == QLatin1String(row->name))
            return row;
        ++row;
    }
    return nullptr;
}

const Option *optionsOfLayer()
{
    return LauncherLayer::installed() ? LauncherLayer::installed()->options() : nullptr;
}

const Option *findOption(const QString &name)
{
    const QString wanted = name == QLatin1String("-h") ? QString(QLatin1String("--help")) : name;
    const Option *option = findIn(knownOptions, wanted);
    return option ? option : findIn(optionsOfLayer(), wanted);
}

Argument divided(const QString &argument)
{
    const int equals =
        argument.startsWith(QLatin1String("--")) ? argument.indexOf(QLatin1Char('=')) : -1;
    Argument result = { argument.left(equals), QString(), equals > 0 };
    if (result.hasValue)
        result.value = argument.mid(equals + 1);
    return result;
}

QString described(const Option &option)
{
    const QString name = QLatin1String("  ") + QLatin1String(option.name) + QLatin1Char(' ')
        + QLatin1String(option.value ? option.value : "");
    QString help = QLatin1String(option.help);
    help.replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(22, QLatin1Char(' ')));
    return name.leftJustified(22) + help + QLatin1Char('\n');
}

QString described(const Option *row)
{
    QString result;
    for (; row && row->name; ++row)
        result += described(*row);
    return result;
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
    "The value of an option can follow an equals sign as well, as in\n"
    "--size=1920x1080. What follows -- is a tag, whatever it begins with.\n"
    "\n"
    "Without DISPLAY, WAYLAND_DISPLAY and QT_QPA_PLATFORM nothing appears on a\n"
    "screen.\n";

const char exitStatus[] =
    "\n"
    "Exit status: 0 when all that was asked for was done; 1 when there is no\n"
    "configuration file, an application is not configured, or something that was\n"
    "asked for failed; 2 when the command line is wrong.\n";

} // namespace

Options::Options() : help(false), version(false), properties(false), size(1280, 720), timeout(30000)
{
}

QString Options::parse(const QStringList &arguments)
{
    QStringList left = arguments;
    while (!left.isEmpty()) {
        const QString argument = left.takeFirst();
        if (argument == QLatin1String("--")) {
            tags += left;
            break;
        }
        if (!argument.startsWith(QLatin1Char('-'))) {
            tags.append(argument);
            continue;
        }
        const QString problem = takeOption(argument, &left);
        if (!problem.isEmpty())
            return problem;
    }
    tags.removeDuplicates();
    const bool asksForText = help || version || properties;
    return asksForText || !tags.isEmpty() ? QString()
                                          : QString(QLatin1String("no application is named"));
}

// The value of an option follows an equals sign, or is the next argument.
QString Options::takeOption(const QString &argument, QStringList *left)
{
    Argument given = divided(argument);
    const Option *option = findOption(given.name);
    if (!option)
        return QLatin1String("unknown option ") + given.name;
    if (given.hasValue && !option->value)
        return given.name + QLatin1String(" takes no value");
    if (option->value && !given.hasValue) {
        if (left->isEmpty())
            return given.name + QLatin1String(" needs ") + QLatin1String(option->value);
        given.value = left->takeFirst();
    }
    return option->take(*this, given.value);
}

QString Options::takeMilliseconds(const char *option, int least, const QString &value, int *result)
{
    bool ok = false;
    *result = value.toInt(&ok);
    if (ok && *result >= least)
        return QString();
    return QLatin1String(option) + QLatin1String(" needs a number of milliseconds, not ") + value;
}

QString Options::helpText()
{
    const LauncherLayer *layer = LauncherLayer::installed();
    QString text = QLatin1String(beforeOptions) + described(optionsOfLayer())
        + described(knownOptions) + QLatin1String(afterOptions);
    if (layer)
        text += QLatin1String(layer->help());
    return text + QLatin1String(exitStatus);
}
