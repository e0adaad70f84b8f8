// SPDX-License-Identifier: MIT
#ifndef RESTRICTIONS_H
#define RESTRICTIONS_H

#include <QtGlobal>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

/// Lets no file of this process grow beyond `size` bytes until the end of the block, as a full disk
/// would.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = { size, m_before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    Q_DISABLE_COPY(FileSizeLimit)

    rlimit m_before;
    void (*m_handler)(int);
};

/// Takes the rights of root away until the end of the block, where there are any.
class AsNobody
{
public:
    AsNobody() : m_isRoot(::geteuid() == 0)
    {
        if (m_isRoot && ::seteuid(65534) != 0)
            qFatal("the rights of root cannot be given up");
    }

    ~AsNobody()
    {
        if (m_isRoot && ::seteuid(0) != 0)
            qFatal("the rights of root do not come back");
    }

private:
    Q_DISABLE_COPY(AsNobody)

    const bool m_isRoot;
};

#endif // RESTRICTIONS_H
