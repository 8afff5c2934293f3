// SPDX-License-Identifier: MIT
/// Where an item stands in the item list.
#pragma once

#include "datamodel/itemid.h"

#include <cstdint>
#include <utility>
#include <vector>

/// The way from an identity to a record. Filled while the list is built; the first look-up after that sorts it once, any
/// other one costs a binary search.
class ItemNumbers
{
public:
    using Entry = std::pair<vireo::datamodel::ItemID, std::uint32_t>;

    void Clear();
    void Add(const vireo::datamodel::ItemID& in_item, std::uint32_t in_number);

    /// The numbers of an item, the lowest first: none when it is not in the list, more than one when it was added more than
    /// once.
    std::vector<std::uint32_t> Find(const vireo::datamodel::ItemID& in_item) const;

    /// Every item added, with its number.
    const std::vector<Entry>& GetEntries() const { return m_entries; }

private:
    mutable std::vector<Entry> m_entries;
    mutable bool m_sorted = true;
};
