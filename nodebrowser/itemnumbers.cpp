// SPDX-License-Identifier: MIT
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

std::vector<std::uint32_t> ItemNumbers::Find(const vireo::datamodel::ItemID& in_item) const
{
    if (!m_sorted)
        std::sort(m_entries.begin(), m_entries.end());
    m_sorted = true;
    std::vector<std::uint32_t> numbers;
    for (auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), Entry(in_item, 0));
         entry != m_entries.end() && entry->first == in_item; ++entry)
        numbers.push_back(entry->second);
    return numbers;
}
