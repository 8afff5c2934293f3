// SPDX-License-Identifier: MIT
/// The fast way to the rows of a search.
#pragma once

#include "nodebrowser/itemkind.h"
#include "nodebrowser/searchscore.h"
#include "nodebrowser/textblock.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class TagIndex;

/// What a search needs to know of the items of a list, so that a key stroke asks the data layer for nothing. It finds the
/// same items in the same order as PassesFilterMode() and ScoreItem() item by item. The first search after items were
/// added prepares them, with a sort and a pass over all names: a list that is built again before it is searched sorts
/// nothing.
class SearchIndex
{
public:
    void Clear();

    /// Adds the next item of the list, which gets the next number from 0 on.
    void Add(const std::string& in_name, eItemKind in_kind);

    /// The numbers of all items, in the display order of their names.
    const std::vector<std::uint32_t>& GetOrder();

    /// The places in the display order of the items that pass, the most relevant first, equally relevant ones in display
    /// order. Costs, per word, one search over the names, one over the distinct tags and one step per item of the tags
    /// found; and two passes over a number per item.
    /// \param in_tags of the same items, by their numbers
    /// \param out_places replaced; keeps its room
    void Find(const SearchWords& in_words, int in_mode, TagIndex& in_tags, std::vector<std::uint64_t>& out_places);

private:
    void Prepare();
    void Score(const SearchWords& in_words, TagIndex& in_tags);
    void DropOtherKinds(int in_mode);

    bool m_prepared = true;
    TextBlock m_names;                   // as they came, by number
    std::vector<eItemKind> m_kinds;      // by number
    std::vector<std::uint32_t> m_places; // in the display order, by number

    // By place in the display order: what a search reaches one after the other lies one after the other.
    std::vector<std::uint32_t> m_order; // the items' numbers
    TextBlock m_lowerNames;
    std::vector<eItemKind> m_kindsInOrder;
    std::vector<std::uint32_t> m_scores; // of the last search; kept so that a key stroke allocates nothing
};
