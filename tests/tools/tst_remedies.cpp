// SPDX-License-Identifier: MIT
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"

#include "tests/tools/mistakes.h"
#include "tests/tools/wrongbytes.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <QDir>

#include <algorithm>

/// What is said about wrong values, and that whoever does what a finding proposes is rid of it.
class tst_Remedies : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void wrongValuesHaveTheirRemedy_data();
    void wrongValuesHaveTheirRemedy();
    void rightValuesGiveNothing_data();
    void rightValuesGiveNothing();
    void missingKeysHaveTheirRemedy_data();
    void missingKeysHaveTheirRemedy();
    void passPhrasesThatAreNoStringsAreToldAsThat_data();
    void passPhrasesThatAreNoStringsAreToldAsThat();
    void tagsAreCompared_data();
    void tagsAreCompared();
    void proposalsTakeTheirFindingAway_data();
    void proposalsTakeTheirFindingAway();
    void proposalsInPlantedMistakesTakeThemAway();
    void proposalsForOneWrongByteTakeItsFindingAway();
    void proposalsForAnyValueTakeTheirFindingAway_data();
    void proposalsForAnyValueTakeTheirFindingAway();

private:
    std::unique_ptr<Analysis> analyseHere(const QByteArray &bytes) const
    {
        return analyse(QLatin1String("test"), bytes, m_folder.path());
    }
    void tryProposals(const QByteArray &bytes, int *tried) const;

    TemporaryDir m_folder;
};

namespace {

const char bad[] = "cannot be used: ";

// Each line is a value, of every kind and with what is mistyped in practice.
const char anyValues[] = R"lines(null
true
false
0
1
-1
7
50
100
255
9222
65536
1.5
-0.5
1e3
4294967295
9007199254740993
{ }
[ ]
[ 1 ]
[ "x" ]
{ "Tag": "x" }
{ "Domain": "x.example" }
{ "Path": "device.pem" }
[ { } ]
[ { "Domain": 1 } ]
[ { "Tag": 1 } ]
""
" "
"x"
"x "
" x"
"true"
"yes"
"OFF"
"1"
"1.0"
"1,5"
"007"
"125"
"150%"
"-1"
"NaN"
"0x10"
"9222 "
"htps://x/"
" https:/x"
"https//x/"
"www.x.example"
"http:\\\\x\\y"
"https://fe80::1/"
"http://me:a/b@x/"
"http://http://x/"
"//x/"
"file://x"
"file:x"
"x:99999"
"x:y:z"
"https://h"
"socks5://h "
"*.x.example"
"x/y"
"x:1/y"
"device.pme"
"pages/menu.htm"
"scripts/Portal.js"
"C:\\tv\\new"
"C:\tv\new"
"C:\app\tv"
"a\\sb"
"a\sb"
"\u12"
"\u12zz"
"a\u0001b"
"a\tb\\"
"a\nb"
"a\r\nb"
"~/x"
"alert(1)")lines";

QByteArray fileWith(const QByteArray &application)
{
    return "{ \"Global\": { \"Version\": 1 }, \"Applications\": [\n{ " + application + " } ] }";
}

// An application with that value, and what else it needs so that nothing but the value is wrong.
QByteArray fileWithValue(const Property &property, const QByteArray &value)
{
    const QByteArray member = QByteArray("\"") + property.key + "\": " + value;
    QByteArray application = "\"Tag\": \"tv\", \"Url\": \"about:blank\", ";
    if (qstrcmp(property.key, "Tag") == 0)
        application = "\"Url\": \"about:blank\", ";
    else if (qstrcmp(property.key, "Url") == 0)
        application = "\"Tag\": \"tv\", ";
    for (const QString &need : Properties::needed(property).mid(0, 1))
        application += '"' + need.toLatin1() + "\": true, ";
    switch (property.section) {
    case Section::Application:
        return fileWith(application + member);
    case Section::Certificate:
        return fileWith(application + "\"Certificate\": { " + member + " }");
    case Section::Domain:
        return fileWith(application + "\"GrantBroadcastAccessRightDomains\": [ { " + member
                        + " } ]");
    case Section::Global:
        if (qstrcmp(property.key, "Version") == 0)
            return "{ \"Global\": { " + member + " }, \"Applications\": [ { " + application
                + "\"Scale\": 1 } ] }";
        return "{ \"Global\": { \"Version\": 1, " + member + " }, \"Applications\": [ { "
            + application + "\"Scale\": 1 } ] }";
    case Section::Document:
        break;
    }
    if (qstrcmp(property.key, "Global") == 0)
        return "{ " + member + ", \"Applications\": [ { " + application + "\"Scale\": 1 } ] }";
    return "{ \"Global\": { \"Version\": 1 }, " + member + " }";
}

QByteArray describe(const Finding &finding)
{
    QByteArray text = QByteArray(finding.rule) + ": " + finding.text.toUtf8();
    if (!finding.hint.isEmpty())
        text += " (" + finding.hint.toUtf8() + ')';
    return text;
}

QByteArray describe(const Analysis &analysis)
{
    QByteArray text;
    for (const Finding &finding : analysis.findings.all())
        text += describe(finding) + '\n';
    return text;
}

int countOf(const Analysis &analysis, const Finding &finding)
{
    int count = 0;
    for (const Finding &other : analysis.findings.all())
        count += qstrcmp(other.rule, finding.rule) == 0 && other.text == finding.text;
    return count;
}

// A hint that says what to write, and no more than that, must be one that can be done.
bool isProposal(const Finding &finding)
{
    const char *const beginnings[] = { "write ", "did you mean", "remove it",  "put it in",
                                       "add \"", "use the",      "replace it", "save it as UTF-8" };
    const char *const choices[] = { "write true or false", "write a number, or remove the key" };
    const auto begins = [&](const char *text) {
        return finding.hint.startsWith(QLatin1String(text));
    };
    return std::any_of(std::begin(beginnings), std::end(beginnings), begins)
        && std::none_of(std::begin(choices), std::end(choices), begins);
}

void addValueColumns()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("expected");
}

void row(const char *key, const QByteArray &value, const QByteArray &expected = QByteArray())
{
    QTest::newRow(QByteArray(key) + ' ' + value) << QByteArray(key) << value << expected;
}

bool hasSyntaxError(const Analysis &analysis)
{
    const std::vector<Finding> &all = analysis.findings.all();
    return std::any_of(all.begin(), all.end(),
                       [](const Finding &finding) { return Rules::isSyntaxError(finding.rule); });
}

} // namespace

void tst_Remedies::initTestCase()
{
    const QDir samples(QLatin1String(SOURCE_FOLDER "/tools/nuv-apps-config/samples/certificates"));
    QVERIFY(QDir(m_folder.path()).mkdir(QLatin1String("certificates")));
    for (const QString &name : samples.entryList(QDir::Files)) {
        const QString targets[] = { m_folder.filePath(name),
                                    m_folder.filePath(QLatin1String("certificates/") + name) };
        for (const QString &target : targets) {
            QVERIFY(QFile::copy(samples.filePath(name), target));
            QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner));
        }
    }
    QFile certificate(samples.filePath(QLatin1String("device.pem")));
    QVERIFY(certificate.open(QIODevice::ReadOnly));
    QByteArrayList lines = certificate.readAll().trimmed().split('\n');
    m_folder.write(QLatin1String("certificates/device.der"),
                   QByteArray::fromBase64(lines.mid(1, lines.size() - 2).join()));
    QVERIFY(QDir(m_folder.path()).mkpath(QLatin1String("scripts")));
    QVERIFY(QDir(m_folder.path()).mkpath(QLatin1String("pages")));
    m_folder.write(QLatin1String("scripts/portal.js"), "1");
    m_folder.write(QLatin1String("pages/menu.html"), "<p>");
}

void tst_Remedies::wrongValuesHaveTheirRemedy_data()
{
    addValueColumns();
    const auto proxy = [](const char *value, const QByteArray &what) {
        row("HttpProxy", value, "unusable-proxy: \"HttpProxy\" " + QByteArray(bad) + what);
    };
    proxy("\"proxy.example\"", "a port is missing (did you mean \"proxy.example:8080\"?)");
    proxy("\"proxy.example:99999\"", "the port is not a number from 1 to 65535");
    proxy("\"https://h:3128\"", "a proxy is reached over plain http (did you mean \"h:3128\"?)");
    proxy("\"\"", "it is empty (for instance \"proxy.example:8080\", or remove the key)");
    proxy("\"h:1 \"", "there is a blank around the address (did you mean \"h:1\"?)");

    row("HttpReferrer", "\"portal.example/\"",
        "unusable-address: \"HttpReferrer\" cannot be used: it does not begin with http:// or "
        "https:// (did you mean \"https://portal.example/\"?)");

    const auto script = [](const char *value, const QByteArray &what) {
        row("UserScript", value, "missing-file: " + what);
    };
    const QByteArray instance = " (for instance \"scripts/tv.js\", or remove the key)";
    script("\"scripts/protal.js\"",
           "there is no scripts/protal.js next to the configuration file (scripts/portal.js is "
           "there)");
    script("\"script/portal.js\"",
           "there is no script/portal.js next to the configuration file (scripts/portal.js is "
           "there)");
    script("\"scripts/portal.js/x.js\"",
           "there is no scripts/portal.js/x.js next to the configuration file");
    script("\"none.js\"", "there is no none.js next to the configuration file");
    script("\"scripts\"", "\"UserScript\" cannot be used: it is a directory" + instance);
    script("\"alert(1)\"",
           "\"UserScript\" cannot be used: it is a script, not the path of a file" + instance);
    script("\"~/portal.js\"",
           "\"UserScript\" cannot be used: ~ and $ mean something to a shell only: the path is "
           "written out"
               + instance);
    script("\"$HOME/portal.js\"",
           "\"UserScript\" cannot be used: ~ and $ mean something to a shell only: the path is "
           "written out"
               + instance);
    script("\"\"", "\"UserScript\" cannot be used: it is empty" + instance);

    row("Path", "\"certificates/devize.pem\"",
        "certificate-missing: there is no file " + m_folder.path().toUtf8()
            + "/certificates/devize.pem (certificates/device.pem is there)");

    row("Path", "\"certificates/device.der\"",
        "certificate-invalid: the file holds no certificate in PEM form (it is in DER form: "
        "openssl "
        "x509 -inform der -out FILE.pem)");

    const auto domain = [](const char *value, const QByteArray &what) {
        row("Domain", value, "unusable-domain: \"Domain\" " + QByteArray(bad) + what);
    };
    const QByteArray alone = "the domain alone belongs here";
    const QByteArray meant = " (did you mean \"tv.example\"?)";
    domain("\"https://tv.example\"", alone + ", without a scheme" + meant);
    domain("\"tv.example/tv\"", alone + ", without a path" + meant);
    domain("\"tv.example:80\"", alone + ", without a port" + meant);
    domain("\"*.tv.example\"", alone + ": what is below it is granted as well" + meant);
    domain("\"tv.example \"", "there is a blank around the domain" + meant);
    domain("\"\"", "it is empty (for instance \"broadcaster.example\")");

    const auto url = [](const char *value, const QByteArray &what) {
        row("Url", value, "unusable-address: \"Url\" " + QByteArray(bad) + what);
    };
    url("\"\"", "it is empty (for instance \"http://tv.example/\")");
    url("\"htps://x/\"", "nothing loads addresses of this scheme (did you mean \"https://x/\"?)");
    url("\"https//x/\"", "a colon is missing after the scheme (did you mean \"https://x/\"?)");
    url("\"https:/x\"", "two slashes must follow the colon (did you mean \"https://x\"?)");
    url("\" http://x/\"", "there is a blank before the address (did you mean \"http://x/\"?)");
    url("\"https:///i\"", "the host is missing (did you mean \"https://i\"?)");
    url("\"https://[fe80::1/\"",
        "the ] after the host is missing (did you mean \"https://[fe80::1]/\"?)");
    url("\"http://x:99999/\"", "the port is not a number from 1 to 65535");
    url("\"www.x.example/y\"", "the scheme is missing (did you mean \"https://www.x.example/y\"?)");
    url("\"www.x/y\"", "the scheme is missing (did you mean \"https://www.x/y\"?)");
    url("\"localhost:8080/\"", "the scheme is missing (did you mean \"http://localhost:8080/\"?)");
    row("Url", "\"pages/menue.html?a=1\"",
        "missing-file: there is no pages/menue.html?a=1 next to the configuration file "
        "(pages/menu.html?a=1 is there)");
    row("Url", "\"pages\"", "missing-file: \"Url\" cannot be used: it is a directory");
    row("Url", "\"http://x/ \"",
        "blank-at-edge: \"Url\" begins or ends with a blank (did you mean \"http://x/\"?)");
    row("Url", "null", "no-address: an application shows nothing while its \"Url\" is null");

    row("UserAgent", "\"Box\\r\\nX: y\"",
        "unusable-user-agent: \"UserAgent\" cannot be used: a line break or another control "
        "character ends the header in each request (did you mean \"Box X: y\"?)");
    row("Url", "\"C:\\tv\\new\\boot.html\"",
        "control-character: \\t is a tab, \\n is a line feed, \\b is a backspace here (a backslash "
        "is written \\\\)");
    row("Tag", "\"a\\u0007\"",
        "control-character: \\u0007 is a control character here (a backslash is written \\\\)");
    row("Tag", "\"a\\u007f\"",
        "control-character: \\u007f is a control character here (a backslash is written \\\\)");
    row("Tag", "\"tv \"",
        "blank-at-edge: \"Tag\" begins or ends with a blank (did you mean \"tv\"?)");
    row("Tag", "\" \"", "blank-at-edge: \"Tag\" begins or ends with a blank");
    row("Tag", "null",
        "no-tag: an application is skipped without a tag that is a string (write a name of its "
        "own, "
        "as in \"application-1\")");

    const auto range = [](const char *key, const char *value, const char *what) {
        row(key, value, QByteArray("out-of-range: \"") + key + "\" must be " + what);
    };
    range("WindowOpacity", "1.5", "from 0 to 1");
    range("WindowOpacity", "50", "from 0 to 1 (it is no percentage: write 0.5)");
    range("WindowOpacity", "100", "from 0 to 1 (it is no percentage: write 1)");
    range("WindowOpacity", "150", "from 0 to 1");
    range("WindowOpacity", "255", "from 0 to 1");
    range("WindowOpacity", "-1", "from 0 to 1");
    range("WindowOpacity", "05", "from 0 to 1 (the point is missing: write 0.5)");
    range("WindowOpacity", "0100", "from 0 to 1 (the point is missing: write 0.100)");
    range("Scale", "015", "from 0.1 to 10 (the point is missing: write 0.15)");
    row("Scale", "05", "leading-zero: a number that begins with 0; the library reads 5 (write 5)");
    range("Scale", "11", "from 0.1 to 10");
    range("Scale", "125", "from 0.1 to 10 (it is no percentage: write 1.25)");
    range("Scale", "1000", "from 0.1 to 10 (it is no percentage: write 10)");
    range("Scale", "1001", "from 0.1 to 10");
    range("Scale", "0", "from 0.1 to 10");
    range("Scale", "0e1", "from 0.1 to 10");
    row("Scale", "0012",
        "leading-zero: a number that begins with 0; the library reads 12 (write 12)\n"
        "out-of-range: \"Scale\" must be from 0.1 to 10");
    row("RemoteInspectorPort", "65536",
        "port-out-of-range: there is no such port: ports go from 1 to 65535, and 0 is none");
    row("RemoteInspectorPort", "-1",
        "port-means-unset: this port means \"not set\" (leave the key out)");

    const auto kind = [](const char *key, const char *value, const QByteArray &what) {
        row(key, value, QByteArray("wrong-kind: \"") + key + "\" must be " + what);
    };
    kind("UseWebGL", "\"true\"", "true or false, not a string (write true without quotes)");
    kind("UseWebGL", "\"Yes\"", "true or false, not a string (write true)");
    kind("UseWebGL", "0", "true or false, not an integer (write false)");
    kind("UseWebGL", "7", "true or false, not an integer (write true or false)");
    kind("Scale", "\"1.5\"", "a number, not a string (write 1.5 without quotes)");
    kind("Scale", "\"1,5\"", "a number, not a string (write 1.5)");
    kind("Scale", "\"0.5\"", "a number, not a string (write 0.5 without quotes)");
    kind("WindowOpacity", "\"0\"", "a number, not a string (write 0 without quotes)");
    kind("Scale", "\"05\"", "a number, not a string (for instance 1.5)");
    kind("Scale", "\"1.5,0\"", "a number, not a string (for instance 1.5)");
    kind("Scale", "\"15\"", "a number, not a string (for instance 1.5)");
    kind("Scale", "true", "a number, not true (for instance 1.5)");
    kind("UserAgent", "10", "a string, not an integer (put it in quotes)");
    kind("HttpProxy", "8080",
         "a string with a host and a port, not an integer (for instance \"proxy.example:8080\")");
    kind("Certificate", "\"device.pem\"",
         "an object, not a string (write it as { \"Path\": ... })");
    kind("GrantBroadcastAccessRightDomains", "\"tv.example\"",
         "an array of objects, not a string (write [ { \"Domain\": \"tv.example\" } ])");
    kind("GrantBroadcastAccessRightDomains", "{ \"Domain\": \"tv.example\" }",
         "an array of objects, not an object (put it in [ ])");
    row("GrantBroadcastAccessRightDomains", "[ \"tv.example\" ]",
        "plain-domain: each domain is an object, not a string; of this element nothing is used "
        "(write "
        "{ \"Domain\": \"tv.example\" })");
    row("GrantBroadcastAccessRightDomains", "[ [ \"a\" ] ]",
        "plain-domain: each domain is an object, not an array; of this element nothing is used "
        "(write it as in { \"Domain\": \"tv.example\" })");
    row("GrantBroadcastAccessRightDomains", "[ [ { \"Domain\": \"tv.example\" } ] ]",
        "plain-domain: each domain is an object, not an array; of this element nothing is used "
        "(remove it and its closing bracket)");
    kind("Url", "[ \"about:blank\" ]",
         "a string with an address, not an array (for instance \"http://tv.example/\")");
    kind("UserAgent", "[ \"Box\" ]",
         "a string, not an array (for instance \"Mozilla/5.0 (Linux; television) Example/1.0\")");
    row("Tag", "[ \"tv\" ]",
        "no-tag: an application is skipped without a tag that is a string (write a name of its "
        "own, "
        "as in \"application-1\")");
    kind("Global", "[ \"Version\" ]", "an object, not an array");
    const QByteArray application = "wrong-kind: an application is an object, not ";
    const QByteArray first = " (for instance { \"Tag\": \"tv\", \"Url\": \"http://tv.example/\" })";
    row("Applications", "[ [ \"a\" ] ]", application + "an array" + first);
    row("Applications", "[ \"a\" ]", application + "a string" + first);
    row("Applications", "[ [ { \"Tag\": \"a\", \"Url\": \"about:blank\" } ] ]",
        application + "an array (remove it and its closing bracket)");
    row("Version", "2",
        "unusable-version: this version does not load any application (versions from 1 up to, but "
        "not including, 2 pass: write 1)");
    row("Version", "false",
        "unusable-version: this version does not load any application (versions from 1 up to, but "
        "not including, 2 pass: write 1)");
    row("Version", "1.99999999",
        "unusable-version: this version is rounded to 2, and does not load any application "
        "(versions from 1 up to, but not including, 2 pass: write 1)");
    row("Version", "1.0.0",
        "unusable-version: this version does not load any application (versions from 1 up to, but "
        "not including, 2 pass: write 1)");
    row("UseWebGL", "null",
        "null-value: \"UseWebGL\" is null, which counts as not configured (remove it, or write a "
        "value)");
    row("Tag", "\"\"",
        "empty-tag: the tag is empty (write a name of its own, as in \"application-1\")");
    row("Scale", "1.5.0",
        "odd-number: this is not a number; the library reads 0 (one number belongs here; put it in "
        "quotes if a string is meant)");
    row("Version", "null",
        "no-version: \"Version\" is null, so no application is loaded (write 1)");
}

void tst_Remedies::wrongValuesHaveTheirRemedy()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, expected);
    const Property *property = Properties::findAnywhere(QString::fromLatin1(key));
    QVERIFY(property);
    const QByteArray bytes = fileWithValue(*property, value);
    const std::unique_ptr<Analysis> analysis = analyseHere(bytes);
    QCOMPARE(describe(*analysis), expected + '\n');
    const Finding &finding = analysis->findings.all().front();
    const int begin = bytes.lastIndexOf(value);
    QVERIFY(finding.offset >= begin && finding.offset + finding.length <= begin + value.size());

    int tried = 0;
    tryProposals(bytes, &tried);
    QCOMPARE(tried, finding.edit.isNothing() ? 0 : 1);
}

void tst_Remedies::rightValuesGiveNothing_data()
{
    addValueColumns();
    const char *const urls[] = {
        "http://tv.example/",
        "HTTPS://me:pw@tv.example:8443/a b?c#d",
        "http://localhost:8000/",
        "http://[fe80::1]/",
        "http://10.0.0.1",
        "about:blank",
        "data:text/html,<p>x",
        "qrc:/menu.html",
        "pages/menu.html",
        "./pages/menu.html?a=b#c",
        "pages/../pages/menu.html",
        "ftp://tv.example/menu.html",
        "/usr" // what it is on the device nobody knows here
    };
    for (const char *url : urls)
        row("Url", QByteArray("\"") + url + '"');
    const char *const proxies[] = { "proxy:1", "http://me:p/w@proxy.example:65535/", "[::1]:8080",
                                    "me:p w@10.0.0.1:3128" };
    for (const char *proxy : proxies)
        row("HttpProxy", QByteArray("\"") + proxy + '"');
    for (const char *script : { "scripts/portal.js", "./scripts/portal.js" })
        row("UserScript", QByteArray("\"") + script + '"');
    for (const char *name :
         { "tv.example", "TV.example.", "localhost", "10.0.0.1", "::1", "[::1]" })
        row("Domain", QByteArray("\"") + name + '"');
    for (const char *name : { "", "Box/1.0 (Linux; television)", "b\\u00fcchse" })
        row("UserAgent", QByteArray("\"") + name + '"');
    for (const char *port : { "0", "1", "9222", "65535", "9222.0" })
        row("RemoteInspectorPort", port);
    for (const char *factor : { "0.1", "1", "1.5", "10" })
        row("Scale", factor);
    for (const char *fraction : { "0", "0.5", "1" })
        row("WindowOpacity", fraction);
    for (const char *version : { "1", "1.5", "\"1\"", "0.99999999" })
        row("Version", version);
    row("Tag", "\"T V/7\\\\x\"");
}

void tst_Remedies::rightValuesGiveNothing()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    const Property *property = Properties::findAnywhere(QString::fromLatin1(key));
    QVERIFY(property);
    QCOMPARE(describe(*analyseHere(fileWithValue(*property, value))), QByteArray());
}

void tst_Remedies::missingKeysHaveTheirRemedy_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray tv = "{ \"Tag\": \"tv\", \"Url\": \"about:blank\" }";
    QTest::newRow("no address") << fileWith("\"Tag\": \"tv\"")
                                << QByteArray("no-address: an application without \"Url\" shows "
                                              "nothing\n");
    QTest::newRow("a misspelt address")
        << fileWith("\"Tag\": \"tv\", \"URL\": \"about:blank\"")
        << QByteArray("unknown-key: Applications does not know the key \"URL\" (did you mean "
                      "\"Url\"? Keys are compared with their case)\n");
    QTest::newRow("no tag") << fileWith("\"Url\": \"about:blank\"")
                            << QByteArray("no-tag: an application without a tag is skipped (add a "
                                          "name of its own, as in \"Tag\": \"application-1\")\n");
    QTest::newRow("a misspelt tag")
        << fileWith("\"tag\": \"tv\", \"Url\": \"about:blank\"")
        << QByteArray("unknown-key: Applications does not know the key \"tag\" (did you mean "
                      "\"Tag\"? Keys are compared with their case)\n");
    QTest::newRow("a key in two spellings")
        << fileWith("\"Tag\": \"tv\", \"Url\": \"about:blank\", \"url\": \"x\"")
        << QByteArray(
               "unknown-key: Applications does not know the key \"url\" (\"Url\" is there as "
               "well; keys are compared with their case)\n");
    QTest::newRow("no version") << "{ \"Global\": { }, \"Applications\": [ " + tv + " ] }"
                                << QByteArray(
                                       "no-version: \"Version\" is missing in \"Global\", so "
                                       "no application is loaded (add \"Version\": 1)\n");
    QTest::newRow("no global") << "{ \"Applications\": [ " + tv + " ] }"
                               << QByteArray(
                                      "no-version: \"Global\" with the version is missing, so "
                                      "no application is loaded (add \"Global\": { "
                                      "\"Version\": 1 })\n");
    const QByteArray inGlobal =
        "no-version: \"Version\" is missing in \"Global\", so no application "
        "is loaded ";
    QTest::newRow("a misspelt version")
        << "{ \"Global\": { \"version\": 1 }, \"Applications\": [ " + tv + " ] }"
        << inGlobal + "(did you mean \"Version\"? Keys are compared with their case)\n";
    QTest::newRow("a version outside of global")
        << "{ \"Version\": 1, \"Global\": { }, \"Applications\": [ " + tv + " ] }"
        << inGlobal + "(move it into \"Global\")\n";
    QTest::newRow("a misspelt global")
        << "{ \"Globals\": { \"Version\": 1 }, \"Applications\": [ " + tv + " ] }"
        << QByteArray("no-version: \"Global\" with the version is missing, so no application is "
                      "loaded (did you mean \"Global\"?)\n");
    QTest::newRow("a misspelt global without quotes")
        << "{ Globals: { \"Version\": 1 }, \"Applications\": [ " + tv + " ] }"
        << QByteArray("unquoted-key: a key without quotes (write it in double quotes)\n");
    QTest::newRow("misspelt applications")
        << "{ \"Global\": { \"Version\": 1 }, \"applications\": [ " + tv + " ] }"
        << QByteArray("no-applications: there are no applications (did you mean \"Applications\"? "
                      "Keys are compared with their case)\n");
    QTest::newRow("applications in global")
        << "{ \"Global\": { \"Version\": 1, \"Applications\": [ " + tv + " ] } }"
        << QByteArray(
               "no-applications: there are no applications (its place is next to \"Global\", "
               "not in it)\n");
    QTest::newRow("a misspelt domain")
        << fileWith("\"Tag\": \"tv\", \"Url\": \"about:blank\", "
                    "\"GrantBroadcastAccessRightDomains\": [ { \"domain\": \"tv.example\" } ]")
        << QByteArray("no-domain: an element without \"Domain\" grants nothing (did you mean "
                      "\"Domain\"? Keys are compared with their case)\n");
    QTest::newRow("no domain")
        << fileWith("\"Tag\": \"tv\", \"Url\": \"about:blank\", "
                    "\"GrantBroadcastAccessRightDomains\": [ { } ]")
        << QByteArray("no-domain: an element without \"Domain\" grants nothing (for instance { "
                      "\"Domain\": \"tv.example\" }, or remove it)\n");
    QTest::newRow("no applications")
        << QByteArray("{ \"Global\": { \"Version\": 1 } }")
        << QByteArray("no-applications: there are no applications (add \"Applications\": [ { "
                      "\"Tag\": \"tv\", \"Url\": \"http://tv.example/\" } ])\n");
}

void tst_Remedies::missingKeysHaveTheirRemedy()
{
    QFETCH(QByteArray, bytes);
    const std::unique_ptr<Analysis> analysis = analyseHere(bytes);
    QTEST(describe(*analysis), "expected");
    int tried = 0;
    tryProposals(bytes, &tried);
    QCOMPARE(tried, analysis->findings.all().front().edit.isNothing() ? 0 : 1);
}

void tst_Remedies::passPhrasesThatAreNoStringsAreToldAsThat_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("passPhrase");
    QTest::addColumn<QByteArray>("expected");
    const struct {
        const char *value;
        const char *what;
    } values[] = { { "1234", "an integer; the launcher ignores it (put it in quotes)" },
                   { "1.5", "a number; the launcher ignores it (put it in quotes)" },
                   { "true", "true; the launcher ignores it (put it in quotes)" },
                   { "[ \"a\" ]", "an array; the launcher ignores it" },
                   { "{ \"a\": 1 }", "an object; the launcher ignores it" } };
    for (const auto &each : values) {
        for (const char *key : { "device.key", "encrypted.key" })
            QTest::newRow(QByteArray(each.value) + " and " + key)
                << QByteArray(key) << QByteArray(each.value)
                << QByteArray("wrong-kind: \"PassPhrase\" must be a string, not ") + each.what
                    + '\n';
    }
    const auto row = [](const char *key, const char *value, const char *expected) {
        QTest::newRow(QByteArray(value) + " and " + key)
            << QByteArray(key) << QByteArray(value) << QByteArray(expected);
    };
    row("device.key", "null",
        "null-value: \"PassPhrase\" is null, which counts as not configured (remove it, or write a "
        "value)\n");
    row("encrypted.key", "null",
        "wrong-pass-phrase: the private key is encrypted, and \"PassPhrase\" is null\n");
    row("encrypted.key", "\"wrong\"",
        "wrong-pass-phrase: the private key cannot be opened with this pass phrase\n");
    row("encrypted.key", "\"correct horse\"", "");
}

void tst_Remedies::passPhrasesThatAreNoStringsAreToldAsThat()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, passPhrase);
    const QByteArray bytes = fileWith("\"Tag\": \"tv\", \"Url\": \"about:blank\", \"Certificate\": "
                                      "{ \"Path\": \"device.pem\", \"PrivateKey\": \""
                                      + key + "\", \"PassPhrase\": " + passPhrase + " }");
    QTEST(describe(*analyseHere(bytes)), "expected");
}

void tst_Remedies::tagsAreCompared_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("different ones") << QByteArray("tv") << QByteArray("menu") << QByteArray();
    QTest::newRow("another case") << QByteArray("tv") << QByteArray("TV")
                                  << QByteArray("similar-tag: the tags \"tv\" and \"TV\" differ by "
                                                "case only (give one of the two another name)\n");
    QTest::newRow("the same") << QByteArray("tv") << QByteArray("tv")
                              << QByteArray(
                                     "duplicate-tag: another application has the tag \"tv\"; "
                                     "this one is skipped whole, with its 1 other key (give it "
                                     "another tag, or remove one of the two)\n");
}

void tst_Remedies::tagsAreCompared()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    const QByteArray url = "\", \"Url\": \"about:blank\"";
    const QByteArray bytes =
        fileWith("\"Tag\": \"" + first + url + " }, { \"Tag\": \"" + second + url);
    QTEST(describe(*analyseHere(bytes)), "expected");
}

// Each proposal alone: what it was made for is found once less, and nothing more is wrong than before.
void tst_Remedies::tryProposals(const QByteArray &bytes, int *tried) const
{
    const std::unique_ptr<Analysis> before = analyseHere(bytes);
    for (const Finding &finding : before->findings.all()) {
        QVERIFY2(!isProposal(finding) || !finding.edit.isNothing(),
                 "a proposal that cannot be tried: " + describe(finding));
        if (finding.edit.isNothing())
            continue;
        ++*tried;
        const QByteArray changed = finding.edit.appliedTo(bytes);
        const std::unique_ptr<Analysis> after = analyseHere(changed);
        const QByteArray what =
            bytes + "\n" + describe(finding) + "\nbecomes\n" + changed + '\n' + describe(*after);
        QVERIFY2(countOf(*after, finding) < countOf(*before, finding), what);
        const bool mayUncover = Rules::isSyntaxError(finding.rule);
        QVERIFY2(mayUncover || after->findings.all().size() <= before->findings.all().size(), what);
        QVERIFY2(hasSyntaxError(*before) || !hasSyntaxError(*after), what);
    }
}

void tst_Remedies::proposalsTakeTheirFindingAway_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const Rule &rule : Rules::all())
        QTest::newRow(rule.id) << Rules::sample(rule);
}

void tst_Remedies::proposalsTakeTheirFindingAway()
{
    QFETCH(QByteArray, bytes);
    int tried = 0;
    tryProposals(bytes, &tried);
}

void tst_Remedies::proposalsInPlantedMistakesTakeThemAway()
{
    std::mt19937 engine(14);
    int tried = 0;
    for (const Mistakes::Kind &kind : Mistakes::syntaxKinds() + Mistakes::meaningKinds()) {
        for (const QByteArray &clean : Mistakes::configurations().mid(0, 3)) {
            Mistakes::Planted file = { clean, kind.rule, 0, false };
            if (kind.plant(&file, engine))
                tryProposals(file.bytes, &tried);
        }
    }
    QVERIFY2(tried > 40, QByteArray::number(tried));
}

void tst_Remedies::proposalsForOneWrongByteTakeItsFindingAway()
{
    int tried = 0;
    for (const WrongBytes::Layout &layout : WrongBytes::layouts()) {
        for (const WrongBytes::Slip &slip : WrongBytes::some(layout.bytes, 15, 150))
            tryProposals(slip.bytes, &tried);
    }
    QVERIFY2(tried > 100, QByteArray::number(tried));
}

void tst_Remedies::proposalsForAnyValueTakeTheirFindingAway_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(Properties::all().size()); ++i) {
        const Property &property = Properties::all()[size_t(i)];
        QTest::newRow(Properties::place(property).toLatin1()) << i;
    }
}

// Values of every kind, and those that are wrong in a way that is met in practice, under each key.
void tst_Remedies::proposalsForAnyValueTakeTheirFindingAway()
{
    QFETCH(int, index);
    const Property &property = Properties::all()[size_t(index)];
    int tried = 0;
    const QList<QByteArray> values = QByteArray(anyValues).split('\n')
        + QList<QByteArray> { "\"a\nb\"", "\"a\x01 b\"", "\"\xc3\xa4\"", "\"\xe4\"" };
    for (const QByteArray &value : values)
        tryProposals(fileWithValue(property, value), &tried);
    QVERIFY(tried > 0);
}

NUV_TEST_MAIN(tst_Remedies)
#include "tst_remedies.moc"
