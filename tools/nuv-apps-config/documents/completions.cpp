#include "tools/nuv-apps-config/documents/reference.h"

#include "tools/nuv-apps-config/commandline/commands.h"

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString words(const char *choices)
{
    return text(choices).replace(QLatin1Char('|'), QLatin1Char(' '));
}

QString commandNames()
{
    QStringList names;
    for (const Command &command : Commands::all())
        names.append(text(command.name));
    return names.join(QLatin1Char(' '));
}

QString optionWords(const Command &command)
{
    QStringList options;
    for (const QString &name : Commands::optionsOf(command))
        options.append(text("--") + name);
    options.append(text("--help"));
    return options.join(QLatin1Char(' '));
}

// What a key or a rule may be called, for explain.
QString topics()
{
    QStringList names;
    for (const Property &property : Properties::all()) {
        if (!names.contains(text(property.key)))
            names.append(text(property.key));
    }
    for (const Rule &rule : Rules::all())
        names.append(text(rule.id));
    return names.join(QLatin1Char(' '));
}

QString quotedForShell(QString words)
{
    return words.replace(QLatin1Char('\''), text("'\\''"));
}

} // namespace

QByteArray Reference::bashCompletion()
{
    QString script =
        text("# Completion of nuv-apps-config for bash. Made from its tables; do not edit.\n\n"
             "_nuv_apps_config()\n{\n"
             "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
             "    local words=\n\n"
             "    case $previous in\n");
    for (const Option &option : Commands::options()) {
        if (option.choices[0])
            script += QString(text("        --%1) words='%2' ;;\n"))
                          .arg(text(option.name), words(option.choices));
    }
    script +=
        text("        --file|-f) mapfile -t COMPREPLY < <(compgen -f -- \"$current\"); return ;;\n"
             "    esac\n"
             "    if [[ -z $words && $COMP_CWORD -eq 1 ]]; then\n"
             "        words='")
        + commandNames()
        + text(" --help --version'\n"
               "    elif [[ -z $words && $current == -* ]]; then\n"
               "        case ${COMP_WORDS[1]} in\n");
    for (const Command &command : Commands::all())
        script += QString(text("            %1) words='%2' ;;\n"))
                      .arg(text(command.name), optionWords(command));
    script += text("        esac\n"
                   "    elif [[ -z $words && ${COMP_WORDS[1]} == explain ]]; then\n"
                   "        words='")
        + topics()
        + text("'\n"
               "    fi\n"
               "    if [[ -n $words ]]; then\n"
               "        mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
               "    else\n"
               "        mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
               "    fi\n"
               "}\n"
               "complete -o filenames -F _nuv_apps_config nuv-apps-config\n");
    return script.toUtf8();
}

QByteArray Reference::zshCompletion()
{
    QString script =
        text("#compdef nuv-apps-config\n"
             "# Completion of nuv-apps-config for zsh. Made from its tables; do not edit.\n\n"
             "local -a commands\ncommands=(\n");
    for (const Command &command : Commands::all())
        script += QString(text("    '%1:%2'\n"))
                      .arg(text(command.name), quotedForShell(text(command.summary)));
    script += text(")\n\n_arguments -s \\\n");
    for (const Option &option : Commands::options()) {
        QString names = text("--") + text(option.name);
        if (option.letter[0])
            names = QString(text("'(-%1 --%2)'{-%1,--%2}'"))
                        .arg(text(option.letter), text(option.name));
        else
            names = QLatin1Char('\'') + names;
        QString argument;
        if (option.choices[0])
            argument = QString(text(":%1:(%2)")).arg(text(option.argument), words(option.choices));
        else if (option.argument[0])
            argument = QString(text(":%1:_files")).arg(text(option.argument));
        const QString description =
            quotedForShell(text(option.description)).replace(QLatin1Char(':'), text("\\:"));
        script += QString(text("    %1[%2]%3' \\\n")).arg(names, description, argument);
    }
    script += text("    '1:command:{_describe command commands}' \\\n"
                   "    '*:argument:->argument' && return\n\n"
                   "case $words[2] in\n"
                   "    explain) compadd -- ")
        + topics() + text(" ;;\n    *) _files ;;\nesac\n");
    return script.toUtf8();
}

QByteArray Reference::fishCompletion()
{
    QString script =
        text("# Completion of nuv-apps-config for fish. Made from its tables; do not edit.\n\n");
    for (const Command &command : Commands::all())
        script +=
            QString(text("complete -c nuv-apps-config -n __fish_use_subcommand -f -a %1 -d '%2'\n"))
                .arg(text(command.name), text(command.summary));
    for (const Option &option : Commands::options()) {
        QStringList commands;
        for (const Command &command : Commands::all()) {
            if (Commands::optionsOf(command).contains(text(option.name)))
                commands.append(text(command.name));
        }
        script += text("complete -c nuv-apps-config");
        if (!commands.isEmpty())
            script += QString(text(" -n '__fish_seen_subcommand_from %1'"))
                          .arg(commands.join(QLatin1Char(' ')));
        if (option.letter[0])
            script += QString(text(" -s %1")).arg(text(option.letter));
        script += QString(text(" -l %1")).arg(text(option.name));
        if (option.choices[0])
            script += QString(text(" -x -a '%1'")).arg(words(option.choices));
        else if (option.argument[0])
            script += text(" -r");
        script += QString(text(" -d '%1'\n")).arg(text(option.description));
    }
    script += QString(text("complete -c nuv-apps-config -n '__fish_seen_subcommand_from explain' "
                           "-f -a '%1'\n"))
                  .arg(topics());
    return script.toUtf8();
}
