// SPDX-License-Identifier: MIT
#include "tests/launcher/stage.h"
#include "tests/support/testmain.h"

#include "examples/launcher/values/pageaddress.h"
#include "examples/launcher/values/valuekind.h"
#include "examples/launcher/values/webaddress.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/properties/properties.h"

#include <QDir>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <random>

/// The reference launcher and nuv-apps-config never disagree about a value.
class tst_Verdicts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void stringsAreJudgedAlike_data();
    void stringsAreJudgedAlike();
    void everyKindIsJudgedAlike_data();
    void everyKindIsJudgedAlike();

private:
    bool isRefusedByChecker(const QByteArray &file) const;
    QSet<int> refusedByLauncher(const QByteArray &key, const QStringList &values) const;

    Stage m_stage;
};

namespace {

const int Mutants = 120; // of the values of a kind

QStringList words(const char *lines)
{
    return QString(QLatin1String(lines)).split(QLatin1Char('\n'));
}

int below(std::mt19937 &engine, int limit)
{
    return int(engine() % uint(limit));
}

// One to three slips of the hand.
QString mutated(QString value, std::mt19937 &engine)
{
    const QString alphabet = QLatin1String("hts:/.@ []%?#*-_019aZ~$\\,;(");
    for (int slips = 1 + below(engine, 3); slips > 0; --slips) {
        const int at = below(engine, value.size() + 1);
        const QChar letter = alphabet.at(below(engine, alphabet.size()));
        switch (below(engine, 3)) {
        case 0:
            value.insert(at, letter);
            break;
        case 1:
            value.remove(at, 1);
            break;
        default:
            value.replace(at, 1, letter);
        }
    }
    return value;
}

QStringList withMutants(const QStringList &values)
{
    std::mt19937 engine(20);
    QStringList all = values;
    for (int i = 0; i < Mutants; ++i)
        all.append(mutated(values.at(below(engine, values.size())), engine));
    all.removeDuplicates();
    return all;
}

// No connection is made: the proxy is a port of this machine where nobody listens.
QByteArray application(int number, const QByteArray &key, const QString &value)
{
    const QByteArray tag = "{ \"Tag\": \"a" + QByteArray::number(number) + "\", ";
    const QByteArray member = '"' + key + "\": " + Edits::quoted(value);
    if (key == "Url")
        return tag + "\"HttpProxy\": \"127.0.0.1:1\", " + member + " }";
    if (key == "Domain")
        return tag + "\"Url\": \"about:blank\", \"GrantBroadcastAccessRightDomains\": [ { " + member
            + " } ] }";
    return tag + "\"Url\": \"about:blank\", " + member + " }";
}

QByteArray fileOf(const QByteArray &applications)
{
    return "{ \"Global\": { \"Version\": 1 }, \"Applications\": [ " + applications + " ] }";
}

const ValueKind *kindNamed(const QString &name)
{
    static const QHash<QString, const ValueKind *> kinds = {
        { QLatin1String("onOff"), &ValueKinds::onOff },
        { QLatin1String("text"), &ValueKinds::text },
        { QLatin1String("address"), &ValueKinds::address },
        { QLatin1String("fileName"), &ValueKinds::fileName },
        { QLatin1String("factor"), &ValueKinds::factor },
        { QLatin1String("fraction"), &ValueKinds::fraction },
        { QLatin1String("port"), &ValueKinds::port },
        { QLatin1String("bytes"), &ValueKinds::bytes },
        { QLatin1String("domains"), &ValueKinds::domains },
        { QLatin1String("secret"), &ValueKinds::secret },
        { QLatin1String("proxy"), &ValueKinds::proxy },
        { QLatin1String("webAddress"), &ValueKinds::webAddress },
    };
    return kinds.value(name);
}

bool isRelative(const QString &address)
{
    return WebAddress::schemeOf(address).isEmpty() && !address.startsWith(QLatin1Char('/'));
}

} // namespace

void tst_Verdicts::initTestCase()
{
    const QDir folder(m_stage.path("."));
    QVERIFY(folder.mkpath(QLatin1String("pages")) && folder.mkpath(QLatin1String("scripts")));
    m_stage.write("pages/menu.html", "<p>");
    m_stage.write("scripts/tv.js", "1");
}

bool tst_Verdicts::isRefusedByChecker(const QByteArray &file) const
{
    const std::unique_ptr<Analysis> analysis =
        analyse(QLatin1String("test"), file, QDir(m_stage.path(".")).canonicalPath());
    return analysis->findings.count(Severity::Error) > 0;
}

// The numbers of the values that the launcher cannot use: it says so, or a file is not there.
QSet<int> tst_Verdicts::refusedByLauncher(const QByteArray &key, const QStringList &values) const
{
    QStringList arguments(QLatin1String("--once"));
    QByteArray applications;
    for (int i = 0; i < values.size(); ++i) {
        applications += (i > 0 ? ",\n" : "") + application(i, key, values.at(i));
        arguments.append(QLatin1String("a") + QString::number(i));
    }
    m_stage.write("AppsConfig.json", fileOf(applications));
    const Run run = m_stage.launch(arguments, m_stage.path("."));
    if (run.status < 0)
        qFatal("the launcher did not end: %s", qPrintable(run.err));

    QSet<int> refused;
    // Where a password may be, the mask hides more than it, the end of the line as well.
    for (const QString &line : run.err.split(QLatin1String("nuv-launcher: a"))) {
        bool isOfApplication = false;
        const int number = line.section(QLatin1Char(':'), 0, 0).toInt(&isOfApplication);
        if (!isOfApplication)
            continue;
        const bool isMissing =
            line.contains(QLatin1String("does not load")) && isRelative(values.at(number));
        if (isMissing || line.contains(QLatin1String("cannot be used")))
            refused.insert(number);
    }
    return refused;
}

void tst_Verdicts::stringsAreJudgedAlike_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QStringList>("values");
    const auto row = [](const char *key, const char *lines) {
        QTest::newRow(key) << QByteArray(key) << withMutants(words(lines));
    };
    row("Url",
        "\nhttp://127.0.0.1/\nhttps://127.0.0.1:8443/a?b#c\nabout:blank\ndata:text/html,<p>x\n"
        "qrc:/none.html\nfile:///none.html\n/none.html\npages/menu.html\npages/menu.html?a=1#b\n"
        "pages\n.\nnone.html\nhtps://x/\nhttps//x/\nhttps:/x\n http://x/\nhttps:///i\n"
        "https://[fe80::1/\nhttp://[::1]/\nhttp://x:99999/\nwww.x/y\nlocalhost:1/\ndvb://1.2.3\n"
        "javascript:1\n//x/\nfile:x\nfile://x\nC:/x\nhttp://http://x/\nhttp://me:pw@127.0.0.1/");
    row("HttpProxy",
        "\nproxy:1\nproxy.example:8080\nproxy.example\nproxy:99999\nproxy:0\nhttps://h:3128\n"
        "http://proxy:1/\nme:pw@proxy:1\nme:p w@proxy:1\nme:p/w@proxy:1\nme:p@w@proxy:1\n"
        "http://me:p:w@proxy:1\n[::1]:1\n::1:1\n[::1\nproxy:1/x\n proxy:1\nproxy:1 \nsocks5://h:1\n"
        ":1\n@:1\nh x:1\n10.0.0.1:3128");
    row("HttpReferrer",
        "\nhttp://portal.example/\nhttps://portal.example\nportal.example/\nftp://x/\nabout:blank\n"
        "http:/x/\nhttp://\n http://x/\nhttp://x/ \nhttp://me:pw@x:80/a#b\nhttp://x:99999/\n"
        "http://[::1]/");
    row("Domain",
        "\ntv.example\nTV.example.\nlocalhost\n10.0.0.1\n[::1]\n::1\n*.tv.example\n.tv.example\n"
        "https://tv.example\ntv.example/\ntv.example:80\ntv example\n tv.example\ntv..example\n*\n"
        "a_b.example\nme@tv.example");
    row("UserAgent", "\nBox/1.0\nMozilla/5.0 (Linux; television) Box/1.0\n \n\"");
    row("UserScript",
        "\nscripts/tv.js\n./scripts/tv.js\nscripts\nscripts/none.js\nalert(1)\n~/tv.js\n$HOME/"
        "tv.js\n"
        "scripts/tv.js \nfile:scripts/tv.js");
}

void tst_Verdicts::stringsAreJudgedAlike()
{
    QFETCH(QByteArray, key);
    QFETCH(QStringList, values);
    if (key == "UserAgent")
        values << QLatin1String("a\nb") << QLatin1String("a\r\nX: y") << QString(QChar(0x7f));
    const QSet<int> refused = refusedByLauncher(key, values);
    QStringList differing;
    for (int i = 0; i < values.size(); ++i) {
        const bool isAbsolute = values.at(i).startsWith(QLatin1Char('/')); // for another machine
        if (isAbsolute && key == "UserScript")
            continue;
        const bool isRefused = isRefusedByChecker(fileOf(application(i, key, values.at(i))));
        if (isRefused != refused.contains(i))
            differing << (isRefused ? QLatin1String("only the checker refuses ")
                                    : QLatin1String("only the launcher refuses "))
                    + values.at(i);
    }
    QCOMPARE(differing.join(QLatin1Char('\n')), QString());
    QVERIFY(!refused.isEmpty() && refused.size() < values.size());
}

void tst_Verdicts::everyKindIsJudgedAlike_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("kind");
    QFile source(QLatin1String(SOURCE_FOLDER "/examples/launcher/effects/viewsettings.cpp"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    const QRegularExpression row(
        QLatin1String("\\{ \"(\\w+)\",\\s*&AppConfig::get\\w+,\\s*&ValueKinds::(\\w+)"));
    QRegularExpressionMatchIterator it = row.globalMatch(QString::fromUtf8(source.readAll()));
    int rows = 0;
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QString name = match.captured(1);
        QVERIFY2(kindNamed(match.captured(2)), qPrintable(match.captured(2)));
        QTest::newRow(qPrintable(name)) << name << match.captured(2);
        ++rows;
    }
    QCOMPARE(rows, 42);
}

// Scalars of each kind, and numbers around the ends of each range: what the launcher's kind accepts,
// the checker's table accepts, and the other way round.
void tst_Verdicts::everyKindIsJudgedAlike()
{
    QFETCH(QString, property);
    QFETCH(QString, kind);
    const ValueKind &accepting = *kindNamed(kind);
    const Property &row = *Properties::findProperty(property);
    if (row.kind == Kind::Array)
        return; // the library gives a list of strings, whatever the file holds
    const double numbers[] = { -1,
                               -0.5,
                               0,
                               0.05,
                               0.1,
                               0.5,
                               1,
                               1.5,
                               2,
                               10,
                               10.5,
                               11,
                               255,
                               9222,
                               65535,
                               65535.5,
                               65536,
                               4294967295.0,
                               9007199254740991.0,
                               9007199254740992.0,
                               1e300 };
    QList<QVariant> values = { true, false, QString(QLatin1String("true")) };
    for (const double number : numbers)
        values.append(number);
    for (const int number : { -1, 0, 1, 2, 10, 65535, 65536 })
        values.append(number);
    for (const QVariant &value : values) {
        const QByteArray written = value.userType() == QMetaType::QString
            ? Edits::quoted(value.toString())
            : value.userType() == QMetaType::Double ? QByteArray::number(value.toDouble(), 'g', 17)
                                                    : value.toString().toLatin1();
        const QByteArray member = QByteArray("\"") + row.key + "\": " + written;
        const QByteArray file = fileOf("{ \"Tag\": \"tv\", " + member + " }");
        const QByteArray inside =
            fileOf("{ \"Tag\": \"tv\", \"Certificate\": { " + member + " } }");
        const std::unique_ptr<Analysis> analysis =
            analyse(QLatin1String("test"), row.section == Section::Certificate ? inside : file,
                    m_stage.path("."));
        const Findings &found = analysis->findings;
        const bool isRefused = found.has("wrong-kind") || found.has("out-of-range")
            || found.has("port-out-of-range") || found.has("port-means-unset");
        QVERIFY2(isRefused != accepting.accepts(value), member);
    }
}

NUV_TEST_MAIN(tst_Verdicts)
#include "tst_verdicts.moc"
