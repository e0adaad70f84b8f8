// SPDX-License-Identifier: MIT
#ifndef RULES_H
#define RULES_H

#include <QByteArray>
#include <QString>

#include <vector>

enum class Severity { Note, Warning, Error };

enum class RuleGroup {
    File, ///< about the file as a whole
    Syntax, ///< an error here means that the library reads nothing at all
    Dialect, ///< accepted by the library, not by JSON
    Meaning, ///< what the keys and values say
    Certificate ///< what the named files hold
};

struct Rule {
    const char *id;
    RuleGroup group;
    Severity severity;
    const char *title;
    const char *description; ///< what happens, why, and what to do
};

namespace Rules {

const std::vector<Rule> &all();

/// Null when there is none.
const Rule *lookUp(const QString &id);

/// `id` must be one of the table.
const Rule &find(const char *id);

/// Whether it is one of the syntax. Each of them is an error: the library reads nothing of such a file.
bool isSyntaxError(const char *id);

/// A file in which the rule finds something; empty for what no file can show.
QByteArray sample(const Rule &rule);

/// False for what keeps the library from reading anything: nobody is helped by not seeing it.
bool canBeIgnored(const Rule &rule);

QString groupName(RuleGroup group);
QString severityName(Severity severity);

} // namespace Rules

#endif // RULES_H
