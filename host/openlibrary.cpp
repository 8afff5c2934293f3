// SPDX-License-Identifier: MIT
#include "host/openlibrary.h"

#include "workspace/workspace.h"

namespace host
{

memorymodel::Library* OpenLibrary(memorymodel::DataLayer& in_layer, const QString& in_path, QString* out_error)
{
    const std::shared_ptr<workspace::Workspace> workspace = workspace::Workspace::Open(in_layer, in_path, out_error);
    return workspace ? &workspace->GetLibrary() : nullptr;
}

} // namespace host
