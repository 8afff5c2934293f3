// SPDX-License-Identifier: MIT
/// The metric "scroll".
#pragma once

#include "content.h"

class QWidget;

/// Turns the wheel over a list by one step towards the user.
void TurnWheel(QWidget& io_list);

/// One step of the wheel over the list to the end of the frame, with all items in it.
void MeasureScrolling(const Content& in_content);
