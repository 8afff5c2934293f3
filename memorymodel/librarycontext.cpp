// SPDX-License-Identifier: MIT
#include "memorymodel/librarycontext.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
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
    // Texts of identities travel between processes, so each process numbers its libraries from a place of its own.
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

/// A walk over the items of one type.
class Walk : public IItemIterator
{
public:
    Walk(std::shared_ptr<const LibraryContext> in_library, TypeList::Numbers in_numbers)
        : m_library(std::move(in_library)), m_numbers(std::move(in_numbers)), m_end(m_numbers->size())
    {
    }

    bool IsAtEnd() const override { return m_place == m_end; }

    void Next() override
    {
        if (!IsAtEnd())
            ++m_place;
    }

    ItemAccessor GetItem() const override
    {
        if (IsAtEnd() || !m_library->IsOpen())
            return ItemAccessor();
        return ItemAccessor(UnspecifiedAccessor(m_library->GetItems()[(*m_numbers)[m_place]]));
    }

private:
    std::shared_ptr<const LibraryContext> m_library;
    TypeList::Numbers m_numbers;
    std::size_t m_end;
    std::size_t m_place = 0;
};

} // namespace

LibraryContext::LibraryContext(std::string in_name, std::shared_ptr<Database> in_database)
    : m_name(std::move(in_name)), m_space(NewSpace()), m_database(std::move(in_database))
{
}

ItemLibraryAccessor LibraryContext::GetAccessor()
{
    return ItemLibraryAccessor(UnspecifiedAccessor(shared_from_this()));
}

void LibraryContext::Close()
{
    if (!IsOpen())
        return;
    const std::shared_ptr<LibraryContext> alive = shared_from_this();
    m_phase = ePhaseClosing;
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
    m_writer = nullptr;

    InBracket([this] { TellInvalidatedIn(ePhaseClosing); });
}

DataSource& LibraryContext::AddDataSource(std::string in_name, unsigned in_flags, std::string in_location)
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

std::shared_ptr<DataSource> LibraryContext::GetFirstSource()
{
    if (m_sources.empty())
        AddDataSource("Local", ePlainSource, std::string());
    return m_sources.front();
}

std::shared_ptr<DataSource> LibraryContext::FindSource(const nexa4::IDataSource& in_source) const
{
    for (const std::shared_ptr<DataSource>& source : m_sources)
        if (source.get() == &in_source)
            return source;
    return nullptr;
}

std::shared_ptr<Item> LibraryContext::Make(const NewItem& in_item, const std::shared_ptr<DataSource>& in_source)
{
    const std::shared_ptr<Item> item = MakeItem(in_item.m_type, in_item.m_loop, m_space, m_items.size());
    m_items.emplace_back();
    item->m_name = in_item.m_name;
    item->m_tags = in_item.m_tags;
    item->m_source = in_source;
    item->m_commitsAtLeaving = m_commits;
    item->m_signature = in_item.m_signature;
    item->m_loop = in_item.m_loop;
    item->m_readOnly = in_item.m_readOnly;
    item->m_parent = !in_item.m_parent.empty();
    item->m_specializes = !in_item.m_specializes.empty();
    item->m_builtIn = in_item.m_builtIn;
    item->m_loaded = in_item.m_loaded;
    item->m_forGraphs = in_item.m_forGraphs;
    if (!in_item.m_baseClass.empty() || !in_item.m_category.empty())
    {
        item->MakeExtra().m_baseClass = in_item.m_baseClass;
        item->MakeExtra().m_category = in_item.m_category;
    }
    if (in_item.m_withUID)
    {
        const int place = m_database->NewPlace();
        item->m_hasUID = true;
        item->m_uid = nexa4::DbObjectId::IsUID(in_item.m_uid.c_str()) ? nexa4::DbObjectId(in_item.m_uid.c_str())
                                                                      : m_database->MakeIdentity(place);
        item->m_cacheIndex = in_item.m_withObject ? place : -1;
    }
    return item;
}

ItemID LibraryContext::Add(const NewItem& in_item)
{
    if (!IsOpen())
        return ItemID();
    const std::shared_ptr<DataSource> source = in_item.m_source ? FindSource(*in_item.m_source) : GetFirstSource();
    if (!source)
        return ItemID();
    const std::shared_ptr<Item> item = Make(in_item, source);
    bool added = false;
    InBracket([&] {
        if (!IsOpen())
            return;
        PutIn(item);
        added = true;
        TellItemAdded(item);
    });
    return added ? item->GetItemID() : ItemID();
}

std::shared_ptr<Item> LibraryContext::FindItem(const ItemID& in_item) const
{
    if (!in_item.IsValid() || in_item.GetSpace() != m_space || in_item.GetNumber() >= m_items.size())
        return nullptr;
    return m_items[in_item.GetNumber()];
}

bool LibraryContext::HasNode(const std::string& in_name) const
{
    return std::any_of(m_items.begin(), m_items.end(), [&in_name](const std::shared_ptr<Item>& in_item) {
        return in_item && in_item->IsNode() && in_item->m_name == in_name;
    });
}

void LibraryContext::PutIn(const std::shared_ptr<Item>& in_item)
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

void LibraryContext::TakeOut(Item& in_item)
{
    in_item.m_commitsAtLeaving = m_commits;
    in_item.m_library = nullptr;
    m_lists[TypeIndex(in_item.m_type)].Drop();
    --m_itemCount;
    m_database->TakeAway(in_item.m_cacheIndex);
    m_items[in_item.m_number].reset();
}

std::string LibraryContext::GetItemName(const ItemID& in_item, bool /*in_displayName*/, const char* /*in_scope*/) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item ? item->m_name : std::string();
}

std::string LibraryContext::GetItemTags(const ItemID& in_item, const char* in_key) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item ? item->GetTags(in_key) : std::string();
}

bool LibraryContext::ItemIsReadOnly(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && item->IsReadOnly();
}

bool LibraryContext::ItemIsDirty(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && item->IsDirty();
}

UnspecifiedAccessor LibraryContext::GetModel(const ItemID& in_item, std::string* out_error) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    if (!item && out_error)
        *out_error = "The library \"" + m_name + "\" does not have this item.";
    return UnspecifiedAccessor(item);
}

std::unique_ptr<IItemIterator> LibraryContext::IterateItems(const char* in_type) const
{
    const std::size_t index = TypeIndex(in_type);
    if (index == m_lists.size() || !IsOpen())
        return nullptr;
    return std::unique_ptr<IItemIterator>(new Walk(shared_from_this(), m_lists[index].GetNumbers(m_items)));
}

void LibraryContext::AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
        m_observers.Add(in_observer);
}

void LibraryContext::RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
        m_observers.Remove(in_observer);
}

void LibraryContext::AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
        m_tocObservers.Add(in_observer);
}

void LibraryContext::RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
        m_tocObservers.Remove(in_observer);
}

} // namespace memorymodel
