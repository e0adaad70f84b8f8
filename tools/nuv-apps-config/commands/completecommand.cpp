// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/commands/loadedfile.h"
#include "tools/nuv-apps-config/documents/templates.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/report/valuetext.h"

#include <QFileInfo>

namespace {

const char Files[] = ":files";
const char Directories[] = ":directories";

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

/// What has been typed before the word that is to be completed.
struct Typed {
    const Command *command = nullptr;
    QStringList arguments;
    QString file; ///< of --file
    const Option *open = nullptr; ///< waits for its argument
};

const Option *optionOf(const QString &word)
{
    for (const Option &option : Commands::options()) {
        const bool isLetter = option.letter[0] && word == text("-") + text(option.letter);
        if (isLetter || word == text("--") + text(option.name))
            return &option;
    }
    return nullptr;
}

void take(const QString &word, Typed *typed)
{
    const QString name = word.section(QLatin1Char('='), 0, 0);
    const Option *const option = typed->open ? typed->open : optionOf(name);
    const bool hasValue = typed->open || word.contains(QLatin1Char('='));
    if (option && hasValue && qstrcmp(option->name, "file") == 0)
        typed->file = typed->open ? word : word.section(QLatin1Char('='), 1);
    const bool isOpening = option && !hasValue && option->argument[0];
    typed->open = isOpening ? option : nullptr;
    if (option || word.startsWith(QLatin1Char('-')))
        return;
    if (typed->command)
        typed->arguments.append(word);
    else
        typed->command = Commands::find(word);
}

QStringList rules(bool areIgnorable)
{
    QStringList ids;
    for (const Rule &rule : Rules::all()) {
        if (!areIgnorable || Rules::canBeIgnored(rule))
            ids.append(text(rule.id) + QLatin1Char('\t') + text(rule.title));
    }
    return ids;
}

QStringList commandNames()
{
    QStringList names;
    for (const Command &command : Commands::all())
        names.append(text(command.name) + QLatin1Char('\t') + text(command.summary));
    return names;
}

QStringList topics()
{
    QStringList names;
    for (const Property &property : Properties::all())
        names.append(text(property.key));
    names.removeDuplicates();
    return names + rules(false);
}

QStringList optionsFor(const Typed &typed)
{
    const QStringList own = typed.command ? Commands::optionsOf(*typed.command) : QStringList();
    QStringList words;
    for (const Option &option : Commands::options()) {
        const bool isGeneral = qstrcmp(option.name, "help") == 0
            || (!typed.command && qstrcmp(option.name, "version") == 0);
        if (isGeneral || own.contains(text(option.name)))
            words.append(text("--") + text(option.name) + QLatin1Char('\t')
                         + text(option.description));
    }
    return words;
}

QStringList valuesOf(const Option &option, const Typed &typed)
{
    const QString name = text(option.name);
    if (name == text("file"))
        return QStringList(text(Files));
    if (name == text("root"))
        return QStringList(text(Directories));
    if (name == text("ignore"))
        return rules(true);
    const bool hasOwn = name == text("format") && typed.command;
    return text(hasOwn ? typed.command->formats : option.choices).split(QLatin1Char('|'));
}

std::unique_ptr<LoadedFile> open(const QString &file)
{
    ExitStatus status;
    std::unique_ptr<LoadedFile> loaded = LoadedFile::open(file, Invocation(), &status);
    return loaded && loaded->isRead() ? std::move(loaded) : nullptr;
}

QStringList tagsOf(const QString &file)
{
    const std::unique_ptr<LoadedFile> loaded = open(file);
    return loaded ? loaded->tags() : QStringList();
}

QStringList keysOf(const QString &file, const QString &tag)
{
    QStringList keys;
    const std::unique_ptr<LoadedFile> loaded = open(file);
    const AppConfig config = loaded ? loaded->state().applications.value(tag) : AppConfig();
    for (const ValueText::Entry &entry : ValueText::entriesOf(config, false))
        keys.append(entry.property);
    return keys;
}

// The file, the tag and the key, of which --file or the library's choice may take the first.
QStringList placesFor(Typed typed, const QString &command)
{
    QStringList &arguments = typed.arguments;
    const bool isGet = command == text("get");
    QStringList words;
    if (typed.file.isEmpty() && arguments.isEmpty())
        words.append(text(Files));
    const bool isNamed = typed.file.isEmpty() && !arguments.isEmpty()
        && (!isGet || QFileInfo(arguments.first()).isFile());
    if (isNamed)
        typed.file = arguments.takeFirst();
    const bool hasFile = isGet || !typed.file.isEmpty();
    const bool isTag = arguments.isEmpty() || command == text("show");
    if (!hasFile || command == text("keys"))
        return words;
    if (isTag)
        return words + tagsOf(typed.file);
    return isGet && arguments.size() == 1 ? keysOf(typed.file, arguments.first()) : words;
}

QStringList argumentsFor(const Typed &typed)
{
    if (!typed.command)
        return commandNames();
    const QString command = text(typed.command->name);
    if (Commands::optionsOf(*typed.command).contains(text("file")))
        return placesFor(typed, command);
    if (command == text("check") || command == text("fmt") || command == text("diff"))
        return QStringList(text(Files));
    if (!typed.arguments.isEmpty())
        return QStringList();
    if (command == text("explain"))
        return topics();
    if (command == text("template"))
        return Templates::names();
    return command == text("help") ? commandNames() : QStringList();
}

// "--format=" comes before each of the values.
QStringList candidates(const Typed &typed, const QString &current)
{
    if (typed.open)
        return valuesOf(*typed.open, typed);
    const int sign = current.indexOf(QLatin1Char('='));
    const Option *const option = sign < 0 ? nullptr : optionOf(current.left(sign));
    if (option) {
        QStringList values;
        for (const QString &value : valuesOf(*option, typed))
            values.append(value.startsWith(QLatin1Char(':')) ? value
                                                             : current.left(sign + 1) + value);
        return values;
    }
    return current.startsWith(QLatin1Char('-')) ? optionsFor(typed) : argumentsFor(typed);
}

} // namespace

int Program::complete(QStringList words, Output &output)
{
    const QString current = words.isEmpty() ? QString() : words.takeLast();
    Typed typed;
    for (const QString &word : words)
        take(word, &typed);
    for (const QString &candidate : candidates(typed, current)) {
        if (!candidate.contains(QLatin1Char('\n')))
            output.write(candidate + QLatin1Char('\n'));
    }
    return Success;
}
