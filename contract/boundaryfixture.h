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

/// What an item of the contract's library is to be. Sources are "Local", "Shared" and "Product", which is read-only.
/// Without data sources, refuse in CanAdd() all but "Local".
struct ItemWish
{
    ItemWish(const char* in_type, const std::string& in_name) : m_type(in_type), m_name(in_name) {}

    const char* m_type;             ///< a type-name constant
    std::string m_name;             ///< 8-bit Latin-1
    std::string m_tags;             ///< under gApplicationTagsKey
    std::string m_source = "Local"; ///< the data source that it is in
    bool m_signature = false;       ///< a compound that is a signature
    bool m_loop = false;            ///< a compound whose graph runs in a loop
    bool m_readOnly = false;        ///< it cannot be changed, whatever its source
    bool m_parent = false;          ///< it has a value under gParentKey
    bool m_specializes = false;     ///< it has a value under gSpecializesKey
    bool m_withUID = true;          ///< it has a database object, see eDatabase
    bool m_forGraphs = true;        ///< a graph can contain it: Helpers::IsValidGraphItemType()
};

/// What an implementation may leave out. A fixture says what there is. What depends on the rest is reported as not
/// checked, never as kept.
enum eFeature : unsigned
{
    eRemoving = 0x1,        ///< items leave the library: Remove()
    eClosing = 0x2,         ///< the library ends while its accessors live on: Close()
    eTagging = 0x4,         ///< ItemLibraryModifierAccessor::SetItemTags()
    eRenaming = 0x8,        ///< CompoundModifierAccessor::RenameCompound()
    eCreating = 0x10,       ///< CreateAndSetFromNewCompound(), and its like for signatures and loops
    eCommitting = 0x20,     ///< items become dirty until CommitToDisk()
    eUndoing = 0x40,        ///< GetCommands(), GetCommandCount(), Undo(), Redo()
    eDatabase = 0x80,       ///< IObjectDatabase and the service "RevisionControlUIHelper". There are exactly three data
                            ///< sources: "Local" and "Shared" take changes, "Product" is read-only
    eServices = 0x100,      ///< all three services: MakeCurrent(), SetService(), SetSystemPresent()
    eSourceControl = 0x200, ///< SetEnabled() to SetState()
    eCompoundTarget = 0x400, ///< GetCompoundTarget()
    eSeveralLayers = 0x800,  ///< several fixtures live at once: Install()
    eAllFeatures = 0xFFF,
};

/// One data layer with one library, which is empty at first. Making a fixture installs its data layer, destroying it
/// ends the layer. The contract makes a fixture for each promise.
///
/// A fixture does what only the implementation's own interface can do. What the boundary offers, the contract does by
/// itself. The functions below the first four belong to features. Those of a missing feature are never called.
class BoundaryFixture
{
public:
    virtual ~BoundaryFixture() = default;

    /// What the implementation has: a sum of eFeature.
    virtual unsigned GetFeatures() const = 0;

    virtual vireo::datamodel::ItemLibraryAccessor GetLibrary() = 0;

    /// Whether the implementation knows such items. What needs others is reported as not checked. An item that Add()
    /// makes is all that its wish says, or promises are reported as broken.
    virtual bool CanAdd(const ItemWish&) const { return true; }

    /// Adds an item for good, not as a command. In a closed library it does nothing.
    /// \return the item's identity; the invalid one when nothing was added
    virtual vireo::datamodel::ItemID Add(const ItemWish& in_wish) = 0;

    // eRemoving. Nothing happens to an item that is gone. With eUndoing the command manager makes a command of it.
    virtual void Remove(const vireo::datamodel::ItemID&, hmx::fwk::ICommandManager*) { Missing("Remove()"); }

    // eClosing
    virtual void Close() { Missing("Close()"); }

    // eUndoing: the application's command manager, and how many commands its stack has, undone ones included.
    virtual hmx::fwk::ICommandManager* GetCommands() { return Missing("GetCommands()"), nullptr; }
    virtual int GetCommandCount() { return Missing("GetCommandCount()"), 0; }
    virtual void Undo() { Missing("Undo()"); }
    virtual void Redo() { Missing("Redo()"); }

    // eServices. MakeCurrent() makes the library the application's. A service may be replaced, or taken away by null.
    virtual void MakeCurrent() { Missing("MakeCurrent()"); }
    virtual void SetService(const char*, hmx::IBase*) { Missing("SetService()"); }
    virtual void SetSystemPresent(bool) { Missing("SetSystemPresent()"); }

    // eCompoundTarget: what Helpers::SetGlobalVireoCompoundTarget() has set; at first the invalid identity.
    virtual vireo::datamodel::ItemID GetCompoundTarget() { return Missing("GetCompoundTarget()"), ItemID(); }

    // eSourceControl. At first source control is off, but has properties. The two states differ from each other and
    // from the state that items start with.
    virtual void SetEnabled(bool) { Missing("SetEnabled()"); }
    virtual void SetHasProperties(bool) { Missing("SetHasProperties()"); }
    virtual void SetVersionControlActive(bool) { Missing("SetVersionControlActive()"); }
    virtual unsigned GetOneState() { return Missing("GetOneState()"), 0; }
    virtual unsigned GetOtherState() { return Missing("GetOtherState()"), 0; }
    virtual void SetState(const vireo::datamodel::ItemID&, unsigned) { Missing("SetState()"); }

    // eSeveralLayers: installs this layer again after another one had its turn. A layer that ends while it is installed
    // puts back the one before it that still lives.
    virtual void Install() { Missing("Install()"); }

protected:
    using ItemID = vireo::datamodel::ItemID;

    /// Reports that the fixture has a feature without the function for it.
    static void Missing(const char* in_function);
};

/// Makes a fixture, and with it a data layer.
using FixtureMaker = std::function<std::unique_ptr<BoundaryFixture>()>;

} // namespace contract
