// SPDX-License-Identifier: MIT
/// The one function whose instructions are counted.
#pragma once

#include <functional>

class QWidget;

#if defined(_MSC_VER)
#define BENCH_NOINLINE __declspec(noinline)
#else
#define BENCH_NOINLINE __attribute__((noinline))
#endif

/// Runs a step and paints the one frame that it asked for, in a window that is shown. It has a plain name and a file of
/// its own so that it stays one function whatever the compiler makes of the rest.
extern "C" BENCH_NOINLINE void CountedStep(QWidget& in_window, const std::function<void()>& in_step);
