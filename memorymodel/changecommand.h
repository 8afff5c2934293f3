// SPDX-License-Identifier: MIT
/// Does changes, as commands on an undo stack where there is one.
#pragma once

#include "datamodel/system.h"
#include "memorymodel/changes.h"

#include <memory>

namespace memorymodel
{

/// Does a change for the first time: as one command on the stack of a CommandManager, otherwise for good.
/// \return false when there was nothing to change
bool DoChange(const std::shared_ptr<Change>& in_change, hmx::fwk::ICommandManager* in_commands);

} // namespace memorymodel
