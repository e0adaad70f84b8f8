// SPDX-License-Identifier: MIT
#ifndef RANDOMCONFIGURATIONS_H
#define RANDOMCONFIGURATIONS_H

#include <QByteArray>

#include <random>

/// Configuration files by chance, the same ones for the same seed: every property with values of every
/// type, odd tags, versions on both sides of the gate, flat keys written with slashes, sections that are
/// not what they should be. A third of them is damaged in a few bytes afterwards.
class RandomConfigurations
{
public:
    explicit RandomConfigurations(unsigned int seed) : m_engine(seed) {}

    QByteArray next();

private:
    int below(int limit) { return int(m_engine() % unsigned(limit)); }
    bool once(int times) { return below(times) == 0; }
    template<int Size>
    QByteArray anyOf(const char *const (&choices)[Size])
    {
        return choices[below(Size)];
    }

    QByteArray value();
    QByteArray member(const QByteArray &key, const QByteArray &value);
    QByteArray object(QList<QByteArray> members);
    QByteArray tag();
    QByteArray certificate();
    QByteArray domains();
    QByteArray application();
    QByteArray applications();
    QByteArray global();
    void damage(QByteArray *bytes);

    std::mt19937 m_engine;
};

#endif // RANDOMCONFIGURATIONS_H
