// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/devicefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <climits>

#include <unistd.h>

namespace {

const int MostLinks = 40; // as many as Linux follows

// What the link says, as it is written; empty for what is none.
QString targetOf(const QString &path)
{
    char target[PATH_MAX];
    const ssize_t size = ::readlink(QFile::encodeName(path).constData(), target, sizeof target);
    return size > 0 ? QFile::decodeName(QByteArray(target, int(size))) : QString();
}

QStringList partsOf(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

} // namespace

DeviceFiles::DeviceFiles(const QString &folder, const QString &root)
    : m_folder(folder), m_isDevice(!root.isEmpty())
{
    m_root = m_isDevice ? QDir(root).canonicalPath() : QString();
    if (m_root == QLatin1String("/"))
        m_root.clear();
}

QString DeviceFiles::find(const QString &path) const
{
    if (path.startsWith(QLatin1Char('/')))
        return belowRoot(path);
    const QString here = QDir(m_folder).absoluteFilePath(path);
    const bool isOfDevice = !m_root.isEmpty() && here.startsWith(m_root + QLatin1Char('/'));
    return isOfDevice ? belowRoot(here.mid(m_root.size())) : QDir::cleanPath(here);
}

bool DeviceFiles::mayHave(const QString &path) const
{
    return !m_isDevice && path.startsWith(QLatin1Char('/'));
}

// A link that leads to "/etc/x" leads there on the device, not on this machine.
QString DeviceFiles::belowRoot(const QString &path) const
{
    if (m_root.isEmpty())
        return QDir::cleanPath(path);
    QStringList open = partsOf(path);
    QStringList found;
    for (int links = 0; !open.isEmpty() && links <= MostLinks;) {
        const QString part = open.takeFirst();
        if (part == QLatin1String("..") && !found.isEmpty())
            found.removeLast();
        if (part == QLatin1String(".") || part == QLatin1String(".."))
            continue;
        const QString next =
            m_root + QLatin1Char('/') + (found + QStringList(part)).join(QLatin1Char('/'));
        const QString target = targetOf(next);
        if (target.isEmpty()) {
            found.append(part);
            continue;
        }
        ++links;
        if (target.startsWith(QLatin1Char('/')))
            found.clear();
        open = partsOf(target) + open;
    }
    return m_root + QLatin1Char('/') + (found + open).join(QLatin1Char('/'));
}
