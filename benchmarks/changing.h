/// The metrics "rename", "states" and "burst": what the library tells the browser, to the end of the frame.
#pragma once

#include "content.h"

#include <optional>

/// One item of the library gets another name.
/// \param in_openTime the limit: how long attaching the library takes
void MeasureRenaming(const Content& in_content, std::optional<double> in_openTime);

/// One state for each item, told through the observer's interface right after the list was built, with source control
/// on while it lasts.
void MeasureStates(Content& io_content);

/// 10,000 additions and as many changes of tags, told through the observers' interfaces.
void MeasureBurst(const Content& in_content);
