// SPDX-License-Identifier: MIT
/// What is in a library: its data sources and its items.
#pragma once

#include "memorymodel/database.h"
#include "memorymodel/itemowner.h"
#include "memorymodel/items.h"
#include "memorymodel/newitem.h"
#include "memorymodel/observedcontext.h"
#include "memorymodel/store.h"
#include "memorymodel/typelist.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace memorymodel
{

class Versioning;

/// The content of a library, and the steps that changes are made of. The boundary's side of it is LibraryContext.
///
/// It owns the items that are in the library. A change that took an item out owns it for as long as the change can be
/// undone. Items are found by their number in constant time.
class LibraryContents : public ObservedContext, public ItemOwner
{
public:
    const std::string& GetName() const { return m_name; }
    std::uint64_t GetSpace() const { return m_space; }
    Database& GetDatabase() const { return *m_database; }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override { return m_database->GetManager(); }
    /// Null when the library is in memory alone. A copy, since a store that is asked may close the library.
    std::shared_ptr<Store> GetStore() const { return m_store; }
    void SetStore(std::shared_ptr<Store> in_store);
    /// Null when the states of the items are those on record.
    Versioning* GetVersioning() const { return m_versioning; }
    void SetVersioning(Versioning* in_versioning) { m_versioning = in_versioning; }

    DataSource& AddDataSource(std::string in_name, unsigned in_flags, std::string in_location);
    const std::vector<std::shared_ptr<DataSource>>& GetDataSources() const { return m_sources; }
    /// Null for a source of another library.
    std::shared_ptr<DataSource> FindSource(const nexa4::IDataSource& in_source) const;
    /// The first source that takes changes; null when there is none.
    std::shared_ptr<DataSource> FindWritableSource();

    /// By number; null for an item that is not in the library.
    const std::vector<std::shared_ptr<Item>>& GetItems() const { return m_items; }
    std::size_t GetItemCount() const { return m_itemCount; }
    /// Null when the library does not have the item.
    std::shared_ptr<Item> FindItem(const ItemID& in_item) const;
    /// Whether a node has this name.
    bool HasNode(const std::string& in_name) const;
    /// Whether a text is the UID of a signature of this library.
    bool IsSignatureUID(const std::string& in_uid) const;
    /// The numbers of a type's items. Null when the library has no such type or is closed.
    TypeList::Numbers GetNumbers(const char* in_type) const;

    ItemID Add(const NewItem& in_item);
    /// An item with the next number, in no library yet.
    std::shared_ptr<Item> Make(const NewItem& in_item, const std::shared_ptr<DataSource>& in_source);
    void PutIn(const std::shared_ptr<Item>& in_item);
    void TakeOut(Item& io_item);
    std::uint64_t NewRevision() { return ++m_revisions; }
    /// See Library::Follow().
    void Follow(const ItemID& in_item, const StoredItem& in_stored, eFollowing in_following);
    /// Notes that a commit begins: it misses the items that are out of the library now, so they are dirty when they
    /// come back.
    void CountCommit() { ++m_commits; }

    /// Ends the library. See Library::Close().
    void Close();

protected:
    LibraryContents(std::string in_name, std::shared_ptr<Database> in_database);
    ~LibraryContents() override = default;

private:
    /// The source that new items go to when none is named.
    std::shared_ptr<DataSource> GetFirstSource();

    const std::string m_name;
    const std::uint64_t m_space;
    const std::shared_ptr<Database> m_database;
    std::uint64_t m_revisions = 0;
    std::uint64_t m_commits = 0;
    std::vector<std::shared_ptr<DataSource>> m_sources;
    std::vector<std::shared_ptr<DataSource>> m_lateSources; ///< made after the closing; in no list and no database
    std::vector<int> m_resources; ///< cache indices of the resource objects of m_sources, in the same order
    std::vector<std::shared_ptr<Item>> m_items; ///< see GetItems()
    std::size_t m_itemCount = 0;
    mutable std::array<TypeList, 5> m_lists; ///< in the order of TypeIndex()
    std::shared_ptr<Store> m_store;
    Versioning* m_versioning = nullptr;
};

} // namespace memorymodel
