// SPDX-License-Identifier: MIT
#ifndef COOKIEJAR_H
#define COOKIEJAR_H

#include <QByteArray>
#include <QNetworkCookieJar>
#include <QString>
#include <QTimer>

/// Cookies that survive the program: those with an expiry date are in a file, for its user's eyes
/// only. Session cookies stay in memory. CookieBounds says how many there can be.
///
/// The file is written some seconds after a change, with all that changed until then, and when the jar
/// is deleted. Who kills the program or cuts its power loses these seconds, and nothing else. Where two
/// launchers run with one file, the one that writes last wins.
class CookieJar : public QNetworkCookieJar
{
    Q_OBJECT

public:
    /// Reads the file, which need not exist, and tells when it is not one of cookies.
    CookieJar(const QString &file, QObject *parent);
    ~CookieJar();

    bool setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url) override;

private Q_SLOTS:
    void write();

private:
    QString m_file;
    QByteArray m_written;
    QTimer m_delay; ///< active while a change is not written
    bool m_failed; ///< the last time that the file was written
};

#endif // COOKIEJAR_H
