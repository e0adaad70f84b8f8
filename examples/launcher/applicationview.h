#ifndef APPLICATIONVIEW_H
#define APPLICATIONVIEW_H

#include "hooks/zarexextbase.h"

#include <QImage>
#include <QPointer>
#include <QUrl>
#include <QWebView>

class AppConfig;
class ApplicationPage;
class NetworkAccessManager;
class QNetworkAccessManager;
class QNetworkReply;

/// One web application: a view with a page, a network access and an extension object of its own.
class ApplicationView : public QWebView
{
    Q_OBJECT

public:
    explicit ApplicationView(const QString &tag);

    QString tag() const;

    /// Applies the configured properties, and prints them.
    void apply(const AppConfig &config);

    /// Gives the view this size, even if it is configured to be as large as the screen.
    void keepSize(const QSize &size);

    /// Shows the view and loads its page. Ends in one of the signals loaded() and failed().
    void start();

    /// What the page looks like now, with transparent pixels where nothing covers the background.
    QImage picture() const;

    // For the table of properties.
    void setAddress(const QUrl &address);
    void setReferrer(const QByteArray &address); ///< of the first request
    void setUserAgent(const QString &userAgent);
    void setUserScript(const QString &source);
    void setConsoleIsShown(bool shown);
    void setLoadedUrlsArePrinted(bool printed);
    QNetworkAccessManager *networkAccess() const; ///< null when there is none

Q_SIGNALS:
    void loaded();
    void failed(const QString &what);
    void openRequested(const QString &tag); ///< by a script of the page

private Q_SLOTS:
    void prepareScripts();
    void firstLoadFinished(bool ok);
    void printConsoleMessage(const QString &message);
    void printUrl(QNetworkReply *reply);

private:
    void createExtension();
    void useCertificate(const AppConfig &config);
    QString networkProblem() const;

    ApplicationPage *m_page;
    NetworkAccessManager *m_network;
    QPointer<ZarexExtBase> m_extension; ///< guarded: a script can delete it
    QUrl m_address;
    QByteArray m_referrer;
    QString m_userScript;
    bool m_consoleIsShown;
    bool m_loadedUrlsArePrinted;
};

#endif // APPLICATIONVIEW_H
