// SPDX-License-Identifier: MIT
#ifndef AUTHORITY_H
#define AUTHORITY_H

#include "tests/support/temporarydir.h"

#include <QProcess>
#include <QStringList>

/// A certification authority, made with the command openssl, in a temporary folder of its own. There
/// NAME.pem is the certificate of NAME, and NAME.key its private key; CA.pem is the authority's.
class Authority
{
public:
    Authority()
    {
        // Qt 4 looks for an address among the names, too.
        m_dir.write(QLatin1String("names"),
                    "subjectAltName=IP:127.0.0.1,DNS:127.0.0.1,DNS:localhost\n");
        openssl("req -x509 -newkey rsa:2048 -nodes -keyout CA.key -out CA.pem -days 2 "
                "-subj /CN=authority");
    }

    QString path(const char *file) const { return m_dir.filePath(QLatin1String(file)); }

    /// Issues a certificate for a new key: "rsa:2048", or "ec" with the options that it needs.
    void issue(const char *name, const char *kindOfKey = "rsa:2048") const
    {
        const QString is = QLatin1String(name);
        openssl(QString(QLatin1String("req -newkey %1 -nodes -keyout %2.key -out request "
                                      "-subj /CN=%2"))
                    .arg(QLatin1String(kindOfKey), is));
        openssl(QString(QLatin1String("x509 -req -in request -CA CA.pem -CAkey CA.key "
                                      "-CAcreateserial -days 2 -extfile names -out %1.pem"))
                    .arg(is));
    }

    /// Issues a certificate with this one, which becomes that of an authority in between.
    void issueInBetween(const char *between, const char *name) const
    {
        m_dir.write(QLatin1String("authority"), "basicConstraints=critical,CA:TRUE\n");
        const QString above = QLatin1String(between);
        const QString is = QLatin1String(name);
        openssl(QString(QLatin1String("req -newkey rsa:2048 -nodes -keyout %1.key -out request "
                                      "-subj /CN=%1"))
                    .arg(above));
        openssl(QString(QLatin1String("x509 -req -in request -CA CA.pem -CAkey CA.key "
                                      "-CAcreateserial -days 2 -extfile authority -out %1.pem"))
                    .arg(above));
        openssl(QString(QLatin1String("req -newkey rsa:2048 -nodes -keyout %1.key -out request "
                                      "-subj /CN=%1"))
                    .arg(is));
        openssl(QString(QLatin1String("x509 -req -in request -CA %1.pem -CAkey %1.key "
                                      "-CAcreateserial -days 2 -extfile names -out %2.pem"))
                    .arg(above, is));
    }

    /// Runs the command in the folder, with arguments that are separated by spaces.
    void openssl(const QString &arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(m_dir.path());
        process.start(QLatin1String("openssl"), arguments.split(QLatin1Char(' ')));
        if (!process.waitForFinished() || process.exitCode() != 0)
            qFatal("openssl %s: %s", qPrintable(arguments),
                   process.readAllStandardError().constData());
    }

    void openssl(const char *arguments) const { openssl(QString(QLatin1String(arguments))); }

    /// Writes the contents of two files into a third.
    void join(const char *one, const char *other, const char *both) const
    {
        m_dir.write(QLatin1String(both), contents(one) + contents(other));
    }

private:
    QByteArray contents(const char *name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", name);
        return file.readAll();
    }

    TemporaryDir m_dir;
};

#endif // AUTHORITY_H
