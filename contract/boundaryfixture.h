// SPDX-License-Identifier: MIT
/// What the contract of the boundary needs from an implementation of the data layer, to be run against it.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/objectdatabase.h"
#include "datamodel/system.h"

#include <functional>
#include <memory>
#include <string>

namespace contract
{

/// What an item of the contract's library is to be.
struct ItemWish
{
    ItemWish(const char* in_type, const std::string& in_name) : m_type(in_type), m_name(in_name) {}

    const char* m_type; ///< a type-name constant
    std::string m_name;
    std::string m_tags;
    std::string m_source = "Local";
    bool m_signature = false;
    bool m_loop = false;
    bool m_readOnly = false;
    bool m_parent = false;
    bool m_specializes = false;
    bool m_withUID = true;
    bool m_forGraphs = true;
};

/// One data layer with one library. The library has three data sources: "Local" and "Shared" take changes, "Product"
/// is read-only, and they are the only ones of the layer's database. Making a fixture installs its data layer.
class BoundaryFixture
{
public:
    virtual ~BoundaryFixture() = default;

    virtual void Install() = 0;
    virtual vireo::datamodel::ItemLibraryAccessor GetLibrary() = 0;
    virtual vireo::datamodel::ItemID Add(const ItemWish& in_wish) = 0;
    virtual void Remove(const vireo::datamodel::ItemID& in_item, hmx::fwk::ICommandManager* in_commands) = 0;
    virtual void Close() = 0;

    /// The application's command manager, and what is on its stack.
    virtual hmx::fwk::ICommandManager* GetCommands() = 0;
    virtual int GetCommandCount() = 0;
    virtual void Undo() = 0;
    virtual void Redo() = 0;

    virtual void MakeCurrent() = 0;
    virtual void SetService(const char* in_name, hmx::IBase* in_service) = 0;
    virtual void SetSystemPresent(bool in_present) = 0;
    virtual vireo::datamodel::ItemID GetCompoundTarget() = 0;

    virtual void SetEnabled(bool in_enabled) = 0;
    virtual void SetHasProperties(bool in_has) = 0;
    virtual void SetVersionControlActive(bool in_active) = 0;
    /// Two states that differ from each other and from the state that items start with.
    virtual unsigned GetOneState() = 0;
    virtual unsigned GetOtherState() = 0;
    virtual void SetState(const vireo::datamodel::ItemID& in_item, unsigned in_state) = 0;
};

} // namespace contract
