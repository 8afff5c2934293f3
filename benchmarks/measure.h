// SPDX-License-Identifier: MIT
/// Timing painted frames, and counting allocated bytes.
#pragma once

#include "panel.h"

#include <cstddef>
#include <functional>

/// How often each figure is measured, at least. The median is printed.
const int gRepetitions = 20;

/// Runs a step and the event loop until a frame with the list in it has been painted. The program ends when no frame
/// follows.
/// \return milliseconds of processor time from the start of the step to the end of that frame
double TimeToFrame(const Panel& in_panel, const std::function<void()>& in_step);

/// Paints the whole window as it is.
/// \return milliseconds of processor time to the end of the frame
double TimeRepaint(const Panel& in_panel);

/// Milliseconds of processor time that a step without a frame takes.
double Time(const std::function<void()>& in_step);

/// Handles all pending events, so that the next step is not charged for them.
void Settle();

/// Bytes in use on the heap; 0 where the C library has no such query.
std::size_t HeapBytes();
