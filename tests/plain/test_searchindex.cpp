// SPDX-License-Identifier: MIT
#include "nodebrowser/searchindex.h"
#include "nodebrowser/tagindex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace nodebrowser;

namespace
{

using Indexes = std::vector<std::uint64_t>;

struct Entry
{
    std::string m_name;
    eItemKind m_kind;
    std::string m_tags;
};

/// The indexes of the items found.
Indexes Rows(SearchIndex& io_index, const SearchWords& in_words, int in_mode, TagIndex& io_tags)
{
    Indexes rows(3, 99); // of the search before
    io_index.Find(in_words, in_mode, &io_tags, rows);
    for (std::uint64_t& row : rows)
        row = io_index.GetIndex(static_cast<std::size_t>(row));
    return rows;
}

/// A list of items, searched both ways.
class List
{
public:
    explicit List(const std::vector<Entry>& in_entries) : m_entries(in_entries)
    {
        TextArena names;
        std::vector<eItemKind> kinds;
        TagTexts tags;
        for (const Entry& entry : m_entries)
        {
            names.Add(entry.m_name);
            kinds.push_back(entry.m_kind);
            tags.Add(entry.m_tags, "");
        }
        m_index.reset(new SearchIndex(names, kinds, {}));
        m_tags.reset(new TagIndex(std::move(tags)));
    }

    Indexes Find(const SearchWords& in_words, int in_mode) { return Rows(*m_index, in_words, in_mode, *m_tags); }

    Indexes FindItemByItem(const SearchWords& in_words, int in_mode)
    {
        std::vector<std::pair<std::size_t, std::uint64_t>> found; // score and rank
        for (std::size_t rank = 0; rank < m_index->GetSize(); ++rank)
        {
            const Entry& entry = m_entries[m_index->GetIndex(rank)];
            std::size_t score = 0;
            if (PassesFilterMode(in_mode, entry.m_kind) &&
                ScoreItem(in_words, LowerName(entry.m_name), m_tags->GetTags(m_index->GetIndex(rank)), &score))
                found.emplace_back(score, rank);
        }
        std::sort(found.begin(), found.end());
        Indexes indexes;
        indexes.reserve(found.size());
        for (const auto& entry : found)
            indexes.push_back(m_index->GetIndex(static_cast<std::size_t>(entry.second)));
        return indexes;
    }

private:
    const std::vector<Entry> m_entries;
    std::unique_ptr<SearchIndex> m_index;
    std::unique_ptr<TagIndex> m_tags;
};

/// The word of a number, with as many digits for each, so that the words are in the order of the numbers.
std::string NumberWord(int in_number)
{
    const std::string digits = std::to_string(100000 + in_number);
    return "w" + digits.substr(1);
}

} // namespace

TEST(SearchIndex, findsInOrderOfRelevance)
{
    struct
    {
        const char* m_what;
        const char* m_text;
        int m_mode;
        Indexes m_found;
    } const cases[] = {
        {"no text: the order of the names", "", 2, {1, 0, 2, 3, 4}},
        {"a start before an inside before a tag", "b", 2, {0, 2, 1, 4}},
        {"only what the mode shows", "b", 0, {0, 4}},
        {"a mode's kinds without a text", "", 1, {2, 3}},
        {"no such mode", "", 5, {}},
        {"a trailing space lets everything pass", "zz ", 2, {1, 0, 2, 3, 4}},
        {"a word that starts a name settles it", "blend l t", 2, {0, 3, 1, 2}},
        {"a later word inside replaces a tag", "mix x", 2, {4, 0}},
        {"nothing", "zz", 2, {}},
    };
    List list({{"Blend", eKindCompound, "mix"},
               {"Able", eKindSignature, ""},
               {"boolt", eKindType, ""},
               {"Tile", eKindType, ""},
               {"xyx", eKindSolver, "fabric"}});
    for (const auto& search : cases)
    {
        const SearchWords words = SplitSearchWords(search.m_text);
        EXPECT_EQ(list.Find(words, search.m_mode), search.m_found) << search.m_what;
        EXPECT_EQ(list.FindItemByItem(words, search.m_mode), search.m_found) << search.m_what;
    }
}

TEST(SearchIndex, equallyRelevantItemsStandInTheOrderOfTheirNames)
{
    List list({{"b", eKindType, "c"}, {"AB", eKindType, "c"}, {"B", eKindType, ""}, {"ab", eKindType, ""}});
    EXPECT_EQ(list.Find(SearchWords(), 2), (Indexes{1, 3, 0, 2}));
    EXPECT_EQ(list.Find(SplitSearchWords("b"), 2), (Indexes{0, 2, 1, 3}));
    EXPECT_EQ(list.Find(SplitSearchWords("c"), 2), (Indexes{1, 0}));
}

TEST(SearchIndex, anEmptyListHasNoRows)
{
    List list({});
    EXPECT_TRUE(list.Find(SplitSearchWords("a"), 2).empty());
    EXPECT_TRUE(list.Find(SearchWords(), 2).empty());
}

/// With thousands of words a name can earn the very number that stands for "not found".
TEST(SearchIndex, scoresThatRunIntoTheNoMatchValueAgreeWithTheRule)
{
    SearchWords words;
    for (int i = 0; i < 10100; ++i)
        words.insert(NumberWord(i));
    List list({{"w10000", eKindType, ""},
               {"w09999", eKindType, ""},
               {"w10001", eKindType, ""},
               {"a w00500", eKindType, "w00600"},
               {"a", eKindType, "w00600"}});
    EXPECT_EQ(list.Find(words, 2), list.FindItemByItem(words, 2));
    EXPECT_EQ(list.Find(words, 2), (Indexes{4, 1, 2, 3}));

    words.clear();
    for (int i = 0; i < 5100; ++i)
        words.insert(NumberWord(i));
    List inside({{"a w04900", eKindType, "w05000"},
                 {"a w04900", eKindType, "w04800"},
                 {"a w04900", eKindType, ""},
                 {"a w04901", eKindType, ""}});
    EXPECT_EQ(inside.Find(words, 2), inside.FindItemByItem(words, 2));
    EXPECT_EQ(inside.Find(words, 2), (Indexes{0, 3}));
}
