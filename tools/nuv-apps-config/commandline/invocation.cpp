// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commandline/invocation.h"

#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/text/spelling.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <unistd.h>

namespace {

void addOptions(QCommandLineParser &parser)
{
    for (const Option &option : Commands::options()) {
        QStringList names(QLatin1String(option.name));
        if (option.letter[0])
            names.prepend(QLatin1String(option.letter));
        parser.addOption(QCommandLineOption(names, QLatin1String(option.description),
                                            QLatin1String(option.argument),
                                            QLatin1String(option.fallback)));
    }
}

bool findCommand(const QString &name, const Command **command, QString *error)
{
    *command = Commands::find(name);
    if (*command)
        return true;
    QStringList names;
    for (const Command &known : Commands::all())
        names.append(QLatin1String(known.name));
    const QString meant = Spelling::didYouMean(name, names);
    *error = QString(QLatin1String("there is no command \"%1\"")).arg(name)
        + (meant.isEmpty() ? QString(QLatin1String("; see nuv-apps-config --help")) : meant);
    return false;
}

// "help check" is "check --help".
bool readHelp(Invocation *invocation, QString *error)
{
    invocation->wantsHelp = true;
    invocation->command = nullptr;
    return invocation->arguments.isEmpty()
        || findCommand(invocation->arguments.first(), &invocation->command, error);
}

// The file comes first, for every command, if --file does not name it.
void takeFile(const QCommandLineParser &parser, Invocation *invocation)
{
    const QString option = QLatin1String("file");
    invocation->file = parser.value(option);
    const Command &command = *invocation->command;
    const bool takesOne = Commands::optionsOf(command).contains(option);
    if (takesOne && !parser.isSet(option) && invocation->arguments.size() > command.fewest)
        invocation->file = invocation->arguments.takeFirst();
}

bool checkOption(const Command &command, const Option &option, const QString &value, QString *error)
{
    const QString name = QLatin1String(option.name);
    if (!Commands::optionsOf(command).contains(name)) {
        *error =
            QString(QLatin1String("%1 has no option --%2")).arg(QLatin1String(command.name), name);
        return false;
    }
    const bool isFormat = name == QLatin1String("format");
    const QString choices = QLatin1String(isFormat ? command.formats : option.choices);
    if (choices.isEmpty() || choices.split(QLatin1Char('|')).contains(value))
        return true;
    *error = QString(QLatin1String("--%1 of %2 is one of %3, not \"%4\""))
                 .arg(name, QLatin1String(command.name), choices, value);
    return false;
}

bool checkOptions(const QCommandLineParser &parser, const Command &command, QString *error)
{
    for (const QString &given : parser.optionNames()) {
        for (const Option &option : Commands::options()) {
            const QString name = QLatin1String(option.name);
            const bool isThis = given == name || given == QLatin1String(option.letter);
            if (isThis && !checkOption(command, option, parser.value(name), error))
                return false;
        }
    }
    return true;
}

bool checkArguments(const Invocation &invocation, QString *error)
{
    const Command &command = *invocation.command;
    const int count = invocation.arguments.size();
    if (count >= command.fewest && (command.most < 0 || count <= command.most))
        return true;
    *error = QString(QLatin1String("usage: nuv-apps-config %1 %2"))
                 .arg(QLatin1String(command.name), QLatin1String(command.arguments));
    return false;
}

bool wantsColour(const QString &when)
{
    if (when != QLatin1String("auto"))
        return when == QLatin1String("always");
    return isatty(STDOUT_FILENO) && qgetenv("NO_COLOR").isEmpty() && qgetenv("TERM") != "dumb";
}

Severity severityNamed(const QString &name)
{
    if (name == QLatin1String("note"))
        return Severity::Note;
    return name == QLatin1String("error") ? Severity::Error : Severity::Warning;
}

QString wrongRule(const QString &id)
{
    if (Rules::lookUp(id))
        return QString(QLatin1String("%1 cannot be ignored: the library reads nothing of such a "
                                     "file"))
            .arg(id);
    QStringList ids;
    for (const Rule &rule : Rules::all())
        ids.append(QLatin1String(rule.id));
    const QString meant = Spelling::didYouMean(id, ids);
    return QString(QLatin1String("there is no rule \"%1\"")).arg(id)
        + (meant.isEmpty() ? QString(QLatin1String("; explain lists them all")) : meant);
}

bool readIgnored(const QStringList &values, Invocation *invocation, QString *error)
{
    invocation->ignored = values.join(QLatin1Char(',')).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &id : invocation->ignored) {
        const Rule *const rule = Rules::lookUp(id);
        if (rule && Rules::canBeIgnored(*rule))
            continue;
        *error = wrongRule(id);
        return false;
    }
    return true;
}

bool readRoot(const QString &root, Invocation *invocation, QString *error)
{
    invocation->root = root;
    if (root.isEmpty() || QFileInfo(root).isDir())
        return true;
    *error = QString(QLatin1String("--root names a directory, and \"%1\" is none")).arg(root);
    return false;
}

Format formatNamed(const QString &name)
{
    if (name == QLatin1String("json"))
        return Format::Json;
    if (name == QLatin1String("sarif"))
        return Format::Sarif;
    return name == QLatin1String("github") ? Format::Github : Format::Text;
}

} // namespace

bool parseCommandLine(const QStringList &arguments, Invocation *invocation, QString *error)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return false;
    }
    invocation->arguments = parser.positionalArguments();
    invocation->wantsHelp = parser.isSet(QLatin1String("help"));
    invocation->wantsVersion = parser.isSet(QLatin1String("version"));
    if (invocation->arguments.isEmpty()) {
        *error = QLatin1String("a command is missing; see nuv-apps-config --help");
        return invocation->wantsHelp || invocation->wantsVersion;
    }
    if (!findCommand(invocation->arguments.takeFirst(), &invocation->command, error))
        return false;
    if (invocation->wantsHelp || invocation->wantsVersion)
        return true;
    takeFile(parser, invocation);
    if (!checkOptions(parser, *invocation->command, error) || !checkArguments(*invocation, error))
        return false;
    if (qstrcmp(invocation->command->name, "help") == 0)
        return readHelp(invocation, error);
    invocation->format = formatNamed(parser.value(QLatin1String("format")));
    invocation->useColour = wantsColour(parser.value(QLatin1String("color")));
    invocation->reveal = parser.isSet(QLatin1String("reveal"));
    invocation->sort = parser.isSet(QLatin1String("sort"));
    invocation->write = parser.isSet(QLatin1String("write"));
    if (parser.isSet(QLatin1String("diff")) && parser.isSet(QLatin1String("format"))) {
        *error = QLatin1String("--diff has no other form than its own");
        return false;
    }
    invocation->fix = parser.isSet(QLatin1String("fix"));
    invocation->diff = parser.isSet(QLatin1String("diff"));
    invocation->failOn = severityNamed(parser.value(QLatin1String("fail-on")));
    return readIgnored(parser.values(QLatin1String("ignore")), invocation, error)
        && readRoot(parser.value(QLatin1String("root")), invocation, error);
}
