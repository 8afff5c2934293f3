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

    /// Adds an item, which gets the next number.
    void Add(const std::string& in_lowerName, eItemKind in_kind);

    /// Sets the order among items that are equally relevant, once all are added: each number once.
    void SetOrder(std::vector<std::uint32_t> in_order) { m_order = std::move(in_order); }
    const std::vector<std::uint32_t>& GetOrder() const { return m_order; }

    /// The numbers of the items that pass, the most relevant first. Costs, per word, one pass over the names, one over the
    /// distinct tags and one over the items of the tags found; and two passes over a number per item.
    /// \param in_tags of the same items, by the same numbers
    std::vector<std::uint64_t> Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags) const;

private:
    std::vector<std::uint32_t> Score(const SearchWords& in_words, const TagIndex& in_tags) const;

    TextBlock m_names;
    std::vector<eItemKind> m_kinds;
    std::vector<std::uint32_t> m_order;
};
