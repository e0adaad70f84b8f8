// SPDX-License-Identifier: MIT
#ifndef PAGEKEEPER_H
#define PAGEKEEPER_H

#include "application/documenttrail.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

class ApplicationPage;
class QNetworkReply;

/// Brings a page of the web back that does not load, because nobody is at a device to do it: it asks for
/// the page again, after a pause that grows from one failure to the next. A page of which nothing can be
/// seen after a time has failed as well, and so has one whose server answers with an error of its own.
class PageKeeper : public QObject
{
    Q_OBJECT

public:
    /// The timeout in milliseconds, 0 for none.
    PageKeeper(ApplicationPage *page, int timeout, QObject *parent);

    /// How many milliseconds the attempt with this number waits, from 1 on.
    static int pauseBefore(int attempt);

    /// Whether the address is one of the web: a file that is missing is not waited for.
    static bool keeps(const QUrl &address);

    /// Whether the page failed, and is asked for again after a pause.
    bool isWaiting() const { return m_pause.isActive(); }

Q_SIGNALS:
    void timedOut(); ///< and the loading is about to be stopped
    void due(const QUrl &address); ///< it is time to ask for it again
    void recovered();
    void note(const QString &text);

private Q_SLOTS:
    void started();
    void shown();
    void finished(bool ok);
    void look(QNetworkReply *reply);
    void giveUp();
    void tryAgain();

private:
    void wait();

    ApplicationPage *m_page;
    DocumentTrail m_trail;
    QTimer m_patience;
    QTimer m_pause;
    QUrl m_address; ///< that failed
    int m_failures; ///< one after another
    int m_status; ///< of the server, where that is an error of its own; otherwise 0
};

#endif // PAGEKEEPER_H
