// SPDX-License-Identifier: MIT
// Copies that the C library can check: the test of its options looks for the calls. How much is
// copied is known only when they run; the room, in the first, when they are compiled.

#include <cstdlib>
#include <cstring>

extern "C" {

__attribute__((visibility("default"))) void copyToKnownRoom(const char *text, std::size_t size,
                                                            char *first)
{
    char room[16];
    std::memcpy(room, text, size);
    *first = room[0];
}

__attribute__((visibility("default"))) char *copyToMeasuredRoom(const char *text, std::size_t size,
                                                                std::size_t roomSize)
{
    char *const room = static_cast<char *>(std::malloc(roomSize));
    std::memcpy(room, text, size);
    return room;
}
}
