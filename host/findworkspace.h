// SPDX-License-Identifier: MIT
/// What keeps a library on the disk.
#pragma once

#include <memory>

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

/// Null for a library in memory only.
std::shared_ptr<workspace::Workspace> FindWorkspace(const memorymodel::Library& in_library);

} // namespace host
