// SPDX-License-Identifier: MIT
/// The main function of every test program.
#pragma once

#include "tests/support/platformremarks.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

#include <cstdio>

/// Runs a test class; fails also when the test leaves a widget alive.
template <class TestClass, class Application = QApplication> int RunTest(int in_argc, char** in_argv)
{
    Application application(in_argc, in_argv);
    int result = 0;
    {
        const PlatformRemarkFilter filter;
        TestClass test;
        result = QTest::qExec(&test, in_argc, in_argv);
    }
    const QWidgetList left = QApplication::allWidgets();
    for (int i = 0; i < left.size(); ++i)
    {
        // The desktop is the toolkit's own widget, made when it first needs it.
        if (left.at(i)->windowType() == Qt::Desktop)
            continue;
        std::printf("FAIL!  : a widget is left alive: %s\n", left.at(i)->metaObject()->className());
        result = 1;
    }
    return result;
}

#define NODEBROWSER_TEST_MAIN(TestClass)       \
    int main(int argc, char** argv)            \
    {                                          \
        return RunTest<TestClass>(argc, argv); \
    }
