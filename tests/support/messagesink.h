// SPDX-License-Identifier: MIT
#ifndef MESSAGESINK_H
#define MESSAGESINK_H

#include <QByteArray>
#include <QString>
#include <QtGlobal>

/// Receives every message of the process: its type and its text in the local 8-bit encoding.
typedef void (*MessageSink)(QtMsgType type, const QByteArray &text);

inline MessageSink &messageSink()
{
    static MessageSink sink = nullptr;
    return sink;
}

#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
inline void forwardMessage(QtMsgType type, const char *text)
{
    messageSink()(type, QByteArray(text));
}
#else
inline void forwardMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    messageSink()(type, text.toLocal8Bit());
}
#endif

/// Makes `sink` the receiver of the process's messages; null gives them back to the toolkit.
inline void installMessageSink(MessageSink sink)
{
    messageSink() = sink;
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    qInstallMsgHandler(sink ? forwardMessage : nullptr);
#else
    qInstallMessageHandler(sink ? forwardMessage : nullptr);
#endif
}

#endif // MESSAGESINK_H
