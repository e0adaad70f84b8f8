// SPDX-License-Identifier: MIT
#ifndef INVOCATION_H
#define INVOCATION_H

#include "tools/nuv-apps-config/commandline/commands.h"
#include "tools/nuv-apps-config/findings/finding.h"

#include <QString>
#include <QStringList>

enum class Format { Text, Json, Sarif, Github };

enum ExitStatus { Success = 0, Found = 1, Trouble = 2 };

/// What the command line says.
struct Invocation {
    const Command *command = nullptr; ///< null: only help or version
    QStringList arguments;
    QString file; ///< empty: the one that the library would pick
    Format format = Format::Text;
    QString root; ///< with the files of the device; empty: not known
    QStringList ignored; ///< ids of rules
    Severity failOn = Severity::Warning;
    bool useColour = false;
    bool reveal = false;
    bool write = false;
    bool sort = false;
    bool fix = false;
    bool diff = false; ///< counts more than fix
    bool wantsHelp = false;
    bool wantsVersion = false;
};

/// Returns false, with the reason in `*error`, for a command line that makes no sense.
bool parseCommandLine(const QStringList &arguments, Invocation *invocation, QString *error);

#endif // INVOCATION_H
