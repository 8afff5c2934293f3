// SPDX-License-Identifier: MIT
/// Asks what to do with changes that are not saved.
#pragma once

#include <cstddef>

class QWidget;

namespace memorymodel
{
class Library;
}

namespace workspace
{
class Workspace;
}

namespace host
{

/// How many items of a library have changes that were not committed. Linear time.
std::size_t CountUnsavedItems(const memorymodel::Library& in_library);

/// Saves what has changed in a library. A message says what could not be saved, and why.
/// \param in_workspace what the library is kept in; null for a library that is kept elsewhere
/// \return whether everything was saved
bool SaveLibrary(const memorymodel::Library& in_library, const workspace::Workspace* in_workspace, QWidget* in_parent);

/// Asks once what to do with the changes of a library before it is closed: save them, discard them, or keep it open.
/// Asks nothing when there are none. A library whose changes cannot be saved stays open, and a message says why.
/// \param in_workspace what the library is kept in: its changed documents are what is asked about. Null for a library
///     that is kept elsewhere: then its changed items are
/// \return whether the library may be closed
bool MayLeaveLibrary(const memorymodel::Library& in_library, const workspace::Workspace* in_workspace,
                     QWidget* in_parent);

} // namespace host
