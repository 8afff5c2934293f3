// SPDX-License-Identifier: MIT
#include "nodebrowser/identityindex.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace nodebrowser
{

IdentityIndex::IdentityIndex(Identities in_identities)
    : m_identities(std::move(in_identities)), m_sorted(m_identities.size())
{
    std::iota(m_sorted.begin(), m_sorted.end(), std::uint32_t(0));
    // Libraries mostly number the items of a type in their order. A merge sort is at its best on such runs.
    std::stable_sort(m_sorted.begin(), m_sorted.end(), [this](std::uint32_t in_left, std::uint32_t in_right) {
        return m_identities[in_left] < m_identities[in_right];
    });
}

std::vector<std::uint32_t> IdentityIndex::Find(const vireo::datamodel::ItemID& in_item) const
{
    const auto first = std::lower_bound(m_sorted.begin(), m_sorted.end(), in_item,
                                        [this](std::uint32_t in_index, const vireo::datamodel::ItemID& in_id) {
                                            return m_identities[in_index] < in_id;
                                        });
    std::vector<std::uint32_t> indexes;
    for (auto index = first; index != m_sorted.end() && m_identities[*index] == in_item; ++index)
        indexes.push_back(*index);
    return indexes;
}

} // namespace nodebrowser
