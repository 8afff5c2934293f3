// SPDX-License-Identifier: MIT
#include "workspace/catalogue.h"

#include "materialx/identity.h"

#include <algorithm>
#include <utility>

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

void Catalogue::Begin(std::vector<Item> in_items)
{
    ++m_revision;
    m_items = std::move(in_items);
    m_ids.resize(m_items.size());
}

CatalogueUpdate Catalogue::Compare(std::vector<Item> in_items) const
{
    CatalogueUpdate update;
    update.m_items = std::move(in_items);
    const std::vector<Item>& items = update.m_items;
    CatalogueNews& news = update.m_news;
    update.m_ids.resize(items.size());
    const auto take = [&](std::size_t in_from, std::size_t in_to) {
        const ItemID id = m_ids[in_from];
        if (!CanFollow(m_items[in_from], items[in_to]))
            return false;
        update.m_ids[in_to] = id;
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
        return update;
    }
    const std::vector<std::string> keys = materialx::IdentityNames(items);
    const KeyMap& before = Keys();
    std::vector<bool> isTaken(m_items.size(), false);
    update.m_indexOfKey.reserve(keys.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        update.m_indexOfKey.emplace(keys[i], i);
        const auto known = before.find(keys[i]);
        if (known != before.end() && take(known->second, i))
            isTaken[known->second] = true;
        else
            news.m_new.push_back(keys[i]);
    }
    for (std::size_t i = 0; i < m_items.size(); ++i)
        if (!isTaken[i] && m_ids[i].IsValid())
            news.m_gone.push_back(m_ids[i]);
    return update;
}

CatalogueNews Catalogue::Take(CatalogueUpdate in_update)
{
    ++m_revision;
    const bool isSameList = in_update.m_indexOfKey.empty() && in_update.m_items.size() == m_items.size();
    m_items = std::move(in_update.m_items);
    m_ids = std::move(in_update.m_ids);
    if (isSameList)
        return in_update.m_news;
    m_indexOfKey = std::move(in_update.m_indexOfKey);
    for (std::size_t i = 0; i < m_ids.size(); ++i)
        if (m_ids[i].IsValid())
            SetIndex(m_ids[i], i);
    return in_update.m_news;
}

const KeyMap& Catalogue::Keys() const
{
    if (!m_indexOfKey.empty() || m_items.empty())
        return m_indexOfKey;
    m_indexOfKey.reserve(m_items.size());
    std::size_t index = 0;
    for (std::string& key : materialx::IdentityNames(m_items))
        m_indexOfKey.emplace(std::move(key), index++);
    return m_indexOfKey;
}

void Catalogue::SetIndex(const ItemID& in_id, std::size_t in_index)
{
    if (in_id.GetNumber() >= m_indexOfId.size())
        m_indexOfId.resize(std::max(in_id.GetNumber() + 1, static_cast<std::uint64_t>(m_ids.size())));
    m_indexOfId[in_id.GetNumber()] = static_cast<std::uint32_t>(in_index);
}

CatalogueNews Catalogue::UpdateShown(const materialx::Library& in_documents,
                                     const std::vector<materialx::DeclarationIndex>& in_declarations)
{
    CatalogueNews news;
    for (std::size_t i = 0; i < m_items.size(); ++i)
    {
        const auto isOf = [this, i](const materialx::DeclarationIndex& in_declaration) {
            return m_items[i].m_declaration.m_document == in_declaration.m_document &&
                   m_items[i].m_declaration.m_declaration == in_declaration.m_declaration;
        };
        if (std::none_of(in_declarations.begin(), in_declarations.end(), isOf))
            continue;
        const Item before = m_items[i];
        ReadHowShown(in_documents, m_items[i]);
        if (m_ids[i].IsValid() && !AreAlike(before, m_items[i]))
            news.m_changed.push_back(m_ids[i]);
    }
    return news;
}

const Item* Catalogue::Find(const ItemID& in_id) const
{
    if (in_id.GetNumber() >= m_indexOfId.size())
        return nullptr;
    // One that is gone leaves its index behind.
    const std::size_t index = m_indexOfId[in_id.GetNumber()];
    return index < m_ids.size() && m_ids[index] == in_id ? &m_items[index] : nullptr;
}

std::vector<materialx::DeclarationIndex> Catalogue::GetDeclarations(const Item& in_item) const
{
    std::vector<materialx::DeclarationIndex> declarations;
    // The items of the definitions follow the one that they share.
    if (in_item.m_kind == materialx::eKind::ePolymorphicSolver && in_item.m_parent.empty())
        for (const Item* next = &in_item + 1; next != m_items.data() + m_items.size(); ++next)
        {
            if (next->m_specializes != in_item.m_name)
                break;
            declarations.push_back(next->m_declaration);
        }
    if (declarations.empty())
        declarations.push_back(in_item.m_declaration);
    return declarations;
}

const Item* Catalogue::FindNew(const std::string& in_key) const
{
    const auto found = Keys().find(in_key);
    return found != Keys().end() && !m_ids[found->second].IsValid() ? &m_items[found->second] : nullptr;
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
    if (const auto found = Keys().find(in_key); found != Keys().end())
        Pair(found->second, in_id);
}

void Catalogue::Pair(std::size_t in_index, const ItemID& in_id)
{
    m_ids[in_index] = in_id;
    SetIndex(in_id, in_index);
}

} // namespace workspace
