// SPDX-License-Identifier: MIT
#include "memorymodel/commandmanager.h"

#include "memorymodel/commandstack.h"

namespace memorymodel
{

CommandManager::CommandManager() : m_private(new CommandStack) {}

CommandManager::~CommandManager() = default;

CommandStack& CommandStack::Of(CommandManager& in_manager)
{
    return *in_manager.m_private;
}

QUndoStack& CommandManager::GetStack()
{
    return m_private->m_undoStack;
}

} // namespace memorymodel
