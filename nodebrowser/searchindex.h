// SPDX-License-Identifier: MIT
/// Finds the items of a search fast.
#pragma once

#include "nodebrowser/itemkind.h"
#include "nodebrowser/searchscore.h"
#include "nodebrowser/textarena.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nodebrowser
{

class TagIndex;

/// Everything that a search reads of the items, so that a search reads nothing from the data layer. It finds the same
/// items in the same order as PassesFilterMode() and ScoreItem() do item by item.
///
/// An index counts the items of the item list. A rank counts them in display order. The fields that a search scans are
/// in the order of the ranks.
class SearchIndex
{
public:
    /// Costs a sort of the names and a pass over their characters.
    /// \param in_names by index
    /// \param in_kinds by index, as many as names
    /// \param in_start the indexes of names that are about in order, see SortByName()
    SearchIndex(const TextArena& in_names, const std::vector<eItemKind>& in_kinds,
                const std::vector<std::uint32_t>& in_start);

    /// The index of the item at a rank. There are as many ranks as items.
    std::uint32_t GetIndex(std::size_t in_rank) const { return m_order[in_rank]; }
    std::size_t GetSize() const { return m_order.size(); }
    /// The indexes of all items, by rank.
    const std::vector<std::uint32_t>& GetOrder() const { return m_order; }

    /// The ranks of the items that pass: the most relevant first, equally relevant ones in display order. Costs, per
    /// word, one search over the names, one over the distinct tags, and one step for each item that has a tag found;
    /// one pass over the scores, and two over what was found.
    /// \param io_tags of the same items, by index; null to search the names alone
    /// \param out_ranks replaced; keeps its memory
    void Find(const SearchWords& in_words, int in_mode, TagIndex* io_tags, std::vector<std::uint64_t>& out_ranks);

private:
    void Score(const SearchWords& in_words, std::uint32_t in_none, TagIndex* io_tags);
    void CollectFound(int in_mode, std::uint32_t in_none);

    std::vector<std::uint32_t> m_ranks; // by index
    std::vector<std::uint32_t> m_order; // indexes, by rank
    TextArena m_lowerNames;             // by rank
    std::vector<eItemKind> m_kinds;     // by rank: a search that looked into the records would be slower
    // Of the last search, kept so that a key stroke allocates nothing.
    std::vector<std::uint32_t> m_scores; // by rank
    std::vector<std::uint32_t> m_found;  // ranks
};

} // namespace nodebrowser
