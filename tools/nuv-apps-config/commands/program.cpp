// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/documents/reference.h"
#include "tools/nuv-apps-config/documents/templates.h"
#include "tools/nuv-apps-config/text/spelling.h"
#include "tools/nuv-apps-config/commandline/version.h"

#include <algorithm>
#include <iterator>

namespace {

int printSchema(const Invocation &, Output &output)
{
    output.writeBytes(Reference::schema());
    return Success;
}

int printTemplate(const Invocation &invocation, Output &output)
{
    const QString name = invocation.arguments.value(0, QLatin1String("minimal"));
    const QByteArray text = Templates::text(name);
    output.writeBytes(text);
    if (!text.isEmpty())
        return Success;
    const QString meant = Spelling::didYouMean(name, Templates::names());
    Output::complain(QString(QLatin1String("there is no template \"%1\"%2"))
                         .arg(name,
                              meant.isEmpty() ? QLatin1String("; there are ")
                                      + Templates::names().join(QLatin1String(", "))
                                              : meant));
    return Found;
}

struct Runner {
    const char *command;
    int (*run)(const Invocation &, Output &);
};

const Runner runners[] = {
    { "check", Program::check }, { "show", Program::show },     { "list", Program::list },
    { "get", Program::get },     { "keys", Program::keys },     { "explain", Program::explain },
    { "schema", printSchema },   { "template", printTemplate }, { "fmt", Program::format },
    { "diff", Program::diff },
};

// Each command but help, which the command line makes an option of, is in the table.
int runCommand(const Invocation &invocation, Output &output)
{
    const auto runner =
        std::find_if(std::begin(runners), std::end(runners), [&](const Runner &row) {
            return qstrcmp(row.command, invocation.command->name) == 0;
        });
    Q_ASSERT_X(runner != std::end(runners), "Program::run", invocation.command->name);
    return runner->run(invocation, output);
}

int runCall(const QStringList &arguments, Output &output)
{
    if (arguments.value(1) == QLatin1String("__complete"))
        return Program::complete(arguments.mid(2), output);
    Invocation invocation;
    QString error;
    if (!parseCommandLine(arguments, &invocation, &error)) {
        Output::complain(error);
        return Trouble;
    }
    if (invocation.wantsHelp)
        output.write(Commands::help(invocation.command));
    else if (invocation.wantsVersion)
        output.write(QLatin1String("nuv-apps-config ") + QLatin1String(ProgramVersion)
                     + QLatin1Char('\n'));
    else
        return runCommand(invocation, output);
    return Success;
}

} // namespace

int Program::run(const QStringList &arguments, Output &output)
{
    const int status = runCall(arguments, output);
    return output.flush() ? status : Trouble;
}
