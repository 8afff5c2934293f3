#include "nodebrowser/itemnumbers.h"

#include <algorithm>

void ItemNumbers::Clear()
{
    m_entries.clear();
    m_sorted = true;
}

void ItemNumbers::Add(const vireo::datamodel::ItemID& in_item, std::uint32_t in_number)
{
    m_entries.emplace_back(in_item, in_number);
    m_sorted = false;
}

bool ItemNumbers::Find(const vireo::datamodel::ItemID& in_item, std::uint32_t& out_number) const
{
    if (!m_sorted)
        std::sort(m_entries.begin(), m_entries.end());
    m_sorted = true;
    const auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), Entry(in_item, 0));
    if (entry == m_entries.end() || entry->first != in_item)
        return false;
    out_number = entry->second;
    return true;
}
