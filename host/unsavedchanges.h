// SPDX-License-Identifier: MIT
/// What happens to changes that were not saved.
#pragma once

#include <cstddef>

class QWidget;

namespace memorymodel
{
class Library;
}

namespace host
{

/// How many items of a library have changes that were not committed. Linear time.
std::size_t CountUnsavedItems(const memorymodel::Library& in_library);

/// Asks once what to do with the changes of a library that is about to be left: save them, discard them, or stay. Asks
/// nothing when there are none. Changes that cannot be saved keep the library, and a message says why.
/// \return whether the library may be left
bool MayLeaveLibrary(const memorymodel::Library& in_library, QWidget* in_parent);

} // namespace host
