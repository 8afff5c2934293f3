// SPDX-License-Identifier: MIT
/// From an item's identity to its index in the item list.
#pragma once

#include "datamodel/itemid.h"

#include <cstdint>
#include <vector>

namespace nodebrowser
{

/// It is sorted once, when it is made. A look-up costs a binary search. It keeps the identities itself, because the
/// accessor of a record has no identity any more when its item is gone.
class IdentityIndex
{
public:
    using Identities = std::vector<vireo::datamodel::ItemID>;

    /// \param in_identities by index
    explicit IdentityIndex(Identities in_identities);

    /// The indexes of an item, the lowest first. Empty when the item is not in the list. There is more than one when
    /// the table of contents named the item more than once.
    std::vector<std::uint32_t> Find(const vireo::datamodel::ItemID& in_item) const;

    /// Every item, by index.
    const Identities& GetIdentities() const { return m_identities; }

private:
    Identities m_identities;
    std::vector<std::uint32_t> m_sorted; // indexes, in the order of their identities
};

} // namespace nodebrowser
