// SPDX-License-Identifier: MIT
#ifndef AMOUNT_H
#define AMOUNT_H

#include <QtGlobal>

#include <QByteArray>

/// How much a test tries that can try any number of files.
namespace Amount {

/// The number in the environment; `usual` without one.
inline int given(const char *variable, int usual)
{
    bool isNumber = false;
    const int number = qgetenv(variable).toInt(&isNumber);
    return isNumber ? number : usual;
}

/// The same, but a part of `usual` where the program takes many times its time: what tests/CMakeLists.txt
/// sets for sanitizers and emulators.
inline int tried(const char *variable, int usual)
{
    return given(variable, qMax(1, usual / qMax(1, given("NUV_TEST_PART", 1))));
}

} // namespace Amount

#endif // AMOUNT_H
