// SPDX-License-Identifier: MIT
#include "memorymodel/sourcecontrolservices.h"

#include "memorymodel/accessstate.h"
#include "qtcompat/latin1.h"

#include <QCoreApplication>

#include <algorithm>
#include <string>

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
    if (!library || io_item.m_cacheIndex < 0 || io_item.m_state == in_state)
        return;
    io_item.m_state = in_state;
    library->InBracket([&] { library->NotifyAccessState(id, in_state); });
}

void SourceControlServices::RequestObjectStates(const ScsTask& in_task, const std::list<Handle>& in_objects)
{
    ++m_requestCount;
    m_lastRequest.clear();
    const std::size_t before = m_waiting.size();
    for (const Handle& object : in_objects)
        if (const std::shared_ptr<Item> item = FindItem(object))
        {
            m_lastRequest.push_back(item->GetItemID());
            m_waiting.push_back(Waiting{&in_task, item->GetItemID(), m_round});
        }
    if (m_waiting.size() > before && !m_scheduled)
    {
        m_scheduled = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

void SourceControlServices::TaskEnded(const ScsTask& in_task)
{
    m_waiting.erase(std::remove_if(m_waiting.begin(), m_waiting.end(),
                                   [&](const Waiting& in_waiting) { return in_waiting.m_task == &in_task; }),
                    m_waiting.end());
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
        io_library.NotifyAccessState(id, item->m_state);
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
    const std::string text = item->m_name + '\n' + GetStateText(item->m_state) + '\n' + item->m_source->GetName() +
                             " (" + item->m_source->GetLocation() + ')';
    return qtcompat::FromLatin1(text);
}

void SourceControlServices::CheckOut(const Handle& in_object, bool* out_result, bool /*in_interactive*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    const bool done = item && !item->m_source->IsReadOnly();
    if (out_result)
        *out_result = done;
    if (done)
        SetState(*item, eCheckedOut);
}

void SourceControlServices::MakeWritable(const Handle& in_object, bool /*in_interactive*/)
{
    if (const std::shared_ptr<Item> item = FindItem(in_object))
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
