// SPDX-License-Identifier: MIT
/// The object database of a data layer in memory.
#pragma once

#include "datamodel/provider.h"
#include "memorymodel/commandmanager.h"
#include "memorymodel/datasource.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace memorymodel
{

class FactoryObject;
class Item;

/// One database instance with everything that its objects lead to: their manager and the helper for moving them.
///
/// Objects are counted by their cache index. The database does not own items: an item's object is a part of the item.
/// To look an object up by cache index or by identity takes constant time on average.
class Database : public nexa4::IDatabase,
                 public nexa4::IDataModelMgr,
                 public nexa4::IHelper,
                 public nexa4::IObjectDatabase,
                 public std::enable_shared_from_this<Database>
{
public:
    /// \param in_commands takes the moves; must stay until Shutdown()
    explicit Database(CommandManager& in_commands);

    /// From here on nothing is found any more and nothing is moved.
    void Shutdown();

    int GetInstance() const { return m_instance; }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager();

    /// A cache index that no object ever had.
    int NewCacheIndex();
    /// The identity of an object that is given none. No other database makes the same one, in other processes either,
    /// so it can be written down.
    nexa4::DbObjectId MakeIdentity(int in_cacheIndex) const;
    /// Of several objects with one identity, the one with the lowest cache index is found by it. But an identity that
    /// MakeIdentity() made finds the object that it was made for.
    void Put(int in_cacheIndex, const std::shared_ptr<nexa4::IDbObject>& in_object);
    void TakeAway(int in_cacheIndex);
    /// Makes the resource object of a source. Factory objects move to the source if its flags say so.
    /// \return the resource's cache index
    int AddResource(const std::shared_ptr<DataSource>& in_source);
    /// Takes a resource object away. Factory objects move to the last source that remains with their flag; without one
    /// they go.
    void RemoveResource(int in_cacheIndex);
    /// A location that no source has: the wanted one if possible. Linear in the number of sources.
    std::string MakeLocation(const std::string& in_wanted) const;
    /// The source that a resource object with this identity stands for; null when there is none.
    std::shared_ptr<DataSource> FindSource(const nexa4::DbObjectId& in_resource) const;
    /// The item that an object is part of; null when there is none. The pointer keeps the item alive.
    std::shared_ptr<Item> FindItem(int in_instance, int in_cacheIndex) const;

    nexa4::NEXAHandle<nexa4::IDbObject> FindObject(const nexa4::DbObjectId& in_id) const override;
    std::vector<nexa4::DbObjectId> Query(const std::string& in_query, bool in_loaded) const override;
    nexa4::NEXAPtr<nexa4::IDatabase> GetDatabase() const override;
    bool MoveToDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object,
                          const nexa4::NEXAPtr<nexa4::IDataSource>& in_target, bool in_withContent) override;

    std::shared_ptr<nexa4::IDbObject> GetObjectAt(int in_instance, int in_cacheIndex) override;
    nexa4::DbObjectId GetResourceType() override;
    nexa4::NEXAPtr<nexa4::IHelper> GetHelper(const nexa4::NEXAPtr<nexa4::IDatabase>& in_database) override;
    nexa4::NEXAPtr<nexa4::IDataSource>
    GetDataSourceFromResource(const nexa4::NEXAPtr<nexa4::IValueAsset>& in_resource) override;
    bool IsSameUri(const nexa4::NEXAPtr<nexa4::IDataSource>& in_source,
                   const nexa4::NEXAHandle<nexa4::IValueAsset>& in_resource) override;
    std::string GetResourceExpandedURI(const nexa4::NEXAHandle<nexa4::IDbObject>& in_resource) override;

private:
    /// Null when there is none.
    const std::shared_ptr<nexa4::IDbObject>& ObjectAt(int in_cacheIndex) const;
    /// -1 when no object has the identity.
    int CacheIndexOf(const nexa4::DbObjectId& in_id) const;
    /// What MakeIdentity() made an identity for; -1 for any other identity.
    int CacheIndexOfMadeIdentity(const nexa4::DbObjectId& in_id) const;
    /// Puts each factory object into the last source that has its flag, or takes it away when there is none.
    void MoveFactories();
    bool HasLocation(const std::string& in_location) const;

    struct Hash
    {
        std::size_t operator()(const nexa4::DbObjectId& in_id) const;
    };

    const int m_instance;
    CommandManager* m_commands;
    std::array<std::uint8_t, 8> m_prefix;                     ///< the first half of the identities made here
    std::vector<std::shared_ptr<nexa4::IDbObject>> m_objects; ///< by cache index; null where there is none now
    /// Cache indices of the objects whose identity was given from outside.
    std::unordered_multimap<nexa4::DbObjectId, int, Hash> m_indices;
    std::vector<int> m_resources; ///< cache indices, in order of creation
    std::shared_ptr<FactoryObject> m_factories[2];
    int m_factoryIndices[2] = {-1, -1};
};

} // namespace memorymodel
