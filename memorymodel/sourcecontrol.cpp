// SPDX-License-Identifier: MIT
#include "memorymodel/sourcecontrol.h"

#include "memorymodel/sourcecontrolservices.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

Versioning::~Versioning() = default;

SourceControl::SourceControl(LayerContents& in_contents) : m_private(new SourceControlServices(in_contents)) {}

SourceControl::~SourceControl() = default;

void SourceControl::SetVersionControlActive(bool in_active)
{
    m_private->m_active = in_active;
}

void SourceControl::SetEnabled(bool in_enabled)
{
    if (m_private->m_properties)
        m_private->m_properties->SetEnabled(in_enabled);
}

void SourceControl::SetHasProperties(bool in_has)
{
    if (m_private->m_properties)
        m_private->m_properties->SetHasProperties(in_has);
}

void SourceControl::SetState(const ItemID& in_item, unsigned in_state)
{
    const std::shared_ptr<Item> item = m_private->m_contents.FindItem(in_item);
    if (item)
        m_private->SetState(*item, in_state);
}

unsigned SourceControl::GetState(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->m_contents.FindItem(in_item);
    return item && item->m_cacheIndex >= 0 ? m_private->GetState(*item) : unsigned(eAccessStateUnknown);
}

void SourceControl::SetStates(const std::vector<ItemState>& in_states)
{
    m_private->SetStates(in_states);
}

void SourceControl::DeliverRequestedStates()
{
    m_private->Deliver();
}

bool SourceControl::HasVersioning() const
{
    return m_private->m_contents.HasVersioning();
}

std::size_t SourceControl::GetRequestCount() const
{
    return m_private->m_requestCount;
}

const std::vector<ItemID>& SourceControl::GetLastRequest() const
{
    return m_private->m_lastRequest;
}

void SourceControl::SetShowFilesHandler(std::function<void(const ItemID&)> in_handler)
{
    m_private->m_showFiles = std::move(in_handler);
}

} // namespace memorymodel
