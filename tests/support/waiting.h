// SPDX-License-Identifier: MIT
/// Waiting for a condition.
#pragma once

#include <QtTest>

/// Waits until a condition holds, for two seconds at most unless told otherwise.
/// \return whether it holds
template <class Condition> bool WaitFor(Condition in_condition, int in_milliseconds = 2000)
{
    for (int waited = 0; waited < in_milliseconds && !in_condition(); waited += 10)
        QTest::qWait(10);
    return in_condition();
}
