// SPDX-License-Identifier: MIT
#include "nodebrowser/itemlist.h"

#include "datamodel/helpers.h"
#include "nodebrowser/dbobject.h"

#include <algorithm>
#include <cstddef>
#include <utility>

using vireo::datamodel::gApplicationTagsKey;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIterator;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemTOCAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace nodebrowser
{
namespace
{

const char* TypeName(const ItemID& in_item)
{
    return in_item.IsValid() ? in_item.GetType() : "";
}

/// A little more, so that a few new items do not make an array grow, which would take twice the memory.
std::size_t WithRoom(std::size_t in_size)
{
    return in_size + in_size / 16;
}

/// The order of the items before, as indexes of the items now. Finds the items that stand at the beginning of both
/// lists, and those that stand at their end: what lies between is where items were added or removed.
std::vector<std::uint32_t> CarryOver(const std::vector<std::uint32_t>& in_order,
                                     const IdentityIndex::Identities& in_before,
                                     const IdentityIndex::Identities& in_now)
{
    const std::size_t most = std::min(in_before.size(), in_now.size());
    const auto differs =
        std::mismatch(in_before.begin(), in_before.begin() + static_cast<std::ptrdiff_t>(most), in_now.begin());
    const std::size_t first = static_cast<std::size_t>(differs.first - in_before.begin());
    std::size_t last = 0;
    while (last < most - first && in_before[in_before.size() - 1 - last] == in_now[in_now.size() - 1 - last])
        ++last;
    std::vector<std::uint32_t> order;
    order.reserve(in_order.size());
    for (const std::uint32_t index : in_order)
        if (index < first)
            order.push_back(index);
        else if (index >= in_before.size() - last)
            order.push_back(static_cast<std::uint32_t>(index + in_now.size() - in_before.size()));
    return order;
}

} // namespace

void ItemList::Build(const ItemTOCAccessor& in_toc, const ItemLibraryAccessor& in_library, const Legacy& in_legacy,
                     bool in_versioningActive, ObjectHandles* out_handles)
{
    if (!in_toc.IsValid())
        return;
    const std::size_t expected = WithRoom(in_legacy.m_identities.size());
    m_records.reserve(expected);
    m_identities.reserve(expected);
    m_names.Reserve(expected, WithRoom(in_legacy.m_nameBytes));
    m_tagTexts.Reserve(expected, WithRoom(in_legacy.m_tagBytes));
    for (const char* const type : {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                   VireoType::gSolver, LibType::gType})
        Append(type, in_toc, in_library, in_versioningActive, out_handles);
    m_nameBytes = m_names.GetBytes();
    m_tagBytes = m_tagTexts.GetBytes();
    m_start = CarryOver(in_legacy.m_order, in_legacy.m_identities, m_identities);
}

ItemList::Legacy ItemList::TakeLegacy()
{
    Legacy legacy;
    if (m_searchIndex)
        legacy.m_order = m_searchIndex->GetOrder();
    if (m_identityIndex)
        legacy.m_identities = m_identityIndex->GetIdentities();
    else
        legacy.m_identities = std::move(m_identities);
    legacy.m_nameBytes = m_nameBytes;
    legacy.m_tagBytes = m_tagBytes;
    return legacy;
}

void ItemList::Append(const char* in_type, const ItemTOCAccessor& in_toc, const ItemLibraryAccessor& in_library,
                      bool in_versioningActive, ObjectHandles* out_handles)
{
    RecordContext context(FindRevisionControlHelper(), in_versioningActive, m_icons);
    for (ItemIterator iterator = in_toc.IterateItems(in_type); !iterator.IsAtEnd(); iterator.Next())
    {
        ItemAccessor item = iterator.GetItem();
        if (!Helpers::IsValidGraphItemType(in_type, item))
            continue;
        // What lives inside another item, or is a variant of one, is reached through that item.
        if (item.GetValue(vireo::datamodel::gParentKey).IsValid() ||
            item.GetValue(vireo::datamodel::gSpecializesKey).IsValid())
            continue;
        // All reads come first: when one of them throws, nothing of the item is stored.
        const ItemID id = item.GetItemID();
        const ObjectLookup object = LookUpObject(id, context);
        BrowserItem record(std::move(item), object, vireo::datamodel::eAccessStateUnknown, context);
        const std::string name = in_library.GetItemName(id, true, nullptr);
        std::string tags = in_library.GetItemTags(id, gApplicationTagsKey);
        if (out_handles && record.IsSourceControlled() && object.m_hasId)
        {
            record.SetAccessState(vireo::datamodel::eAccessStateRequested, in_versioningActive, m_icons);
            out_handles->push_back(object.m_object);
        }
        m_identities.push_back(id);
        m_names.Add(name);
        m_tagTexts.Add(std::move(tags), TypeName(id));
        m_records.push_back(std::move(record));
    }
}

SearchIndex& ItemList::GetSearchIndex()
{
    if (m_searchIndex)
        return *m_searchIndex;
    std::vector<eItemKind> kinds;
    kinds.reserve(m_records.size());
    for (const BrowserItem& record : m_records)
        kinds.push_back(record.GetKind());
    m_searchIndex.reset(new SearchIndex(m_names, kinds, m_start));
    m_names = TextArena();
    m_start = std::vector<std::uint32_t>();
    return *m_searchIndex;
}

IdentityIndex& ItemList::GetIdentityIndex()
{
    if (!m_identityIndex)
        m_identityIndex.reset(new IdentityIndex(std::move(m_identities)));
    return *m_identityIndex;
}

TagIndex& ItemList::GetTagIndex()
{
    if (!m_tagIndex)
        m_tagIndex.reset(new TagIndex(std::move(m_tagTexts)));
    return *m_tagIndex;
}

void ItemList::Find(const SearchWords& in_words, int in_mode, std::vector<std::uint64_t>& out_ranks)
{
    GetSearchIndex().Find(in_words, in_mode, in_words.empty() ? nullptr : &GetTagIndex(), out_ranks);
}

void ItemList::FindItemByItem(const SearchWords& in_words, int in_mode, const ItemLibraryAccessor& in_library,
                              std::vector<std::uint64_t>& out_ranks)
{
    const SearchIndex& index = GetSearchIndex();
    std::vector<std::pair<std::size_t, std::uint64_t>> found; // score and rank
    for (std::size_t rank = 0; rank < index.GetSize(); ++rank)
    {
        ItemAccessor item = m_records[index.GetIndex(rank)].GetItem();
        std::size_t score = 0;
        if (item.IsValid() && Compare(in_words, in_mode, in_library, item, &score))
            found.emplace_back(score, rank);
    }
    std::sort(found.begin(), found.end());
    out_ranks.clear();
    for (const auto& entry : found)
        out_ranks.push_back(entry.second);
}

bool ItemList::Compare(const SearchWords& in_words, int in_mode, const ItemLibraryAccessor& in_library,
                       ItemAccessor& in_item, std::size_t* out_score)
{
    const ItemID id = in_item.GetItemID();
    if (!PassesFilterMode(in_mode, KindOf(in_item)))
        return false;
    if (in_words.empty())
    {
        *out_score = 0;
        return true;
    }
    return ScoreItem(in_words, LowerName(in_library.GetItemName(id, true, nullptr)), GetTags(id), out_score);
}

const BrowserItem* ItemList::FindRecord(std::uint64_t in_rank)
{
    const SearchIndex& index = GetSearchIndex();
    return in_rank < index.GetSize() ? &m_records[index.GetIndex(static_cast<std::size_t>(in_rank))] : nullptr;
}

bool ItemList::HasGoneItem() const
{
    return std::any_of(m_records.begin(), m_records.end(),
                       [](const BrowserItem& in_record) { return !in_record.GetItem().IsValid(); });
}

void ItemList::RefreshTags(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    const std::vector<std::uint32_t> indexes = GetIdentityIndex().Find(in_item);
    if (indexes.empty())
        return;
    const std::string tags = in_library.GetItemTags(in_item, gApplicationTagsKey);
    for (const std::uint32_t index : indexes)
        GetTagIndex().SetTags(index, tags, TypeName(in_item));
}

bool ItemList::SetState(const ItemID& in_item, unsigned in_state, bool in_versioningActive)
{
    const std::vector<std::uint32_t> indexes = GetIdentityIndex().Find(in_item);
    if (indexes.empty())
        return false;
    // The item of a record that left meanwhile has no identity any more.
    BrowserItem& record = m_records[indexes.front()];
    return record.GetItem().GetItemID() == in_item && record.SetAccessState(in_state, in_versioningActive, m_icons);
}

void ItemList::ResetStates(bool in_versioningActive)
{
    for (BrowserItem& record : m_records)
        record.SetAccessState(vireo::datamodel::eAccessStateUnknown, in_versioningActive, m_icons);
}

std::set<std::string> ItemList::GetTags(const ItemID& in_item)
{
    const std::vector<std::uint32_t> indexes = GetIdentityIndex().Find(in_item);
    return indexes.empty() ? std::set<std::string>() : GetTagIndex().GetTags(indexes.front());
}

std::set<ItemID> ItemList::GetTaggedItems(const std::string& in_tag)
{
    std::set<ItemID> items;
    for (const std::uint32_t index : GetTagIndex().GetItems(in_tag))
        items.insert(GetIdentityIndex().GetIdentities()[index]);
    return items;
}

} // namespace nodebrowser
