#ifndef SEPARATORSEARCH_H
#define SEPARATORSEARCH_H

#include <QString>

/// Finds keys that contain a separator. The keys of a configuration come again and again in the same
/// string, which is not searched a second time.
class SeparatorSearch
{
public:
    SeparatorSearch() : m_plain() {}

    /// `key` must live as long as the search.
    bool finds(const QString &key)
    {
        const QChar *&plain = m_plain[quintptr(key.constData()) / 16 % PlainKeys];
        if (plain == key.constData())
            return false;
        plain = key.constData();
        return key.contains(QLatin1Char('/'));
    }

private:
    enum { PlainKeys = 256 };
    const QChar *m_plain[PlainKeys];
};

#endif // SEPARATORSEARCH_H
