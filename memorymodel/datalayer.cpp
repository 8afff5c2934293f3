// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"

#include "memorymodel/layercontents.h"
#include "memorymodel/sourcecontrolservices.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

using namespace vireo::datamodel;

namespace memorymodel
{
namespace
{

bool IsSame(const Provider& in_left, const Provider& in_right)
{
    return in_left.m_items == in_right.m_items;
}

/// What is installed now. It stays installed.
Provider GetInstalled()
{
    const Provider installed = InstallProvider(Provider());
    InstallProvider(installed);
    return installed;
}

} // namespace

/// The data layer's side of the boundary: the services, and what is asked about items of any library.
class MEMORYMODEL_NO_EXPORT DataLayer::Implementation : public hmx::ISystem,
                                                        public IItemModel,
                                                        public hmx::fwk::INEXADBProxy
{
public:
    Implementation() : m_contents(m_commands), m_sourceControl(new SourceControl(m_contents))
    {
        GetLayers().push_back(this);
        m_provider.m_system = this;
        m_provider.m_items = this;
        m_provider.m_objects = &m_contents.GetDatabase();
        m_provider.m_sourceControl = m_sourceControl->m_private.get();
        Install();
    }

    ~Implementation() override
    {
        m_sourceControl->m_private->m_properties.reset();
        while (!m_libraries.empty())
            RemoveLibrary(*m_libraries.back());
        Uninstall();
        m_commands.GetStack().clear();
        m_contents.GetDatabase().Shutdown();
        delete m_sourceControl;
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    void Install()
    {
        if (IsSame(GetInstalled(), m_provider))
            return;
        LeaveOrder();
        m_before = InstallProvider(m_provider);
    }

    void SetSystemPresent(bool in_present)
    {
        m_provider.m_system = in_present ? this : nullptr;
        if (IsSame(GetInstalled(), m_provider))
            InstallProvider(m_provider);
    }

    Library& AddLibrary(std::string in_name)
    {
        m_libraries.push_back(new Library(m_contents.AddLibrary(std::move(in_name))));
        return *m_libraries.back();
    }

    void RemoveLibrary(Library& in_library)
    {
        const auto found = std::find(m_libraries.begin(), m_libraries.end(), &in_library);
        if (found == m_libraries.end())
            return;
        Library* const library = *found;
        m_libraries.erase(found);
        if (m_current == library)
            m_current = nullptr;
        const std::shared_ptr<LibraryContext> context = library->m_private;
        context->Close();
        m_contents.RemoveLibrary(*context);
        delete library;
    }

    hmx::IBase* GetOwnService(const std::string& in_name)
    {
        if (in_name == "RevisionControlUIHelper")
            return m_sourceControl->m_private.get();
        if (in_name == "RevisionControlPropertiesMgr")
            return m_sourceControl->m_private->m_properties.get();
        return in_name == "NEXADBProxy" ? this : nullptr;
    }

    // ISystem
    hmx::IBase* GetService(const char* in_name) override
    {
        const std::string name = in_name ? in_name : "";
        const auto found = m_services.find(name);
        return found != m_services.end() ? found->second : GetOwnService(name);
    }

    // INEXADBProxy
    ItemLibraryAccessor GetItemLibrary() override
    {
        return m_current ? m_current->GetAccessor() : ItemLibraryAccessor();
    }

    // IItemModel
    ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override { return ItemTOCAccessor(in_library); }

    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) override
    {
        const LibraryContext* const library = dynamic_cast<const LibraryContext*>(in_library.GetContext().get());
        return library && in_name && library->HasNode(in_name);
    }

    bool IsAbstractFunction(ItemAccessor& in_item) override
    {
        const Item* const item = ItemOf(in_item);
        return item && item->m_signature;
    }

    bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) override
    {
        const Item* const item = ItemOf(in_item);
        return item && item->m_forGraphs && item->m_type == in_typeName;
    }

    void SetGlobalVireoCompoundTarget(const CompoundAccessor& in_target, const CompoundAccessor& in_root) override
    {
        m_target = in_target;
        m_targetRoot = in_root;
        // A copy, since the handler may set another one.
        const std::function<void()> handler = m_targetHandler;
        if (handler)
            handler();
    }

    const char* GetItemIDUID(const ItemID& in_item) override
    {
        const std::shared_ptr<Item> item = m_contents.FindItem(in_item);
        m_uid = item && item->m_hasUID ? item->m_uid.GetStr() : std::string();
        return m_uid.c_str();
    }

    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return &m_commands; }

    CommandManager m_commands;
    LayerContents m_contents;
    SourceControl* const m_sourceControl;
    Library* m_current = nullptr;
    CompoundAccessor m_target;
    CompoundAccessor m_targetRoot;
    std::function<void()> m_targetHandler;
    std::map<std::string, hmx::IBase*> m_services; ///< those that replace the layer's own

private:
    /// All data layers that are alive. None of them may put a dead one back.
    static std::vector<Implementation*>& GetLayers()
    {
        static std::vector<Implementation*> layers;
        return layers;
    }

    /// The item of this data layer that an accessor points at; null for an invalid one.
    static const Item* ItemOf(const ItemAccessor& in_item)
    {
        return in_item.IsValid() ? dynamic_cast<const Item*>(in_item.GetContext().get()) : nullptr;
    }

    /// Takes this layer out of the order: those that were installed after it put back what was there before it.
    void LeaveOrder()
    {
        for (Implementation* const layer : GetLayers())
            if (layer != this && IsSame(layer->m_before, m_provider))
                layer->m_before = m_before;
        m_before = Provider();
    }

    void Uninstall()
    {
        if (IsSame(GetInstalled(), m_provider))
            InstallProvider(m_before);
        LeaveOrder();
        std::vector<Implementation*>& layers = GetLayers();
        layers.erase(std::remove(layers.begin(), layers.end(), this), layers.end());
    }

    Provider m_provider;
    Provider m_before; ///< what was installed when this was
    std::vector<Library*> m_libraries;
    std::string m_uid; ///< the last text that GetItemIDUID() gave out
};

DataLayer::DataLayer() : m_private(new Implementation) {}

DataLayer::~DataLayer() = default;

void DataLayer::Install()
{
    m_private->Install();
}

Library& DataLayer::AddLibrary(std::string in_name)
{
    return m_private->AddLibrary(std::move(in_name));
}

void DataLayer::RemoveLibrary(Library& in_library)
{
    m_private->RemoveLibrary(in_library);
}

void DataLayer::SetCurrentLibrary(Library* in_library)
{
    m_private->m_current = in_library;
}

CommandManager& DataLayer::GetCommandManager()
{
    return m_private->m_commands;
}

SourceControl& DataLayer::GetSourceControl()
{
    return *m_private->m_sourceControl;
}

void DataLayer::SetService(const std::string& in_name, hmx::IBase* in_service)
{
    m_private->m_services[in_name] = in_service;
}

void DataLayer::RestoreService(const std::string& in_name)
{
    m_private->m_services.erase(in_name);
}

void DataLayer::SetSystemPresent(bool in_present)
{
    m_private->SetSystemPresent(in_present);
}

ItemID DataLayer::GetCompoundTarget() const
{
    return m_private->m_target.GetItemID();
}

ItemID DataLayer::GetCompoundTargetRoot() const
{
    return m_private->m_targetRoot.GetItemID();
}

void DataLayer::SetCompoundTargetHandler(std::function<void()> in_handler)
{
    m_private->m_targetHandler = std::move(in_handler);
}

} // namespace memorymodel
