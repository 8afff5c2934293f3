// SPDX-License-Identifier: MIT
/// An item library in memory, as the boundary reads and writes it.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "memorymodel/librarycontents.h"

#include <functional>
#include <list>
#include <memory>
#include <string>

namespace memorymodel
{

class Change;

/// The context of a library and of its table of contents.
class LibraryContext final : public LibraryContents,
                             public vireo::datamodel::IItemLibrary,
                             public vireo::datamodel::IItemTOC,
                             public vireo::datamodel::IItemLibraryModifier,
                             public vireo::datamodel::ILowLevelItemLibrary
{
public:
    using ContextPtr = vireo::datamodel::ContextPtr;
    using ICommandManager = hmx::fwk::ICommandManager;

    LibraryContext(std::string in_name, std::shared_ptr<Database> in_database);

    // These change an item whatever its access; false when nothing changes.
    bool RemoveItem(const ItemID& in_item, ICommandManager* in_commands);
    bool RenameItem(const ItemID& in_item, const std::string& in_name, ICommandManager* in_commands);
    bool SetTags(const ItemID& in_item, const char* in_key, const std::string& in_tags, ICommandManager* in_commands);
    /// Removes an item without asking the store.
    void DropItem(const ItemID& in_item);

    // ItemOwner
    void RenameCompound(const Item& in_item, const char* in_newName, ICommandManager* in_commands) override;
    bool MoveItem(const Item& in_item, const nexa4::IDataSource& in_target, ICommandManager* in_commands) override;

    // IItemLibrary
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override;
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override;
    bool ItemIsReadOnly(const ItemID& in_item) const override;
    bool ItemIsDirty(const ItemID& in_item) const override;
    vireo::datamodel::UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override;
    void AddObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                     const ContextPtr& in_context) override;
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                        const ContextPtr& in_context) override;

    // IItemTOC
    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override;
    void AddObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                     const ContextPtr& in_context) override;
    void RemoveObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                        const ContextPtr& in_context) override;

    // IItemLibraryModifier
    bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                      const nexa4::TezUID& in_source) override;
    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                     ICommandManager* in_commands) override;
    ContextPtr CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass, const char* in_category,
                              ICommandManager* in_commands) override;
    ContextPtr CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                  ICommandManager* in_commands) override;

    // ILowLevelItemLibrary
    bool PreCommit() override { return IsOpen(); }

private:
    std::shared_ptr<LibraryContext> GetThis();
    /// Does a change with the step that the store gives for it.
    /// \param in_ask gets the step from the store
    /// \return false when the store refuses, or nothing changes
    bool Do(const std::shared_ptr<Change>& in_change, const std::function<std::unique_ptr<Step>(Store&)>& in_ask,
            ICommandManager* in_commands);
    /// A new node of the kind that in_describe describes; null when the library refuses it.
    ContextPtr Create(NewItem (*in_describe)(std::string), const char* in_name, const char* in_baseClass,
                      const char* in_category, ICommandManager* in_commands);
};

} // namespace memorymodel
