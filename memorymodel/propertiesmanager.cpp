// SPDX-License-Identifier: MIT
#include "memorymodel/propertiesmanager.h"

namespace memorymodel
{

/// One connection. It is in the manager's list while both its record and the list exist.
class PropertiesManager::Link
{
public:
    Link(const std::shared_ptr<Links>& in_links, IRevisionControlPropertiesMgr_Slot& in_slot)
        : m_links(in_links), m_slot(in_slot)
    {
        in_links->Add(this);
    }
    ~Link()
    {
        if (const std::shared_ptr<Links> links = m_links.lock())
            links->Remove(this);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    IRevisionControlPropertiesMgr_Slot& GetSlot() const { return m_slot; }

private:
    const std::weak_ptr<Links> m_links;
    IRevisionControlPropertiesMgr_Slot& m_slot;
};

PropertiesManager::PropertiesManager() : m_links(std::make_shared<Links>()) {}

PropertiesManager::~PropertiesManager()
{
    Notify(nullptr);
}

void PropertiesManager::SetEnabled(bool in_enabled)
{
    if (in_enabled == m_enabled)
        return;
    m_enabled = in_enabled;
    Notify(this);
}

void PropertiesManager::SetHasProperties(bool in_has)
{
    if (in_has == m_hasProperties)
        return;
    m_hasProperties = in_has;
    Notify(this);
}

void PropertiesManager::GetSourceControlEnabled(bool* out_enabled)
{
    if (out_enabled)
        *out_enabled = m_enabled;
}

void PropertiesManager::Connect(IRevisionControlPropertiesMgr_Slot* in_slot, RevisionControlConnection& out_connection)
{
    out_connection.Hold(in_slot ? std::make_shared<Link>(m_links, *in_slot) : nullptr);
}

bool PropertiesManager::HasProperties()
{
    return m_hasProperties;
}

void PropertiesManager::Notify(IRevisionControlPropertiesMgr* in_manager)
{
    // A slot may end the manager; the list stays until all are notified.
    const std::shared_ptr<Links> links = m_links;
    links->Notify([in_manager](Link& in_link) { in_link.GetSlot().OnRevisionControlPropertiesChange(in_manager); });
}

} // namespace memorymodel
