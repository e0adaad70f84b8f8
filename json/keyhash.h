#ifndef KEYHASH_H
#define KEYHASH_H

#include <QtGlobal>

/// A hash for tables of keys that come again and again, of bytes or of code units. The size and three of
/// the units are together enough to tell 45 of the 48 keys of a configuration apart in 128 buckets.
template<typename Unit>
inline uint keyHash(const Unit *key, int size)
{
    if (size == 0)
        return 0;
    const uint last = uint(size) - 1;
    uint hash = uint(size);
    hash = hash * 31 + key[uint(size) / 4];
    hash = hash * 31 + key[uint(size) / 2];
    hash = hash * 31 + key[last];
    return hash;
}

#endif // KEYHASH_H
