// SPDX-License-Identifier: MIT
/// An item library in memory: the boundary's library and table of contents, and the way to put content into them.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "memorymodel/datasource.h"
#include "memorymodel/export.h"
#include "memorymodel/newitem.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace memorymodel
{

class DataLayer;
class LibraryContext;
class Store;
class Versioning;
enum class eFollowing;
struct StoredItem;

/// Made by DataLayer::AddLibrary() and owned by the data layer. This class is for whoever sets up content; everybody
/// else reads and writes through GetAccessor().
///
/// Every change notifies the observers before it returns, between OnBeginChanges() and OnEndChanges(), in the order in
/// which they registered. What changes nothing is silent. The writes below take an optional command manager like those
/// of the boundary.
class MEMORYMODEL_EXPORT Library
{
public:
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// The name that it was made with.
    const std::string& GetName() const;
    /// What the browser is given. Invalid after Close().
    vireo::datamodel::ItemLibraryAccessor GetAccessor() const;

    /// Adds a data source and notifies nobody. A library that has none when its first item is added gets a plain source
    /// called "Local". Each source has a resource object in the database, in the order of the calls. A factory flag
    /// brings the factory object into this source: it is always in the last source with its flag whose library is open,
    /// and without such a source it does not exist.
    /// \return the source; a closed library makes one that is in no list and no database, and keeps it for as long as
    ///     this object lives
    /// \param in_flags ePlainSource or a combination of the others
    /// \param in_location where it is stored, as people read it; empty: the library's name, "/" and the source's name,
    ///     with a number behind it when there is such a location already
    DataSource& AddDataSource(std::string in_name, unsigned in_flags = ePlainSource,
                              std::string in_location = std::string());
    /// The sources in the order in which they were added.
    const std::vector<std::shared_ptr<DataSource>>& GetDataSources() const;

    /// Adds an item and sends ItemAdded(). Items of one type are listed in the order in which they were added. The item
    /// is not dirty, and adding cannot be undone. Read-only sources take items too. Names may occur more than once.
    /// Constant time.
    /// \return the invalid identity, and nothing is sent, for a source of another library and for a closed library
    vireo::datamodel::ItemID Add(const NewItem& in_item);

    /// Removes an item and sends ItemRemoved(). False when there is no such item. Undoing brings it back with its
    /// identity and its database object, and its old index in the library.
    bool Remove(const vireo::datamodel::ItemID& in_item, hmx::fwk::ICommandManager* in_commands = nullptr);

    /// Renames an item of any type, read-only or not, and sends ItemNameChanged(). False when nothing changes.
    bool Rename(const vireo::datamodel::ItemID& in_item, const std::string& in_name,
                hmx::fwk::ICommandManager* in_commands = nullptr);

    /// Replaces an item's tags, read-only or not, and sends ItemTagsChanged(). False when nothing changes.
    bool SetTags(const vireo::datamodel::ItemID& in_item, const std::string& in_tags,
                 hmx::fwk::ICommandManager* in_commands = nullptr);

    /// Sends LibraryInvalidated(); silent for a closed library.
    void Invalidate();

    /// Ends the library: its items, its table of contents, its accessors and its resources are gone for good. The
    /// observers get LibraryInvalidated(); they see an empty library during that call and can still be removed.
    /// Afterwards the accessors are invalid and the observers forgotten. When this is called inside a change,
    /// "afterwards" is the end of the change, and OnEndChanges() is the only notification that still comes. The object
    /// itself stays until the data layer removes it, and takes nothing any more. Linear time.
    void Close();

    /// How many items there are, those with a "Parent" or "Specializes" value included.
    std::size_t GetItemCount() const;
    /// All items in the order in which they were added.
    std::vector<vireo::datamodel::ItemID> GetItems() const;
    /// The first item with a name; the invalid identity when there is none. Linear time.
    vireo::datamodel::ItemID FindByName(const std::string& in_name) const;
    /// The item whose ItemID::Serialize() gave this text; the invalid identity when there is none.
    vireo::datamodel::ItemID FindBySerialized(const std::string& in_text) const;
    /// The data source that an item lives in; null when there is no such item.
    const DataSource* GetSourceOf(const vireo::datamodel::ItemID& in_item) const;

    /// \name Of a compound
    /// For an item that is no compound, and for one that the library does not have: empty, or false.
    /// \{
    std::string GetBaseClass(const vireo::datamodel::ItemID& in_item) const; ///< identity text of a signature
    std::string GetCategory(const vireo::datamodel::ItemID& in_item) const;  ///< as it was given, free text
    bool IsSignature(const vireo::datamodel::ItemID& in_item) const;         ///< an interface without a graph
    bool IsLoopCompound(const vireo::datamodel::ItemID& in_item) const;      ///< its graph runs in a loop
    /// \}

    /// Keeps the library in a store from now on; null for memory alone, as at first. Then there is nowhere to write to,
    /// and a commit only makes the items clean. With a store, each change below and of the boundary is made in the
    /// store, too, or refused; but for Add(), Follow() and Drop(), by which the store says what it has. Items of
    /// read-only sources are never saved.
    void SetStore(std::shared_ptr<Store> in_store);
    /// Null for memory alone, and for a closed library.
    std::shared_ptr<Store> GetStore() const;

    /// Who is asked for source-control states, tool tips and check-outs from now on; null for the record of
    /// SourceControl, as at first. It must be there until the library is closed or gets another one.
    void SetVersioning(Versioning* in_versioning);

    /// Makes an item what its store has, and sends a notification for what differs; LibraryInvalidated() if that is the
    /// source. Cannot be undone.
    void Follow(const vireo::datamodel::ItemID& in_item, const StoredItem& in_stored, eFollowing in_following);

    /// Removes an item that its store has no more. Like Remove(), for good and without asking the store.
    void Drop(const vireo::datamodel::ItemID& in_item);

private:
    friend class DataLayer;
    MEMORYMODEL_NO_EXPORT explicit Library(std::shared_ptr<LibraryContext> in_context);
    MEMORYMODEL_NO_EXPORT ~Library();

    std::shared_ptr<LibraryContext> m_private;
};

} // namespace memorymodel
