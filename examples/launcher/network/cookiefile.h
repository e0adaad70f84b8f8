// SPDX-License-Identifier: MIT
#ifndef COOKIEFILE_H
#define COOKIEFILE_H

#include <QByteArray>
#include <QList>
#include <QNetworkCookie>
#include <QString>

class QDateTime;

/// The file of a jar: a cookie a line, as a server sends it, the newest last.
namespace CookieFile {

struct Contents {
    QList<QNetworkCookie> cookies; ///< those that have not expired
    QString problem; ///< what was ignored in the file, and why; empty for a file of this program
};

/// Reads a file, which need not exist. Whatever it holds, reading takes bounded time and memory.
Contents read(const QString &fileName, const QDateTime &now);

/// The lines for the cookies that outlive the program.
QByteArray toLines(const QList<QNetworkCookie> &cookies, const QDateTime &now);

} // namespace CookieFile

#endif // COOKIEFILE_H
