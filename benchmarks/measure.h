/// Timing painted frames, and counting allocated bytes.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

class QWidget;

/// Runs a step and everything it leads to, until the widget has been painted and nothing is left to paint.
/// \return milliseconds from the start of the step to the end of the painted frame
double TimeToFrame(QWidget& in_widget, const std::function<void()>& in_step);

double Median(std::vector<double> in_values);

/// Bytes in use on the heap; 0 where the C library does not tell.
std::size_t HeapBytes();
