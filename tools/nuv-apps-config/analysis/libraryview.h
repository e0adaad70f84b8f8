// SPDX-License-Identifier: MIT
#ifndef LIBRARYVIEW_H
#define LIBRARYVIEW_H

#include "config/webappsettings_p.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QSettings;

/// What the library's own loader makes of the bytes of a file.
///
/// The loader takes its file from the environment and nowhere else. It is given a copy in memory, so
/// that it sees the bytes that were looked at, whatever the file is called and even if it changes
/// meanwhile; no pass phrase is written to a disk for it.
class LibraryView
{
public:
    /// Null, with the reason in `*error`, when loading would take minutes or there is no memory.
    static std::unique_ptr<LibraryView> load(const QByteArray &bytes, QString *error);

    /// The second of these reasons.
    static QString noMemory();

    ~LibraryView();

    const WebAppSettingsPrivate &state() const { return *m_state; }

    /// The file as any settings object sees it.
    const QSettings &settings() const { return *m_settings; }

    /// False for a syntax error, with which the library uses nothing of the file.
    bool isParsed() const { return m_errorOffset < 0; }

    /// Behind the token at which the library stops; -1 when it does not.
    int errorOffset() const { return m_errorOffset; }

    /// The elements of "Applications" that the loader looks at where the version passes.
    int elementCount() const;

private:
    LibraryView();

    class MemoryFile;

    std::unique_ptr<MemoryFile> m_copy;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<WebAppSettingsPrivate> m_state;
    int m_errorOffset = -1;
};

#endif // LIBRARYVIEW_H
