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
    /// Prepares the items of a list, by number. Costs a sort and a pass over all names; or only a comparison of the names,
    /// when they and the kinds are those of the time before.
    void Build(TextBlock in_names, std::vector<eItemKind> in_kinds);

    /// The numbers of all items, in the display order of their names.
    const std::vector<std::uint32_t>& GetOrder() const { return m_order; }

    /// The numbers of the items that pass, the most relevant first, equally relevant ones in display order. Costs, per word, one search over the names, one over
    /// the distinct tags and one step per item of the tags found; and two passes over a number per item.
    /// \param in_tags of the same items, by their numbers
    /// \param out_numbers replaced; keeps its room
    void Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags,
              std::vector<std::uint64_t>& out_numbers);

private:
    void Score(const SearchWords& in_words, const TagIndex& in_tags);
    void DropOtherKinds(int in_mode);

    TextBlock m_names;                   // as they came, by number
    std::vector<eItemKind> m_kinds;      // by number
    std::vector<std::uint32_t> m_places; // in the display order, by number

    // By place in the display order: what a search reaches one after the other lies one after the other.
    std::vector<std::uint32_t> m_order; // the items' numbers
    TextBlock m_lowerNames;
    std::vector<eItemKind> m_kindsInOrder;
    std::vector<std::uint32_t> m_scores; // of the last search; kept so that a key stroke allocates nothing
};
