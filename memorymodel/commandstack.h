// SPDX-License-Identifier: MIT
/// The private part of a CommandManager.
#pragma once

#include <QUndoStack>

namespace memorymodel
{

class CommandManager;

/// An undo stack that knows whether it is at work.
class CommandStack
{
public:
    static CommandStack& Of(CommandManager& in_manager);

    QUndoStack m_undoStack;
    bool m_running = false; ///< whether it is undoing or redoing
};

} // namespace memorymodel
