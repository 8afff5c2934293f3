// SPDX-License-Identifier: MIT
#include "host/findworkspace.h"

#include "memorymodel/library.h"
#include "workspace/workspace.h"

namespace host
{

std::shared_ptr<workspace::Workspace> FindWorkspace(const memorymodel::Library& in_library)
{
    return std::dynamic_pointer_cast<workspace::Workspace>(in_library.GetStore());
}

} // namespace host
