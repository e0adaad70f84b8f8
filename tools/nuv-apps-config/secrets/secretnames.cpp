// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/secretnames.h"

#include "tools/nuv-apps-config/properties/properties.h"
#include "tools/nuv-apps-config/text/spelling.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

struct Name {
    const char *letters;
    int mistakes; ///< so many letters may be wrong, missing or too many
};

const Name secretNames[] = { { "passphrase", 2 }, { "password", 1 }, { "passcode", 1 },
                             { "passp", 0 },      { "passw", 0 },    { "phrase", 0 } };
const Name certificateNames[] = { { "certificate", 3 } };

// The letter in lower case; 0 for any other character. No name has a digit: one is a mistake, and does not
// count among the letters that are wrong.
uchar asLetter(QChar c)
{
    const ushort code = c.unicode();
    if (code >= 'a' && code <= 'z')
        return uchar(code);
    return code >= 'A' && code <= 'Z' ? uchar(code | 0x20) : uchar(0);
}

QString lettersOf(const QString &text)
{
    QString letters;
    for (const QChar c : text) {
        const uchar letter = asLetter(c);
        if (letter != 0)
            letters += QLatin1Char(char(letter));
    }
    return letters;
}

/// Searches for all names at once, with their mistakes: one bit for each letter of the names that the
/// text may have reached, and one word of bits for each number of mistakes made on the way.
class Search
{
public:
    template<size_t N>
    explicit Search(const Name (&names)[N])
    {
        for (const Name &name : names)
            add(name);
    }

    // After the last letter of the first name; -1 when there is none.
    int endOfFirst(const QString &text) const
    {
        std::array<quint64, Words> reached = m_begin;
        for (int i = 0; i < text.size(); ++i) {
            const uchar letter = asLetter(text.at(i));
            if (letter != 0 && step(reached, m_masks[letter]))
                return i + 1;
        }
        return -1;
    }

private:
    static const size_t Words = 4; ///< one more than the most mistakes

    void add(const Name &name)
    {
        const int size = int(std::strlen(name.letters));
        for (int i = 0; i < size; ++i)
            m_masks[uchar(name.letters[i])] |= Q_UINT64_C(1) << (m_size + i);
        m_first |= Q_UINT64_C(1) << m_size;
        for (size_t k = 1; k < Words; ++k)
            m_begin[k] |= ((Q_UINT64_C(1) << k) - 1) << m_size;
        m_size += size;
        m_last[size_t(name.mistakes)] |= Q_UINT64_C(1) << (m_size - 1);
    }

    // Whether a name has ended with the letter.
    bool step(std::array<quint64, Words> &reached, quint64 mask) const
    {
        quint64 before = reached[0];
        reached[0] = ((reached[0] << 1) | m_first) & mask;
        bool hasEnded = reached[0] & m_last[0];
        for (size_t k = 1; k < Words; ++k) {
            const quint64 last = reached[k];
            const quint64 right = ((last << 1) | m_first) & mask;
            reached[k] = right | before | (before << 1) | (reached[k - 1] << 1) | m_first;
            hasEnded = hasEnded || (reached[k] & m_last[k]);
            before = last;
        }
        return hasEnded;
    }

    std::array<quint64, 128> m_masks = {}; ///< the places of each letter in the names
    std::array<quint64, Words> m_begin = {};
    std::array<quint64, Words> m_last = {}; ///< of the names with that many mistakes
    quint64 m_first = 0;
    int m_size = 0;
};

template<size_t N>
bool isNear(const Name (&names)[N], const QString &key)
{
    const QString letters = lettersOf(key);
    for (const Name &name : names) {
        if (Spelling::distance(letters, QLatin1String(name.letters), name.mistakes)
            <= name.mistakes)
            return true;
    }
    return false;
}

QSet<QString> knownWords()
{
    QSet<QString> words;
    for (const char *word : { "true", "false", "null", "_comment", "$schema" })
        words.insert(QLatin1String(word));
    for (const Property &property : Properties::all()) {
        words.insert(QLatin1String(property.key));
        words.insert(QLatin1String(property.property));
    }
    words.remove(QString());
    return words;
}

} // namespace

bool SecretNames::isSecret(const QString &key)
{
    return endOfSecretName(key) >= 0;
}

bool SecretNames::isCertificate(const QString &key)
{
    return endOfCertificateName(key) >= 0;
}

bool SecretNames::isProxy(const QString &key)
{
    const Name names[] = { { "httpproxy", 2 } };
    return isNear(names, key);
}

int SecretNames::endOfSecretName(const QString &text)
{
    static const Search search(secretNames);
    return search.endOfFirst(text);
}

int SecretNames::endOfCertificateName(const QString &text)
{
    static const Search search(certificateNames);
    return search.endOfFirst(text);
}

bool SecretNames::isKnown(const QString &word)
{
    static const QSet<QString> known = knownWords();
    return known.contains(word);
}

bool SecretNames::isRead(const QString &key)
{
    return isKnown(key) && !key.startsWith(QLatin1Char('_'));
}

bool SecretNames::isMeant(const QString &key)
{
    const int mostOthers = 2; // more are no mistakes in a key, but what follows it
    const auto isOther = [](QChar c) {
        return asLetter(c) == 0 && !QString(QLatin1String(" _-")).contains(c);
    };
    if (std::count_if(key.begin(), key.end(), isOther) > mostOthers)
        return false;
    const Name members[] = { { "path", 1 },
                             { "privatekey", 2 },
                             { "certpath", 1 },
                             { "certpassphrase", 2 },
                             { "certprivatekey", 2 } };
    return isNear(secretNames, key) || isNear(certificateNames, key) || isNear(members, key);
}
