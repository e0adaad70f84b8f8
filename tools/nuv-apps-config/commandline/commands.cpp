// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commandline/commands.h"

namespace {

const char Reports[] = "text|json|sarif|github";
const char Plain[] = "text|json";

// clang-format off
const std::vector<Command> commandTable = {
    { "check", "[FILE...]", 0, -1, "fix|diff|root|ignore|fail-on|format|color", Reports, "say what is wrong, where and why",
      "Checks the files, or the one that the library would pick. - is the standard input. All problems are reported in one run, each with its place, a hint and the id of its rule. --fix repairs what can mean one thing only, and reports what is left: commas, quotes, keywords, comments, the spelling of keys, kinds and units of values, letters outside of ASCII. Nothing else in the file changes. With - the repaired text, secrets included, goes to the standard output and the report to the standard error." },
    { "show", "[FILE [TAG...]]", 0, -1, "file|root|format|reveal", Plain, "show what the launcher will see",
      "Shows which file is read and why, whether its version passes, the global values and the applications with each value, its type and its place in the file, and what was skipped. With tags, only those applications." },
    { "list", "[FILE [TAG]]", 0, 1, "file|format", Plain, "list the tags, or the properties of one",
      "Lists the tags of the applications that are loaded. With a tag, lists the properties that the file gives this application." },
    { "get", "[FILE] TAG KEY", 2, 2, "file", "", "print one value, for scripts",
      "Prints one value of one application as it is, secrets included. KEY is the name of a property, or a path such as Certificate/Path. The exit status is 1 when it is not configured." },
    { "keys", "[FILE]", 0, 0, "file|format|reveal", Plain, "show the flat keys of the settings",
      "Shows the flat keys and values, as any QSettings object sees them." },
    { "explain", "[KEY|RULE]", 0, 1, "", "", "explain a key or a rule",
      "Prints the reference entry of a key of the file, or of a rule of check with a wrong file and the right one. A key may be named by its place, such as Global.Version or Applications[].Tag. Without a name, lists all keys and rules." },
    { "schema", "", 0, 0, "", "", "print the JSON Schema",
      "Prints a JSON Schema (draft-07) of the file, for editors." },
    { "template", "[NAME]", 0, 1, "", "", "print a configuration to start from",
      "Prints a configuration to start from: minimal, which is the one without a name, kiosk, set-top-box, hotel-television, development, or all, which has every key with its meaning as a remark." },
    { "fmt", "FILE", 1, 1, "sort|write", "", "print the file with its lines and blanks in order",
      "Prints the file with an entry on each line, four spaces for each level, and one blank after a colon. Keys and values stay as they are written, in their order; what began on one line stays on one where it fits into 100 columns. With --sort, prints it as the library itself would write it: keys in the order of the alphabet, ASCII; a file that has duplicate keys or that would lose digits is refused. A file with a syntax error is refused. Secrets are printed as they are." },
    { "diff", "A B", 2, 2, "format|reveal", Plain, "show what differs in meaning",
      "Shows which values the launcher sees differ between two files, by tag and key. The exit status is 1 when any do. A file may be what a shell makes of <(COMMAND)." },
    { "help", "[COMMAND]", 0, 1, "", "", "explain a command",
      "Prints what a command does, its options and their forms. Without a command, lists all." },
};

const std::vector<Option> optionTable = {
    { "file", "f", "FILE", "", "", "look at this file, not at the one that the library would pick" },
    { "format", "", "FORMAT", Reports, "text", "the form of the output" },
    { "root", "", "DIR", "", "", "look below DIR for absolute paths: a copy of the device's files, or /" },
    { "ignore", "", "RULE", "", "", "leave out what this rule finds; more than once, or RULE,RULE" },
    { "fail-on", "", "SEVERITY", "error|warning|note", "warning", "exit with status 1 for findings from this severity on" },
    { "fix", "", "", "", "", "repair what can mean one thing only, and report what is left" },
    { "diff", "", "", "", "", "print what --fix would change, and change nothing" },
    { "color", "", "WHEN", "auto|always|never", "auto", "colours: auto is on a terminal, unless NO_COLOR is set" },
    { "reveal", "", "", "", "", "show secrets" },
    { "sort", "", "", "", "", "as the library would write it, with the keys in order" },
    { "write", "w", "", "", "", "write the file in place, if it changes" },
    { "help", "h", "", "", "", "print this help" },
    { "version", "v", "", "", "", "print the version" },
};

const std::vector<Outcome> outcomeTable = {
    { "0", "The command did what it is for. check found nothing from the severity of --fail-on on (with --fix: nothing is left), check --diff nothing to repair, diff no difference." },
    { "1", "check: a finding from the severity of --fail-on on. With --fix what is repaired does not count." },
    { "1", "check --diff: something that --fix would repair, whatever else is found." },
    { "1", "diff: a difference." },
    { "1", "The library reads nothing of the file: it has a syntax error, or it is empty." },
    { "1", "To load the file would take minutes, or fill the memory." },
    { "1", "fmt: the file has a syntax error or is empty, or --sort would lose something of it." },
    { "1", "There is no such tag, value, key, rule or template." },
    { "2", "A wrong call: an unknown command or option, or a wrong number of arguments." },
    { "2", "There is no configuration file." },
    { "2", "A file that cannot be read: it does not exist, is not readable, is a directory, a pipe or a device, or is too large. check still checks the other files." },
    { "2", "A file or the standard output that cannot be written." },
    { "2", "There is not enough memory." },
    { "SIGPIPE", "The reader of the standard output is gone, as in | head: the program ends by the signal and without a message, as others do. A shell calls it 141." },
};
// clang-format on

QString optionText(const Option &option)
{
    QString text = option.letter[0]
        ? QString(QLatin1String("-%1, ")).arg(QLatin1String(option.letter))
        : QString(4, QLatin1Char(' '));
    text += QLatin1String("--") + QLatin1String(option.name);
    if (option.argument[0])
        text += QLatin1Char(' ') + QLatin1String(option.argument);
    return text;
}

QString row(const QString &left, const QString &right)
{
    return QLatin1String("  ") + left.leftJustified(24) + QLatin1Char(' ') + right
        + QLatin1Char('\n');
}

QString optionRow(const Option &option, const char *choices)
{
    QString right = QLatin1String(option.description);
    if (choices[0])
        right += QLatin1String(" (") + QLatin1String(choices) + QLatin1Char(')');
    return row(optionText(option), right);
}

bool isGeneral(const Option &option)
{
    return qstrcmp(option.name, "help") == 0 || qstrcmp(option.name, "version") == 0;
}

const char *choicesOf(const Option &option, const Command *command)
{
    return command && qstrcmp(option.name, "format") == 0 ? command->formats : option.choices;
}

QString optionRows(const Command *command)
{
    const QStringList own = command ? Commands::optionsOf(*command) : QStringList();
    QString text;
    for (const Option &option : optionTable) {
        if (!command || isGeneral(option) || own.contains(QLatin1String(option.name)))
            text += optionRow(option, choicesOf(option, command));
    }
    return text;
}

} // namespace

const std::vector<Command> &Commands::all()
{
    return commandTable;
}

const std::vector<Option> &Commands::options()
{
    return optionTable;
}

const std::vector<Outcome> &Commands::outcomes()
{
    return outcomeTable;
}

const Command *Commands::find(const QString &name)
{
    for (const Command &command : commandTable) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}

QStringList Commands::optionsOf(const Command &command)
{
    const QString names = QLatin1String(command.options);
    return names.isEmpty() ? QStringList() : names.split(QLatin1Char('|'));
}

QString Commands::help(const Command *command)
{
    QString text;
    if (command) {
        const QString usage =
            QString(QLatin1String("Usage: nuv-apps-config %1 [OPTION...] %2"))
                .arg(QLatin1String(command->name), QLatin1String(command->arguments));
        text = usage.trimmed() + QLatin1String("\n\n") + QLatin1String(command->description)
            + QLatin1Char('\n');
    } else {
        text = QLatin1String("Usage: nuv-apps-config COMMAND [OPTION...] [ARGUMENT...]\n\n"
                             "Explains, checks and shows the configuration file of web "
                             "applications.\n\nCommands:\n");
        for (const Command &row_ : commandTable)
            text += row(QLatin1String(row_.name) + QLatin1Char(' ') + QLatin1String(row_.arguments),
                        QLatin1String(row_.summary));
    }
    text += QLatin1String("\nOptions:\n") + optionRows(command);
    if (!command)
        text += QLatin1String("\nExit status: 0 all is well, 1 findings, differences or nothing to "
                              "show, 2 a wrong call or a file that cannot be read or written.\n");
    return text;
}
