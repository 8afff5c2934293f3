// SPDX-License-Identifier: MIT
#include "memorymodel/sourcecontrol.h"

#include "memorymodel/sourcecontrolservices.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

SourceControl::SourceControl(LayerContents& in_contents) : m_services(new SourceControlServices(in_contents)) {}

SourceControl::~SourceControl() = default;

void SourceControl::SetVersionControlActive(bool in_active)
{
    m_services->m_active = in_active;
}

void SourceControl::SetEnabled(bool in_enabled)
{
    if (m_services->m_properties)
        m_services->m_properties->SetEnabled(in_enabled);
}

void SourceControl::SetHasProperties(bool in_has)
{
    if (m_services->m_properties)
        m_services->m_properties->SetHasProperties(in_has);
}

void SourceControl::SetState(const ItemID& in_item, unsigned in_state)
{
    const std::shared_ptr<Item> item = m_services->m_contents.FindItem(in_item);
    if (item)
        m_services->SetState(*item, in_state);
}

unsigned SourceControl::GetState(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_services->m_contents.FindItem(in_item);
    return item && item->m_cacheIndex >= 0 ? item->m_state : unsigned(eAccessStateUnknown);
}

void SourceControl::DeliverRequestedStates()
{
    m_services->Deliver();
}

std::size_t SourceControl::GetRequestCount() const
{
    return m_services->m_requestCount;
}

const std::vector<ItemID>& SourceControl::GetLastRequest() const
{
    return m_services->m_lastRequest;
}

void SourceControl::SetShowFilesHandler(std::function<void(const ItemID&)> in_handler)
{
    m_services->m_showFiles = std::move(in_handler);
}

} // namespace memorymodel
