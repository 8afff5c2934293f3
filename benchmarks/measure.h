// SPDX-License-Identifier: MIT
/// Timing painted frames, and counting allocated bytes.
#pragma once

#include "panel.h"

#include <cstddef>
#include <functional>

/// How often every figure is taken, at least; the median of them is told.
const int gRepetitions = 20;

/// Runs a step and what it leads to, until a frame with the list in it has been painted. A step that leads to no frame
/// ends the program.
/// \return milliseconds of processor time from the start of the step to the end of that frame
double TimeToFrame(const Panel& in_panel, const std::function<void()>& in_step);

/// Paints the whole window as it is.
/// \return milliseconds of processor time to the end of the frame
double TimeRepaint(const Panel& in_panel);

/// Milliseconds of processor time that a step takes which paints nothing.
double Time(const std::function<void()>& in_step);

/// Lets everything happen that steps left for later, so that it is not counted with the next one.
void Settle();

/// Bytes in use on the heap; 0 where the C library does not tell.
std::size_t HeapBytes();
