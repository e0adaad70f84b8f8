// SPDX-License-Identifier: MIT
#ifndef DEVICEFILES_H
#define DEVICEFILES_H

#include <QString>

/// Where the files are that a configuration names. It is written on one machine and read on another.
class DeviceFiles
{
public:
    /// Relative paths begin at `folder`. `root` is a directory with the files of the device, as a
    /// build of its system or a mounted image gives it; empty where there is none. A directory alone is one of
    /// this machine, and is taken for its files.
    // cppcheck-suppress noExplicitConstructor
    DeviceFiles(const QString &folder, const QString &root = QString());

    const QString &folder() const { return m_folder; }

    /// The place on this machine of a path as the configuration has it.
    QString find(const QString &path) const;

    /// Whether a file that is not on this machine may be on the device.
    bool mayHave(const QString &path) const;

private:
    QString belowRoot(const QString &path) const;

    QString m_folder;
    QString m_root; ///< without the last slash
    bool m_isDevice; ///< there is a root
};

#endif // DEVICEFILES_H
