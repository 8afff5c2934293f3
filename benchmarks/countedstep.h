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

/// Runs a step and paints the frame that it requested, in a visible window. The function has C linkage and a file of
/// its own, so that the compiler neither inlines nor splits it.
extern "C" BENCH_NOINLINE void CountedStep(QWidget& in_window, const std::function<void()>& in_step);
