// SPDX-License-Identifier: MIT
#include "memorymodel/librarycontents.h"

#include "memorymodel/itemdescription.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{
namespace
{

std::uint64_t RandomNumber()
{
    std::random_device random;
    return std::uniform_int_distribution<std::uint64_t>()(random);
}

/// The identity space of one more library.
std::uint64_t NewSpace()
{
    // Texts of identities travel between processes, so each process starts counting its libraries at a random number.
    static std::atomic<std::uint64_t> next{RandomNumber()};
    return next++;
}

/// Which of a library's lists a type has; the number of types for a pointer that is none of theirs.
std::size_t TypeIndex(const char* in_type)
{
    const char* const types[] = {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                 VireoType::gSolver, LibType::gType};
    return static_cast<std::size_t>(std::find(std::begin(types), std::end(types), in_type) - std::begin(types));
}

} // namespace

LibraryContents::LibraryContents(std::string in_name, std::shared_ptr<Database> in_database)
    : m_name(std::move(in_name)), m_space(NewSpace()), m_database(std::move(in_database))
{
}

DataSource& LibraryContents::AddDataSource(std::string in_name, unsigned in_flags, std::string in_location)
{
    if (in_location.empty())
        in_location = m_database->MakeLocation(m_name + '/' + in_name);
    const auto source = std::make_shared<DataSource>(std::move(in_name), std::move(in_location), in_flags);
    if (IsOpen())
    {
        m_sources.push_back(source);
        m_resources.push_back(m_database->AddResource(source));
    }
    else
        m_lateSources.push_back(source);
    return *source;
}

std::shared_ptr<DataSource> LibraryContents::GetFirstSource()
{
    if (m_sources.empty())
        AddDataSource("Local", ePlainSource, std::string());
    return m_sources.front();
}

std::shared_ptr<DataSource> LibraryContents::FindSource(const nexa4::IDataSource& in_source) const
{
    for (const std::shared_ptr<DataSource>& source : m_sources)
        if (source.get() == &in_source)
            return source;
    return nullptr;
}

std::shared_ptr<DataSource> LibraryContents::FindWritableSource()
{
    GetFirstSource();
    for (const std::shared_ptr<DataSource>& source : m_sources)
        if (!source->IsReadOnly())
            return source;
    return nullptr;
}

std::shared_ptr<Item> LibraryContents::FindItem(const ItemID& in_item) const
{
    if (!in_item.IsValid() || in_item.GetSpace() != m_space || in_item.GetNumber() >= m_items.size())
        return nullptr;
    return m_items[in_item.GetNumber()];
}

bool LibraryContents::HasNode(const std::string& in_name) const
{
    return std::any_of(m_items.begin(), m_items.end(), [&in_name](const std::shared_ptr<Item>& in_item) {
        return in_item && in_item->IsNode() && in_item->m_name == in_name;
    });
}

bool LibraryContents::IsSignatureUID(const std::string& in_uid) const
{
    if (!nexa4::DbObjectId::IsUID(in_uid.c_str()))
        return false;
    const nexa4::DbObjectId uid(in_uid.c_str());
    return std::any_of(m_items.begin(), m_items.end(), [&uid](const std::shared_ptr<Item>& in_item) {
        return in_item && in_item->m_signature && in_item->m_hasUID && in_item->m_uid == uid;
    });
}

TypeList::Numbers LibraryContents::GetNumbers(const char* in_type) const
{
    const std::size_t index = TypeIndex(in_type);
    return index < m_lists.size() && IsOpen() ? m_lists[index].GetNumbers(m_items) : nullptr;
}

std::shared_ptr<Item> LibraryContents::Make(const NewItem& in_item, const std::shared_ptr<DataSource>& in_source)
{
    const ItemDescription& wanted = *in_item.m_private;
    const std::shared_ptr<Item> item = MakeItem(wanted.m_type, wanted.m_loop, m_space, m_items.size());
    m_items.emplace_back();
    item->m_name = wanted.m_name;
    item->m_tags = wanted.m_tags;
    item->m_source = in_source;
    item->m_commitsAtLeaving = m_commits;
    item->m_signature = wanted.m_signature;
    item->m_loop = wanted.m_loop;
    item->m_readOnly = wanted.m_readOnly;
    item->m_parent = !wanted.m_parent.empty();
    item->m_specializes = !wanted.m_specializes.empty();
    item->m_builtIn = wanted.m_builtIn;
    item->m_loaded = wanted.m_loaded;
    item->m_forGraphs = wanted.m_forGraphs;
    if (!wanted.m_baseClass.empty() || !wanted.m_category.empty())
    {
        item->MakeExtra().m_baseClass = wanted.m_baseClass;
        item->MakeExtra().m_category = wanted.m_category;
    }
    if (wanted.m_withUID)
    {
        const int cacheIndex = m_database->NewCacheIndex();
        item->m_hasUID = true;
        item->m_uid = nexa4::DbObjectId::IsUID(wanted.m_uid.c_str()) ? nexa4::DbObjectId(wanted.m_uid.c_str())
                                                                     : m_database->MakeIdentity(cacheIndex);
        item->m_cacheIndex = wanted.m_withObject ? cacheIndex : -1;
    }
    return item;
}

ItemID LibraryContents::Add(const NewItem& in_item)
{
    if (!IsOpen())
        return ItemID();
    const DataSource* const wanted = in_item.m_private->m_source;
    const std::shared_ptr<DataSource> source = wanted ? FindSource(*wanted) : GetFirstSource();
    if (!source)
        return ItemID();
    const std::shared_ptr<Item> item = Make(in_item, source);
    bool added = false;
    InBracket([&] {
        // An observer may have closed the library.
        if (!IsOpen())
            return;
        PutIn(item);
        added = true;
        NotifyItemAdded(item);
    });
    return added ? item->GetItemID() : ItemID();
}

void LibraryContents::PutIn(const std::shared_ptr<Item>& in_item)
{
    if (in_item->m_commitsAtLeaving != m_commits)
        in_item->m_committed = Item::s_neverCommitted;
    in_item->m_library = this;
    m_items[in_item->m_number] = in_item;
    ++m_itemCount;
    m_lists[TypeIndex(in_item->m_type)].Add(in_item->m_number);
    if (in_item->m_cacheIndex >= 0)
        m_database->Put(in_item->m_cacheIndex, std::shared_ptr<nexa4::IDbObject>(in_item, &in_item->m_object));
}

void LibraryContents::TakeOut(Item& io_item)
{
    io_item.m_commitsAtLeaving = m_commits;
    io_item.m_library = nullptr;
    m_lists[TypeIndex(io_item.m_type)].Drop();
    --m_itemCount;
    m_database->TakeAway(io_item.m_cacheIndex);
    m_items[io_item.m_number].reset();
}

void LibraryContents::SetStore(std::shared_ptr<Store> in_store)
{
    if (const std::shared_ptr<Store> before = std::exchange(m_store, std::move(in_store)))
        before->Close();
}

void LibraryContents::Follow(const ItemID& in_item, const StoredItem& in_stored, eFollowing in_following)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    const std::shared_ptr<DataSource> source = in_stored.m_source ? FindSource(*in_stored.m_source) : nullptr;
    if (!item || !source)
        return;
    item->m_readOnly = in_stored.m_isReadOnly;
    const auto isSame = [&] {
        return item->m_name == in_stored.m_name && item->m_tags == in_stored.m_tags && item->m_source == source;
    };
    if (isSame())
        return;
    InBracket([&] {
        // An observer may have changed the item or closed the library.
        if (!item->IsAlive() || isSame())
            return;
        const bool isRenamed = item->m_name != in_stored.m_name;
        const bool isTagged = item->m_tags != in_stored.m_tags;
        const bool isMoved = item->m_source != source;
        item->m_name = in_stored.m_name;
        item->m_tags = in_stored.m_tags;
        item->m_source = source;
        if (in_following == eFollowing::eNews)
        {
            // None of the states that commands know. A clean item stays clean: this is what the store has.
            const bool isDirty = item->IsDirty();
            item->m_revision = NewRevision();
            if (!isDirty)
                item->m_committed = item->m_revision;
        }
        if (isMoved)
            NotifyInvalidated();
        if (isRenamed)
            NotifyNameChanged(in_item);
        if (isTagged)
            NotifyTagsChanged(in_item, gApplicationTagsKey);
    });
}

void LibraryContents::Close()
{
    if (!IsOpen())
        return;
    BeginClosing();
    std::vector<std::shared_ptr<Item>> items;
    items.swap(m_items);
    for (const std::shared_ptr<Item>& item : items)
        if (item)
        {
            item->m_library = nullptr;
            m_database->TakeAway(item->m_cacheIndex);
        }
    m_itemCount = 0;
    for (TypeList& list : m_lists)
        list.Clear();
    for (const int resource : m_resources)
        m_database->RemoveResource(resource);
    m_versioning = nullptr;
    SetStore(nullptr);
    NotifyClosing();
}

} // namespace memorymodel
