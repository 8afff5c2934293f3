// SPDX-License-Identifier: MIT
/// The tags of every listed item, and the items of every tag.
#pragma once

#include "nodebrowser/textarena.h"

#include <cstdint>
#include <locale>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace nodebrowser
{

/// Filled by the item list, kept up to date by tag notifications, read by the search. Items go by their index. A tag's text
/// is kept once, however many items have the tag, and is searched once for each word.
class TagIndex
{
public:
    using Tags = std::set<std::string>;
    using Indexes = std::vector<std::uint32_t>; ///< of items, ascending

    TagIndex() = default;
    // It points at the texts of its own tags.
    TagIndex(const TagIndex&) = delete;
    TagIndex& operator=(const TagIndex&) = delete;

    /// Adds the tags of the next item. Indexes count from 0.
    /// \param in_joined tags separated by ";", with no blanks around them
    void Add(const std::string& in_joined);

    /// Replaces the tags of an item. Costs a look-up for each tag. For each tag that comes or goes, the indexes behind the
    /// item's move. The text of a tag that no item has any more stays.
    void SetTags(std::uint32_t in_item, const std::string& in_joined);

    /// The item's tags; none for an index that was not added. Copies texts: for one item, not for a search.
    Tags GetTags(std::uint32_t in_item) const;

    /// The items of a tag; none for the empty one.
    Indexes GetItems(const std::string& in_tag) const;

    /// The items of each tag that contains a word. Upper and lower case are alike, as the program's locale has them. Costs
    /// one pass over the distinct tags.
    /// \param in_word without white space
    /// \return one list for each tag, valid until the index changes
    std::vector<const Indexes*> FindItems(const std::string& in_word);

private:
    using TagIds = std::vector<std::uint32_t>; // a tag's id counts the distinct tags

    /// Where an item's tags stand in m_tags.
    struct Span
    {
        std::uint32_t m_begin = 0;
        std::uint32_t m_count = 0;
    };

    TagIds Split(const std::string& in_joined);
    std::uint32_t FindOrAddTag(const std::string& in_tag);
    void Store(std::uint32_t in_item, const TagIds& in_tags);
    void Link(std::uint32_t in_item, std::uint32_t in_tag);
    void Unlink(std::uint32_t in_item, std::uint32_t in_tag);
    void CloseGaps();
    void FoldTexts();

    std::vector<Span> m_spans;         // by item
    TagIds m_tags;                     // those of one item side by side, ascending
    std::size_t m_used = 0;            // how many of m_tags still belong to an item
    std::vector<Indexes> m_itemsOfTag; // by tag id; left empty for the empty tag, which no word is in
    std::unordered_map<std::string, std::uint32_t> m_tagIds;
    std::vector<const std::string*> m_tagTexts; // by tag id; they live in m_tagIds

    // The texts in upper case, made by the first search after a new tag or a new locale.
    TextArena m_foldedTexts;
    std::locale m_locale;
};

} // namespace nodebrowser
