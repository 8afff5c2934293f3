// SPDX-License-Identifier: MIT
/// The warnings that a platform without a screen gives, announced so that they do not fail a test.
#pragma once

#include "tests/support/testcompat.h"

#include <QtTest>

/// Announces a warning of a platform whose windows are nowhere to be seen, if this is one.
inline void ExpectPlatformWarning(const char* in_warning)
{
    if (!testcompat::CanRaiseWindows())
        QTest::ignoreMessage(QtWarningMsg, in_warning);
}

/// Announces the warning that comes with each window that asks to be in front, a tool tip for example.
inline void ExpectRaisedWindow()
{
    ExpectPlatformWarning("This plugin does not support raise()");
}

/// Announces the warning that comes with a window whose layout finds its size while it is being shown.
inline void ExpectLaidOutWindow()
{
    ExpectPlatformWarning("This plugin does not support propagateSizeHints()");
}
