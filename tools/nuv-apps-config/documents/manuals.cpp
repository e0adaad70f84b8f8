// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/reference.h"

#include "tools/nuv-apps-config/commandline/commands.h"
#include "tools/nuv-apps-config/commandline/version.h"

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

// A paragraph for troff. It must not begin with a point or a quote.
QString roff(QString paragraph)
{
    return paragraph.replace(QLatin1Char('\\'), text("\\e")).replace(QLatin1Char('-'), text("\\-"));
}

QString bold(const QString &words)
{
    return text("\\fB") + roff(words) + text("\\fR");
}

QString item(const QString &head, const QString &body)
{
    return text(".TP\n") + head + QLatin1Char('\n') + body + QLatin1Char('\n');
}

QString heading(const char *name)
{
    return text(".SH ") + text(name) + QLatin1Char('\n');
}

QString title(const char *name, int section)
{
    return QString(text(".\\\" SPDX-License-Identifier: MIT\n"
                        ".\\\" Made from the program's tables; do not edit.\n.TH %1 %2 %3 "
                        "\"nuvlaunchersupport %4\"\n"))
        .arg(text(name).toUpper(), QString::number(section), text(ProgramDate),
             text(ProgramVersion));
}

// Lines as they are typed or written.
QString verbatim(const QString &lines)
{
    QString block;
    for (const QString &line : lines.split(QLatin1Char('\n')))
        block += roff(line) + QLatin1Char('\n');
    return text(".nf\n") + block + text(".fi\n");
}

/// A call of the program, and what it is for.
struct Example {
    const char *arguments;
    const char *purpose;
};

const Example examples[] = {
    { "check AppsConfig.json", "say what is wrong with a file" },
    { "check --root / --fail-on error /etc/AppsConfig.json",
      "the same on the device, where a page or a certificate that is missing is an error" },
    { "check --fix AppsConfig.json", "repair what can mean one thing only" },
    { "show AppsConfig.json tv", "show what the launcher will see of an application" },
    { "get AppsConfig.json tv Url", "print one value, for a script" },
    { "explain Scale", "say what a key means" },
    { "template kiosk > AppsConfig.json", "begin a file for a kiosk" },
};

QString exampleItem(const Example &example)
{
    return item(bold(text("nuv-apps-config ") + text(example.arguments)),
                roff(text(example.purpose)) + QLatin1Char('.'));
}

QString commandItem(const Command &command)
{
    QString options;
    for (const QString &name : Commands::optionsOf(command))
        options += text(" \\-\\-") + roff(name);
    if (!options.isEmpty())
        options = text("\nOptions:") + options + QLatin1Char('.');
    return item(bold(text(command.name)) + QLatin1Char(' ') + roff(text(command.arguments)),
                roff(text(command.description)) + options);
}

QString optionItem(const Option &option)
{
    QString head;
    if (option.letter[0])
        head = bold(QLatin1Char('-') + text(option.letter)) + text(", ");
    head += bold(text("--") + text(option.name));
    if (option.argument[0])
        head += text(" \\fI") + text(option.argument) + text("\\fR");
    QString body = roff(text(option.description));
    if (option.choices[0])
        body += QString(text(": %1"))
                    .arg(roff(text(option.choices).split(QLatin1Char('|')).join(text(", "))));
    return item(head, body + QLatin1Char('.'));
}

QString keyItem(const Property &property)
{
    QString body = roff(text(property.description));
    for (const auto &fact : Reference::facts(property)) {
        if (fact.first != text("place"))
            body += QString(text("\n.br\n%1: %2")).arg(roff(fact.first), roff(fact.second));
    }
    return item(bold(Properties::place(property)), body);
}

} // namespace

QByteArray Reference::programManual()
{
    QString page = title("nuv-apps-config", 1) + heading("NAME")
        + text("nuv\\-apps\\-config \\- explain, check and show the configuration of web "
               "applications\n")
        + heading("SYNOPSIS")
        + text("\\fBnuv\\-apps\\-config\\fR \\fICOMMAND\\fR [\\fIOPTION\\fR...] "
               "[\\fIARGUMENT\\fR...]\n")
        + heading("DESCRIPTION")
        + text("The library ignores whatever is wrong in AppsConfig.json, without a message. This "
               "program says what is wrong, where and why, and what the launcher will really see. "
               "Pass phrases, and passwords in addresses, are masked.\n")
        + heading("COMMANDS");
    for (const Command &command : Commands::all())
        page += commandItem(command);
    page += heading("OPTIONS");
    for (const Option &option : Commands::options())
        page += optionItem(option);
    page += heading("EXIT STATUS") + text("Each cause has one status, with every command.\n");
    for (const Outcome &outcome : Commands::outcomes())
        page += item(text(outcome.status), roff(text(outcome.cause)));
    page +=
        heading("VALUES IN JSON")
        + text(
            "An integer is written with all its digits; a reader that makes doubles of them loses "
            "those beyond 9007199254740992. A double is written with a point or an exponent, and "
            "so that it reads back the same. One that is too large for a double is the string "
            "\"inf\" or \"\\-inf\". The type next to each value tells them apart.\n")
        + heading("ENVIRONMENT")
        + item(bold(text("NUV_APPS_CONFIG_FILE")),
               text("The configuration file; read as Latin\\-1. If it names nothing that exists, "
                    "AppsConfig.json in the working directory is read, and a warning says so."))
        + item(bold(text("NO_COLOR")), text("If set and not empty, \\-\\-color=auto means never."))
        + heading("FILES")
        + item(text("\\fIAppsConfig.json\\fR"),
               text("The configuration file, where no other one is named."))
        + item(text("\\fI/usr/share/nuvlaunchersupport/AppsConfig.schema.json\\fR"),
               text("What \\fBschema\\fR prints, for editors."))
        + heading("EXAMPLES");
    for (const Example &example : examples)
        page += exampleItem(example);
    page += heading("SEE ALSO") + text("\\fBAppsConfig.json\\fR(5), \\fBnuv\\-launcher\\fR(1)\n");
    return page.toUtf8();
}

QByteArray Reference::formatManual()
{
    QString page =
        title("AppsConfig.json", 5) + heading("NAME")
        + text("AppsConfig.json \\- the configuration of web applications\n")
        + heading("DESCRIPTION")
        + text(
            "One JSON file, read once when the launcher starts: the file that the environment "
            "variable \\fBNUV_APPS_CONFIG_FILE\\fR names, or else AppsConfig.json in the working "
            "directory. Keys are compared with their case. Keys that begin with _comment, and "
            "$schema, pass everywhere. null counts as not configured.\n")
        + heading("KEYS");
    for (const Property &property : Properties::all())
        page += keyItem(property);
    page += heading("FILES")
        + item(text("\\fIAppsConfig.json\\fR"), text("In the working directory of the launcher."))
        + item(text("\\fI/usr/share/nuvlaunchersupport/AppsConfig.schema.json\\fR"),
               text("A JSON Schema of the file, for editors."))
        + heading("EXAMPLES") + text("One application, with what every file needs:\n.PP\n")
        + verbatim(text("{\n    \"Global\": { \"Version\": 1 },\n    \"Applications\": [\n"
                        "        { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" }\n    ]\n}"))
        + text(".PP\nWhole files for devices come from \\fBnuv\\-apps\\-config template\\fR.\n")
        + heading("SEE ALSO") + text("\\fBnuv\\-apps\\-config\\fR(1), \\fBnuv\\-launcher\\fR(1)\n");
    return page.toUtf8();
}
