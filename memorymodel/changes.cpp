// SPDX-License-Identifier: MIT
#include "memorymodel/changes.h"

#include "memorymodel/commandmanager.h"
#include "qtcompat/latin1.h"

#include <utility>

namespace memorymodel
{

/// One change on an undo stack.
class ChangeCommand : public QUndoCommand
{
public:
    ChangeCommand(CommandManager& in_manager, std::shared_ptr<Change> in_change)
        : QUndoCommand(in_change->GetText()), m_manager(in_manager), m_change(std::move(in_change))
    {
    }

    /// Whether the manager's stack takes commands now.
    static bool IsWelcome(const CommandManager& in_manager) { return !in_manager.m_running; }

    void undo() override { Run(false); }

    /// The first time, at the push, whoever pushes notifies: a write from inside of those notifications then meets a
    /// stack that has this command already, and goes on top of it.
    void redo() override
    {
        if (m_pushed)
            Run(true);
        else
            m_change->Apply(true);
        m_pushed = true;
    }

private:
    /// Marks the manager as running, also when an observer throws.
    class Running
    {
    public:
        explicit Running(CommandManager& in_manager)
            : m_manager(in_manager), m_before(std::exchange(in_manager.m_running, true))
        {
        }
        ~Running() { m_manager.m_running = m_before; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        CommandManager& m_manager;
        const bool m_before;
    };

    void Run(bool in_forward)
    {
        const Running running(m_manager);
        m_change->Run(in_forward);
    }

    CommandManager& m_manager;
    const std::shared_ptr<Change> m_change;
    bool m_pushed = false;
};

Change::Change(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item)
    : m_item(std::move(in_item)), m_library(in_library), m_evenReadOnly(m_item->m_source->IsReadOnly())
{
}

bool Change::MayRun(const LibraryContext& in_library, bool in_forward) const
{
    return (m_evenReadOnly || !m_item->m_source->IsReadOnly()) && IsDue(in_library, in_forward);
}

void Change::TellBefore(LibraryContext& /*in_library*/, bool /*in_forward*/) const {}

QString Change::GetItemText() const
{
    return QString::fromLatin1(m_item->GetKindName()) + QLatin1Char(' ') + qtcompat::FromLatin1(m_item->m_name);
}

/// Asks anew after each round of notifications, since observers may have changed what this is about.
template <class Step> bool Change::RunAround(bool in_forward, const Step& in_step)
{
    const std::shared_ptr<LibraryContext> library = m_library.lock();
    if (!library || !MayRun(*library, in_forward))
        return false;
    bool done = false;
    library->InBracket([&] {
        if (!MayRun(*library, in_forward))
            return;
        TellBefore(*library, in_forward);
        if (!MayRun(*library, in_forward))
            return;
        in_step();
        done = true;
        TellAfter(*library, in_forward);
    });
    return done;
}

void Change::Run(bool in_forward)
{
    RunAround(in_forward, [&] { Apply(in_forward); });
}

bool Change::Do(const std::shared_ptr<Change>& in_change, hmx::fwk::ICommandManager* in_commands)
{
    CommandManager* const manager = dynamic_cast<CommandManager*>(in_commands);
    return in_change->RunAround(true, [&] {
        if (manager && ChangeCommand::IsWelcome(*manager))
            manager->GetStack().push(new ChangeCommand(*manager, in_change));
        else
            in_change->Apply(true);
    });
}

void Change::Apply(bool in_forward)
{
    const std::shared_ptr<LibraryContext> library = m_library.lock();
    if (library && MayRun(*library, in_forward))
        Write(*library, in_forward);
}

PresenceChange::PresenceChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item,
                               bool in_comes)
    : Change(in_library, std::move(in_item)), m_comes(in_comes)
{
}

QString PresenceChange::GetText() const
{
    return QString::fromLatin1(m_comes ? "Create " : "Remove ") + GetItemText();
}

bool PresenceChange::IsDue(const LibraryContext& in_library, bool in_forward) const
{
    return in_library.IsOpen() && !m_item->m_leaving && (m_item->m_library == nullptr) == (in_forward == m_comes);
}

void PresenceChange::TellBefore(LibraryContext& in_library, bool in_forward) const
{
    if (in_forward == m_comes)
        return;
    // Until everybody is told, the item cannot be made to leave again.
    struct Leaving
    {
        explicit Leaving(bool& out_leaving) : m_leaving(out_leaving) { m_leaving = true; }
        ~Leaving() { m_leaving = false; }
        bool& m_leaving;
    };
    const Leaving leaving(m_item->m_leaving);
    in_library.TellItemRemoved(m_item);
}

void PresenceChange::Write(LibraryContext& in_library, bool in_forward)
{
    if (in_forward == m_comes)
        in_library.PutIn(m_item);
    else
        in_library.TakeOut(*m_item);
}

void PresenceChange::TellAfter(LibraryContext& in_library, bool in_forward) const
{
    if (in_forward == m_comes)
        in_library.TellItemAdded(m_item);
}

ContentChange::ContentChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item)
    : Change(in_library, std::move(in_item))
{
}

bool ContentChange::IsDue(const LibraryContext& in_library, bool in_forward) const
{
    return m_item->m_library == &in_library && !IsContent(in_forward);
}

void ContentChange::Write(LibraryContext& in_library, bool in_forward)
{
    // Not earlier than now: observers may have changed the item after this change was made.
    if (!m_kept)
    {
        KeepContent();
        m_revisions[0] = m_item->m_revision;
        m_revisions[1] = in_library.NewRevision();
        m_kept = true;
    }
    SetContent(in_forward);
    // Something else that cannot be undone may have changed the item in between: then this is a state of its own.
    const bool followsUp = m_item->m_revision == m_revisions[in_forward ? 0 : 1];
    m_item->m_revision = followsUp ? m_revisions[in_forward ? 1 : 0] : in_library.NewRevision();
}

NameChange::NameChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item,
                       std::string in_name)
    : ContentChange(in_library, std::move(in_item)), m_names{std::string(), std::move(in_name)}
{
}

QString NameChange::GetText() const
{
    return QString::fromLatin1("Rename ") + GetItemText();
}

void NameChange::TellAfter(LibraryContext& in_library, bool /*in_forward*/) const
{
    in_library.TellNameChanged(m_item->GetItemID());
}

bool NameChange::IsContent(bool in_after) const
{
    return m_item->m_name == m_names[in_after ? 1 : 0];
}

void NameChange::SetContent(bool in_after)
{
    m_item->m_name = m_names[in_after ? 1 : 0];
}

void NameChange::KeepContent()
{
    m_names[0] = m_item->m_name;
}

TagsChange::TagsChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item,
                       std::string in_key, std::string in_tags)
    : ContentChange(in_library, std::move(in_item)), m_key(std::move(in_key)), m_tags{std::string(), std::move(in_tags)}
{
}

QString TagsChange::GetText() const
{
    return QString::fromLatin1("Edit tags of ") + GetItemText();
}

void TagsChange::TellAfter(LibraryContext& in_library, bool /*in_forward*/) const
{
    in_library.TellTagsChanged(m_item->GetItemID(), m_key.c_str());
}

bool TagsChange::IsContent(bool in_after) const
{
    return m_item->GetTags(m_key.c_str()) == m_tags[in_after ? 1 : 0];
}

void TagsChange::SetContent(bool in_after)
{
    m_item->SetTags(m_key.c_str(), m_tags[in_after ? 1 : 0]);
}

void TagsChange::KeepContent()
{
    m_tags[0] = m_item->GetTags(m_key.c_str());
}

SourceChange::SourceChange(const std::shared_ptr<LibraryContext>& in_library, std::shared_ptr<Item> in_item,
                           std::shared_ptr<DataSource> in_target)
    : ContentChange(in_library, std::move(in_item)), m_sources{nullptr, std::move(in_target)}
{
}

bool SourceChange::IsDue(const LibraryContext& in_library, bool in_forward) const
{
    return ContentChange::IsDue(in_library, in_forward) && !m_sources[in_forward ? 1 : 0]->IsReadOnly();
}

QString SourceChange::GetText() const
{
    return QString::fromLatin1("Move ") + GetItemText() + QString::fromLatin1(" to ") +
           qtcompat::FromLatin1(m_sources[1]->GetName());
}

void SourceChange::TellAfter(LibraryContext& in_library, bool /*in_forward*/) const
{
    in_library.TellInvalidated();
}

bool SourceChange::IsContent(bool in_after) const
{
    return m_item->m_source == m_sources[in_after ? 1 : 0];
}

void SourceChange::SetContent(bool in_after)
{
    m_item->m_source = m_sources[in_after ? 1 : 0];
}

void SourceChange::KeepContent()
{
    m_sources[0] = m_item->m_source;
}

} // namespace memorymodel
