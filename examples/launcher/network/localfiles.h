// SPDX-License-Identifier: MIT
#ifndef LOCALFILES_H
#define LOCALFILES_H

#include <QString>
#include <QStringList>

class QUrl;

/// Which files of the device the pages of an application can load. Their scripts read none of them; what
/// is left is to show one, or to run it as a script.
///
/// An application that begins with a file can load what is in its directory and below, and no other
/// file; an application of the web can load none. Links in the file system are followed before it is
/// decided.
class LocalFiles
{
public:
    /// Without bounds, until it is told of an application.
    LocalFiles();

    /// `home` is the first page of the application. Its directory is that of the configuration, if it is
    /// in there, else its own.
    void setBounds(const QUrl &home, const QString &configurationDirectory);

    /// A file, or a directory with all that is in it, that no page can load, wherever it is.
    void keepBack(const QString &path);

    /// Why an address cannot be loaded; empty when it is not that of a file, or of one that can be.
    QString objectionTo(const QUrl &url) const;

private:
    bool m_isBounded;
    QString m_directory; ///< empty when there is none
    QStringList m_keptBack;
};

#endif // LOCALFILES_H
