// SPDX-License-Identifier: MIT
#ifndef OUTPUT_H
#define OUTPUT_H

#include <QByteArray>
#include <QString>

/// The standard output, or the standard error, written at once when a file is done. A failure to write is remembered.
class Output
{
public:
    /// Must be made before any file is opened: it sees to it that a closed standard output is not
    /// taken by another file.
    explicit Output(int descriptor = 1);

    void write(const QString &text) { m_pending += text.toUtf8(); }
    void writeBytes(const QByteArray &bytes) { m_pending += bytes; }

    /// Returns false, and says so on the standard error, when not all could be written.
    bool flush();

    static void complain(const QString &text);

    /// The text with its control characters made visible, so that no file can steer a terminal.
    static QString printable(const QString &text);

private:
    QByteArray m_pending;
    int m_descriptor;
    bool m_isClosed;
    bool m_hasFailed = false;
};

#endif // OUTPUT_H
