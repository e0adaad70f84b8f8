#ifndef GUITESTMAIN_H
#define GUITESTMAIN_H

#include <QApplication>
#include <QtTest>

/// main() of a test that shows pages or widgets; the tests' environment keeps them off the screen.
#define NUV_GUI_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        QApplication application(argc, argv);                                                      \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#endif // GUITESTMAIN_H
