// SPDX-License-Identifier: MIT
#include "memorymodel/sourcecontrolservices.h"

#include "memorymodel/accessstate.h"
#include "qtcompat/latin1.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

SourceControlServices::SourceControlServices(LayerContents& in_contents)
    : m_contents(in_contents), m_properties(new PropertiesManager)
{
}

void SourceControlServices::SetState(Item& io_item, unsigned in_state)
{
    const ItemID id = io_item.GetItemID();
    const std::shared_ptr<LibraryContext> library = io_item.m_library ? m_contents.FindLibrary(id) : nullptr;
    if (!library || io_item.m_cacheIndex < 0)
        return;
    const unsigned before = GetState(io_item);
    io_item.m_state = in_state;
    if (before == in_state)
        return;
    library->InBracket([&] { library->NotifyAccessState(id, in_state); });
}

unsigned SourceControlServices::GetState(const Item& in_item) const
{
    return in_item.m_state == eAccessStateUnknown && m_active && !FindVersioning(in_item.GetItemID())
               ? unsigned(eCheckedIn)
               : in_item.m_state;
}

Versioning* SourceControlServices::FindVersioning(const ItemID& in_item) const
{
    const std::shared_ptr<LibraryContext> library = m_contents.FindLibrary(in_item);
    return library ? library->GetVersioning() : nullptr;
}

void SourceControlServices::RequestObjectStates(const ScsTask& in_task, const std::list<Handle>& in_objects)
{
    ++m_requestCount;
    m_lastRequest.clear();
    const std::size_t before = m_waiting.size();
    for (const Handle& object : in_objects)
        if (const std::shared_ptr<Item> item = FindItem(object))
        {
            const ItemID id = item->GetItemID();
            m_lastRequest.push_back(id);
            (FindVersioning(id) ? m_asked : m_waiting).push_back(Waiting{&in_task, id, m_round});
        }
    AskVersionings(m_lastRequest);
    if (m_waiting.size() > before && !m_scheduled)
    {
        m_scheduled = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

void SourceControlServices::AskVersionings(const std::vector<ItemID>& in_items)
{
    std::map<Versioning*, std::vector<ItemID>> items;
    for (const ItemID& item : in_items)
        if (Versioning* const versioning = FindVersioning(item))
            items[versioning].push_back(item);
    for (const auto& entry : items)
        entry.first->RequestStates(entry.second);
}

void SourceControlServices::SetStates(const std::vector<ItemState>& in_states)
{
    const std::shared_ptr<LibraryContext> library =
        in_states.empty() ? nullptr : m_contents.FindLibrary(in_states.front().m_item);
    if (!library)
        return;
    std::unordered_set<std::uint64_t> answered; // by their numbers in the library
    std::vector<ItemID> changed;
    for (const ItemState& state : in_states)
    {
        const std::shared_ptr<Item> item = library->FindItem(state.m_item);
        if (!item || item->m_cacheIndex < 0)
            continue;
        answered.insert(state.m_item.GetNumber());
        if (std::exchange(item->m_state, state.m_state) != state.m_state)
            changed.push_back(state.m_item);
    }
    // Requests that observers make meanwhile wait for the next answer.
    const std::uint64_t round = m_round++;
    const auto isNow = [&](const Waiting& in_waiting) {
        return in_waiting.m_round <= round && in_waiting.m_item.GetSpace() == library->GetSpace() &&
               answered.count(in_waiting.m_item.GetNumber()) != 0;
    };
    std::unordered_set<std::uint64_t> notified;
    if (changed.empty() && std::none_of(m_asked.begin(), m_asked.end(), isNow))
        return;
    library->InBracket([&] {
        const auto notify = [&](const ItemID& in_item) {
            if (const std::shared_ptr<Item> item = library->FindItem(in_item))
                library->NotifyAccessState(in_item, item->m_state);
            notified.insert(in_item.GetNumber());
        };
        // Observers may end tasks, so the list is looked at anew after each.
        for (auto next = std::find_if(m_asked.begin(), m_asked.end(), isNow); next != m_asked.end();
             next = std::find_if(m_asked.begin(), m_asked.end(), isNow))
        {
            const ItemID item = next->m_item;
            m_asked.erase(next);
            notify(item);
        }
        for (const ItemID& item : changed)
            if (notified.count(item.GetNumber()) == 0)
                notify(item);
    });
}

void SourceControlServices::TaskEnded(const ScsTask& in_task)
{
    for (std::deque<Waiting>* const requests : {&m_waiting, &m_asked})
        requests->erase(std::remove_if(requests->begin(), requests->end(),
                                       [&](const Waiting& in_waiting) { return in_waiting.m_task == &in_task; }),
                        requests->end());
}

void SourceControlServices::customEvent(QEvent* /*in_event*/)
{
    m_scheduled = false;
    Deliver();
}

void SourceControlServices::Deliver()
{
    // Requests that observers make meanwhile wait for the next round: no request may be answered from inside its call.
    const std::uint64_t round = m_round++;
    while (!m_waiting.empty() && m_waiting.front().m_round <= round)
    {
        const std::shared_ptr<LibraryContext> library = m_contents.FindLibrary(m_waiting.front().m_item);
        if (!library || !library->FindItem(m_waiting.front().m_item))
        {
            m_waiting.pop_front();
            continue;
        }
        library->InBracket([&] { DeliverIn(*library, round); });
    }
}

void SourceControlServices::DeliverIn(LibraryContext& io_library, std::uint64_t in_round)
{
    while (!m_waiting.empty() && m_waiting.front().m_round <= in_round)
    {
        const ItemID id = m_waiting.front().m_item;
        const std::shared_ptr<Item> item = io_library.FindItem(id);
        if (!item)
            return;
        m_waiting.pop_front();
        io_library.NotifyAccessState(id, GetState(*item));
    }
}

bool SourceControlServices::IsFileVersionControlActive()
{
    return m_active;
}

QPixmap SourceControlServices::GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active,
                                                 bool in_ownSpace)
{
    return in_active ? m_badges.Decorate(in_base, in_state, in_ownSpace) : in_base;
}

QString SourceControlServices::GetToolTip(const Handle& in_object, const QString& /*in_icon*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    if (!item)
        return QString();
    if (Versioning* const versioning = FindVersioning(item->GetItemID()))
        return versioning->GetToolTip(item->GetItemID());
    const unsigned state = GetState(*item);
    const std::shared_ptr<LibraryContext> library = m_contents.FindLibrary(item->GetItemID());
    const bool isInMemory = library && !library->GetStore();
    const char* const noState = isInMemory ? "In memory only" : "Not under version control";
    const std::string text = item->m_name + '\n' + (state == eAccessStateUnknown ? noState : GetStateText(state)) +
                             '\n' + item->m_source->GetName() + " (" + item->m_source->GetLocation() + ')';
    return qtcompat::FromLatin1(text);
}

void SourceControlServices::CheckOut(const Handle& in_object, bool* out_result, bool in_interactive)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    bool done = item && !item->m_source->IsReadOnly();
    Versioning* const versioning = done ? FindVersioning(item->GetItemID()) : nullptr;
    if (versioning)
        done = versioning->CheckOut(item->GetItemID(), in_interactive);
    if (out_result)
        *out_result = done;
    if (done && !versioning)
        SetState(*item, eCheckedOut);
}

void SourceControlServices::MakeWritable(const Handle& in_object, bool in_interactive)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    if (!item)
        return;
    if (Versioning* const versioning = FindVersioning(item->GetItemID()))
        versioning->MakeWritable(item->GetItemID(), in_interactive);
    else
        SetState(*item, eWritable);
}

SourceControlServices::Handle SourceControlServices::FindObject(const nexa4::DbObjectId& in_id)
{
    return m_contents.GetDatabase().FindObject(in_id);
}

void SourceControlServices::ShowFiles(const Handle& in_object, const char* /*in_options*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    // A copy, since the handler may set another one.
    const std::function<void(const ItemID&)> handler = m_showFiles;
    if (item && handler)
        handler(item->GetItemID());
}

std::shared_ptr<Item> SourceControlServices::FindItem(const Handle& in_object) const
{
    return m_contents.GetDatabase().FindItem(in_object.GetInstance(), in_object.GetCacheIndex());
}

} // namespace memorymodel
