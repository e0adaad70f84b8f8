// SPDX-License-Identifier: MIT
#include "tests/support/amount.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tests/tools/mistakes.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <unistd.h>

/// What check is asked to leave out, and where it looks for the files of the device.
class tst_CheckOptions : public QObject
{
    Q_OBJECT

private slots:
    void absolutePathsAreLookedUpBelowTheRoot_data();
    void absolutePathsAreLookedUpBelowTheRoot();
    void relativePathsFollowTheLinksOfTheDevice();
    void anIgnoredRuleFindsNothingAndNothingElseChanges();
    void aFileIgnoresARuleInOneObject_data();
    void aFileIgnoresARuleInOneObject();
    void whatIsIgnoredInVainIsSaid_data();
    void whatIsIgnoredInVainIsSaid();
    void aFileThatIgnoresARuleChangesNothingElse();
    void theExitStatusFollowsTheOptions_data();
    void theExitStatusFollowsTheOptions();
    void showListsTheMissingFiles();

private:
    ChildCall::Result call(const QStringList &arguments) const;

    TemporaryDir m_folder;
};

namespace {

QByteArray withUrl(const QByteArray &url)
{
    return "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": \"tv\", \"Url\": "
        + url + " } ] }\n";
}

QStringList described(const Analysis &analysis)
{
    QStringList lines;
    for (const Finding &finding : analysis.findings.all())
        lines.append(QLatin1String(finding.rule) + QLatin1String(": ") + finding.text);
    lines.sort();
    return lines;
}

QStringList rulesOf(const QByteArray &bytes)
{
    const auto analysis = analyse(QLatin1String("test"), bytes, QString(QLatin1String("/nowhere")));
    QStringList rules;
    for (const Finding &finding : analysis->findings.all())
        rules.append(QLatin1String(finding.rule));
    return rules;
}

QStringList without(const QStringList &lines, const QString &rule)
{
    QStringList left;
    for (const QString &line : lines) {
        if (!line.startsWith(rule + QLatin1String(": ")))
            left.append(line);
    }
    return left;
}

bool mayBeIgnored(const QByteArray &rule)
{
    return Rules::canBeIgnored(Rules::find(rule.constData()));
}

} // namespace

ChildCall::Result tst_CheckOptions::call(const QStringList &arguments) const
{
    return ChildCall::run([&] {
        Output output;
        return Program::run(QStringList(QLatin1String("nuv-apps-config")) + arguments, output);
    });
}

void tst_CheckOptions::absolutePathsAreLookedUpBelowTheRoot_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("expected");

    const QString root = m_folder.filePath(QLatin1String("device"));
    QVERIFY(QDir().mkpath(root + QLatin1String("/opt/tv")));
    QVERIFY(QDir().mkpath(root + QLatin1String("/home/pages")));
    m_folder.write(QLatin1String("device/opt/tv/index.html"), "<p>");
    m_folder.write(QLatin1String("outside.html"), "<p>");
    const auto link = [&](const char *target, const char *name) {
        const QByteArray path = QFile::encodeName(root) + name;
        QCOMPARE(::symlink(target, path.constData()), 0);
    };
    link("/opt", "/usr");
    link("tv/index.html", "/opt/start.html");
    link("/opt/../opt/circle", "/opt/circle");
    link("../../outside.html", "/opt/out.html");

    const QString there, missing = QLatin1String("missing-file");
    const auto row = [](const char *url, const QString &below, const QString &expected) {
        const QByteArray name = below.isEmpty() ? " without a root" : " with a root";
        QTest::newRow((url + name).constData()) << '"' + QByteArray(url) + '"' << below << expected;
    };
    row("/opt/tv/index.html", root, there);
    row("file:///opt/tv/index.html", root, there);
    row("/opt/tv/index.html?a=1#b", root, there);
    row("/opt/./tv/../tv/index.html", root, there);
    row("/../../opt/tv/index.html", root, there);
    row("/usr/tv/index.html", root, there);
    row("/opt/start.html", root, there);
    row("/opt/tv/none.html", root, missing);
    row("/usr/tv/none.html", root, missing);
    row("/opt/circle", root, missing);
    row("/opt/out.html", root, missing);
    row("/opt/tv", root, missing);
    row("/opt/tv/index.html/", root, there);
    row("/opt/tv/index.html", root + QLatin1Char('/'), there);
    row("/opt/tv/none.html", QLatin1String("/"), missing);
    row("/opt/tv/none.html", QString(), QLatin1String("missing-here"));
    row("file:///opt/tv/none.html", QString(), QLatin1String("missing-here"));
}

void tst_CheckOptions::absolutePathsAreLookedUpBelowTheRoot()
{
    QFETCH(QByteArray, url);
    QFETCH(QString, root);
    QFETCH(QString, expected);
    const auto analysis =
        analyse(QLatin1String("test"), withUrl(url), DeviceFiles(m_folder.path(), root));
    QString rules;
    for (const Finding &finding : analysis->findings.all())
        rules += QLatin1String(finding.rule);
    QCOMPARE(rules, expected);

    const QByteArray asScript = withUrl("\"http://tv.example/\", \"UserScript\": " + url);
    if (url.contains(':') || url.contains('?') || url.endsWith("/\""))
        return;
    const auto script =
        analyse(QLatin1String("test"), asScript, DeviceFiles(m_folder.path(), root));
    QCOMPARE(script->findings.has(expected.isEmpty() ? "missing-file" : expected.toLatin1()),
             !expected.isEmpty());

    const QByteArray asCertificate =
        withUrl("\"http://tv.example/\", \"Certificate\": { \"Path\": " + url + " }");
    const auto certificate =
        analyse(QLatin1String("test"), asCertificate, DeviceFiles(m_folder.path(), root));
    QCOMPARE(certificate->findings.has("missing-here"), expected == QLatin1String("missing-here"));
}

// A configuration below the root is on the device, where its links lead to files of the device.
void tst_CheckOptions::relativePathsFollowTheLinksOfTheDevice()
{
    const QString root = m_folder.filePath(QLatin1String("linked"));
    QVERIFY(QDir().mkpath(root + QLatin1String("/opt/none-here")));
    QVERIFY(QDir().mkpath(root + QLatin1String("/home")));
    m_folder.write(QLatin1String("linked/opt/none-here/index.html"), "<p>");
    m_folder.write(QLatin1String("next.html"), "<p>");
    QCOMPARE(::symlink("/opt/none-here/index.html",
                       QFile::encodeName(root + QLatin1String("/home/start.html")).constData()),
             0);
    const auto isFound = [&](const char *url, const QString &folder, const QString &below) {
        return analyse(QLatin1String("test"), withUrl(url), DeviceFiles(folder, below))
            ->findings.all()
            .empty();
    };
    const QString home = root + QLatin1String("/home");
    QVERIFY(isFound("\"start.html\"", home, root));
    QVERIFY(!isFound("\"start.html\"", home, QString()));
    QVERIFY(isFound("\"next.html\"", m_folder.path(), root));
}

void tst_CheckOptions::anIgnoredRuleFindsNothingAndNothingElseChanges()
{
    int tried = 0;
    for (const Mistakes::Kind &kind : Mistakes::syntaxKinds() + Mistakes::meaningKinds()) {
        std::mt19937 engine(uint(Amount::given("NUV_TEST_SEED", 1)));
        for (int i = 0; i < Amount::tried("NUV_TEST_FILES", 5); ++i) {
            Mistakes::Planted file;
            file.bytes = Mistakes::configurationOfRound(i);
            if (!kind.plant(&file, engine))
                continue;
            const auto before = analyse(QLatin1String("test"), file.bytes, m_folder.path());
            for (const Finding &finding : before->findings.all()) {
                const QString rule = QLatin1String(finding.rule);
                if (!mayBeIgnored(finding.rule))
                    continue;
                const auto after = analyse(QLatin1String("test"), file.bytes, m_folder.path(),
                                           ProgressSink(), QStringList(rule));
                QCOMPARE(described(*after), without(described(*before), rule));
                ++tried;
            }
        }
    }
    QVERIFY(tried > 50);
}

void tst_CheckOptions::aFileIgnoresARuleInOneObject_data()
{
    QTest::addColumn<QByteArray>("applications");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *applications, const char *expected) {
        QTest::newRow(name) << QByteArray(applications) << QString(QLatin1String(expected));
    };
    row("next to it", "{ \"Tag\": \"a\", \"_comment check\": \"ignore no-address\" }", "");
    row("after it",
        "{ \"Tag\": \"a\", \"Scale\": null, \"_comment check\": \"ignore null-value, "
        "no-address\" }",
        "");
    row("with a reason",
        "{ \"Tag\": \"a\", \"_comment check\": \"ignore no-address: it is shown: never\" }", "");
    row("a second one",
        "{ \"Tag\": \"a\", \"X\": 1, \"_comment check 1\": \"ignore no-address\", "
        "\"_comment check 2\": \"ignore unknown-key\" }",
        "");
    row("above it",
        "{ \"Tag\": \"a\", \"Url\": \"http://a/\", \"_comment check\": \"ignore unknown-key\", "
        "\"Certificate\": { \"_Path\": 1 } }",
        "");
    row("not in its neighbour",
        "{ \"Tag\": \"a\", \"_comment check\": \"ignore no-address\" }, { \"Tag\": \"b\" }",
        "no-address");
    row("not in the one before",
        "{ \"Tag\": \"b\" }, { \"Tag\": \"a\", \"_comment check\": \"ignore no-address\" }",
        "no-address");
    row("what is not there",
        "{ \"Tag\": \"a\", \"Url\": \"http://a/\", \"_comment check\": \"ignore no-address\" }",
        "unused-ignore");
    row("a part of it is not there",
        "{ \"Tag\": \"a\", \"_comment check\": \"ignore no-address, two-names\" }",
        "unused-ignore");
    row("a rule in another spelling",
        "{ \"Tag\": \"a\", \"_comment check\": \"ignore no-adress\" }", "no-address unused-ignore");
    row("an error of the syntax",
        "{ \"Tag\": \"a\", \"Url\": \"http://a/\", \"_comment check\": \"ignore comment\" }",
        "unused-ignore");
    row("a remark", "{ \"Tag\": \"a\", \"Url\": \"http://a/\", \"_comment check\": \"the port\" }",
        "");
    row("another key", "{ \"Tag\": \"a\", \"_comment\": \"ignore no-address\" }", "no-address");
    row("no string", "{ \"Tag\": \"a\", \"Url\": \"http://a/\", \"_comment check\": [ 1 ] }", "");
}

void tst_CheckOptions::aFileIgnoresARuleInOneObject()
{
    QFETCH(QByteArray, applications);
    const QByteArray bytes =
        "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ " + applications + " ] }";
    QTEST(rulesOf(bytes).join(QLatin1Char(' ')), "expected");
}

void tst_CheckOptions::whatIsIgnoredInVainIsSaid_data()
{
    QTest::addColumn<QByteArray>("remark");
    QTest::addColumn<QString>("said");

    const auto row = [](const char *name, const char *remark, const char *said) {
        QTest::newRow(name) << QByteArray(remark) << QString(QLatin1String(said));
    };
    row("what is not there", "ignore two-names",
        "\"two-names\" finds nothing here that could be ignored; remove it");
    row("one of two", "ignore two-names, no-address",
        "\"two-names\" finds nothing here that could be ignored");
    row("a rule in another spelling", "ignore no-adress",
        "there is no rule \"no-adress\"; did you mean no-address?");
    row("no rule", "ignore everything", "there is no rule \"everything\"");
    row("an error of the syntax", "ignore comment",
        "\"comment\" cannot be ignored: the library reads nothing of such a file");
}

void tst_CheckOptions::whatIsIgnoredInVainIsSaid()
{
    QFETCH(QByteArray, remark);
    QFETCH(QString, said);
    const QByteArray bytes = "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ { \"Tag\": "
                             "\"a\", \"_comment check\": \""
        + remark + "\" } ] }";
    const auto analysis = analyse(QLatin1String("test"), bytes, m_folder.path());
    const std::vector<Finding> &all = analysis->findings.all();
    const auto found = std::find_if(all.begin(), all.end(), [](const Finding &finding) {
        return finding.rule == QByteArray("unused-ignore");
    });
    QVERIFY(found != all.end());
    const QString hint = found->hint.isEmpty() ? QString() : QLatin1String("; ") + found->hint;
    QCOMPARE(found->text + hint, said);
    QCOMPARE(bytes.mid(found->offset, found->length), "\"" + remark + "\"");
    QCOMPARE(!found->edit.isNothing(), said.endsWith(QLatin1String("; remove it")));
}

void tst_CheckOptions::aFileThatIgnoresARuleChangesNothingElse()
{
    int tried = 0;
    for (const Mistakes::Kind &kind : Mistakes::meaningKinds()) {
        std::mt19937 engine(uint(Amount::given("NUV_TEST_SEED", 1)));
        for (int i = 0; i < Amount::tried("NUV_TEST_FILES", 5); ++i) {
            Mistakes::Planted file;
            file.bytes = Mistakes::configurationOfRound(i);
            if (!kind.plant(&file, engine) || !mayBeIgnored(kind.rule) || file.bytes[0] != '{')
                continue;
            const auto before = analyse(QLatin1String("test"), file.bytes, m_folder.path());
            const QByteArray member =
                "\"_comment check\": \"ignore " + QByteArray(kind.rule) + "\",";
            const QByteArray asking = QByteArray(file.bytes).insert(1, member);
            const auto after = analyse(QLatin1String("test"), asking, m_folder.path());
            QVERIFY2(before->findings.has(kind.rule), kind.name);
            QCOMPARE(described(*after), without(described(*before), QLatin1String(kind.rule)));
            ++tried;
        }
    }
    QVERIFY(tried > 50);
}

void tst_CheckOptions::theExitStatusFollowsTheOptions_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("expected");

    const QByteArray note = withUrl("\"/opt/tv/none.html\"");
    const QByteArray warning = withUrl("\"http://tv.example/\", \"X\": 1");
    const QByteArray error = withUrl("\"htps://tv.example/\"");
    QByteArray many, odd;
    for (int i = 0; i < Findings::Limit; ++i) {
        many += ", \"_" + QByteArray::number(i) + "\": 1";
        odd += ", \"_comment" + QByteArray::number(i) + "\": \"\xc3\xa9\"";
    }
    const auto row = [](const char *name, const QByteArray &bytes, const char *options,
                        int expected) {
        QTest::newRow(name) << bytes << QString(QLatin1String(options)) << expected;
    };
    row("a note passes", note, "", 0);
    row("a note fails where it is asked for", note, "--fail-on note", 1);
    row("a warning passes where it is asked for", warning, "--fail-on error", 0);
    row("a warning fails with notes", warning, "--fail-on note", 1);
    row("an ignored warning", warning, "--ignore unknown-key", 0);
    row("an ignored error", error, "--ignore unusable-address", 0);
    row("one of two that are ignored", error, "--ignore unknown-key,unusable-address", 0);
    row("two options", error, "--ignore unknown-key --ignore unusable-address", 0);
    row("another one is ignored", error, "--ignore unknown-key", 1);
    row("an unknown rule", error, "--ignore unknown-kee", 2);
    row("a rule that cannot be ignored", error, "--ignore trailing-comma", 2);
    row("a root that is none", error, "--root /dev/null", 2);
    row("an error after a thousand warnings", withUrl("\"http://x/\"" + many + ", \"Scale\": true"),
        "--fail-on error", 1);
    row("more than a thousand warnings pass where it is asked for",
        withUrl("\"http://x/\"" + many + ", \"X\": 1"), "--fail-on error", 0);
    row("an error after a thousand that are ignored",
        withUrl("\"http://x/\"" + many + ", \"Scale\": true"), "--ignore unknown-key", 1);
    row("an error after so much that nobody reads on",
        withUrl("\"http://x/\"" + odd + ", \"Scale\": true"), "--fail-on error", 1);
    row("a thousand that are ignored", withUrl("\"http://x/\"" + many), "--ignore unknown-key", 0);
}

void tst_CheckOptions::theExitStatusFollowsTheOptions()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, options);
    const QString file = m_folder.write(QLatin1String("status.json"), bytes);
    const QStringList words = options.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QTEST(call(QStringList(QLatin1String("check")) + words + QStringList(file)).exitStatus(),
          "expected");
}

void tst_CheckOptions::showListsTheMissingFiles()
{
    const QString file =
        m_folder.write(QLatin1String("show.json"), withUrl("\"/opt/tv/none.html\""));
    const QStringList show = { QLatin1String("show"), QLatin1String("-f"), file };
    const QByteArray here = call(show).output;
    QVERIFY2(here.contains("\nFiles that are missing:\n    1:71: there is no /opt/tv/none.html on "
                           "this machine [missing-here]\n"),
             here.constData());
    const QByteArray device = call(show + QStringList(QLatin1String("--root=/"))).output;
    QVERIFY2(device.contains(": there is no /opt/tv/none.html on the device [missing-file]\n"),
             device.constData());
}

NUV_TEST_MAIN(tst_CheckOptions)
#include "tst_checkoptions.moc"
