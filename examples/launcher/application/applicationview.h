// SPDX-License-Identifier: MIT
#ifndef APPLICATIONVIEW_H
#define APPLICATIONVIEW_H

#include "application/applicationpage.h"
#include "application/broadcastaccess.h"
#include <ZarexExtBase>

#include <QPointer>
#include <QScopedPointer>
#include <QStringList>
#include <QUrl>
#include <QWidget>

class AppConfig;
class NetworkAccessManager;
class PageKeeper;
class QNetworkAccessManager;
class QVBoxLayout;
class ReplyReport;
class WebSurface;

/// One web application: a window with a page, a network access and an extension object of its own.
class ApplicationView : public QWidget
{
    Q_OBJECT

public:
    explicit ApplicationView(const QString &tag,
                             ApplicationPage::Maker makePage = ApplicationPage::make);
    ~ApplicationView();

    QString tag() const;

    /// Applies the configured properties, and prints them.
    void apply(const AppConfig &config);

    /// A page of which nothing is there after so many milliseconds has failed. Without a limit at first.
    void setTimeout(int timeout);

    /// Nobody is there to wait: a page is to load whole in this time, and is not tried again.
    void expectNobody();

    /// Whether a page that failed is asked for again until it loads.
    bool isTriedAgain() const;

    /// Shows the window and loads its page. Ends in one of the signals loaded() and failed().
    void start();

    /// Shows the window, in front of all others.
    void bringToFront();

    /// Whether a page of the launcher's is shown instead of the one that did not load.
    bool showsErrorPage() const;

    /// Null when there is none.
    QNetworkAccessManager *networkAccess() const;

    // For the table of properties.
    ApplicationPage *page() const;
    WebSurface &surface() const;
    void useScene(); ///< shows the page in a new surface; to be called before any effect on it
    void addBar(QWidget *bar); ///< above the page
    void setAddress(const QUrl &address);
    BroadcastAccess &broadcastAccess();
    void setReferrer(const QByteArray &address); ///< of the first request
    ReplyReport &replyReport();

    /// The application does not start, for this reason. Only the first one counts.
    void refuse(const QString &reason);

Q_SIGNALS:
    void loaded();
    void failed(const QString &what);
    void recovered(); ///< from that: the page has loaded after all
    void openRequested(const QString &tag); ///< by a script of the page

private Q_SLOTS:
    void prepareScripts();
    void firstLoadFinished(bool ok);
    void laterLoadFinished(bool ok);
    void giveUp();
    void load(const QUrl &address);
    void note(const QString &text);

private:
    void createExtension();
    void keepPage();
    void expectLaterLoads();
    void useCertificate(const AppConfig &config);
    QString networkProblem() const;
    QString whyNotStarted() const;
    void boundNetwork();
    void reportRefusal();
    void complain(const QString &text);
    void setSurface(WebSurface *surface);

    ApplicationPage *m_page;
    NetworkAccessManager *m_network;
    QVBoxLayout *m_layout;
    QScopedPointer<WebSurface> m_surface;
    QPointer<ZarexExtBase> m_extension; ///< guarded: a script can delete it
    BroadcastAccess m_broadcastAccess;
    QUrl m_address;
    QByteArray m_referrer;
    PageKeeper *m_keeper; ///< null where nobody is there
    QStringList m_ownFiles; ///< that no page is given
    QString m_complaint; ///< the last one about a page; empty once one has loaded
    QString m_refusal; ///< empty where nothing speaks against starting
    ReplyReport *m_replies;
    int m_timeout; ///< milliseconds; 0 for none
    bool m_isAttended;
};

#endif // APPLICATIONVIEW_H
