// SPDX-License-Identifier: MIT
#include "tests/tools/secretfiles.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <vector>

namespace {

// Words that no message, rule or path contains, with what may be in a pass phrase.
const char *const phrases[] = { "Zq7kVwx9!Lmt",     "xanvorquibel", "73019465028",
                                "Vokz Juwqim Xelb", "Kz}vqWx,jY{u", "wxq:Vjk:zzUqk",
                                "Jx#Qv//Wkzpq",     "Qwz'Vxk'Jjqz", "Vzq\\\\Kxw\\/jq",
                                "Zu\\u0071xVkwjQ",  "Jv=Qxz;Wkq+z", "Xq\xc3\xa4Vwkz\xc3\xb6jq" };

const char *const passwords[] = { "Zq7kVwx9!Lmt",   "xanvorquibel",      "73019465028x",
                                  "Vok/zJuwq/im",   "Kzv qWxj Yu",       "wxq:Vjk:zzUq",
                                  "Jx@Qvw@Wkzpq",   "Vzq%40KxwJ%2Fjq",   "Zu\\u0040xVkwjQ",
                                  "Jv?Qxz#Wkq&zzp", "Vwk\\\"Zxqj\\\\wkq" };

struct Place {
    const char *name;
    const char *text; ///< with % for the secret
    bool isInAddress;
    bool belongsToCertificate;
};

const Place places[] = {
    { "pass phrase", "\"PassPhrase\": \"%\"", false, true },
    { "pass phrase first", "\"PassPhrase\": \"%\", \"PrivateKey\": \"a.key\"", false, true },
    { "pass phrase with an escaped key", "\"Pass\\u0050hrase\": \"%\"", false, true },
    { "pass phrase on the next line", "\"PassPhrase\":\n        \"%\"", false, true },
    { "pass phrase in an array", "\"PassPhrase\": [ \"a\", \"%\" ]", false, true },
    { "pass phrase in an array of lines", "\"PassPhrase\": [\n\"a\",\n\"%\"\n]", false, true },
    { "pass phrase without quotes", "\"PassPhrase\": %", false, true },
    { "pass phrase in single quotes", "'PassPhrase': '%'", false, true },
    { "misspelt pass phrase", "\"PassPhrse\": \"%\"", false, true },
    { "pass phrase twice", "\"PassPhrase\": \"a\", \"PassPhrase\": \"%\"", false, true },
    { "comment in a certificate", "\"_comment\": \"% opens it\"", false, true },
    { "unknown key in a certificate", "\"%\": \"a\"", false, true },
    { "comment after a pass phrase", "\"PassPhrase\": \"a\" // it was %", false, true },
    { "comment before a pass phrase", "/* % */ \"PassPhrase\": \"a\"", false, true },
    { "misplaced pass phrase", "\"PassPhrase\": \"%\"", false, false },
    { "name of the property", "\"CertPassPhrase\": \"%\"", false, false },
    { "password", "\"Password\": \"%\"", false, false },
    { "password in lower case", "\"password\" : \"%\"", false, false },
    { "with an underscore", "\"pass_phrase\": \"%\"", false, false },
    { "with a blank", "\"pass phrase\": \"%\"", false, false },
    { "in lower case", "\"passphrase\": \"%\"", false, false },
    { "comment that names a pass phrase", "\"_comment\": \"the pass phrase is %\"", false, false },
    { "comment that names a password", "\"UseWebGL\": true // password: %", false, false },
    { "proxy", "\"HttpProxy\": \"usr:%@h:1\"", true, false },
    { "proxy with a scheme", "\"HttpProxy\": \"http://usr:%@proxy.example:3128\"", true, false },
    { "proxy without a port", "\"HttpProxy\": \"usr:%@proxy\"", true, false },
    { "address", "\"Url\": \"http://me:%@tv.example/index.html\"", true, false },
    { "address with a port", "\"Url\": \"https://me:%@tv.example:8443/?a=b@c\"", true, false },
    { "address with an escaped sign", "\"Url\": \"http://me:%\\u0040tv.example/\"", true, false },
    { "referrer", "\"HttpReferrer\": \"http://me:%@tv.example/\"", true, false },
    { "script", "\"UserScript\": \"http://me:%@tv.example/a.js\"", true, false },
    { "address in an unknown key", "\"Adress\": \"ftp://me:%@tv.example/\"", true, false },
    { "address as a key", "\"http://me:%@tv.example/\": true", true, false },
    { "address in an array", "\"HttpProxy\": [ \"usr:%@h:1\" ]", true, false },
};

// The places of the members: ~ in the certificate, ^ in the application, $ between the two for line
// breaks.
const char *const layouts[] = {
    "{\n    \"Global\": { \"Version\": 1 },\n    \"Applications\": [\n        {\n"
    "            \"Tag\": \"tv\",\n            \"Scale\": 1.5,\n            ^,\n"
    "            \"Certificate\": {\n                \"Path\": \"b.pem\",\n                ~,\n"
    "                \"PrivateKey\": \"b.key\"\n            },\n            \"UseWebGL\": true\n"
    "        },\n        { \"Tag\": \"radio\", \"Url\": \"radio.html\" }\n    ]\n}\n",
    "{ \"Global\": { \"Version\": 1, \"Certificate\": { \"Path\": \"a.pem\", ~ } },\n"
    "  \"Applications\": [\n    { \"Tag\": \"tv\", ^, \"Scale\": 2 },\n    { \"Tag\": \"radio\" }\n"
    "  ]\n}\n",
    "{\"Global\":{\"Version\":1},\"Applications\":[{\"Tag\":\"tv\",^,\"Certificate\":{\"Path\":"
    "\"b.pem\",\"PrivateKey\":\"b.key\",~},\"Scale\":1.5},{\"Tag\":\"radio\"}]}",
    "{\r\n\t\"Applications\": [\r\n\t\t{\r\n\t\t\t\"Certificate\": { ~ },\r\n\t\t\t^,\r\n"
    "\t\t\t\"Tag\": \"tv\"\r\n\t\t}\r\n\t],\r\n\t\"Global\": { \"Version\": 1 }\r\n}\r\n",
};

const char *const insertions[] = {
    "\"",       "'",    ":",    ",",      ";",      "=",       "{",
    "}",        "[",    "]",    "\\",     "/",      "//",      "#",
    "@",        " ",    "\n",   "\t",     "b",      "x",       "0",
    "-",        ".",    "\"\"", "\", \"", "\": \"", "\\u0022", "\xe2\x80\x9c",
    "\xc2\xa0", "\x01", "null", "<!-- "
};

QByteArray lettersOf(const QByteArray &bytes)
{
    QByteArray letters;
    for (const char byte : QByteArray(bytes).replace("\\u0050", "P").toLower()) {
        if (byte >= 'a' && byte <= 'z')
            letters += byte;
    }
    return letters;
}

int countOfSigns(const QByteArray &bytes)
{
    return bytes.count('@') + bytes.count("\\u0040");
}

// "http://me:73/abc" without an @ is a host, its port and a path.
bool isPortAndPath(const QByteArray &afterColon)
{
    int digits = 0;
    while (digits < afterColon.size() && afterColon.at(digits) >= '0'
           && afterColon.at(digits) <= '9')
        ++digits;
    return digits <= 5 && digits < afterColon.size()
        && QByteArray("/?#").contains(afterColon.at(digits));
}

// Whether the colon of a password is there, and no @ that could be the end of it, in what is still an address.
bool hasUser(const QByteArray &bytes)
{
    for (const char *user : { "usr:", "me:" }) {
        const int at = bytes.indexOf(user);
        const QByteArray rest = bytes.mid(at + int(std::strlen(user)));
        const int query = rest.indexOf("?a=");
        const QByteArray beforeQuery = query < 0 ? rest : rest.left(query);
        if (at >= 0 && !isPortAndPath(rest) && countOfSigns(beforeQuery) == 0)
            return bytes.contains("://") || bytes.contains("HttpProxy");
    }
    return false;
}

// Whether anything tells that the text before the @ is more than the name of a file such as "me@home.js".
// "http://me.abc/d@e" is a host and a path.
bool looksLikeAddress(const QByteArray &bytes)
{
    if (bytes.contains("usr:") || bytes.contains("me:"))
        return true;
    const bool isProxy = SecretFiles::mistakesIn(lettersOf(bytes), "httpproxy") <= 2;
    const bool hasHost = bytes.contains("me.") && !isProxy;
    return isProxy || (!hasHost && (bytes.contains("//") || bytes.contains(":/")));
}

// Only the last @ ends a password. Where that is gone, and another one is within, what follows it looks
// like a host.
bool endsAtLastSign(const SecretFile &file)
{
    const int sign = qMax(file.bytes.lastIndexOf('@'), file.bytes.lastIndexOf("\\u0040"));
    const QByteArray rest = file.bytes.mid(sign);
    for (int i = 0; i + 5 <= file.secret.size(); ++i) {
        if (rest.contains(file.secret.mid(i, 5)))
            return false;
    }
    return sign >= 0;
}

// Where three letters of its key are wrong, nobody can know a secret. A password needs both marks around
// it, or the @ and one of what comes before a user: a colon, slashes or the key of a proxy.
bool isRecognizable(const SecretFile &file, const QByteArray &sound, const Place &place)
{
    if (place.isInAddress)
        return (countOfSigns(file.bytes) >= countOfSigns(sound) && endsAtLastSign(file)
                && looksLikeAddress(file.bytes))
            || (hasUser(file.bytes) && countOfSigns(file.secret) == 0);
    const QByteArray letters = lettersOf(file.bytes);
    return SecretFiles::mistakesIn(letters, "passphrase") <= 2
        || SecretFiles::mistakesIn(letters, "password") <= 1
        || (place.belongsToCertificate && SecretFiles::mistakesIn(letters, "certificate") <= 2);
}

} // namespace

int SecretFiles::mistakesIn(const QByteArray &letters, const QByteArray &name)
{
    std::vector<int> row(size_t(name.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    int fewest = name.size();
    for (const char letter : letters) {
        int diagonal = row[0];
        for (size_t i = 1; i < row.size(); ++i) {
            const int changed = diagonal + (name.at(int(i) - 1) != letter);
            diagonal = row[i];
            row[i] = std::min(changed, std::min(row[i], row[i - 1]) + 1);
        }
        fewest = std::min(fewest, row.back());
    }
    return fewest;
}

QByteArray SecretFiles::secretFor(bool isInAddress)
{
    return isInAddress ? oneOf(passwords) : oneOf(phrases);
}

SecretFile SecretFiles::next()
{
    const Place &place = oneOf(places);
    SecretFile file;
    file.secret = secretFor(place.isInAddress);
    file.name = place.name;
    const QByteArray text = QByteArray(place.text).replace('%', file.secret);
    const QByteArray other = "\"UseDiskCache\": true";
    const QByteArray path = "\"PrivateKey\": \"a.key\"";
    file.bytes = oneOf(layouts);
    file.bytes.replace('~', place.belongsToCertificate ? text : path);
    file.bytes.replace('^', place.belongsToCertificate ? other : text);
    const QByteArray sound = file.bytes;
    do
        file.bytes = broken(sound, file.secret);
    while (!isRecognizable(file, sound, place));
    return file;
}

// Nearly all mistakes are in the line of the secret or in one next to it.
QByteArray SecretFiles::broken(QByteArray bytes, const QByteArray &secret)
{
    const int mistakes = below(8) == 0 ? 0 : 1 + below(3);
    for (int i = 0; i < mistakes; ++i) {
        int at = bytes.indexOf(secret);
        if (at < 0)
            at = bytes.size() / 2;
        const int reach = 1 + below(70);
        const int begin = qMax(0, at - reach);
        const int end = qMin(bytes.size(), at + secret.size() + 1 + below(40));
        breakOnce(bytes, begin, end);
    }
    return bytes;
}

void SecretFiles::breakOnce(QByteArray &bytes, int begin, int end)
{
    if (begin >= end)
        return;
    const int at = begin + below(end - begin);
    switch (below(4)) {
    case 0:
        bytes.remove(at, 1);
        break;
    case 1:
        bytes.insert(at, oneOf(insertions));
        break;
    case 2:
        bytes.replace(at, 1, oneOf(insertions));
        break;
    default:
        bytes.remove(at, 1 + below(3));
        break;
    }
}
