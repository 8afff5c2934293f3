// SPDX-License-Identifier: MIT
#include "memorymodel/database.h"

#include "memorymodel/items.h"

#include <algorithm>
#include <random>

using namespace nexa4;

namespace memorymodel
{
namespace
{

/// The type of resource objects.
const char* const gResourceType = "5B0C1A52-6E0D-4C57-9D3B-7A41E2C8F016";

/// The well-known objects of the product's own data sources.
const char* const gFactoryIds[] = {"D2BA853A-8668-704A-A121-1F7DE917B664", "34F315D3-58CF-4019-9BE3-381FCED0E983"};
const unsigned gFactoryFlags[] = {eFactorySource, eSecondFactorySource};

/// The object that stands for a data source.
class ResourceObject : public IValueAsset, public std::enable_shared_from_this<ResourceObject>
{
public:
    ResourceObject(const std::weak_ptr<Database>& in_database, const DbObjectId& in_id,
                   const std::shared_ptr<DataSource>& in_source)
        : m_database(in_database), m_id(in_id), m_source(in_source)
    {
    }

    const std::shared_ptr<DataSource>& GetSource() const { return m_source; }

    DbObjectId GetDbObjectId() const override { return m_id; }
    NEXAPtr<IDataSource> GetDataSource() const override { return NEXAPtr<IDataSource>(m_source); }
    NEXAPtr<IDataModelMgr> GetManager() const override { return NEXAPtr<IDataModelMgr>(m_database.lock()); }
    std::string GetName() const override { return m_source->GetName(); }
    NEXAPtr<IValueAsset> GetDesignatedAsset() const override
    {
        return NEXAPtr<IValueAsset>(std::const_pointer_cast<ResourceObject>(shared_from_this()));
    }

private:
    std::weak_ptr<Database> m_database;
    DbObjectId m_id;
    std::shared_ptr<DataSource> m_source;
};

/// The data source that an object stands for; null when it is no resource.
std::shared_ptr<DataSource> SourceOfResource(const IDbObject* in_object)
{
    const ResourceObject* const resource = dynamic_cast<const ResourceObject*>(in_object);
    return resource ? resource->GetSource() : nullptr;
}

/// The identity between the fixed parts of a query; the null identity when the query is of another form.
DbObjectId TypeInQuery(const std::string& in_query)
{
    static const std::string before = "select object where IS_OF_TYPE_VERSION( {";
    static const std::string after = " } )";
    const std::size_t fixed = before.size() + after.size();
    if (in_query.size() < fixed || in_query.compare(0, before.size(), before) != 0 ||
        in_query.compare(in_query.size() - after.size(), after.size(), after) != 0)
        return UID_Null();
    return DbObjectId(in_query.substr(before.size(), in_query.size() - fixed).c_str());
}

} // namespace

/// One of the two well-known objects: it shows which data source came with the product.
class FactoryObject : public IDbObject
{
public:
    FactoryObject(const std::weak_ptr<Database>& in_database, const DbObjectId& in_id)
        : m_database(in_database), m_id(in_id)
    {
    }

    void SetSource(const std::shared_ptr<DataSource>& in_source) { m_source = in_source; }

    DbObjectId GetDbObjectId() const override { return m_id; }
    NEXAPtr<IDataSource> GetDataSource() const override { return NEXAPtr<IDataSource>(m_source); }
    NEXAPtr<IDataModelMgr> GetManager() const override { return NEXAPtr<IDataModelMgr>(m_database.lock()); }

private:
    std::weak_ptr<Database> m_database;
    DbObjectId m_id;
    std::shared_ptr<DataSource> m_source;
};

Database::Database(CommandManager& in_commands) : m_instance(NewDatabaseInstance()), m_commands(&in_commands)
{
    std::random_device random;
    for (std::uint8_t& byte : m_prefix)
        byte = static_cast<std::uint8_t>(random() & 255u);
}

void Database::Shutdown()
{
    m_commands = nullptr;
    m_objects.clear();
    m_indices.clear();
    m_resources.clear();
}

NEXAPtr<IDataModelMgr> Database::GetManager()
{
    return NEXAPtr<IDataModelMgr>(shared_from_this());
}

int Database::NewCacheIndex()
{
    m_objects.emplace_back();
    return static_cast<int>(m_objects.size()) - 1;
}

DbObjectId Database::MakeIdentity(int in_cacheIndex) const
{
    std::array<std::uint8_t, 16> bytes = {};
    std::copy(m_prefix.begin(), m_prefix.end(), bytes.begin());
    const std::uint32_t number = static_cast<std::uint32_t>(in_cacheIndex) + 1;
    for (unsigned i = 0; i < 4; ++i)
        bytes[12 + i] = static_cast<std::uint8_t>(number >> (24 - 8 * i) & 255u);
    return DbObjectId(bytes);
}

int Database::CacheIndexOfMadeIdentity(const DbObjectId& in_id) const
{
    const std::array<std::uint8_t, 16>& bytes = in_id.GetBytes();
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4; ++i)
        number = number << 8 | bytes[12 + i];
    if (number == 0 || number > m_objects.size() || in_id != MakeIdentity(static_cast<int>(number - 1)))
        return -1;
    return static_cast<int>(number - 1);
}

std::size_t Database::Hash::operator()(const DbObjectId& in_id) const
{
    std::uint64_t hash = 0;
    for (const std::uint8_t byte : in_id.GetBytes())
        hash = (hash ^ byte) * 0x100000001B3u;
    return static_cast<std::size_t>(hash ^ hash >> 32);
}

const std::shared_ptr<IDbObject>& Database::ObjectAt(int in_cacheIndex) const
{
    static const std::shared_ptr<IDbObject> none;
    return in_cacheIndex >= 0 && static_cast<std::size_t>(in_cacheIndex) < m_objects.size()
               ? m_objects[static_cast<std::size_t>(in_cacheIndex)]
               : none;
}

void Database::Put(int in_cacheIndex, const std::shared_ptr<IDbObject>& in_object)
{
    m_objects[static_cast<std::size_t>(in_cacheIndex)] = in_object;
    const DbObjectId id = in_object->GetDbObjectId();
    if (id == MakeIdentity(in_cacheIndex))
        return;
    m_indices.emplace(id, in_cacheIndex);
}

void Database::TakeAway(int in_cacheIndex)
{
    if (!ObjectAt(in_cacheIndex))
        return;
    const auto [first, last] = m_indices.equal_range(ObjectAt(in_cacheIndex)->GetDbObjectId());
    const auto found =
        std::find_if(first, last, [in_cacheIndex](const auto& in_entry) { return in_entry.second == in_cacheIndex; });
    if (found != last)
        m_indices.erase(found);
    m_objects[static_cast<std::size_t>(in_cacheIndex)].reset();
}

int Database::AddResource(const std::shared_ptr<DataSource>& in_source)
{
    const int cacheIndex = NewCacheIndex();
    Put(cacheIndex, std::make_shared<ResourceObject>(weak_from_this(), MakeIdentity(cacheIndex), in_source));
    m_resources.push_back(cacheIndex);
    MoveFactories();
    return cacheIndex;
}

void Database::RemoveResource(int in_cacheIndex)
{
    TakeAway(in_cacheIndex);
    m_resources.erase(std::remove(m_resources.begin(), m_resources.end(), in_cacheIndex), m_resources.end());
    MoveFactories();
}

void Database::MoveFactories()
{
    for (int i = 0; i < 2; ++i)
    {
        std::shared_ptr<DataSource> last;
        for (const int resource : m_resources)
        {
            const std::shared_ptr<DataSource> source = SourceOfResource(ObjectAt(resource).get());
            if (source->GetFlags() & gFactoryFlags[i])
                last = source;
        }
        if (last && !m_factories[i])
        {
            m_factories[i] = std::make_shared<FactoryObject>(weak_from_this(), DbObjectId(gFactoryIds[i]));
            m_factoryIndices[i] = NewCacheIndex();
        }
        if (!m_factories[i])
            continue;
        m_factories[i]->SetSource(last);
        if (!last)
            TakeAway(m_factoryIndices[i]);
        else if (!ObjectAt(m_factoryIndices[i]))
            Put(m_factoryIndices[i], m_factories[i]);
    }
}

std::string Database::MakeLocation(const std::string& in_wanted) const
{
    std::string location = in_wanted;
    for (int number = 2; HasLocation(location); ++number)
        location = in_wanted + " (" + std::to_string(number) + ')';
    return location;
}

bool Database::HasLocation(const std::string& in_location) const
{
    return std::any_of(m_resources.begin(), m_resources.end(), [&](int in_cacheIndex) {
        return SourceOfResource(ObjectAt(in_cacheIndex).get())->GetLocation() == in_location;
    });
}

std::shared_ptr<DataSource> Database::FindSource(const DbObjectId& in_resource) const
{
    return SourceOfResource(ObjectAt(CacheIndexOf(in_resource)).get());
}

std::shared_ptr<Item> Database::FindItem(int in_instance, int in_cacheIndex) const
{
    if (in_instance != m_instance)
        return nullptr;
    const std::shared_ptr<IDbObject>& object = ObjectAt(in_cacheIndex);
    const ItemObject* const part = dynamic_cast<const ItemObject*>(object.get());
    return part ? std::shared_ptr<Item>(object, &part->GetItem()) : nullptr;
}

int Database::CacheIndexOf(const DbObjectId& in_id) const
{
    const int made = CacheIndexOfMadeIdentity(in_id);
    if (ObjectAt(made) && ObjectAt(made)->GetDbObjectId() == in_id)
        return made;
    const auto [first, last] = m_indices.equal_range(in_id);
    const auto given =
        std::min_element(first, last, [](const auto& in_a, const auto& in_b) { return in_a.second < in_b.second; });
    return given != last ? given->second : -1;
}

NEXAHandle<IDbObject> Database::FindObject(const DbObjectId& in_id) const
{
    const int cacheIndex = CacheIndexOf(in_id);
    return ObjectAt(cacheIndex) ? NEXAHandle<IDbObject>::AssignCast(m_instance, cacheIndex) : NEXAHandle<IDbObject>();
}

std::vector<DbObjectId> Database::Query(const std::string& in_query, bool /*in_loaded*/) const
{
    std::vector<DbObjectId> ids;
    if (TypeInQuery(in_query) != DbObjectId(gResourceType))
        return ids;
    for (const int resource : m_resources)
        ids.push_back(ObjectAt(resource)->GetDbObjectId());
    return ids;
}

NEXAPtr<IDatabase> Database::GetDatabase() const
{
    return NEXAPtr<IDatabase>(std::const_pointer_cast<Database>(shared_from_this()));
}

bool Database::MoveToDataSource(const NEXAHandle<IDbObject>& in_object, const NEXAPtr<IDataSource>& in_target,
                                bool /*in_withContent*/)
{
    const std::shared_ptr<Item> item = FindItem(in_object.GetInstance(), in_object.GetCacheIndex());
    return item && item->m_library && in_target.IsValid() &&
           item->m_library->MoveItem(*item, *in_target.GetPointeeNotNull(), m_commands);
}

std::shared_ptr<IDbObject> Database::GetObjectAt(int in_instance, int in_cacheIndex)
{
    return in_instance == m_instance ? ObjectAt(in_cacheIndex) : nullptr;
}

DbObjectId Database::GetResourceType()
{
    return DbObjectId(gResourceType);
}

NEXAPtr<IHelper> Database::GetHelper(const NEXAPtr<IDatabase>& in_database)
{
    return in_database == GetDatabase() ? NEXAPtr<IHelper>(shared_from_this()) : NEXAPtr<IHelper>();
}

NEXAPtr<IDataSource> Database::GetDataSourceFromResource(const NEXAPtr<IValueAsset>& in_resource)
{
    const IValueAsset* const resource = in_resource.IsValid() ? in_resource.GetPointeeNotNull() : nullptr;
    if (!resource || ObjectAt(CacheIndexOf(resource->GetDbObjectId())).get() != resource)
        return NEXAPtr<IDataSource>();
    return NEXAPtr<IDataSource>(SourceOfResource(resource));
}

bool Database::IsSameUri(const NEXAPtr<IDataSource>& in_source, const NEXAHandle<IValueAsset>& in_resource)
{
    if (!in_source.IsValid())
        return false;
    const DataSource* const source = dynamic_cast<const DataSource*>(in_source.GetPointeeNotNull());
    const std::shared_ptr<IDbObject> object = GetObjectAt(in_resource.GetInstance(), in_resource.GetCacheIndex());
    const std::shared_ptr<DataSource> other = SourceOfResource(object.get());
    return source && other && source->GetLocation() == other->GetLocation();
}

std::string Database::GetResourceExpandedURI(const NEXAHandle<IDbObject>& in_resource)
{
    const std::shared_ptr<IDbObject> object = GetObjectAt(in_resource.GetInstance(), in_resource.GetCacheIndex());
    const std::shared_ptr<DataSource> source = SourceOfResource(object.get());
    return source ? source->GetLocation() : std::string();
}

} // namespace memorymodel
