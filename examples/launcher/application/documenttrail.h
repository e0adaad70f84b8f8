// SPDX-License-Identifier: MIT
#ifndef DOCUMENTTRAIL_H
#define DOCUMENTTRAIL_H

#include <QUrl>

class QNetworkReply;

/// Tells the answers that are a page's own document from those that are parts of it. A server can send the
/// engine on, which does not say so: the address that was asked for stays the first one to the end.
class DocumentTrail
{
public:
    /// Whether an answer is the document, or a step on the way to it. To be asked about each answer that the
    /// page's network access gets, in their order.
    bool follow(const QNetworkReply &reply);

private:
    QUrl m_next; ///< where the last step sent the engine to; empty when it did not
};

#endif // DOCUMENTTRAIL_H
