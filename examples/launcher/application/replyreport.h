// SPDX-License-Identifier: MIT
#ifndef REPLYREPORT_H
#define REPLYREPORT_H

#include "application/documenttrail.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

/// Prints what became of the requests of an application, where the page does not show it: every address
/// on demand, and once for each host that it wants to know its user.
class ReplyReport : public QObject
{
    Q_OBJECT

public:
    /// Reports about `access`, if there is one, in the name of an application.
    ReplyReport(const QString &tag, QNetworkAccessManager *access, QObject *parent);

    void setAddressesArePrinted(bool printed);

    /// With what a server refused the last document of this address, as in "404 Not Found"; empty when it
    /// did not.
    QString refusalOf(const QUrl &document) const;

private Q_SLOTS:
    void report(QNetworkReply *reply);

private:
    void printAddress(const QNetworkReply &reply) const;
    void complainOnce(const QNetworkReply &reply);

    QString m_tag;
    bool m_addressesArePrinted;
    QSet<QString> m_complaints; ///< the hosts that were complained of
    DocumentTrail m_trail;
    QUrl m_refusedDocument;
    QString m_refusal; ///< empty when the server did not refuse it
};

#endif // REPLYREPORT_H
