// SPDX-License-Identifier: MIT
#ifndef STAGE_H
#define STAGE_H

#include "tests/support/temporarydir.h"
#include "tests/support/toolkitdifferences.h"

#include <QEventLoop>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

/// Several applications, and the arguments that open them all and take their pictures.
class Applications
{
public:
    Applications() { m_arguments << QLatin1String("--screenshot") << QLatin1String("out.png"); }

    /// The further properties begin with a comma.
    void add(const char *tag, const QString &url, const QByteArray &properties = QByteArray())
    {
        m_elements += (m_elements.isEmpty() ? "{ \"Tag\": \"" : ", { \"Tag\": \"") + QByteArray(tag)
            + "\", \"Url\": \"" + url.toLatin1() + "\"" + properties + " }";
        m_arguments << QLatin1String(tag);
    }

    QByteArray elements() const { return m_elements; } ///< of "Applications"
    QStringList arguments() const { return m_arguments; }

private:
    QByteArray m_elements;
    QStringList m_arguments;
};

/// What a run of the launcher left.
struct Run {
    int status; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

/// A folder with a configuration file and pages, in which the launcher is started.
class Stage
{
public:
    Stage() : m_environment(QProcessEnvironment::systemEnvironment())
    {
        const char *const others[] = { "DISPLAY",        "WAYLAND_DISPLAY", "QT_QPA_PLATFORM",
                                       "XDG_CACHE_HOME", "XDG_DATA_HOME",   "NUV_APPS_CONFIG_FILE",
                                       "SSL_CERT_FILE",  "http_proxy",      "https_proxy",
                                       "all_proxy",      "HTTP_PROXY",      "HTTPS_PROXY",
                                       "ALL_PROXY" };
        for (const char *other : others)
            m_environment.remove(QLatin1String(other));
        // Qt 4 shows nothing without one; the tests are given one of their own.
        if (ToolkitDifferences::isQt4())
            set("DISPLAY", QString::fromLocal8Bit(qgetenv("DISPLAY")));
        set("HOME", m_dir.path());
        set("XDG_RUNTIME_DIR", m_dir.path());
    }

    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }

    void write(const char *name, const QByteArray &contents) const
    {
        m_dir.write(QLatin1String(name), contents);
    }

    /// Writes an AppsConfig.json with these elements of "Applications".
    void configure(const QByteArray &applications) const
    {
        write("AppsConfig.json",
              "{ \"Global\": { \"Version\": 1 }, \"Applications\": [" + applications + "] }");
    }

    /// An element of "Applications"; the further properties begin with a comma.
    static QByteArray application(const char *tag, const QString &url,
                                  const QByteArray &properties = QByteArray())
    {
        Applications one;
        one.add(tag, url, properties);
        return one.elements();
    }

    void setConfigurationFile(const QString &name) { set("NUV_APPS_CONFIG_FILE", name); }

    /// Sets a variable of the launcher's environment.
    void set(const char *variable, const QString &value)
    {
        m_environment.insert(QLatin1String(variable), value);
    }

    void unset(const char *variable) { m_environment.remove(QLatin1String(variable)); }

    /// Begins to run the launcher; finish() waits for its end.
    void start(QProcess *process, const QStringList &arguments, const QString &folder) const
    {
        process->setProcessEnvironment(m_environment);
        process->setWorkingDirectory(folder);
        process->start(QLatin1String(LAUNCHER), arguments);
    }

    /// As above, in the folder of this stage; the arguments are separated by spaces.
    void start(QProcess *process, const char *arguments) const
    {
        start(process, split(arguments), m_dir.path());
    }

    /// Waits until the launcher has written this. Returns false when it ends without, or takes too long.
    static bool awaitOutput(QProcess *process, const char *expected)
    {
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(60000);
        while (!process->peek(process->bytesAvailable()).contains(expected)) {
            if (!limit.isActive() || process->state() == QProcess::NotRunning)
                return false;
            QEventLoop loop;
            QObject::connect(&limit, SIGNAL(timeout()), &loop, SLOT(quit()));
            QObject::connect(process, SIGNAL(readyRead()), &loop, SLOT(quit()));
            QObject::connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), &loop,
                             SLOT(quit()));
            loop.exec();
        }
        return true;
    }

    /// Waits with an event loop, so that servers of this process answer the launcher meanwhile.
    static Run finish(QProcess *process)
    {
        QEventLoop loop;
        QObject::connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), &loop, SLOT(quit()));
        QTimer::singleShot(60000, &loop, SLOT(quit()));
        if (process->state() != QProcess::NotRunning)
            loop.exec();
        const bool ended = process->state() == QProcess::NotRunning
            && process->exitStatus() == QProcess::NormalExit;
        process->kill();
        process->waitForFinished();
        Run run;
        run.status = ended ? process->exitCode() : -1;
        run.out = QString::fromLocal8Bit(process->readAllStandardOutput().constData());
        run.err = QString::fromLocal8Bit(process->readAllStandardError().constData());
        return run;
    }

    Run launch(const QStringList &arguments, const QString &folder) const
    {
        QProcess process;
        start(&process, arguments, folder);
        return finish(&process);
    }

    /// Opens these applications, in the folder of this stage.
    Run launch(const Applications &applications) const
    {
        configure(applications.elements());
        return launch(applications.arguments(), m_dir.path());
    }

    /// In the folder of this stage; the arguments are separated by spaces.
    Run launch(const char *arguments) const { return launch(split(arguments), m_dir.path()); }

private:
    static QStringList split(const char *arguments)
    {
        return QString(QLatin1String(arguments)).split(QLatin1Char(' '));
    }

    TemporaryDir m_dir;
    QProcessEnvironment m_environment;
};

/// The lines that begin so, each without its beginning.
inline QStringList linesAfter(const char *beginning, const QString &text)
{
    QStringList result;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).startsWith(QLatin1String(beginning)))
            result.append(lines.at(i).mid(static_cast<int>(qstrlen(beginning))));
    }
    return result;
}

/// What the pages of an application wrote with zarexExt.say().
inline QString said(const Run &run, const char *tag = "tv")
{
    const QByteArray beginning = QByteArray(tag) + "  says: ";
    return linesAfter(beginning.constData(), run.out).join(QLatin1String("; "));
}

inline QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

#endif // STAGE_H
