// SPDX-License-Identifier: MIT
#ifndef PROGRAM_H
#define PROGRAM_H

#include "tools/nuv-apps-config/commandline/invocation.h"
#include "tools/nuv-apps-config/report/output.h"

/// The commands. Each returns the exit status.
namespace Program {

/// Parses the arguments, of which the first is the program's name, and runs the command.
int run(const QStringList &arguments, Output &output);

/// For the completions of the shells: prints what may be the last of the words, one on a line, with a
/// description after a tab; ":files" or ":directories" where it may be the name of one.
int complete(QStringList words, Output &output);

int check(const Invocation &invocation, Output &output);
int show(const Invocation &invocation, Output &output);
int list(const Invocation &invocation, Output &output);
int get(const Invocation &invocation, Output &output);
int keys(const Invocation &invocation, Output &output);
int explain(const Invocation &invocation, Output &output);
int format(const Invocation &invocation, Output &output);
int diff(const Invocation &invocation, Output &output);

} // namespace Program

#endif // PROGRAM_H
