// SPDX-License-Identifier: MIT
#ifndef PROPERTIES_H
#define PROPERTIES_H

#include <QString>
#include <QStringList>

#include <vector>

/// The keys of the configuration file, and the 42 properties that they configure. The one place where
/// they are described: the checks, the schema, the reference, the manual page and the template are
/// made from this table.

/// Where in the file a key is.
enum class Section {
    Document, ///< the outermost object
    Global, ///< "Global"
    Application, ///< an element of "Applications"
    Certificate, ///< "Certificate" of either
    Domain ///< an element of "GrantBroadcastAccessRightDomains"
};

enum class Kind {
    Switch, ///< true or false
    Text,
    Address, ///< a string: a URL, or a path relative to the file
    Referrer, ///< a string: a URL of the web
    Proxy, ///< a string: host:port
    UserAgent, ///< a string of one line
    Domain, ///< a string: the name of a domain
    FilePath, ///< a string: a path, relative to the file's directory unless absolute
    ScriptFile, ///< the same, of a script
    Number,
    Integer,
    Port,
    Version,
    Object,
    Array, ///< of objects
};

/// How much of a value is kept out of every output.
enum class Secret { No, Password, Whole };

struct Property {
    Section section;
    const char *key; ///< as it is in the file
    const char *property; ///< the name in AppConfig; null for a key that is no property
    Kind kind;
    const char *unit; ///< empty when there is none
    double minimum; ///< for numbers; minimum > maximum means no range
    double maximum;
    const char *whenMissing;
    const char *example; ///< as JSON
    Secret secret;
    const char *needs; ///< the properties of which one must be on for an effect, "A|B"; empty: none
    const char *description;
};

namespace Properties {

const std::vector<Property> &all();

/// The keys of one section, in the order of the table.
std::vector<const Property *> of(Section section);

/// Null when the section has no such key.
const Property *find(Section section, const QString &key);

/// By the name in AppConfig, by the key in the file, or by a path such as "Certificate/Path"; exact
/// first, then without regard to case.
const Property *findAnywhere(const QString &name);

/// The property of AppConfig with that name; null when there is none.
const Property *findProperty(const QString &property);

/// Where the key is, for people: "Applications[].Certificate.Path".
QString place(const Property &property);

QString sectionName(Section section);
QString kindName(Kind kind);
bool hasRange(const Property &property);
QString rangeText(const Property &property);

/// Whether the value is a string, of whichever meaning.
bool isText(const Property &property);

/// Whether a switch that is not given is known to be off.
bool isOffWhenMissing(const Property &property);

/// The names in `needs`, one by one.
QStringList needed(const Property &property);

/// The same by their keys in the file.
QStringList neededKeys(const Property &property);

/// Keys that every section ignores: "$schema", and what begins with "_comment".
bool isPassed(const QString &key);

} // namespace Properties

#endif // PROPERTIES_H
