// SPDX-License-Identifier: MIT
/// Puts the items of MaterialX documents into a library in memory.
#pragma once

#include "materialx/items.h"
#include "materialx/library.h"

#include <vector>

namespace memorymodel
{
class Library;
}

namespace host
{

/// Adds items to a library that is still empty. The first source is "Local": it takes changes, and new items go there.
/// The sources of the documents follow in their order and are read-only; one called "stdlib" is the factory source.
/// Each character that Latin-1 lacks becomes one "?".
///
/// The library notifies its observers of each item.
/// \param in_items what materialx::MakeItems() made of the documents
void AddItems(const materialx::Library& in_documents, const std::vector<materialx::Item>& in_items,
              memorymodel::Library& io_library);

} // namespace host
