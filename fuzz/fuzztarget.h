// SPDX-License-Identifier: MIT
#ifndef FUZZTARGET_H
#define FUZZTARGET_H

#include "global/qtcompat.h"
#include "tests/support/messagesink.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>

#include <ctime>

/// What a fuzzing engine, or replay.cpp, calls with every input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// An input in a block of just its size, so that AddressSanitizer sees who reads past it.
class FuzzInput
{
public:
    FuzzInput(const uint8_t *data, size_t size) : m_block(new char[size]), m_size(int(size))
    {
        if (size > 0)
            std::memcpy(m_block.get(), data, size);
    }

    /// Valid as long as this object.
    QByteArray bytes() const { return QByteArray::fromRawData(m_block.get(), m_size); }

private:
    Q_DISABLE_COPY(FuzzInput)

    const std::unique_ptr<char[]> m_block;
    const int m_size;
};

namespace Fuzz {

/// Ends the process, as an engine counts findings, where something does not hold that always must.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    qCritical("does not hold: %s", what);
    std::abort();
}

/// As require(), and shows what the two are.
inline void requireEqual(const QByteArray &is, const QByteArray &shouldBe, const char *what)
{
    if (is == shouldBe)
        return;
    qCritical("is:        %s\nshould be: %s", is.constData(), shouldBe.constData());
    require(false, what);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(__clang__)
const double SlowDown = 10;
#else
const double SlowDown = 1;
#endif

/// The processor time of this thread, in seconds.
inline double processorTime()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

/// Ends the process when `work` costs more than its share: `bytes` are what it reads and what it makes.
/// 30 ms are left for the start and half a microsecond for a byte, several times of what a byte takes;
/// ten times as much where a sanitizer looks on. What a busy machine makes slow is tried again.
inline void requireProportion(const std::function<void()> &work,
                              const std::function<qint64()> &bytes)
{
    double took = 0;
    double allowed = 0;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const double before = processorTime();
        work();
        took = processorTime() - before;
        allowed = SlowDown * (0.03 + 0.5e-6 * double(bytes()));
        if (took <= allowed)
            return;
    }
    qCritical("%.3f s, where %.3f s are allowed", took, allowed);
    require(false, "the cost is in proportion to the size");
}

inline void passOver(QtMsgType type, const QByteArray &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", text.constData());
}

/// Keeps the library's warnings to itself: millions of them would be the slowest part of a run.
inline void silenceWarnings()
{
    static const bool isDone = (installMessageSink(passOver), true);
    Q_UNUSED(isDone)
}

} // namespace Fuzz

#endif // FUZZTARGET_H
