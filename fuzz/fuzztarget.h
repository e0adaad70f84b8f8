#ifndef FUZZTARGET_H
#define FUZZTARGET_H

#include "global/qtcompat.h"
#include "tests/support/messagesink.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

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
