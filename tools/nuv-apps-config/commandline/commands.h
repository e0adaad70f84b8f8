// SPDX-License-Identifier: MIT
#ifndef COMMANDS_H
#define COMMANDS_H

#include <QString>
#include <QStringList>

#include <vector>

/// The commands and options of the program. The parsing, the help, the manual page and the completions
/// of the shells are made from these tables.

struct Option {
    const char *name; ///< without the dashes
    const char *letter; ///< the short form; empty for none
    const char *argument; ///< the name of its argument; empty for none
    const char *choices; ///< what the argument may be, "a|b"; empty for anything
    const char *fallback; ///< when it is not given
    const char *description;
};

struct Command {
    const char *name;
    const char *arguments; ///< as in a synopsis
    int fewest; ///< arguments
    int most; ///< -1 for any number
    const char *options; ///< their names, "a|b"
    const char *formats; ///< of --format
    const char *summary;
    const char *description;
};

/// A cause of an exit status, the same for every command.
struct Outcome {
    const char *status;
    const char *cause;
};

namespace Commands {

const std::vector<Command> &all();
const std::vector<Option> &options();

const std::vector<Outcome> &outcomes();

const Command *find(const QString &name);
QStringList optionsOf(const Command &command);

/// What the program says of itself: without a command all of it, else of that one.
QString help(const Command *command);

} // namespace Commands

#endif // COMMANDS_H
