// SPDX-License-Identifier: MIT
#ifndef SECRETFILES_H
#define SECRETFILES_H

#include <QByteArray>
#include <QString>

#include <random>

/// A configuration with a secret in it, and mistakes around the secret.
struct SecretFile {
    QByteArray name; ///< where the secret is, for people
    QByteArray secret; ///< as it is in the file, before the mistakes
    QByteArray bytes;
};

/// Makes such files, the same ones for the same seed.
class SecretFiles
{
public:
    explicit SecretFiles(unsigned seed) : m_random(seed) {}

    SecretFile next();

    /// The fewest letters to change, to add or to take away that make the name a part of the letters.
    static int mistakesIn(const QByteArray &letters, const QByteArray &name);

private:
    int below(int limit) { return int(m_random() % unsigned(limit)); }
    template<typename T, size_t N>
    const T &oneOf(const T (&list)[N])
    {
        return list[below(int(N))];
    }

    QByteArray secretFor(bool isInAddress);
    QByteArray broken(QByteArray bytes, const QByteArray &secret);
    void breakOnce(QByteArray &bytes, int begin, int end);

    std::mt19937 m_random;
};

#endif // SECRETFILES_H
