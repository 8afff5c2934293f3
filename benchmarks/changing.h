// SPDX-License-Identifier: MIT
/// The metrics "states" and "burst": many notifications, to the end of the frame that follows.
#pragma once

#include "content.h"

/// One state for each item, right after the list was built. Source control is on meanwhile.
void MeasureStates(Content& io_content);

/// 10,000 notifications of an addition and as many of changed tags.
void MeasureBurst(const Content& in_content);
