// SPDX-License-Identifier: MIT
/// The commit of a library: which items are saved, and what came of it.
#pragma once

#include "memorymodel/librarycontents.h"

namespace memorymodel
{

/// Has the store save what changed. The items that are safe then are clean afterwards. Without a store all of them
/// count as saved. Items of read-only sources are left out.
/// \param in_everything clean items too
/// \param in_only the source whose items are saved; null for all sources
CommitAnswer CommitItems(LibraryContents& io_library, bool in_everything, const DataSource* in_only);

} // namespace memorymodel
