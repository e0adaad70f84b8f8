#ifndef TESTMAIN_H
#define TESTMAIN_H

#include <QCoreApplication>
#include <QtTest>

/// main() of a test that needs no display. The application object comes first, so that the locale of
/// the environment is in force, as it is in a launcher.
#define NUV_TEST_MAIN(TestClass)                                                                   \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        QCoreApplication application(argc, argv);                                                  \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#endif // TESTMAIN_H
