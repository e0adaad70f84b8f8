// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/findings/rules.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace {

const RuleGroup Fi = RuleGroup::File, Sy = RuleGroup::Syntax, Di = RuleGroup::Dialect;
const RuleGroup Me = RuleGroup::Meaning, Ce = RuleGroup::Certificate;
const Severity E = Severity::Error, W = Severity::Warning, N = Severity::Note;

// clang-format off
const std::vector<Rule> table = {
    { "no-file", Fi, E, "No configuration file", "The library looks at two places: the file that NUV_APPS_CONFIG_FILE names, and AppsConfig.json in the working directory of the launcher. With neither, nothing is configured, and nothing is reported." },
    { "unreadable-file", Fi, E, "A file that cannot be read", "It does not exist, its mode or owner forbids it, it is a directory, a pipe or a device, or it is too large: more than 256 MiB, or 12 million values. The report of the other files is not the whole one." },
    { "variable-names-nothing", Fi, W, "NUV_APPS_CONFIG_FILE names a file that does not exist", "The library reads AppsConfig.json in the working directory instead, without a message, and the launcher shows what that file says. Correct the path, or unset the variable. The library reads the path as Latin-1." },
    { "empty-file", Fi, E, "The file is empty", "Nothing is configured. The reader of the format is not even called for a file without bytes, so even the one warning for a syntax error does not appear." },
    { "not-text", Fi, E, "The file is not text that the library can read", "The library reads bytes as Latin-1. A binary file or one in UTF-16 or UTF-32 is not JSON for it. Save it as plain text, best with nothing but ASCII." },
    { "too-deep", Fi, W, "The document is nested very deeply", "More than 1,000 objects and arrays are in each other. The flat keys of the settings grow with the square of the depth: 20,000 nested brackets take 0.8 GB of memory." },

    { "other-format", Sy, E, "The file has another format", "It is a compressed file, an HTML page (perhaps the error page of a server), XML, YAML or an INI file, whatever its name says. The library reads JSON only." },
    { "merge-conflict", Sy, E, "An unresolved merge conflict", "A version control system could not merge two versions of some lines, and wrote both between lines of <<<<<<<, ======= and >>>>>>>. Keep one version, and remove those lines." },
    { "cut-off", Sy, E, "The file ends too early", "It was cut off while being copied or written: the end of its last entry and the closing brackets are missing. Get the whole file again." },
    { "nul-bytes", Sy, E, "NUL bytes at the end of the file", "The file is as long as it was meant to be, but its end was never written: a power cut leaves such files. Remove the bytes, and look whether anything is missing." },
    { "byte-order-mark", Sy, E, "A byte-order mark", "Some editors begin a file with three invisible bytes, EF BB BF. The library takes them for an error and reads nothing. Save the file as UTF-8 without a byte-order mark." },
    { "comment", Sy, E, "A comment", "The format has no comments, and the library reads nothing of a file that holds one. Put the remark into a key that begins with _comment: it is ignored." },
    { "trailing-comma", Sy, E, "A comma after the last entry", "Nothing follows the comma, so the file cannot be read. Remove it. (A comma before the first entry happens to be accepted.)" },
    { "extra-comma", Sy, E, "One comma too many", "There is one comma between two entries." },
    { "missing-comma", Sy, E, "A comma is missing", "Entries of objects and arrays are separated by commas." },
    { "missing-colon", Sy, E, "A colon is missing", "There is a colon between a key and its value." },
    { "missing-value", Sy, E, "A value is missing", "A key was given without a value. Remove the key, or write null: it counts as not configured." },
    { "single-quotes", Sy, E, "Single quotes", "Strings and keys are written in double quotes, as in \"tv\"." },
    { "smart-quotes", Sy, E, "Typographic quotes", "A word processor or a chat made curly quotes out of the straight ones. Only the straight double quote, \", begins and ends a string." },
    { "unquoted-key", Sy, E, "A key without quotes", "Keys are written in double quotes." },
    { "unquoted-text", Sy, E, "A string without quotes", "Strings are written in double quotes. Without them there are only numbers, true, false and null." },
    { "wrong-keyword", Sy, E, "true, false or null in another spelling", "The three words are written in lower case: true, false, null. The spellings of other languages, such as True, NULL, None or undefined, are errors." },
    { "unterminated-string", Sy, E, "A string without its closing quote", "The string goes on to the next quote in the file, or to its end, and what follows makes no sense any more." },
    { "missing-opening-quote", Sy, E, "A string without its opening quote", "Strings and keys begin and end with a double quote." },
    { "unescaped-quote", Sy, E, "A quote inside a string", "A double quote ends the string. Write \\\" for one that belongs to it." },
    { "extra-quote", Sy, E, "One quote too many", "Strings and keys begin and end with one double quote." },
    { "missing-closing-brace", Sy, E, "A { is never closed", "Each { needs its }. The remark shows which one has none; the position is where the } is expected." },
    { "missing-closing-bracket", Sy, E, "A [ is never closed", "Each [ needs its ]. The remark shows which one has none; the position is where the ] is expected." },
    { "extra-closing-bracket", Sy, E, "A closing bracket without an opening one", "There is one } or ] more than was opened." },
    { "missing-opening-bracket", Sy, E, "An opening bracket is missing", "What follows is the inside of an object or of an array, and the { or [ that begins it is not there." },
    { "wrong-bracket", Sy, E, "A bracket of the other kind", "Objects are written in { and }, arrays in [ and ]." },
    { "bad-number", Sy, E, "A number that does not begin with a digit", "A number begins with a digit or a sign: 0.5, not .5. Hexadecimal numbers do not exist." },
    { "invisible-character", Sy, E, "An invisible character between the entries", "A no-break space or a similar character, often copied from a web page, is no blank for the library. Replace it by a space." },
    { "unexpected-token", Sy, E, "Something that cannot be here", "It is neither a key, a value, a comma nor a bracket that would fit." },
    { "text-after-end", Sy, E, "Text after the end of the document", "A file is one value, here one object. Anything after it makes the library drop all of it." },

    { "stray-b", Di, W, "A lone b between the entries", "The library skips the letter b like a blank; no other reader does. Remove it." },
    { "leading-comma", Di, W, "A comma before the first entry", "The library accepts one comma before the first entry of an object or an array; no other reader does. Remove it." },
    { "leading-zero", Di, W, "A number that begins with 0", "The library reads it as a decimal number; it is not octal. Other readers refuse it." },
    { "odd-number", Di, W, "Something like a number that is not one", "A run of digits, signs, points and e is a number for the library, and 0 if it makes no sense. 1.5.0 is 0. A version in three parts must be a string." },
    { "lost-digits", Di, W, "A number with more digits than can be kept", "Integers beyond 64 bits become floating-point numbers, and lose digits." },
    { "unescaped-backslash", Di, W, "A backslash that escapes nothing", "The backslash is dropped and the character after it stays: \"C:\\app\" is C:app. Write two backslashes for one." },
    { "bad-unicode-escape", Di, W, "A \\u without four hexadecimal digits", "The library takes the four bytes after \\u whatever they are; what is not a digit counts as 0." },
    { "short-unicode-escape", Di, W, "A \\u too near the end of the file", "With fewer than five bytes after it, the u is read as the letter u." },
    { "raw-control-character", Di, W, "A line break or another control character inside a string", "It becomes part of the string. Other readers refuse it. Write \\n, \\t or \\u and four digits." },
    { "non-ascii-text", Di, W, "A character outside ASCII", "The library reads each byte as one Latin-1 character, so that a character in UTF-8 arrives as two or more wrong ones. Write it as \\u and four hexadecimal digits." },

    { "not-an-object", Me, E, "The document is not an object", "The outermost value must be an object with the keys Global and Applications. Of anything else nothing is used." },
    { "no-version", Me, E, "The version is missing", "Without \"Global\": { \"Version\": 1 } no application is loaded." },
    { "unusable-version", Me, E, "A version that the library does not load", "Only versions from 1 up to, but not including, 2 pass: 1, 1.5 or the string \"1\". The number is narrowed to single precision first, so 1.99999999 counts as 2." },
    { "no-applications", Me, W, "There are no applications", "The launcher finds no application under any tag." },
    { "unknown-key", Me, W, "A key that the library does not know", "It is ignored, without a message. Keys are compared exactly, with their case. You can write a remark in a key that begins with _comment." },
    { "misplaced-key", Me, W, "A known key in a place where it is not read", "Applications inherit nothing from Global, and the keys of one level mean nothing on another." },
    { "top-level-certificate", Me, W, "A certificate outside of Global and of the applications", "Only \"Certificate\" inside \"Global\" and inside an application is read." },
    { "wrong-kind", Me, E, "A value of the wrong kind", "The library stores what it finds; the launcher cannot use it. \"true\" in quotes is a string, not a switch, and \"1.5\" is not a number." },
    { "out-of-range", Me, E, "A number out of its range", "The launcher cannot use the value, and keeps its default." },
    { "port-out-of-range", Me, E, "A port above 65535", "There is no such port." },
    { "port-means-unset", Me, W, "A port that means \"not set\"", "-1 and 4294967295 are what the library uses for a port that is not configured. Leave the key out." },
    { "no-address", Me, W, "An application without an address", "There is nothing to show under its tag." },
    { "unusable-address", Me, E, "An address that leads to no page", "The reference launcher does not open it. An address begins with http://, https:// or file:///, and has a host and, where there is one, a port from 1 to 65535; one without a scheme is a file next to the configuration file. HttpReferrer begins with http:// or https://." },
    { "unusable-proxy", Me, E, "A proxy that cannot be used", "A proxy is written as host:port, with user:password@ before it where it asks for them." },
    { "unusable-domain", Me, E, "A domain that cannot be used", "The name of a domain or of a host is written alone: no scheme, no port, no path, no pattern. What is below a domain is granted as well. The reference launcher refuses the whole list for one such element." },
    { "unusable-user-agent", Me, E, "A user agent of more than one line", "It becomes a line of each request. A line break in it would begin another line, so the reference launcher refuses it." },
    { "missing-file", Me, E, "A file that does not exist", "A page or a script that is named without a leading / is looked for in the directory of the configuration file, and one with it below the DIR of --root. Nothing like ~ or $HOME is replaced." },
    { "missing-here", Me, N, "A file that is not on this machine", "A path that begins with / names a file of the device, and this machine may be another one. With --root DIR the file is looked for below DIR, a copy of the device's file system, and is an error where it is missing; on the device itself that is --root /." },
    { "control-character", Me, W, "An escape that gives a control character", "\\b, \\f, \\n, \\r and \\t are control characters, so that \"C:\\tv\\new\" holds a tab and a line feed. A backslash is written twice." },
    { "blank-at-edge", Me, W, "A blank at the beginning or the end", "It is a part of the value. A tag with a blank is another tag than the one without." },
    { "no-tag", Me, E, "An application without a tag", "The whole application is skipped, without a message." },
    { "empty-tag", Me, W, "An empty tag", "The launcher must ask for the application by an empty name." },
    { "tag-not-text", Me, W, "A tag that is not a string", "It is converted: 7 becomes \"7\", true becomes \"true\"." },
    { "duplicate-tag", Me, E, "Two applications with one tag", "The first one wins whole. Nothing of the later one is used." },
    { "similar-tag", Me, W, "Tags that differ by case only", "Tags are compared exactly. Whoever asks for one of the two in the wrong case gets the other application." },
    { "duplicate-key", Me, E, "A key that appears twice in one object", "In the flat keys of the settings the earlier value in the file survives; two objects or two arrays are merged. Other readers keep the later value." },
    { "null-value", Me, N, "A value that is null", "It counts as not configured." },
    { "slash-in-key", Me, E, "A key that contains /", "A / separates the levels of the flat keys, and the pieces of such a key are not taken away after it: every key that comes later in the same object, in the order of the alphabet, moves under it. A \"//\" before \"Global\" hides the whole configuration." },
    { "size-key", Me, W, "A key named size", "The flat keys count the elements of an array under size, so an object with such a key is taken for an array." },
    { "huge-size", Me, E, "A size that keeps the loader busy", "The loader asks for as many elements as size says, which takes minutes for a great number, on every start." },
    { "plain-domain", Me, E, "A domain that is not an object", "Each element is an object: { \"Domain\": \"broadcaster.example\" }. Nothing of a plain string is used, but the list counts as configured, and is empty." },
    { "no-domain", Me, W, "An element without a domain", "It grants nothing." },
    { "needs-certificate", Me, E, "A private key or a pass phrase without a certificate", "PrivateKey and PassPhrase are read only where Path is given." },
    { "unused-ignore", Me, N, "An ignore that ignores nothing", "A key that begins with \"_comment check\" and has a value such as \"ignore unknown-key\" keeps check from reporting that rule in its object and in all that the object holds. Here it keeps nothing back: the mistake is gone, the rule has another name, or it cannot be ignored because the library reads nothing of a file with it. Remove it, or correct the name." },
    { "no-effect", Me, W, "A property without the one that it needs", "The value is handed out, but changes nothing." },
    { "two-names", Me, W, "Two names of one property with different values", "The name that begins with Use decides." },

    { "certificate-missing", Ce, E, "A certificate or key file that does not exist", "A path without a leading / is looked for next to the configuration file." },
    { "certificate-unreadable", Ce, E, "A certificate or key file that cannot be read", "Look at the owner and the mode of the file and of its directories. The launcher may run as another user than you." },
    { "certificate-invalid", Ce, E, "A file without a certificate or key", "The file must hold a certificate, or a private key, in PEM form: between lines of -----BEGIN and -----END." },
    { "wrong-pass-phrase", Ce, E, "A pass phrase that does not open the key", "The private key is encrypted, and PassPhrase is missing or another one." },
    { "certificate-mismatch", Ce, E, "A private key that belongs to another certificate", "A server will refuse the connection." },
    { "certificate-expired", Ce, E, "A certificate that is not valid at this time", "It has expired, or is not valid yet. The clock of the device counts." },
    { "key-readable-by-all", Ce, W, "A private key that everyone can read", "Take the right to read from all but its owner: chmod go-r." },
    { "certificate-unexamined", Ce, N, "Certificates could not be examined", "No OpenSSL library was found, so only the existence of the files was checked." },
};
// clang-format on

} // namespace

const std::vector<Rule> &Rules::all()
{
    return table;
}

const Rule *Rules::lookUp(const QString &id)
{
    const auto it = std::find_if(table.begin(), table.end(),
                                 [&id](const Rule &rule) { return id == QLatin1String(rule.id); });
    return it == table.end() ? nullptr : &*it;
}

const Rule &Rules::find(const char *id)
{
    const auto it = std::find_if(table.begin(), table.end(), [id](const Rule &rule) {
        return rule.id == id || std::strcmp(rule.id, id) == 0;
    });
    Q_ASSERT_X(it != table.end(), "Rules::find", id);
    return *it;
}

QByteArray Rules::sample(const Rule &rule)
{
    QFile file(QLatin1String(":/samples/") + QLatin1String(rule.id) + QLatin1String(".json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool Rules::isSyntaxError(const char *id)
{
    return find(id).group == RuleGroup::Syntax;
}

bool Rules::canBeIgnored(const Rule &rule)
{
    return rule.severity != Severity::Error
        || (rule.group != RuleGroup::Syntax && rule.group != RuleGroup::File);
}

QString Rules::groupName(RuleGroup group)
{
    switch (group) {
    case RuleGroup::File:
        return QLatin1String("The file");
    case RuleGroup::Syntax:
        return QLatin1String("Syntax");
    case RuleGroup::Dialect:
        return QLatin1String("Beyond JSON");
    case RuleGroup::Meaning:
        return QLatin1String("Keys and values");
    case RuleGroup::Certificate:
        break;
    }
    return QLatin1String("Certificates");
}

QString Rules::severityName(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return QLatin1String("note");
    case Severity::Warning:
        return QLatin1String("warning");
    case Severity::Error:
        break;
    }
    return QLatin1String("error");
}
