// SPDX-License-Identifier: MIT
#include "memorymodel/changecommand.h"

#include "memorymodel/commandmanager.h"
#include "memorymodel/commandstack.h"

#include <QUndoCommand>

#include <utility>

namespace memorymodel
{
namespace
{

/// One change on an undo stack.
class ChangeCommand : public QUndoCommand
{
public:
    ChangeCommand(CommandStack& in_stack, std::shared_ptr<Change> in_change)
        : QUndoCommand(in_change->GetText()), m_stack(in_stack), m_change(std::move(in_change))
    {
    }

    void undo() override { Run(false); }

    /// The stack calls this at the push, too, when the change has just been made.
    void redo() override
    {
        if (m_pushed)
            Run(true);
        m_pushed = true;
    }

private:
    /// Marks the stack as running, also when an observer throws.
    class Running
    {
    public:
        explicit Running(CommandStack& io_stack) : m_stack(io_stack), m_before(std::exchange(io_stack.m_running, true))
        {
        }
        ~Running() { m_stack.m_running = m_before; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        CommandStack& m_stack;
        const bool m_before;
    };

    void Run(bool in_forward)
    {
        const Running running(m_stack);
        m_change->Run(in_forward);
    }

    CommandStack& m_stack;
    const std::shared_ptr<Change> m_change;
    bool m_pushed = false;
};

} // namespace

bool DoChange(const std::shared_ptr<Change>& in_change, hmx::fwk::ICommandManager* in_commands)
{
    CommandManager* const manager = dynamic_cast<CommandManager*>(in_commands);
    CommandStack* const stack = manager ? &CommandStack::Of(*manager) : nullptr;
    return in_change->RunAround(true, [&] {
        // A stack takes no command while it undoes or redoes one.
        if (!stack || stack->m_running)
            return in_change->Apply(true);
        // Made now, since the text names the item as it is before. On the stack before anybody is notified: an observer
        // that writes finds it there, and its own command goes on top.
        std::unique_ptr<ChangeCommand> command(new ChangeCommand(*stack, in_change));
        if (!in_change->Apply(true))
            return false;
        stack->m_undoStack.push(command.release());
        return true;
    });
}

} // namespace memorymodel
