// SPDX-License-Identifier: MIT
/// The metrics "open", "rename" and "memory".
#pragma once

#include "content.h"

/// "open": attaching a library to the end of the first frame, with source control off. A peer reads the library and
/// fills its view. The lower bound is two bare builds, because attaching builds the list and the first frame builds it
/// again. A bare build makes each call of the boundary that a list needs, and keeps nothing.
///
/// "rename": an item of a library that a browser shows gets another name, to the end of the frame. The list is built
/// once, so the lower bound is one bare build.
void MeasureOpening(const Content& in_content);

/// The bytes an item that the browser holds after a library was attached and painted.
void MeasureMemory(const Content& in_content);
