// SPDX-License-Identifier: MIT
/// The metrics "states" and "burst": many calls of the observers' interfaces, to the end of the frame that follows.
#pragma once

#include "content.h"

/// One state for each item, right after the list was built. Source control is on while it lasts.
void MeasureStates(Content& io_content);

/// 10,000 additions and as many changes of tags.
void MeasureBurst(const Content& in_content);
