// SPDX-License-Identifier: MIT
#include "workspace/catalogue.h"

#include "materialx/identity.h"

#include <algorithm>

namespace workspace
{
namespace
{

using materialx::Item;

/// Whether two items have one key, if they are at the same index among items of their kind and name.
bool IsSame(const Item& in_a, const Item& in_b)
{
    return in_a.m_kind == in_b.m_kind && in_a.m_name == in_b.m_name && in_a.m_parent == in_b.m_parent;
}

/// Whether an item of the library can become what an item of the documents is now.
bool CanFollow(const Item& in_before, const Item& in_after)
{
    return in_before.m_isLoop == in_after.m_isLoop && in_before.m_specializes.empty() == in_after.m_specializes.empty();
}

} // namespace

CatalogueNews Catalogue::Update(const materialx::Library& in_documents)
{
    CatalogueNews news;
    ++m_revision;
    std::vector<Item> items = materialx::MakeItems(in_documents);
    std::vector<ItemID> ids(items.size());
    const auto take = [&](std::size_t in_from, std::size_t in_to) {
        const ItemID id = m_ids[in_from];
        if (!CanFollow(m_items[in_from], items[in_to]))
            return false;
        ids[in_to] = id;
        if (id.IsValid() && !AreAlike(m_items[in_from], items[in_to]))
            news.m_changed.push_back(id);
        return true;
    };
    const bool isSameList =
        std::equal(items.begin(), items.end(), m_items.begin(), m_items.end(),
                   [](const Item& in_a, const Item& in_b) { return IsSame(in_a, in_b) && CanFollow(in_a, in_b); });
    if (isSameList)
    {
        for (std::size_t i = 0; i < items.size(); ++i)
            take(i, i);
        m_items = std::move(items);
        return news;
    }
    const std::vector<std::string> keys = materialx::IdentityNames(items);
    std::vector<bool> isTaken(m_items.size(), false);
    std::unordered_map<std::string, std::size_t> indexOfKey;
    indexOfKey.reserve(keys.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        indexOfKey.emplace(keys[i], i);
        const auto known = m_indexOfKey.find(keys[i]);
        if (known != m_indexOfKey.end() && take(known->second, i))
            isTaken[known->second] = true;
        else
            news.m_new.push_back(keys[i]);
    }
    for (std::size_t i = 0; i < m_items.size(); ++i)
        if (!isTaken[i] && m_ids[i].IsValid())
            news.m_gone.push_back(m_ids[i]);
    m_items = std::move(items);
    m_ids = std::move(ids);
    m_indexOfKey = std::move(indexOfKey);
    m_indexOfId.clear();
    for (std::size_t i = 0; i < m_ids.size(); ++i)
        if (m_ids[i].IsValid())
            m_indexOfId.emplace(m_ids[i].GetNumber(), i);
    return news;
}

const Item* Catalogue::Find(const ItemID& in_id) const
{
    const auto found = m_indexOfId.find(in_id.GetNumber());
    return found != m_indexOfId.end() && m_ids[found->second] == in_id ? &m_items[found->second] : nullptr;
}

const Item* Catalogue::FindNew(const std::string& in_key) const
{
    const auto found = m_indexOfKey.find(in_key);
    return found != m_indexOfKey.end() && !m_ids[found->second].IsValid() ? &m_items[found->second] : nullptr;
}

std::string Catalogue::KeyOf(const Item& in_item)
{
    return materialx::IdentityNames({in_item}).front();
}

bool Catalogue::HasTwin(const Item& in_item) const
{
    return std::count_if(m_items.begin(), m_items.end(),
                         [&in_item](const Item& in_other) { return IsSame(in_item, in_other); }) > 1;
}

void Catalogue::Pair(const std::string& in_key, const ItemID& in_id)
{
    if (const auto found = m_indexOfKey.find(in_key); found != m_indexOfKey.end())
        Pair(found->second, in_id);
}

void Catalogue::Pair(std::size_t in_index, const ItemID& in_id)
{
    ++m_revision;
    m_ids[in_index] = in_id;
    m_indexOfId[in_id.GetNumber()] = in_index;
}

} // namespace workspace
