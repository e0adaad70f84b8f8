#ifndef COOKIEJAR_H
#define COOKIEJAR_H

#include <QByteArray>
#include <QNetworkCookieJar>
#include <QString>

/// Cookies that survive the program: those with an expiry date stand in a file, for its user's eyes
/// only, and are written as soon as they change. Session cookies stay in memory.
///
/// The file has a cookie a line, as a server sends it. Where two launchers run with one file, the one
/// that writes last wins.
class CookieJar : public QNetworkCookieJar
{
    Q_OBJECT

public:
    /// Reads the file, which need not exist.
    CookieJar(const QString &file, QObject *parent);

    bool setCookiesFromUrl(const QList<QNetworkCookie> &cookies, const QUrl &url) override;

private:
    void read();
    void writeIfChanged();

    QString m_file;
    QByteArray m_written;
};

#endif // COOKIEJAR_H
