// SPDX-License-Identifier: MIT
#ifndef RESPONSELIMIT_H
#define RESPONSELIMIT_H

#include <QObject>

class QNetworkReply;

/// Breaks off a response whose body is larger than the engine should have to hold, before or after it
/// was decompressed.
class ResponseLimit : public QObject
{
    Q_OBJECT

public:
    /// Far more than a page, a script or a picture has, and little enough for the memory of a device.
    static const qint64 most = qint64(32) * 1024 * 1024;

    /// Watches a reply to whose data nobody listens so far; it belongs to the reply.
    explicit ResponseLimit(QNetworkReply *reply);

    /// "its body is larger than ... bytes".
    static QString reason();

    /// Whether less has arrived than the server announced. Qt 5 ends such a reply with an error, Qt 4 as
    /// any other.
    bool isCutOff() const;

Q_SIGNALS:
    /// Emitted once, just before the reply is broken off.
    void exceeded(QNetworkReply *reply);

private Q_SLOTS:
    void lookAtLength();
    void breakOff();
    void countArrived(qint64 received);
    void countReadable();
    void listenLast();
    void noteRest();

private:
    bool isTooLarge(qint64 size);

    QNetworkReply *m_reply;
    qint64 m_arrived; ///< bytes of the body
    qint64 m_readable; ///< bytes that became readable so far
    qint64 m_rest; ///< of them, those that nobody has read
    bool m_isExceeded;
};

#endif // RESPONSELIMIT_H
