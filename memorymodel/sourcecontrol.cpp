// SPDX-License-Identifier: MIT
#include "memorymodel/sourcecontrol.h"

#include "memorymodel/layercontents.h"
#include "memorymodel/sourcecontrolservices.h"
#include "qtcompat/latin1.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

SourceControl::SourceControl(LayerContents& in_contents) : m_implementation(new Implementation(in_contents)) {}

SourceControl::~SourceControl() = default;

void SourceControl::SetVersionControlActive(bool in_active)
{
    m_implementation->m_active = in_active;
}

void SourceControl::SetEnabled(bool in_enabled)
{
    if (m_implementation->m_properties)
        m_implementation->m_properties->SetEnabled(in_enabled);
}

void SourceControl::SetHasProperties(bool in_has)
{
    if (m_implementation->m_properties)
        m_implementation->m_properties->SetHasProperties(in_has);
}

void SourceControl::SetState(const ItemID& in_item, unsigned in_state)
{
    const std::shared_ptr<Item> item = m_implementation->m_contents.FindItem(in_item);
    if (item)
        m_implementation->SetState(*item, in_state);
}

unsigned SourceControl::GetState(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_implementation->m_contents.FindItem(in_item);
    return item && item->m_cacheIndex >= 0 ? item->m_state : unsigned(eAccessStateUnknown);
}

void SourceControl::DeliverRequestedStates()
{
    m_implementation->Deliver();
}

std::size_t SourceControl::GetRequestCount() const
{
    return m_implementation->m_requestCount;
}

const std::vector<ItemID>& SourceControl::GetLastRequest() const
{
    return m_implementation->m_lastRequest;
}

void SourceControl::SetShowFilesHandler(std::function<void(const ItemID&)> in_handler)
{
    m_implementation->m_showFiles = std::move(in_handler);
}

SourceControl::Implementation::Implementation(LayerContents& in_contents)
    : m_contents(in_contents), m_properties(new PropertiesManager)
{
}

void SourceControl::Implementation::SetState(Item& in_item, unsigned in_state)
{
    if (!in_item.m_library || in_item.m_cacheIndex < 0 || in_item.m_state == in_state)
        return;
    in_item.m_state = in_state;
    LibraryContext& library = *in_item.m_library;
    const ItemID id = in_item.GetItemID();
    library.InBracket([&] { library.TellAccessState(id, in_state); });
}

void SourceControl::Implementation::RequestObjectStates(const ScsTask& in_task, const std::list<Handle>& in_objects)
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

void SourceControl::Implementation::TaskEnded(const ScsTask& in_task)
{
    m_waiting.erase(std::remove_if(m_waiting.begin(), m_waiting.end(),
                                   [&](const Waiting& in_waiting) { return in_waiting.m_task == &in_task; }),
                    m_waiting.end());
}

void SourceControl::Implementation::customEvent(QEvent* /*in_event*/)
{
    m_scheduled = false;
    Deliver();
}

void SourceControl::Implementation::Deliver()
{
    // Requests that observers make meanwhile belong to the next round: they must not be answered from inside the call.
    const std::uint64_t round = m_round++;
    while (!m_waiting.empty() && m_waiting.front().m_round <= round)
    {
        const std::shared_ptr<Item> first = m_contents.FindItem(m_waiting.front().m_item);
        if (!first)
        {
            m_waiting.pop_front();
            continue;
        }
        LibraryContext& library = *first->m_library;
        library.InBracket([&] { DeliverIn(library, round); });
    }
}

void SourceControl::Implementation::DeliverIn(LibraryContext& in_library, std::uint64_t in_round)
{
    while (!m_waiting.empty() && m_waiting.front().m_round <= in_round)
    {
        const ItemID id = m_waiting.front().m_item;
        const std::shared_ptr<Item> item = in_library.FindItem(id);
        if (!item)
            return;
        m_waiting.pop_front();
        in_library.TellAccessState(id, item->m_state);
    }
}

bool SourceControl::Implementation::IsFileVersionControlActive()
{
    return m_active;
}

QPixmap SourceControl::Implementation::GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active,
                                                         bool in_ownSpace)
{
    return in_active ? m_badges.Decorate(in_base, in_state, in_ownSpace) : in_base;
}

QString SourceControl::Implementation::GetToolTip(const Handle& in_object, const QString& /*in_icon*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    if (!item)
        return QString();
    const std::string text = item->m_name + '\n' + GetStateText(item->m_state) + '\n' + item->m_source->GetName() +
                             " (" + item->m_source->GetLocation() + ')';
    return qtcompat::FromLatin1(text);
}

void SourceControl::Implementation::CheckOut(const Handle& in_object, bool* out_result, bool /*in_interactive*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    const bool done = item && !item->m_source->IsReadOnly();
    if (out_result)
        *out_result = done;
    if (done)
        SetState(*item, eCheckedOut);
}

void SourceControl::Implementation::MakeWritable(const Handle& in_object, bool /*in_interactive*/)
{
    if (const std::shared_ptr<Item> item = FindItem(in_object))
        SetState(*item, eWritable);
}

SourceControl::Implementation::Handle SourceControl::Implementation::FindObject(const nexa4::DbObjectId& in_id)
{
    return m_contents.GetDatabase().FindObject(in_id);
}

void SourceControl::Implementation::ShowFiles(const Handle& in_object, const char* /*in_options*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object);
    // A copy, since the handler may set another one.
    const std::function<void(const ItemID&)> handler = m_showFiles;
    if (item && handler)
        handler(item->GetItemID());
}

std::shared_ptr<Item> SourceControl::Implementation::FindItem(const Handle& in_object) const
{
    return m_contents.GetDatabase().FindItem(in_object.GetInstance(), in_object.GetCacheIndex());
}

} // namespace memorymodel
