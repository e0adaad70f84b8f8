// SPDX-License-Identifier: MIT
#ifndef NUMBERS_H
#define NUMBERS_H

#include <QByteArray>

/// Numbers as people write them, in a program, a table or a language of their own.
namespace Numbers {

/// How JSON writes the number that was meant: "1.5" for "+1.5", "9222" for "0x2406", "5242880" for
/// "5MB". Empty when nobody can tell.
QByteArray meant(const QByteArray &written);

} // namespace Numbers

#endif // NUMBERS_H
