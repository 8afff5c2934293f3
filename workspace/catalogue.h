// SPDX-License-Identifier: MIT
/// Which items the documents make, and which items of the library these are.
#pragma once

#include "datamodel/itemid.h"
#include "materialx/items.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace workspace
{

/// How the items became others. Items that are new have no identity in the library yet, and are named by their keys.
struct CatalogueNews
{
    std::vector<vireo::datamodel::ItemID> m_gone;
    std::vector<vireo::datamodel::ItemID> m_changed;
    std::vector<std::string> m_new;
};

using KeyMap = std::unordered_map<std::string, std::size_t>;

/// What a catalogue is to become.
struct CatalogueUpdate
{
    std::vector<materialx::Item> m_items;
    std::vector<vireo::datamodel::ItemID> m_ids;
    KeyMap m_indexOfKey; ///< empty when the keys stay
    CatalogueNews m_news;
};

/// Pairs items of documents with items of the library by their kinds and names, whatever edits do to offsets.
class Catalogue
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// Takes the first items, of which the library has none yet.
    void Begin(std::vector<materialx::Item> in_items);
    /// Compares these items with those that the documents make now. Linear in the size of the library. On any thread
    /// while nothing here is changed; but keys are for one thread at a time.
    CatalogueUpdate Compare(std::vector<materialx::Item> in_items) const;
    /// Puts what was compared in place. Fast beside that.
    CatalogueNews Take(CatalogueUpdate in_update);
    /// The same when nothing has changed but how some declarations are shown. Passes the items without reading them.
    CatalogueNews UpdateShown(const materialx::Library& in_documents,
                              const std::vector<materialx::DeclarationIndex>& in_declarations);
    const std::vector<materialx::Item>& GetItems() const { return m_items; }
    const std::vector<ItemID>& GetIds() const { return m_ids; }
    /// Another number after each Take(). While it stays, the items are the same ones, at the same places.
    std::uint64_t GetRevision() const { return m_revision; }

    /// Null when no document has the item.
    const materialx::Item* Find(const ItemID& in_id) const;
    /// The place of an item of this catalogue.
    std::size_t IndexOf(const materialx::Item& in_item) const
    {
        return static_cast<std::size_t>(&in_item - m_items.data());
    }
    /// The declarations that say what an item of this catalogue is: of a polymorphic solver all of its definitions that
    /// have a name, of any other item one.
    std::vector<materialx::DeclarationIndex> GetDeclarations(const materialx::Item& in_item) const;
    /// Null when no document has an item of that key, or the library has it already.
    const materialx::Item* FindNew(const std::string& in_key) const;
    bool Has(const std::string& in_key) const { return Keys().count(in_key) != 0; }
    /// The key that the item has now, or would have if it were the only one of its kind and name.
    static std::string KeyOf(const materialx::Item& in_item);
    /// Whether there is another item of the same kind and name, so that after a move nobody could tell which is which.
    bool HasTwin(const materialx::Item& in_item) const;

    /// Says which item of the library an item of the documents is.
    void Pair(const std::string& in_key, const ItemID& in_id);
    void Pair(std::size_t in_index, const ItemID& in_id);

    /// Forgets the keys, which take much memory. The next call that is about keys makes them again, in linear time.
    void ForgetKeys() { m_indexOfKey = KeyMap(); }

private:
    const KeyMap& Keys() const;
    void SetIndex(const ItemID& in_id, std::size_t in_index);

    std::vector<materialx::Item> m_items;
    std::vector<ItemID> m_ids;              ///< of the items; invalid for one that is not in the library yet
    mutable KeyMap m_indexOfKey;            ///< empty when they were forgotten
    std::vector<std::uint32_t> m_indexOfId; ///< by number, which libraries count from 0
    std::uint64_t m_revision = 1;
};

} // namespace workspace
