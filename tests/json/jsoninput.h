// SPDX-License-Identifier: MIT
#ifndef JSONINPUT_H
#define JSONINPUT_H

#include <QByteArray>

#include <cstring>
#include <memory>
#include <random>

/// The text with a double quote for every single one, so that JSON can be read in the source.
inline QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}

/// A copy of some bytes in a block of exactly their size, without the NUL that a QByteArray has
/// after its end. AddressSanitizer sees whoever reads past it.
class ExactBlock
{
public:
    explicit ExactBlock(const QByteArray &bytes)
        : m_block(new char[size_t(bytes.size())]), m_size(bytes.size())
    {
        std::memcpy(m_block.get(), bytes.constData(), size_t(m_size));
    }

    /// Valid as long as this object.
    QByteArray bytes() const { return QByteArray::fromRawData(m_block.get(), m_size); }

private:
    Q_DISABLE_COPY(ExactBlock)

    const std::unique_ptr<char[]> m_block;
    const int m_size;
};

/// The same sequence in every run.
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}

    /// From 0 to limit - 1.
    int below(int limit) { return int(m_engine() % unsigned(limit)); }

    char oneOf(const QByteArray &alphabet) { return alphabet.at(below(alphabet.size())); }

    QByteArray bytes(const QByteArray &alphabet, int size)
    {
        QByteArray result;
        for (int i = 0; i < size; ++i)
            result += oneOf(alphabet);
        return result;
    }

private:
    std::mt19937 m_engine;
};

#endif // JSONINPUT_H
