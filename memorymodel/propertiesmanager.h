// SPDX-License-Identifier: MIT
/// The service "RevisionControlPropertiesMgr" of the in-memory data layer.
#pragma once

#include "datamodel/revisioncontrol.h"
#include "memorymodel/observerlist.h"

#include <memory>

namespace memorymodel
{

/// The two properties, and the slots that are notified when one changes. At its end the manager notifies them with
/// null.
class PropertiesManager : public IRevisionControlPropertiesMgr
{
public:
    PropertiesManager();
    ~PropertiesManager() override;
    PropertiesManager(const PropertiesManager&) = delete;
    PropertiesManager& operator=(const PropertiesManager&) = delete;

    void SetEnabled(bool in_enabled);
    void SetHasProperties(bool in_has);

    void GetSourceControlEnabled(bool* out_enabled) override;
    void Connect(IRevisionControlPropertiesMgr_Slot* in_slot, RevisionControlConnection& out_connection) override;
    bool HasProperties() override;

private:
    class Link;
    using Links = ObserverList<Link>;

    void Notify(IRevisionControlPropertiesMgr* in_manager);

    std::shared_ptr<Links> m_links;
    bool m_enabled = false;
    bool m_hasProperties = true;
};

} // namespace memorymodel
