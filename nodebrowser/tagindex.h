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

/// The tags of the items of a list, collected for an index.
class TagTexts
{
public:
    /// Makes room for about that many items.
    /// \param in_bytes of all their tag strings, as GetBytes() gives it
    void Reserve(std::size_t in_items, std::size_t in_bytes);

    /// Adds the tags of the next item. Indexes count from 0. The name of its type is one more tag of an item.
    /// \param in_joined tags separated by ";", with no blanks around them
    /// \param in_type the name of the item's type; empty for none
    void Add(std::string in_joined, const char* in_type);

    /// The size of what was added.
    std::size_t GetBytes() const { return m_texts.GetBytes(); }

private:
    friend class TagIndex;

    std::vector<std::uint32_t> m_textOfItem; // by item, entries of the texts
    TextArena m_texts;                       // tag strings
    std::string m_text;                      // keeps its memory
    std::string m_lastTags;                  // of the item added last
    const char* m_lastType = nullptr;
};

/// The item list makes it, tag notifications update it, and the search reads it. Items are named by their index.
///
/// Many items have the same tags. So items refer to a tag set, and tags refer to the sets that they are in. A tag string
/// is split once, and the text of a tag is kept and searched once.
class TagIndex
{
public:
    using Tags = std::set<std::string>;
    using Indexes = std::vector<std::uint32_t>; ///< of items, ascending

    /// Costs one pass over the tag strings.
    explicit TagIndex(TagTexts in_texts);
    // It points at the texts of its own tags.
    TagIndex(const TagIndex&) = delete;
    TagIndex& operator=(const TagIndex&) = delete;

    /// Replaces the tags of an item.
    void SetTags(std::uint32_t in_item, const std::string& in_joined, const char* in_type);

    /// The item's tags; none for an index that was not added. Copies texts: for one item, not for a search.
    Tags GetTags(std::uint32_t in_item) const;

    /// The items of a tag; none for the empty one. Costs a pass over the items.
    Indexes GetItems(const std::string& in_tag) const;

    /// Calls in_visitor(index) for each item that has a tag with a word in it, in the order of the indexes. Upper and
    /// lower case are alike, as the program's locale has them. Costs one pass over the distinct tags, and one over the
    /// items when a tag is found.
    /// \param in_word without white space
    template <class Visitor> void FindItems(const std::string& in_word, Visitor in_visitor)
    {
        if (!MarkSets(in_word))
            return;
        for (std::size_t item = 0; item < m_setOfItem.size(); ++item)
            if (m_marked[m_setOfItem[item]])
                in_visitor(static_cast<std::uint32_t>(item));
    }

private:
    using Ids = std::vector<std::uint32_t>; // of tags or of tag sets, counted from 0

    std::uint32_t FindOrAddSet(const std::string& in_text);
    std::uint32_t FindOrAddTag(const std::string& in_tag);
    void DropUnusedSets();
    void FoldTexts();
    bool MarkSets(const std::string& in_word);

    Ids m_setOfItem; // by item

    std::unordered_map<std::string, std::uint32_t> m_setIds; // by tag string
    std::vector<const std::string*> m_setTexts;              // by set; they live in m_setIds
    std::string m_text;                                      // of the last set asked for; keeps its memory
    std::vector<char> m_marked;                              // by set, of the last search

    std::unordered_map<std::string, std::uint32_t> m_tagIds; // without the empty tag, which no word is in
    std::vector<const std::string*> m_tagTexts;              // by tag; they live in m_tagIds
    std::vector<Ids> m_setsOfTag;                            // by tag, ascending

    // The texts of the tags in upper case, made by the first search after a new tag or a new locale.
    TextArena m_foldedTexts;
    std::locale m_locale;
};

} // namespace nodebrowser
