// SPDX-License-Identifier: MIT
/// The metrics "key" and "key-max".
#pragma once

#include "content.h"

/// One change of the search text to the end of the frame, over a list of texts. "key" is the median of all texts and
/// repetitions, "key-max" the median of the slowest text, each column by its own slowest. The lower bound is one scan
/// of all names for the words, and one plain repaint of the browser's window with the rows found.
///
/// False, after a sentence on standard error, when the windows do not find the same number of rows.
bool MeasureKeys(const Content& in_content, const std::vector<NamedItem>& in_items);
