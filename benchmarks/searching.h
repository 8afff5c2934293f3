// SPDX-License-Identifier: MIT
/// The metrics "key" and "key-max".
#pragma once

#include "content.h"

/// One change of the search text to the end of the frame, for each of several texts. "key" is the median of all texts
/// and repetitions. "key-max" is the median of the slowest text; each column has its own slowest. The lower bound is
/// one scan of all names for the words, and one repaint of the browser's window with the rows found.
/// \return false when the windows do not find equally many rows; standard error says so
bool MeasureKeys(const Content& in_content, const std::vector<NamedItem>& in_items);
