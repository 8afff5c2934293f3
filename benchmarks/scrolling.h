// SPDX-License-Identifier: MIT
/// The metric "scroll".
#pragma once

#include "content.h"

class QWidget;

/// Turns the wheel over a list by one step towards the user.
void TurnWheel(QWidget& io_list);

/// One turn of the wheel over the list of all items, to the end of the frame.
void MeasureScrolling(const Content& in_content);
