// SPDX-License-Identifier: MIT
/// An item library in memory, as its accessors see it.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "memorymodel/database.h"
#include "memorymodel/items.h"
#include "memorymodel/newitem.h"
#include "memorymodel/observerlist.h"
#include "memorymodel/typelist.h"

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace memorymodel
{

/// The context of a library and of its table of contents. It owns the items that are in the library; a change that took
/// an item out owns it for as long as the change can be undone.
///
/// Items are found by their number in constant time. Every function that notifies keeps the context alive until it
/// returns, whatever observers do.
class LibraryContext final : public vireo::datamodel::IContext,
                             public vireo::datamodel::IItemLibrary,
                             public vireo::datamodel::IItemTOC,
                             public vireo::datamodel::IItemLibraryModifier,
                             public vireo::datamodel::ILowLevelItemLibrary,
                             public std::enable_shared_from_this<LibraryContext>
{
public:
    using ItemID = vireo::datamodel::ItemID;
    using ContextPtr = vireo::datamodel::ContextPtr;
    using ICommandManager = hmx::fwk::ICommandManager;

    LibraryContext(std::string in_name, std::shared_ptr<Database> in_database);

    const std::string& GetName() const { return m_name; }
    std::uint64_t GetSpace() const { return m_space; }
    Database& GetDatabase() const { return *m_database; }
    vireo::datamodel::ItemLibraryAccessor GetAccessor();
    /// Ends the library. See Library::Close().
    void Close();
    /// False from the beginning of Close().
    bool IsOpen() const { return m_phase == ePhaseOpen; }

    // Content, for whoever sets it up.
    DataSource& AddDataSource(std::string in_name, unsigned in_flags, std::string in_location);
    const std::vector<std::shared_ptr<DataSource>>& GetDataSources() const { return m_sources; }
    ItemID Add(const NewItem& in_item);
    bool RemoveItem(const ItemID& in_item, ICommandManager* in_commands);
    bool RenameItem(const ItemID& in_item, const std::string& in_name, ICommandManager* in_commands);
    bool SetTags(const ItemID& in_item, const char* in_key, const std::string& in_tags, ICommandManager* in_commands);
    void SetWriter(std::function<std::string(const ItemID&)> in_writer) { m_writer = std::move(in_writer); }
    /// By number; null for an item that is not in the library.
    const std::vector<std::shared_ptr<Item>>& GetItems() const { return m_items; }
    std::size_t GetItemCount() const { return m_itemCount; }
    /// Null when the library does not have the item.
    std::shared_ptr<Item> FindItem(const ItemID& in_item) const;
    /// Whether a node has this name.
    bool HasNode(const std::string& in_name) const;

    // What the items and the database pass on.
    void RenameCompound(const Item& in_item, const char* in_newName, ICommandManager* in_commands);
    bool MoveItem(const Item& in_item, const nexa4::IDataSource& in_target, ICommandManager* in_commands);

    // What changes do.
    void PutIn(const std::shared_ptr<Item>& in_item);
    void TakeOut(Item& in_item);
    std::uint64_t NewRevision() { return ++m_revisions; }

    /// Calls in_changes between OnBeginChanges() and OnEndChanges().
    ///
    /// Observers that were told of the beginning are told of the end, also when one of them throws; whoever comes in
    /// between is told of neither.
    template <class Changes> void InBracket(const Changes& in_changes)
    {
        Bracket bracket(*this);
        try
        {
            bracket.Begin();
            in_changes();
        }
        catch (...)
        {
            bracket.End();
            throw;
        }
        bracket.End();
    }
    void TellItemAdded(const std::shared_ptr<Item>& in_item);
    void TellItemRemoved(const std::shared_ptr<Item>& in_item);
    void TellNameChanged(const ItemID& in_item);
    void TellTagsChanged(const ItemID& in_item, const char* in_key);
    void TellAccessState(const ItemID& in_item, unsigned in_state);
    void TellInvalidated();

    // IContext
    bool IsAlive() const override { return m_phase != ePhaseClosed; }

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
    enum ePhase
    {
        ePhaseOpen,
        ePhaseClosing, ///< empty already, but observers can still be removed: until the outermost bracket has ended
        ePhaseClosed,
    };

    /// Keeps the context alive and the observers' places; the end of the outermost one completes the closing.
    class Bracket
    {
    public:
        explicit Bracket(LibraryContext& in_library);
        ~Bracket();
        Bracket(const Bracket&) = delete;
        Bracket& operator=(const Bracket&) = delete;

        /// Tells the observers, up to the one that closes the library.
        void Begin();
        void End();

    private:
        const std::shared_ptr<LibraryContext> m_library;
        const ObserverList<vireo::datamodel::IItemLibraryNotification>::Round m_round;
        std::size_t m_begun = 0; ///< the places below were told of the beginning
    };

    /// Tells each observer with an accessor of its own, so that what one does to it does not reach the next one. Stops
    /// when the library is not in the phase any more.
    template <class Observers, class Accessor, class Call>
    void TellIn(ePhase in_phase, Observers& in_observers, const Accessor& in_accessor, const Call& in_call);
    void TellInvalidatedIn(ePhase in_phase);
    /// The source that new items go to when none is named.
    std::shared_ptr<DataSource> GetFirstSource();
    /// Null for a source of another library.
    std::shared_ptr<DataSource> FindSource(const nexa4::IDataSource& in_source) const;
    std::shared_ptr<DataSource> FindWritableSource();
    /// Whether a text is the UID of a signature of this library.
    bool IsSignatureUID(const std::string& in_uid) const;
    /// An item with the next number, in no library yet.
    std::shared_ptr<Item> Make(const NewItem& in_item, const std::shared_ptr<DataSource>& in_source);
    ContextPtr Create(NewItem in_item, const char* in_baseClass, const char* in_category, ICommandManager* in_commands);
    /// Whether all observers agree to a commit.
    bool AskForCommit();
    void TellCommitted();
    /// Saves one item; false with a message when the writer refuses.
    bool CommitItem(const std::shared_ptr<Item>& in_item, std::list<std::string>* out_messages);

    const std::string m_name;
    const std::uint64_t m_space;
    const std::shared_ptr<Database> m_database;
    ePhase m_phase = ePhaseOpen;
    int m_brackets = 0; ///< how many are open
    std::uint64_t m_revisions = 0;
    std::uint64_t m_commits = 0;
    std::vector<std::shared_ptr<DataSource>> m_sources;
    std::vector<std::shared_ptr<DataSource>> m_lateSources; ///< made after the closing, belonging to nothing
    std::vector<int> m_resources;               ///< places of the resource objects of m_sources, in the same order
    std::vector<std::shared_ptr<Item>> m_items; ///< see GetItems()
    std::size_t m_itemCount = 0;
    mutable std::array<TypeList, 5> m_lists; ///< in the order of TypeIndex()
    std::function<std::string(const ItemID&)> m_writer;
    ObserverList<vireo::datamodel::IItemLibraryNotification> m_observers;
    ObserverList<vireo::datamodel::IItemTOCNotification> m_tocObservers;
};

} // namespace memorymodel
