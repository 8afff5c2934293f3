/// The metrics "open" and "memory".
#pragma once

#include "content.h"

#include <optional>

/// Attaching a library to the end of the first frame, source control off; for the peers reading it and filling the view.
/// The limit makes the calls of the boundary that two builds of the list need: attaching makes one, the first frame
/// another.
/// \return the browser's time
std::optional<double> MeasureOpening(const Content& in_content);

/// What the browser holds per item once a library is attached and painted, in bytes.
void MeasureMemory(const Content& in_content);
