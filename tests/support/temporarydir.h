// SPDX-License-Identifier: MIT
#ifndef TEMPORARYDIR_H
#define TEMPORARYDIR_H

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <cstdlib>

/// A new empty folder that is removed, with everything in it, at the end of the block.
class TemporaryDir
{
public:
    TemporaryDir()
    {
        QByteArray name = QFile::encodeName(QDir::tempPath() + QLatin1String("/nuv-XXXXXX"));
        if (!mkdtemp(name.data()))
            qFatal("no temporary folder can be made");
        m_path = QFile::decodeName(name);
    }

    ~TemporaryDir() { remove(m_path); }

    QString path() const { return m_path; }
    QString filePath(const QString &name) const { return m_path + QLatin1Char('/') + name; }

    /// Writes a file into the folder and returns its path.
    QString write(const QString &name, const QByteArray &contents) const
    {
        QFile file(filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
        return file.fileName();
    }

private:
    Q_DISABLE_COPY(TemporaryDir)

    static void remove(const QString &path)
    {
        QDir dir(path);
        const QFileInfoList entries = dir.entryInfoList(QDir::AllEntries | QDir::Hidden
                                                        | QDir::System | QDir::NoDotAndDotDot);
        for (int i = 0; i < entries.size(); ++i) {
            const QFileInfo &entry = entries.at(i);
            if (entry.isDir() && !entry.isSymLink())
                remove(entry.filePath());
            else
                QFile::remove(entry.filePath());
        }
        dir.rmdir(path);
    }

    QString m_path;
};

#endif // TEMPORARYDIR_H
