// SPDX-License-Identifier: MIT
#ifndef UTF8_H
#define UTF8_H

/// The little that has to be known of UTF-8 in files that are read byte by byte.
namespace Utf8 {

/// The bytes of the character at `p`, which has `size` bytes; 0 when that is no UTF-8.
inline int length(const char *p, int size)
{
    const unsigned char first = static_cast<unsigned char>(*p);
    if (first < 0x80)
        return 1;
    const int count = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || count > size)
        return 0;
    for (int i = 1; i < count; ++i) {
        if ((static_cast<unsigned char>(p[i]) & 0xc0) != 0x80)
            return 0;
    }
    return count;
}

inline bool isValid(const char *p, int size)
{
    while (size > 0) {
        const int count = length(p, size);
        if (count == 0)
            return false;
        p += count;
        size -= count;
    }
    return true;
}

/// The characters that begin in the bytes.
inline int count(const char *p, int size)
{
    int characters = 0;
    for (int i = 0; i < size; ++i)
        characters += (static_cast<unsigned char>(p[i]) & 0xc0) != 0x80;
    return characters;
}

} // namespace Utf8

#endif // UTF8_H
