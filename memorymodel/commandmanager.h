// SPDX-License-Identifier: MIT
/// Undo for the in-memory data layer: an undo stack behind the boundary's command manager.
#pragma once

#include "datamodel/system.h"
#include "memorymodel/export.h"

#include <QUndoStack>

#include <memory>

namespace memorymodel
{

class CommandStack;

/// A command manager that the library's writes accept. A host shows its stack: QUndoStack has the actions, the signals
/// and the texts ("Rename compound Blend") for an edit menu.
///
/// Any number of managers may be in use at once. A manager that is not of this class is treated like none: the write is
/// done at once and cannot be undone. The same holds for a write that an observer makes while the stack undoes or
/// redoes, since a stack takes no command meanwhile.
///
/// A command that has nothing to do any more stays on the stack as an empty step: undoing and redoing it changes
/// nothing and notifies nobody. The commands of a library that was removed or closed are empty steps; so are the
/// commands on an item whose data source has become read-only, until the source takes changes again.
class MEMORYMODEL_EXPORT CommandManager : public hmx::fwk::ICommandManager
{
public:
    /// A manager with an empty stack.
    CommandManager();
    /// Destroys the stack and its commands. They may outlive their library.
    ~CommandManager() override;
    CommandManager(const CommandManager&) = delete;
    CommandManager& operator=(const CommandManager&) = delete;

    /// The stack, for actions, signals and texts. It lives as long as this object. The writes of libraries push their
    /// commands; a host may push commands of its own, so that all is undone in the order in which it was done.
    QUndoStack& GetStack();

private:
    friend class CommandStack;

    std::unique_ptr<CommandStack> m_private;
};

} // namespace memorymodel
