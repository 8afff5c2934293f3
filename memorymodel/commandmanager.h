// SPDX-License-Identifier: MIT
/// Undo for the in-memory data layer: an undo stack behind the boundary's command manager.
#pragma once

#include "datamodel/system.h"
#include "memorymodel/export.h"

#include <QUndoStack>

namespace memorymodel
{

/// A command manager that the library's writes accept. A host shows its stack: QUndoStack has the actions, the signals
/// and the texts ("Rename compound Blend") for an edit menu.
///
/// Any number of managers may be in use at once. A manager that is not of this class is treated like none: the write is
/// done at once and cannot be undone. So is a write that an observer makes while the stack is undoing or redoing, since
/// a stack takes no command in the middle of that.
///
/// A command that has nothing to do any more stays on the stack as an empty step: undoing and redoing it changes nothing
/// and notifies nobody. So are the commands of a library that was removed or closed, and, for as long as it lasts, those
/// on an item whose data source has become read-only since.
class MEMORYMODEL_EXPORT CommandManager : public hmx::fwk::ICommandManager
{
public:
    QUndoStack& GetStack() { return m_stack; }

private:
    friend class ChangeCommand;

    QUndoStack m_stack;
    bool m_running = false;
};

} // namespace memorymodel
