// SPDX-License-Identifier: MIT
/// The items of a library in memory. Each is a context; each kind has a class.
#pragma once

#include "datamodel/compoundmodifier.h"
#include "datamodel/item.h"
#include "datamodel/models.h"
#include "datamodel/objectdatabase.h"
#include "memorymodel/accessstate.h"
#include "memorymodel/datasource.h"
#include "memorymodel/itemowner.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace memorymodel
{

class Item;

/// The database object of an item. It is a part of the item and lives as long as the item.
class ItemObject : public nexa4::ITypeAsset
{
public:
    explicit ItemObject(Item& in_item) : m_item(in_item) {}

    Item& GetItem() const { return m_item; }

    nexa4::DbObjectId GetDbObjectId() const override;
    nexa4::NEXAPtr<nexa4::IDataSource> GetDataSource() const override;
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override;
    bool IsLoaded() const override;
    bool IsBuiltIn() const override;

private:
    Item& m_item;
};

/// What few items have.
struct ItemExtra
{
    std::string m_baseClass;
    std::string m_category;
    std::map<std::string, std::string> m_tags; ///< by key, the application's tags excepted
};

/// One item: the context that accessors point at, and its record. Its library and the changes write the record.
///
/// This class itself offers what every item offers; a global constant is nothing else.
class Item : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
public:
    /// \param in_type a type-name constant
    Item(const char* in_type, std::uint64_t in_space, std::uint64_t in_number);
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    bool IsAlive() const override { return m_library != nullptr; }
    vireo::datamodel::ItemID GetItemID() const override;
    vireo::datamodel::CSimpleValue GetValue(const char* in_key) const override;

    bool IsReadOnly() const { return m_readOnly || m_source->IsReadOnly(); }
    bool IsDirty() const { return m_revision != m_committed; }
    bool IsNode() const;
    /// The kind in people's words: "compound", "signature" and so on.
    const char* GetKindName() const;
    std::string GetTags(const char* in_key) const;
    void SetTags(const char* in_key, const std::string& in_tags);
    ItemExtra& MakeExtra();

    /// The value of m_committed for an item whose last committed state is none of its revisions.
    static const std::uint64_t s_neverCommitted;

    const char* const m_type;
    const std::uint64_t m_space;
    const std::uint64_t m_number;
    ItemOwner* m_library = nullptr; ///< null while the item is in no library
    std::string m_name;
    std::string m_tags;
    std::shared_ptr<DataSource> m_source;
    std::uint64_t m_revision = 0;         ///< numbers the states of the content; unique in a library, but for 0
    std::uint64_t m_committed = 0;        ///< the revision last committed
    std::uint64_t m_commitsAtLeaving = 0; ///< how many commits there had been when the item left the library
    nexa4::DbObjectId m_uid;
    int m_cacheIndex = -1; ///< of its object in the database; -1 without an object
    unsigned m_state = 0;  ///< the source-control state; eAccessStateUnknown until one is set
    bool m_hasUID = false;
    bool m_signature = false;
    bool m_loop = false;
    bool m_readOnly = false;
    bool m_parent = false;
    bool m_specializes = false;
    bool m_builtIn = false;
    bool m_loaded = true;
    bool m_forGraphs = true;
    bool m_leaving = false; ///< while observers are notified that it leaves its library
    ItemObject m_object;
    std::unique_ptr<ItemExtra> m_extra;
};

/// An item of the class that its kind asks for, in no library yet.
std::shared_ptr<Item> MakeItem(const char* in_type, bool in_loop, std::uint64_t in_space, std::uint64_t in_number);

} // namespace memorymodel
