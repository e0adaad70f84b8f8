// SPDX-License-Identifier: MIT
#ifndef TESTMAIN_H
#define TESTMAIN_H

#include <QCoreApplication>
#include <QtTest>

/// main() of a test with an object of the class Application. It comes first, so that the locale of the
/// environment is in force, as it is in a launcher.
#define NUV_TEST_MAIN_WITH(Application, TestClass)                                                 \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        Application application(argc, argv);                                                       \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

/// main() of a test that needs no display.
#define NUV_TEST_MAIN(TestClass) NUV_TEST_MAIN_WITH(QCoreApplication, TestClass)

#endif // TESTMAIN_H
