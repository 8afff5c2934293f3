/// The tags of every listed item, and the items of every tag.
#pragma once

#include "nodebrowser/textblock.h"

#include <cstdint>
#include <locale>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

/// Filled by the list builder, kept up to date by tag notifications, read by the search. Items go by their numbers in
/// the list. A tag's text is kept once, however many items have it, and is searched once per word.
class TagIndex
{
public:
    using Tags = std::set<std::string>;
    using Numbers = std::vector<std::uint32_t>; ///< ascending

    TagIndex() = default;
    // The tags' texts are pointed at.
    TagIndex(const TagIndex&) = delete;
    TagIndex& operator=(const TagIndex&) = delete;

    void Clear();

    /// Gives an item the tags of a tag string, which replace all that the index had for the item. An empty string leaves
    /// the item's entry as it is. Costs the splitting, and a look-up of each tag.
    /// \param in_joined tags separated by ";", with no blanks around them
    void SetTags(std::uint32_t in_item, const std::string& in_joined);

    /// Adds one tag to an item; an empty one adds nothing.
    void AddTag(std::uint32_t in_item, const std::string& in_tag);

    /// Forgets an item's tags. Costs, per tag, a move of the numbers behind it.
    void Remove(std::uint32_t in_item);

    /// Whether the index has an entry for an item.
    bool HasTags(std::uint32_t in_item) const { return in_item < m_spans.size() && m_spans[in_item].m_count > 0; }

    /// The item's tags; none without an entry. Makes copies: for one item, not for a search.
    Tags GetTags(std::uint32_t in_item) const;

    /// The items of a tag; none for the empty one.
    Numbers GetItems(const std::string& in_tag) const;

    /// The items of each tag that a word is found in, upper and lower case alike, as the program's locale has them. Costs
    /// one pass over the distinct tags.
    /// \param in_word without white space
    /// \return one list per tag, valid until the index changes
    std::vector<const Numbers*> FindItems(const std::string& in_word) const;

private:
    void Insert(std::uint32_t in_item, std::uint32_t in_tag);
    std::uint32_t NumberOf(const std::string& in_tag);
    void MoveToEnd(std::uint32_t in_item);
    void DropUnused();
    void FoldTexts() const;

    /// Where an item's tags stand in m_tags.
    struct Span
    {
        std::size_t m_begin = 0;
        std::size_t m_count = 0;
    };

    std::vector<Span> m_spans;         // by item
    Numbers m_tags;                    // the numbers of the items' tags; those of an item side by side, in no order
    std::size_t m_used = 0;            // how many of them still belong to an item
    std::vector<Numbers> m_itemsOfTag; // by tag; left empty for the empty one, which no word is in
    std::unordered_map<std::string, std::uint32_t> m_tagNumbers;
    std::uint32_t m_lastAdded = 0;              // the tag that AddTag() added last
    std::vector<const std::string*> m_tagTexts; // by tag; they live in m_tagNumbers

    // The texts in upper case, made by the first search after a new tag or a new locale.
    mutable TextBlock m_foldedTexts;
    mutable std::locale m_locale;
};
