// SPDX-License-Identifier: MIT
/// The commit of a library: which items are saved, and what came of it.
#pragma once

#include "memorymodel/librarycontents.h"

#include <list>
#include <string>

namespace memorymodel
{

struct CommitResult
{
    bool m_written = false;            ///< whether anything was saved
    std::list<std::string> m_messages; ///< one for each item that the writer refused
};

/// Hands the items to the library's writer, in the order of their numbers; those that it saves are clean afterwards.
/// Without a writer all items count as saved. Items of read-only sources are left out.
/// \param in_everything clean items too
/// \param in_only the source whose items are saved; null for all sources
CommitResult CommitItems(LibraryContents& io_library, bool in_everything, const DataSource* in_only);

} // namespace memorymodel
