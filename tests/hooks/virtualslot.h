// SPDX-License-Identifier: MIT
#ifndef VIRTUALSLOT_H
#define VIRTUALSLOT_H

#include <QObject>

#include <cstddef>
#include <cstring>

/// Where a class's virtual table holds a member function; -1 for one that is not virtual. Works out
/// the member pointer as the C++ ABI of our platforms lays it out.
template<class Method>
int virtualSlot(Method method)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof method == sizeof words, "not a member pointer of this C++ ABI");
    std::memcpy(words, &method, sizeof words);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = words[1] & 1;
    const std::ptrdiff_t offset = words[0];
#else
    const bool isVirtual = words[0] & 1;
    const std::ptrdiff_t offset = words[0] - 1;
#endif
    return isVirtual ? int(offset / std::ptrdiff_t(sizeof(void *))) : -1;
}

/// The slot after the last virtual function of a QObject: the first one that a class of ours can
/// add.
class FirstOwnSlot : public QObject
{
public:
    static int number() { return virtualSlot(&FirstOwnSlot::disconnectNotify) + 1; }
};

#endif // VIRTUALSLOT_H
