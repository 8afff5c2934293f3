// SPDX-License-Identifier: MIT
/// The metrics "open", "rename" and "memory".
#pragma once

#include "content.h"

/// "open": attaching a library to the end of the first frame, source control off; for the peers reading it and
/// filling the view. Its lower bound is two bare builds, which make each call of the boundary that a list needs and
/// keep nothing: attaching builds the list, the first frame builds it again.
///
/// "rename": one item of a library that a browser shows gets another name, to the end of the frame. The list is built
/// once, so its lower bound is one bare build.
void MeasureOpening(const Content& in_content);

/// What the browser holds per item once a library is attached and painted, in bytes.
void MeasureMemory(const Content& in_content);
