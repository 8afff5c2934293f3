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

/// What a search needs to know of the items of a list, prepared when the list is built, so that a key stroke asks the data
/// layer for nothing. It finds the same items in the same order as PassesFilterMode() and ScoreItem() item by item.
class SearchIndex
{
public:
    void Clear();

    /// Adds the next item in the order in which equally relevant ones stand.
    /// \param in_number by which the item is known outside; those added are the numbers from 0 on, each once
    void Add(std::uint32_t in_number, const std::string& in_lowerName, eItemKind in_kind);

    /// The numbers of all items, in the order in which they were added.
    const std::vector<std::uint32_t>& GetOrder() const { return m_order; }

    /// The numbers of the items that pass, the most relevant first. Costs, per word, one search over the names, one over
    /// the distinct tags and one step per item of the tags found; and two passes over a number per item.
    /// \param in_tags of the same items, by their numbers
    /// \param out_numbers replaced; keeps its room
    void Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags,
              std::vector<std::uint64_t>& out_numbers);

private:
    void Score(const SearchWords& in_words, const TagIndex& in_tags);
    void DropOtherKinds(int in_mode);

    // By place in the order: what a search reaches one after the other lies one after the other.
    TextBlock m_names;
    std::vector<eItemKind> m_kinds;
    std::vector<std::uint32_t> m_order;  // the items' numbers
    std::vector<std::uint32_t> m_scores; // of the last search; kept so that a key stroke allocates nothing
    std::vector<std::uint32_t> m_places; // by number
};
