// SPDX-License-Identifier: MIT
#ifndef LOADEDFILE_H
#define LOADEDFILE_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/commands/configurationfile.h"
#include "tools/nuv-apps-config/commandline/invocation.h"
#include "tools/nuv-apps-config/analysis/libraryview.h"

#include <QHash>
#include <QStringList>

#include <memory>

/// A configuration file as the library's own loader sees it, and what is known of its text.
class LoadedFile
{
public:
    /// `name` is empty for the file that the library would pick. Null, with the reason on the standard
    /// error and the exit status in `*status`, when it cannot be read or loading it would do harm.
    static std::unique_ptr<LoadedFile> open(const QString &name, const Invocation &invocation,
                                            ExitStatus *status);

    QString name() const { return m_analysis->source.name(); }
    QString why() const { return m_why; }
    const Analysis &analysis() const { return *m_analysis; }
    const WebAppSettingsPrivate &state() const { return m_view->state(); }
    const QSettings &settings() const { return m_view->settings(); }

    /// False for a syntax error and for an empty file: the library uses nothing of it.
    bool isRead() const;

    /// Whether a launcher can ask for the application; says on the standard error what is near when
    /// it cannot.
    bool hasTag(const QString &tag) const;

    /// Says on the standard error why the library reads nothing of the file.
    void complainUnread() const;

    /// What a version that does not pass leads to.
    static QString unusableText();

    /// The version that the library compares, with as few digits as tell it from others: 1.2, although the
    /// library's own number of that is 1.20000005.
    double version() const;
    static const int DigitsOfVersion = 9; ///< at most

    /// The global port that a launcher is given: only of a file whose version passes.
    QVariant port() const;

    /// The tags of the applications that a launcher can ask for, in the order of the file.
    const QStringList &tags() const { return m_tags; }

    /// The object of the application with that tag. Null where there is no single one, as for those
    /// that flat keys put together.
    const Node *application(const QString &tag) const { return m_nodes.value(tag); }

    /// The value at "Certificate/Path" inside an object of the file. Null when there is none, or when
    /// it is not where the library's value comes from.
    const Node *valueAt(const Node *object, const QString &path, const QVariant &value) const;
    const Node *global() const;

    QString placeText(const Node &node) const;

private:
    LoadedFile() {}
    bool load(QString *error);
    static QString whereItIsATag(const QString &name);
    void findApplications();
    const Node *elementNode(int index, const QString &tag) const;

    QString m_why;
    std::unique_ptr<Analysis> m_analysis;
    std::unique_ptr<LibraryView> m_view;
    QStringList m_tags;
    QHash<QString, const Node *> m_nodes;
};

#endif // LOADEDFILE_H
