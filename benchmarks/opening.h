// SPDX-License-Identifier: MIT
/// The metrics "open", "rename" and "memory".
#pragma once

#include "content.h"

/// "open": attaching a library to the end of the first frame, source control off; for the peers reading it and filling
/// the view. The limit makes the calls of the boundary that two builds of the list need: attaching makes one, the first
/// frame another.
///
/// "rename": one item of a library that a browser shows gets another name, to the end of the frame. The limit is the
/// browser's time for "open", taken in turns with it.
void MeasureOpening(const Content& in_content);

/// What the browser holds per item once a library is attached and painted, in bytes.
void MeasureMemory(const Content& in_content);
