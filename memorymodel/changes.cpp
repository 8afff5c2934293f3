// SPDX-License-Identifier: MIT
#include "memorymodel/changes.h"

#include "qtcompat/latin1.h"

#include <utility>

namespace memorymodel
{

Change::Change(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item)
    : m_item(std::move(in_item)), m_library(in_library), m_evenReadOnly(m_item->m_source->IsReadOnly())
{
}

bool Change::MayRun(const LibraryContents& in_library, bool in_forward) const
{
    return (m_evenReadOnly || !m_item->m_source->IsReadOnly()) && IsDue(in_library, in_forward);
}

void Change::NotifyBefore(LibraryContents& /*io_library*/, bool /*in_forward*/) const {}

QString Change::GetItemText() const
{
    return QString::fromLatin1(m_item->GetKindName()) + QLatin1Char(' ') + qtcompat::FromLatin1(m_item->m_name);
}

bool Change::RunAround(bool in_forward, const std::function<bool()>& in_apply)
{
    const std::shared_ptr<LibraryContents> library = m_library.lock();
    if (!library || !MayRun(*library, in_forward))
        return false;
    bool done = false;
    // Observers may change the item or close the library, so this is asked again after each notification.
    library->InBracket([&] {
        if (!MayRun(*library, in_forward))
            return;
        NotifyBefore(*library, in_forward);
        if (!MayRun(*library, in_forward))
            return;
        done = in_apply();
        if (!done)
        {
            // Observers may have been told of what does not happen now.
            library->NotifyInvalidated();
            return;
        }
        NotifyAfter(*library, in_forward);
        if (m_step)
            m_step->Settle();
    });
    return done;
}

void Change::Run(bool in_forward)
{
    RunAround(in_forward, [&] { return Apply(in_forward); });
}

bool Change::Apply(bool in_forward)
{
    const std::shared_ptr<LibraryContents> library = m_library.lock();
    if (!library || !MayRun(*library, in_forward) || (m_step && !m_step->Run(in_forward)))
        return false;
    Write(*library, in_forward);
    return true;
}

PresenceChange::PresenceChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item,
                               bool in_comes)
    : Change(in_library, std::move(in_item)), m_comes(in_comes)
{
}

QString PresenceChange::GetText() const
{
    return QString::fromLatin1(m_comes ? "Create " : "Remove ") + GetItemText();
}

bool PresenceChange::IsDue(const LibraryContents& in_library, bool in_forward) const
{
    return in_library.IsOpen() && !m_item->m_leaving && (m_item->m_library == nullptr) == (in_forward == m_comes);
}

void PresenceChange::NotifyBefore(LibraryContents& io_library, bool in_forward) const
{
    if (in_forward == m_comes)
        return;
    // While observers are notified, they cannot make the item leave a second time.
    struct Leaving
    {
        explicit Leaving(bool& io_leaving) : m_leaving(io_leaving) { m_leaving = true; }
        ~Leaving() { m_leaving = false; }
        bool& m_leaving;
    };
    const Leaving leaving(m_item->m_leaving);
    io_library.NotifyItemRemoved(m_item);
}

void PresenceChange::Write(LibraryContents& io_library, bool in_forward)
{
    if (in_forward == m_comes)
        io_library.PutIn(m_item);
    else
        io_library.TakeOut(*m_item);
}

void PresenceChange::NotifyAfter(LibraryContents& io_library, bool in_forward) const
{
    if (in_forward == m_comes)
        io_library.NotifyItemAdded(m_item);
}

ContentChange::ContentChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item)
    : Change(in_library, std::move(in_item))
{
}

bool ContentChange::IsDue(const LibraryContents& in_library, bool in_forward) const
{
    return m_item->m_library == &in_library && !IsContent(in_forward);
}

void ContentChange::Write(LibraryContents& io_library, bool in_forward)
{
    // The content before is taken now and not in the constructor: observers may have changed the item in between.
    if (!m_kept)
    {
        KeepContent();
        m_revisions[0] = m_item->m_revision;
        m_revisions[1] = io_library.NewRevision();
        m_kept = true;
    }
    SetContent(in_forward);
    // A write that cannot be undone may have come in between. Then the result is neither of the two known states.
    const bool isKnown = m_item->m_revision == m_revisions[in_forward ? 0 : 1];
    m_item->m_revision = isKnown ? m_revisions[in_forward ? 1 : 0] : io_library.NewRevision();
}

NameChange::NameChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item,
                       std::string in_name)
    : ContentChange(in_library, std::move(in_item)), m_names{std::string(), std::move(in_name)}
{
}

QString NameChange::GetText() const
{
    return QString::fromLatin1("Rename ") + GetItemText();
}

void NameChange::NotifyAfter(LibraryContents& io_library, bool /*in_forward*/) const
{
    io_library.NotifyNameChanged(m_item->GetItemID());
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

TagsChange::TagsChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item,
                       std::string in_key, std::string in_tags)
    : ContentChange(in_library, std::move(in_item)), m_key(std::move(in_key)), m_tags{std::string(), std::move(in_tags)}
{
}

QString TagsChange::GetText() const
{
    return QString::fromLatin1("Edit tags of ") + GetItemText();
}

void TagsChange::NotifyAfter(LibraryContents& io_library, bool /*in_forward*/) const
{
    io_library.NotifyTagsChanged(m_item->GetItemID(), m_key.c_str());
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

SourceChange::SourceChange(const std::shared_ptr<LibraryContents>& in_library, std::shared_ptr<Item> in_item,
                           std::shared_ptr<DataSource> in_target)
    : ContentChange(in_library, std::move(in_item)), m_sources{nullptr, std::move(in_target)}
{
}

bool SourceChange::IsDue(const LibraryContents& in_library, bool in_forward) const
{
    return ContentChange::IsDue(in_library, in_forward) && !m_sources[in_forward ? 1 : 0]->IsReadOnly();
}

QString SourceChange::GetText() const
{
    return QString::fromLatin1("Move ") + GetItemText() + QString::fromLatin1(" to ") +
           qtcompat::FromLatin1(m_sources[1]->GetName());
}

void SourceChange::NotifyAfter(LibraryContents& io_library, bool /*in_forward*/) const
{
    io_library.NotifyInvalidated();
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
