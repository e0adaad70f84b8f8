// SPDX-License-Identifier: MIT
#ifndef MESSAGES_H
#define MESSAGES_H

#include "tests/support/messagesink.h"

#include <QList>
#include <QPair>

/// Collects the process's messages, as their handler receives them, until the end of the block.
class Messages
{
public:
    typedef QPair<QtMsgType, QByteArray> Message;

    Messages()
    {
        received().clear();
        installMessageSink(receive);
    }

    ~Messages() { installMessageSink(nullptr); }

    int count() const { return received().size(); }
    QtMsgType type(int index) const { return received().at(index).first; }
    QByteArray text(int index) const { return received().at(index).second; }

private:
    Q_DISABLE_COPY(Messages)

    static QList<Message> &received()
    {
        static QList<Message> messages;
        return messages;
    }

    static void receive(QtMsgType type, const QByteArray &text)
    {
        received().append(Message(type, text));
    }
};

#endif // MESSAGES_H
