// SPDX-License-Identifier: MIT
#ifndef OUTPUT_H
#define OUTPUT_H

#include <QString>

#include <cstdio>
#include <unistd.h>

/// Keeps back what this process writes to one of its streams, until the end of the block.
class Output
{
public:
    explicit Output(FILE *stream) : m_stream(stream), m_kept(std::tmpfile())
    {
        std::fflush(m_stream);
        m_before = dup(fileno(m_stream));
        dup2(fileno(m_kept), fileno(m_stream));
    }

    ~Output()
    {
        std::fflush(m_stream);
        dup2(m_before, fileno(m_stream));
        close(m_before);
        std::fclose(m_kept);
    }

    /// All so far.
    QString text() const
    {
        std::fflush(m_stream);
        QByteArray bytes;
        char byte = 0;
        for (off_t at = 0; pread(fileno(m_kept), &byte, 1, at) == 1; ++at)
            bytes += byte;
        return QString::fromLocal8Bit(bytes.constData());
    }

private:
    Q_DISABLE_COPY(Output)

    FILE *m_stream;
    FILE *m_kept;
    int m_before;
};

#endif // OUTPUT_H
