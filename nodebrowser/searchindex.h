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

    /// Adds the next item of the list.
    void Add(const std::string& in_lowerName, eItemKind in_kind);

    /// The numbers of the items that pass, the most relevant first, equally relevant ones in the list's order. Costs, per
    /// word, one pass over the names, one over the distinct tags and one over the items of the tags found; and two passes
    /// over a number per item.
    /// \param in_tags of the same items, by the same numbers
    std::vector<std::uint64_t> Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags) const;

private:
    std::vector<std::uint32_t> Score(const SearchWords& in_words, const TagIndex& in_tags) const;

    TextBlock m_names;
    std::vector<eItemKind> m_kinds;
};
