// SPDX-License-Identifier: MIT
/// The metrics "git-states" and "git-gap": what git has of the documents of an opened folder.
#pragma once

#include <cstddef>

/// A folder of so many tracked documents with an item each, shown in a browser. In turns: the states of all items, from
/// the question to the last notification, and the git program's own report on the same folder.
///
/// "git-states" is processor time of all threads; "git-states-wait" is the time that passes. "git-gap" is the longest
/// time that the thread of the user interface did not get to its event loop meanwhile, "git-gap-work" the longest that
/// it worked.
/// \return false when git cannot be run
bool MeasureGitStates(std::size_t in_documents);
