// SPDX-License-Identifier: MIT
#ifndef GUITESTMAIN_H
#define GUITESTMAIN_H

#include "tests/support/testmain.h"

#include <QApplication>

/// main() of a test that shows pages or widgets; the tests' environment keeps them off the screen.
#define NUV_GUI_TEST_MAIN(TestClass) NUV_TEST_MAIN_WITH(QApplication, TestClass)

#endif // GUITESTMAIN_H
