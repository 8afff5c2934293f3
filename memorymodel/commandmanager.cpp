// SPDX-License-Identifier: MIT
#include "memorymodel/commandmanager.h"

#include "memorymodel/commandstack.h"

namespace memorymodel
{

CommandManager::CommandManager() : m_commandStack(new CommandStack) {}

CommandManager::~CommandManager() = default;

CommandStack& CommandStack::Of(CommandManager& in_manager)
{
    return *in_manager.m_commandStack;
}

QUndoStack& CommandManager::GetStack()
{
    return m_commandStack->m_undoStack;
}

} // namespace memorymodel
