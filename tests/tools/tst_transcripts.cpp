// SPDX-License-Identifier: MIT
#include "tests/support/filecontents.h"
#include "tests/support/temporarydir.h"
#include "tests/support/testmain.h"
#include "tests/tools/childcall.h"
#include "tools/nuv-apps-config/commands/program.h"
#include "tools/nuv-apps-config/findings/rules.h"

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

/// What the program says, word for word, as transcripts/README.md describes it. With the variable
/// NUV_WRITE_TRANSCRIPTS the files are written anew, to be read before they are committed.
class tst_Transcripts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theProgramSaysWhatIsWritten_data();
    void theProgramSaysWhatIsWritten();
    void everyRuleHasATranscript();
};

namespace {

const char Folder[] = SOURCE_FOLDER "/tests/tools/transcripts/";
const char Samples[] = SOURCE_FOLDER "/tools/nuv-apps-config/samples/";

// The byte that \x and two digits stand for.
QByteArray withBytes(const QByteArray &line)
{
    QByteArray result;
    int at = 0;
    for (int escape = line.indexOf("\\x"); escape >= 0; escape = line.indexOf("\\x", at)) {
        result += line.mid(at, escape - at) + QByteArray::fromHex(line.mid(escape + 2, 2));
        at = escape + 4;
    }
    return result + line.mid(at);
}

/// One play of a transcript, in a directory of its own.
class Stage
{
public:
    /// With the certificates of the samples, and one of them in DER form.
    Stage()
    {
        const QString samples = QLatin1String(Samples) + QLatin1String("certificates");
        for (const QString &name : QDir(samples).entryList(QDir::Files)) {
            const QByteArray file = "certificates/" + name.toUtf8();
            begin({ file, "<", file });
        }
        const QByteArray pem = fileContents(samples + QLatin1String("/device.pem"));
        const int end = pem.indexOf("-----END");
        const int body = pem.indexOf('\n');
        m_folder.write(QLatin1String("certificates/device.der"),
                       QByteArray::fromBase64(pem.mid(body, end - body)));
    }

    /// The transcript with what the program says now in place of what it said.
    QByteArray played(const QByteArray &transcript)
    {
        for (const QByteArray &line : transcript.split('\n')) {
            if (line.startsWith(':') || line.startsWith('='))
                continue; // said before
            m_text += line + '\n';
            if (line.startsWith("@ "))
                begin(line.mid(2).split(' '));
            else if (line.startsWith('|'))
                m_file->write(withBytes(line.mid(2)) + '\n');
            else if (line.startsWith("$ "))
                call(QString::fromUtf8(line.mid(2)));
        }
        m_text.chop(1);
        return m_text;
    }

private:
    // The words are the name of a file; its mode, else 600; "<" and a sample that it is a copy of.
    void begin(const QByteArrayList &words)
    {
        const QString name = m_folder.filePath(QString::fromUtf8(words.first()));
        m_file.reset(new QFile(name));
        if (!QDir().mkpath(QFileInfo(name).path())
            || !m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("no file");
        const QByteArray mode =
            words.value(1).isEmpty() || words.value(1) == "<" ? "600" : words.at(1);
        ::fchmod(m_file->handle(), mode_t(mode.toInt(nullptr, 8)));
        if (words.value(words.size() - 2) == "<")
            m_file->write(fileContents(QLatin1String(Samples) + QString::fromUtf8(words.last())));
    }

    // The standard error comes with the output. The standard input is file.json.
    void call(const QString &line)
    {
        const ChildCall::Result result = ChildCall::run([&] {
            ::dup2(STDOUT_FILENO, STDERR_FILENO);
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
            QDir::setCurrent(m_folder.path());
            const int input = ::open("file.json", O_RDONLY);
            ::dup2(input, STDIN_FILENO);
            Output output;
            const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            return Program::run(QStringList(QLatin1String("nuv-apps-config")) + words, output);
        });
        QByteArray output = result.output;
        QByteArrayList said =
            output.replace(QFile::encodeName(m_folder.path()), "FOLDER").split('\n');
        if (said.last().isEmpty())
            said.removeLast();
        for (const QByteArray &each : said)
            m_text += each.isEmpty() ? ":\n" : ": " + each + '\n';
        if (result.exitStatus() != 0)
            m_text += "= " + QByteArray::number(result.exitStatus()) + '\n';
    }

    TemporaryDir m_folder;
    std::unique_ptr<QFile> m_file; ///< that lines go to
    QByteArray m_text;
};

// The transcripts of a file, each from the line of its title on.
QByteArrayList transcripts(const QString &name)
{
    QByteArrayList all = { QByteArray() };
    for (const QByteArray &line : fileContents(QLatin1String(Folder) + name).split('\n')) {
        if (line.startsWith("# "))
            all.append(line);
        else
            all.last() += '\n' + line;
    }
    return all.mid(1);
}

QStringList files()
{
    return QDir(QLatin1String(Folder)).entryList(QStringList(QLatin1String("*.txt")), QDir::Files);
}

} // namespace

void tst_Transcripts::initTestCase()
{
    for (const char *name : { "NUV_APPS_CONFIG_FILE", "COLUMNS", "NO_COLOR" })
        qunsetenv(name);
    if (!qEnvironmentVariableIsSet("NUV_WRITE_TRANSCRIPTS"))
        return;
    for (const QString &name : files()) {
        QByteArrayList anew;
        for (const QByteArray &transcript : transcripts(name))
            anew += Stage().played(transcript);
        QFile file(QLatin1String(Folder) + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(anew.join('\n')) > 0);
    }
}

void tst_Transcripts::theProgramSaysWhatIsWritten_data()
{
    QTest::addColumn<QByteArray>("transcript");
    for (const QString &name : files()) {
        for (const QByteArray &transcript : transcripts(name))
            QTest::newRow(transcript.mid(2, transcript.indexOf('\n') - 2)) << transcript;
    }
}

void tst_Transcripts::theProgramSaysWhatIsWritten()
{
    QFETCH(QByteArray, transcript);
    const QByteArrayList now = Stage().played(transcript).split('\n');
    const QByteArrayList written = transcript.split('\n');
    for (int i = 0; i < qMin(now.size(), written.size()); ++i)
        QCOMPARE(QString::fromUtf8(now.at(i)), QString::fromUtf8(written.at(i)));
    QCOMPARE(now.size(), written.size());
}

void tst_Transcripts::everyRuleHasATranscript()
{
    QByteArrayList titles;
    for (const QByteArray &transcript : transcripts(QLatin1String("rules.txt")))
        titles += transcript.left(transcript.indexOf('\n'));
    for (const Rule &rule : Rules::all())
        QVERIFY2(Rules::sample(rule).isEmpty() || titles.contains(QByteArray("# ") + rule.id),
                 rule.id);
}

NUV_TEST_MAIN(tst_Transcripts)
#include "tst_transcripts.moc"
