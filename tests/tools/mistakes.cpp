// SPDX-License-Identifier: MIT
#include "tests/tools/mistakes.h"

#include <functional>

namespace {

using Mistakes::Kind;
using Mistakes::Planted;

int below(std::mt19937 &engine, int limit)
{
    return int(engine() % static_cast<unsigned long>(limit));
}

// Remarks hold everything that could be mistaken for an entry.
bool isInRemark(const QByteArray &bytes, int at)
{
    const int line = bytes.lastIndexOf('\n', at > 0 ? at - 1 : 0) + 1;
    return bytes.mid(line, at - line).contains("\"_comment\"");
}

// All places where `what` begins, as far as `fits` says so.
QList<int> places(const QByteArray &bytes, const QByteArray &what,
                  const std::function<bool(int)> &fits = std::function<bool(int)>())
{
    QList<int> found;
    for (int at = bytes.indexOf(what); at >= 0; at = bytes.indexOf(what, at + 1)) {
        if (!isInRemark(bytes, at) && (!fits || fits(at)))
            found.append(at);
    }
    return found;
}

bool pick(const QList<int> &all, std::mt19937 &engine, int *at)
{
    if (all.isEmpty())
        return false;
    *at = all.at(below(engine, all.size()));
    return true;
}

int skipBlanks(const QByteArray &bytes, int at)
{
    while (at < bytes.size() && QByteArray(" \n\t\r").contains(bytes.at(at)))
        ++at;
    return at;
}

// Behind the last byte in front of `at` that is no blank.
int behindLast(const QByteArray &bytes, int at)
{
    while (at > 0 && QByteArray(" \n\t\r").contains(bytes.at(at - 1)))
        --at;
    return at;
}

// Replaces one of the places by another text, in which the mistake is found at `shift`.
bool replaceOne(Planted *file, std::mt19937 &engine, const QByteArray &what, const QByteArray &by,
                int shift)
{
    int at = 0;
    if (!pick(places(file->bytes, what), engine, &at))
        return false;
    file->bytes.replace(at, what.size(), by);
    file->offset = at + shift;
    return true;
}

// --- syntax ---

bool trailingComma(Planted *file, std::mt19937 &engine, char bracket)
{
    int at = 0;
    const QByteArray &bytes = file->bytes;
    const auto isFilled = [&](int place) {
        const int before = behindLast(bytes, place);
        return before > 0 && bytes.at(before - 1) != '[' && bytes.at(before - 1) != '{';
    };
    if (!pick(places(bytes, QByteArray(1, bracket), isFilled), engine, &at))
        return false;
    file->offset = behindLast(bytes, at);
    file->bytes.insert(file->offset, ',');
    return true;
}

bool trailingCommaInObject(Planted *file, std::mt19937 &engine)
{
    return trailingComma(file, engine, '}');
}

bool trailingCommaInArray(Planted *file, std::mt19937 &engine)
{
    return trailingComma(file, engine, ']');
}

bool missingComma(Planted *file, std::mt19937 &engine)
{
    int at = 0;
    const QByteArray &bytes = file->bytes;
    const auto isBeforeKey = [&](int place) {
        return bytes.at(skipBlanks(bytes, place + 1)) == '"';
    };
    if (!pick(places(bytes, ",", isBeforeKey), engine, &at))
        return false;
    file->bytes.remove(at, 1);
    file->offset = at;
    return true;
}

bool comment(Planted *file, std::mt19937 &engine)
{
    int at = 0;
    if (!pick(places(file->bytes, "\n"), engine, &at))
        return false;
    const char *const comments[] = { " // the device's own", " # \"old\": 1",
                                     " /* see\n  below */" };
    file->bytes.insert(at, comments[below(engine, 3)]);
    file->offset = at + 1;
    return true;
}

bool singleQuotes(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"http://home.example/\"", "'http://home.example/'", 0);
}

bool unquotedKey(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"Url\"", "Url", 0);
}

bool capitalTrue(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, ": true", ": True", 2);
}

bool smartQuotes(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"http://home.example/\"",
                      "\xe2\x80\x9chttp://home.example/\xe2\x80\x9d", 0);
}

bool unterminatedString(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"http://home.example/\"", "\"http://home.example/", 0);
}

bool missingClosing(Planted *file, std::mt19937 &engine, char bracket)
{
    int at = 0;
    const QByteArray &bytes = file->bytes;
    // On a line of its own, as in most files: elsewhere nobody can tell which one is missing.
    const auto isAlone = [&](int place) {
        return bytes.lastIndexOf('\n', place) + 1 != 0
            && bytes
                   .mid(bytes.lastIndexOf('\n', place) + 1,
                        place - bytes.lastIndexOf('\n', place) - 1)
                   .trimmed()
                   .isEmpty();
    };
    if (!pick(places(bytes, QByteArray(1, bracket), isAlone), engine, &at))
        return false;
    file->bytes.remove(at, 1);
    const int next = skipBlanks(file->bytes, at);
    file->offset = next == file->bytes.size() ? behindLast(file->bytes, next) + 1 : next;
    return true;
}

bool missingClosingBrace(Planted *file, std::mt19937 &engine)
{
    return missingClosing(file, engine, '}');
}

bool missingClosingBracket(Planted *file, std::mt19937 &engine)
{
    return missingClosing(file, engine, ']');
}

bool missingColon(Planted *file, std::mt19937 &engine)
{
    int at = 0;
    if (!pick(places(file->bytes, "\":"), engine, &at))
        return false;
    file->bytes.remove(at + 1, 1);
    file->offset = at + 1;
    return true;
}

bool byteOrderMark(Planted *file, std::mt19937 &)
{
    file->bytes.prepend("\xef\xbb\xbf");
    file->offset = 0;
    return true;
}

bool semicolon(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "},\n", "};\n", 1);
}

bool twoQuotes(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"http://home.example/\"", "\"\"http://home.example/\"", 0);
}

bool quoteInside(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"Box/1.0\"", "\"Box \"home\" 1.0\"", 5);
}

// In the middle of a string, as a full disk leaves it. It is found after the last whole token.
bool cutOff(Planted *file, std::mt19937 &engine)
{
    int at = 0;
    if (!pick(places(file->bytes, "http://home.example/"), engine, &at))
        return false;
    file->bytes.truncate(at + 7);
    file->offset = at - 2;
    return true;
}

bool mergeConflict(Planted *file, std::mt19937 &engine)
{
    int at = 0;
    if (!pick(places(file->bytes, "\"Scale\": 1.25"), engine, &at))
        return false;
    file->offset = file->bytes.lastIndexOf('\n', at) + 1;
    const int end = file->bytes.indexOf('\n', at) + 1;
    const QByteArray line = file->bytes.mid(file->offset, end - file->offset);
    QByteArray other = line;
    other.replace("1.25", "1.5");
    file->bytes.replace(file->offset, line.size(),
                        "<<<<<<< ours\n" + line + "=======\n" + other + ">>>>>>> theirs\n");
    return true;
}

bool nulBytes(Planted *file, std::mt19937 &)
{
    file->offset = file->bytes.size();
    file->bytes.append(300, '\0');
    return true;
}

bool becomes(Planted *file, const QByteArray &bytes)
{
    file->bytes = bytes;
    file->offset = 0;
    return true;
}

bool htmlPage(Planted *file, std::mt19937 &)
{
    return becomes(file,
                   "<!DOCTYPE html>\n<html><head><title>404 Not Found</title></head>\n"
                   "<body><h1>Not Found</h1></body></html>\n");
}

bool xmlFile(Planted *file, std::mt19937 &)
{
    return becomes(file, "<?xml version=\"1.0\"?>\n<Applications>\n</Applications>\n");
}

bool yamlFile(Planted *file, std::mt19937 &)
{
    return becomes(file,
                   "Global:\n  Version: 1\nApplications:\n  - Tag: home\n"
                   "    Url: http://home.example/\n");
}

bool iniFile(Planted *file, std::mt19937 &)
{
    return becomes(file, "[Global]\nVersion=1\n\n[Applications]\nTag=home\n");
}

bool gzipFile(Planted *file, std::mt19937 &)
{
    const char bytes[] = "\x1f\x8b\x08\0\0\0\0\0\0\x03\xab\x56\x72\xcf\xc9\x4f\x4a\xcc";
    return becomes(file, QByteArray(bytes, int(sizeof bytes) - 1));
}

bool hexadecimal(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"RemoteInspectorPort\": 9222",
                      "\"RemoteInspectorPort\": 0x2406", 23);
}

bool megabytes(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"OfflineStorageDefaultQuotaSize\": 5242880",
                      "\"OfflineStorageDefaultQuotaSize\": 5MB", 34);
}

bool groupedDigits(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"OfflineStorageDefaultQuotaSize\": 5242880",
                      "\"OfflineStorageDefaultQuotaSize\": 5_242_880", 34);
}

bool decimalComma(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": 1,25", 9);
}

bool notANumber(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": NaN", 9);
}

bool cutKeyword(Planted *file, std::mt19937 &engine)
{
    return replaceOne(file, engine, ": true", ": tru", 2);
}

bool plusSign(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": +1.25", 9);
}

bool lonePoint(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": 5.", 9);
}

bool unescapedBackslash(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "http://home.example/", "C:\\home", 2);
}

bool leadingZero(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": 01.25", 9);
}

bool versionNumber(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "\"Scale\": 1.25", "\"Scale\": 1.5.0", 9);
}

bool rawNonAscii(Planted *file, std::mt19937 &engine)
{
    file->isError = false;
    return replaceOne(file, engine, "home.example", "h\xc3\xb6me.example", 1);
}

// --- meaning ---

struct Exchange {
    const char *name;
    const char *rule;
    const char *what;
    const char *by;
    const char *before; ///< the part of `by` in front of the place
};

// Each planted by replacing one text by another.
const Exchange exchanges[] = {
    { "a key in the wrong case", "unknown-key", "\"Url\":", "\"url\":", "" },
    { "a misspelt key", "unknown-key", "\"Frameless\":", "\"Framless\":", "" },
    { "a misspelt key of a certificate", "unknown-key", "\"PrivateKey\":", "\"PrivateKye\":", "" },
    { "a switch as a string", "wrong-kind", "\"UseWebGL\": true", "\"UseWebGL\": \"true\"",
      "\"UseWebGL\": " },
    { "a switch as a number", "wrong-kind", "\"UseWebGL\": true", "\"UseWebGL\": 1",
      "\"UseWebGL\": " },
    { "a number as a string", "wrong-kind", "\"Scale\": 1.25", "\"Scale\": \"1.25\"",
      "\"Scale\": " },
    { "a string as a number", "wrong-kind", "\"UserAgent\": \"Box/1.0\"", "\"UserAgent\": 10",
      "\"UserAgent\": " },
    { "an object for a string", "wrong-kind", "\"UserAgent\": \"Box/1.0\"", "\"UserAgent\": { }",
      "\"UserAgent\": " },
    { "a factor as a percentage", "out-of-range", "\"Scale\": 1.25", "\"Scale\": 125",
      "\"Scale\": " },
    { "a negative opacity", "out-of-range", "\"WindowOpacity\": 0.5", "\"WindowOpacity\": -0.5",
      "\"WindowOpacity\": " },
    { "a negative quota", "out-of-range", "\"OfflineStorageDefaultQuotaSize\": 5242880",
      "\"OfflineStorageDefaultQuotaSize\": -1", "\"OfflineStorageDefaultQuotaSize\": " },
    { "a port above 65535", "port-out-of-range", "\"RemoteInspectorPort\": 9222",
      "\"RemoteInspectorPort\": 92222", "\"RemoteInspectorPort\": " },
    { "-1 as a port", "port-means-unset", "\"RemoteInspectorPort\": 9222",
      "\"RemoteInspectorPort\": -1", "\"RemoteInspectorPort\": " },
    { "4294967295 as a port", "port-means-unset", "\"RemoteInspectorPort\": 9222",
      "\"RemoteInspectorPort\": 4294967295", "\"RemoteInspectorPort\": " },
    { "a version that does not load", "unusable-version", "\"Version\": 1", "\"Version\": 2",
      "\"Version\": " },
    { "a version rounded up", "unusable-version", "\"Version\": 1", "\"Version\": 1.99999999",
      "\"Version\": " },
    { "an empty tag", "empty-tag", "\"Tag\": \"home\"", "\"Tag\": \"\"", "\"Tag\": " },
    { "a tag that is a number", "tag-not-text", "\"Tag\": \"home\"", "\"Tag\": 7", "\"Tag\": " },
    { "a duplicate tag", "duplicate-tag", "\"Tag\": \"last\"", "\"Tag\": \"first\"", "\"Tag\": " },
    { "a duplicate key", "duplicate-key", "\"Scale\": 1.25", "\"Scale\": 1.25, \"Scale\": 1",
      "\"Scale\": 1.25, " },
    { "a plain domain", "plain-domain", "{ \"Domain\": \"a.example\" }", "\"a.example\"", "" },
    { "a domain without its key", "no-domain", "{ \"Domain\": \"a.example\" }", "{ }", "" },
    { "a key with a slash", "slash-in-key", "\"Frameless\":", "\"//\": 1, \"Frameless\":", "" },
    { "a key named size", "size-key", "\"Frameless\":", "\"size\": 2, \"Frameless\":", "" },
    { "a size that takes minutes", "huge-size", "\"Applications\": [",
      "\"Applications\": { \"size\": 2147483647 }, \"_comment\": [",
      "\"Applications\": { \"size\": " },
    { "a certificate at the top", "top-level-certificate",
      "\"Applications\":", "\"Certificate\": { }, \"Applications\":", "" },
    { "an application's key in Global", "misplaced-key",
      "\"Version\":", "\"UserAgent\": \"x\", \"Version\":", "" },
    { "a property without what it needs", "no-effect",
      "\"UseGraphicsView\": true, \"UseTiledBackingStore\"", "\"UseTiledBackingStore\"", "" },
    { "a value that is null", "null-value", "\"UseWebGL\": true", "\"UseWebGL\": null",
      "\"UseWebGL\": " },
    { "two names that differ", "two-names", "\"UseOfflineStorageDatabase\": true",
      "\"UseOfflineStorageDatabase\": true, \"OfflineStorageDatabaseEnabled\": false",
      "\"UseOfflineStorageDatabase\": true, " },
    { "an address with a misspelt scheme", "unusable-address", "\"http://home.example/\"",
      "\"htpp://home.example/\"", "" },
    { "an address without a scheme", "unusable-address", "\"http://home.example/\"",
      "\"www.home.example/\"", "" },
    { "a page that is missing", "missing-file", "\"http://home.example/\"", "\"pages/hoem.html\"",
      "" },
    { "a script that is missing", "missing-file", "\"UserAgent\": \"Box/1.0\"",
      "\"UserScript\": \"scripts/hoem.js\"", "\"UserScript\": " },
    { "a proxy without a port", "unusable-proxy", "\"UserAgent\": \"Box/1.0\"",
      "\"HttpProxy\": \"proxy.example\"", "\"HttpProxy\": " },
    { "a referrer without a scheme", "unusable-address", "\"UserAgent\": \"Box/1.0\"",
      "\"HttpReferrer\": \"portal.example\"", "\"HttpReferrer\": " },
    { "a user agent of two lines", "unusable-user-agent", "\"Box/1.0\"", "\"Box/1.0\\nX: y\"", "" },
    { "a domain with a scheme", "unusable-domain", "\"a.example\"", "\"http://a.example\"", "" },
    { "a domain as a pattern", "unusable-domain", "\"a.example\"", "\"*.a.example\"", "" },
    { "a path with backslashes", "control-character", "\"http://home.example/\"",
      "\"tv\\news.html\"", "\"tv" },
    { "a tag with a blank at its end", "blank-at-edge", "\"Tag\": \"home\"", "\"Tag\": \"home \"",
      "\"Tag\": " },
    { "two tags that differ by case", "similar-tag", "\"Tag\": \"last\"", "\"Tag\": \"First\"",
      "\"Tag\": " },
    { "an empty address", "unusable-address", "\"http://home.example/\"", "\"\"", "" },
    { "an address without its colon", "unusable-address", "\"http://home.example/\"",
      "\"http//home.example/\"", "" },
    { "an address with one slash", "unusable-address", "\"http://home.example/\"",
      "\"http:/home.example/\"", "" },
    { "an address without a host", "unusable-address", "\"http://home.example/\"", "\"https:///i\"",
      "" },
    { "an address with a port of five nines", "unusable-address", "\"http://home.example/\"",
      "\"http://home.example:99999/\"", "" },
    { "an address with a blank before it", "unusable-address", "\"http://home.example/\"",
      "\" http://home.example/\"", "" },
    { "a proxy with a port of five nines", "unusable-proxy", "\"UserAgent\": \"Box/1.0\"",
      "\"HttpProxy\": \"proxy.example:99999\"", "\"HttpProxy\": " },
    { "a proxy of https", "unusable-proxy", "\"UserAgent\": \"Box/1.0\"",
      "\"HttpProxy\": \"https://proxy.example:3128\"", "\"HttpProxy\": " },
    { "an empty proxy", "unusable-proxy", "\"UserAgent\": \"Box/1.0\"", "\"HttpProxy\": \"\"",
      "\"HttpProxy\": " },
    { "a script in the home directory", "missing-file", "\"UserAgent\": \"Box/1.0\"",
      "\"UserScript\": \"~/home.js\"", "\"UserScript\": " },
    { "a script named by a variable", "missing-file", "\"UserAgent\": \"Box/1.0\"",
      "\"UserScript\": \"$HOME/home.js\"", "\"UserScript\": " },
    { "a script instead of its file", "missing-file", "\"UserAgent\": \"Box/1.0\"",
      "\"UserScript\": \"alert(1);\"", "\"UserScript\": " },
    { "a domain with a path", "unusable-domain", "\"a.example\"", "\"a.example/tv\"", "" },
    { "a domain with a port", "unusable-domain", "\"a.example\"", "\"a.example:80\"", "" },
    { "an empty domain", "unusable-domain", "\"a.example\"", "\"\"", "" },
    { "a tag that is null", "no-tag", "\"Tag\": \"home\"", "\"Tag\": null", "\"Tag\": " },
    { "an opacity above 1", "out-of-range", "\"WindowOpacity\": 0.5", "\"WindowOpacity\": 1.5",
      "\"WindowOpacity\": " },
    { "an opacity of 255", "out-of-range", "\"WindowOpacity\": 0.5", "\"WindowOpacity\": 255",
      "\"WindowOpacity\": " },
    { "a factor of 11", "out-of-range", "\"Scale\": 1.25", "\"Scale\": 11", "\"Scale\": " },
    { "a list where an object belongs", "wrong-kind",
      "\"Applications\":", "\"Applications\": [ [ ] ], \"_comment\":", "\"Applications\": [ " },
    { "a pass phrase that is a number", "wrong-kind", "\"PrivateKey\": \"device.key\"",
      "\"PrivateKey\": \"device.key\", \"PassPhrase\": 1234",
      "\"PrivateKey\": \"device.key\", \"PassPhrase\": " },
    { "a certificate file that is missing", "certificate-missing", "\"Path\": \"device.pem\"",
      "\"Path\": \"devize.pem\"", "\"Path\": " },
};
const int exchangeCount = int(sizeof exchanges / sizeof exchanges[0]);

template<int index>
bool plantExchange(Planted *file, std::mt19937 &engine)
{
    const Exchange &exchange = exchanges[index];
    return replaceOne(file, engine, exchange.what, exchange.by, int(qstrlen(exchange.before)));
}

template<int index>
void appendExchanges(QList<Kind> *kinds)
{
    if constexpr (index < exchangeCount) {
        kinds->append({ exchanges[index].name, exchanges[index].rule, plantExchange<index> });
        appendExchanges<index + 1>(kinds);
    }
}

// Where the object around `at` begins.
int openingBrace(const QByteArray &bytes, int at)
{
    for (int depth = 0; at >= 0; --at) {
        if (bytes.at(at) == '}')
            ++depth;
        else if (bytes.at(at) == '{' && depth-- == 0)
            return at;
    }
    return -1;
}

// Takes a member away, with the comma and the blanks after it.
bool removeMember(Planted *file, std::mt19937 &engine, const QByteArray &member)
{
    int at = 0;
    if (!pick(places(file->bytes, member), engine, &at))
        return false;
    const int comma = skipBlanks(file->bytes, at + member.size());
    if (file->bytes.at(comma) != ',')
        return false;
    file->bytes.remove(at, comma + 1 - at);
    file->offset = openingBrace(file->bytes, at - 1);
    return true;
}

bool noTag(Planted *file, std::mt19937 &engine)
{
    return removeMember(file, engine, "\"Tag\": \"home\"");
}

bool noAddress(Planted *file, std::mt19937 &engine)
{
    return removeMember(file, engine, "\"Url\": \"http://home.example/\"");
}

bool noVersion(Planted *file, std::mt19937 &engine)
{
    return removeMember(file, engine, "\"Version\": 1");
}

bool noPath(Planted *file, std::mt19937 &engine)
{
    if (!removeMember(file, engine, "\"Path\": \"device.pem\""))
        return false;
    file->offset = file->bytes.indexOf("\"PrivateKey\"", file->offset);
    return true;
}

// --- configurations ---

QByteArray application(const QByteArray &tag, const QByteArray &indentation, bool isLong)
{
    const QByteArray in = ",\n" + indentation + "    ";
    QByteArray text = indentation + "{\n" + indentation + "    \"Tag\": \"" + tag + '"' + in
        + "\"Url\": \"http://home.example/\"" + in + "\"Frameless\": true" + in
        + "\"UseWebGL\": true" + in + "\"Scale\": 1.25";
    if (isLong) {
        text += in + "\"UserAgent\": \"Box/1.0\"" + in + "\"WindowOpacity\": 0.5" + in
            + "\"UseGraphicsView\": true, \"UseTiledBackingStore\": true" + in
            + "\"UseOfflineStorageDatabase\": true" + in
            + "\"OfflineStorageDefaultQuotaSize\": 5242880" + in
            + "\"_comment\": \"{ [ , // ' : ] }\"" + in
            + "\"GrantBroadcastAccessRightDomains\": [\n" + indentation
            + "        { \"Domain\": \"a.example\" },\n" + indentation
            + "        { \"Domain\": \"b.example\" }\n" + indentation + "    ]" + in
            + "\"RemoteInspectorPort\": 9222";
    }
    return text + '\n' + indentation + '}';
}

QByteArray configuration(int applications, bool isLong, const QByteArray &step)
{
    QByteArray text = "{\n" + step + "\"Global\": {\n" + step + step + "\"Version\": 1,\n" + step
        + step + "\"RemoteInspectorPort\": 9222,\n" + step + step + "\"Certificate\": {\n" + step
        + step + step + "\"Path\": \"device.pem\",\n" + step + step + step
        + "\"PrivateKey\": \"device.key\"\n" + step + step + "}\n" + step + "},\n" + step
        + "\"Applications\": [\n";
    for (int i = 0; i < applications; ++i) {
        QByteArray tag = "app" + QByteArray::number(i);
        if (i == 0)
            tag = "first";
        else if (i == 1)
            tag = "home";
        else if (i == applications - 1)
            tag = "last";
        text +=
            application(tag, step + step, isLong || i == 1) + (i + 1 < applications ? ",\n" : "\n");
    }
    return text + step + "]\n}\n";
}

} // namespace

const QList<Kind> &Mistakes::syntaxKinds()
{
    static const QList<Kind> kinds = {
        { "a trailing comma in an object", "trailing-comma", trailingCommaInObject },
        { "a trailing comma in an array", "trailing-comma", trailingCommaInArray },
        { "a missing comma", "missing-comma", missingComma },
        { "a comment", "comment", comment },
        { "single quotes", "single-quotes", singleQuotes },
        { "an unquoted key", "unquoted-key", unquotedKey },
        { "True", "wrong-keyword", capitalTrue },
        { "smart quotes", "smart-quotes", smartQuotes },
        { "an unterminated string", "unterminated-string", unterminatedString },
        { "a missing closing brace", "missing-closing-brace", missingClosingBrace },
        { "a missing closing bracket", "missing-closing-bracket", missingClosingBracket },
        { "a missing colon", "missing-colon", missingColon },
        { "a byte-order mark", "byte-order-mark", byteOrderMark },
        { "a semicolon for a comma", "missing-comma", semicolon },
        { "a quote too many", "extra-quote", twoQuotes },
        { "an unescaped quote", "unescaped-quote", quoteInside },
        { "0x2406 as a port", "bad-number", hexadecimal },
        { "5MB", "bad-number", megabytes },
        { "5_242_880", "bad-number", groupedDigits },
        { "1,25 with a comma", "bad-number", decimalComma },
        { "NaN", "bad-number", notANumber },
        { "tru", "wrong-keyword", cutKeyword },
        { "a file that was cut off", "cut-off", cutOff },
        { "NUL bytes after the end", "nul-bytes", nulBytes },
        { "merge-conflict markers", "merge-conflict", mergeConflict },
        { "an HTML page", "other-format", htmlPage },
        { "an XML file", "other-format", xmlFile },
        { "a YAML file", "other-format", yamlFile },
        { "an INI file", "other-format", iniFile },
        { "a gzip file", "other-format", gzipFile },
        { "an unescaped backslash", "unescaped-backslash", unescapedBackslash },
        { "a leading zero", "leading-zero", leadingZero },
        { "1.5.0", "odd-number", versionNumber },
        { "+1.25", "odd-number", plusSign },
        { "5.", "odd-number", lonePoint },
        { "a raw non-ASCII character", "non-ascii-text", rawNonAscii },
    };
    return kinds;
}

const QList<Kind> &Mistakes::meaningKinds()
{
    static const QList<Kind> kinds = [] {
        QList<Kind> list = {
            { "an application without a tag", "no-tag", noTag },
            { "an application without an address", "no-address", noAddress },
            { "no version", "no-version", noVersion },
            { "a private key without a certificate", "needs-certificate", noPath },
        };
        appendExchanges<0>(&list);
        return list;
    }();
    return kinds;
}

Mistakes::Planted Mistakes::published(const Kind &kind)
{
    const QByteArray name(kind.name);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    std::mt19937 engine(qChecksum(name));
#else
    std::mt19937 engine(qChecksum(name.constData(), uint(name.size())));
#endif
    Planted file = { configurations().at(2), kind.rule, 0, true };
    if (!kind.plant(&file, engine))
        qFatal("there is no place for %s", kind.name);
    return file;
}

const QList<QByteArray> &Mistakes::configurations()
{
    static const QList<QByteArray> files = {
        configuration(2, false, "    "), configuration(3, true, "  "),
        configuration(12, true, "    "), configuration(30, false, "\t"),
        configuration(90, true, "    "),
    };
    return files;
}

const QByteArray &Mistakes::configurationOfRound(int round)
{
    return configurations().at(round % configurations().size());
}
