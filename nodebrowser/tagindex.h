// SPDX-License-Identifier: MIT
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
/// the list. A tag's text is kept once, however many items have it, and is searched once per word. Tag strings are split
/// when something of the index is first asked for: a list that is built again before it is searched splits none.
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

    /// Adds the tags of the next item, which gets the next number from 0 on.
    /// \param in_joined tags separated by ";", with no blanks around them
    void Add(const std::string& in_joined);

    /// Replaces the tags of an item that was added. Costs a look-up of each tag, and per tag that comes or goes a move of the
    /// numbers behind the item's. The text of a tag that nobody has any more stays until Clear().
    void SetTags(std::uint32_t in_item, const std::string& in_joined);

    /// The item's tags; none for a number that was not added. Makes copies: for one item, not for a search.
    Tags GetTags(std::uint32_t in_item);

    /// The items of a tag; none for the empty one.
    Numbers GetItems(const std::string& in_tag);

    /// The items of each tag that a word is found in, upper and lower case alike, as the program's locale has them. Costs
    /// one pass over the distinct tags.
    /// \param in_word without white space
    /// \return one list per tag, valid until the index changes
    std::vector<const Numbers*> FindItems(const std::string& in_word);

private:
    /// Where an item's tags stand in m_tags.
    struct Span
    {
        std::uint32_t m_begin = 0;
        std::uint32_t m_count = 0;
    };

    void SplitAdded();
    Numbers Split(const std::string& in_joined);
    std::uint32_t NumberOf(const std::string& in_tag);
    void Store(std::uint32_t in_item, const Numbers& in_tags);
    void Link(std::uint32_t in_item, std::uint32_t in_tag);
    void Unlink(std::uint32_t in_item, std::uint32_t in_tag);
    void DropUnused();
    void FoldTexts();

    TextBlock m_added;                 // the tag strings of the items behind those in m_spans
    std::vector<Span> m_spans;         // by item
    Numbers m_tags;                    // the numbers of the items' tags; those of an item side by side, ascending
    std::size_t m_used = 0;            // how many of them still belong to an item
    std::vector<Numbers> m_itemsOfTag; // by tag; left empty for the empty one, which no word is in
    std::unordered_map<std::string, std::uint32_t> m_tagNumbers;
    std::vector<const std::string*> m_tagTexts; // by tag; they live in m_tagNumbers

    // The texts in upper case, made by the first search after a new tag or a new locale.
    TextBlock m_foldedTexts;
    std::locale m_locale;
};
