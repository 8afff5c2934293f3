// SPDX-License-Identifier: MIT
#include "nodebrowser/tagindex.h"
#include "tests/support/random.h"

#include <boost/algorithm/string/find.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <locale>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace nodebrowser;

namespace
{

using Added = std::pair<std::string, const char*>; // the tags and the type of an item

TagTexts Collect(const std::vector<Added>& in_items)
{
    TagTexts texts;
    for (const auto& [joined, type] : in_items)
        texts.Add(joined, type);
    return texts;
}

std::set<std::uint32_t> FindSet(TagIndex& io_index, const std::string& in_word)
{
    std::set<std::uint32_t> found;
    io_index.FindItems(in_word, [&found](std::uint32_t in_item) { found.insert(in_item); });
    return found;
}

using Tags = TagIndex::Tags;
using Indexes = TagIndex::Indexes;
using Items = std::set<std::uint32_t>;

/// Upper case as in a locale where "x" is what "q" is, too.
class StrangeCase : public std::ctype<char>
{
protected:
    char do_toupper(char in_character) const override
    {
        return in_character == 'x' || in_character == 'q' ? 'Q' : std::ctype<char>::do_toupper(in_character);
    }
    const char* do_toupper(char* in_begin, const char* in_end) const override
    {
        for (char* character = in_begin; character != in_end; ++character)
            *character = do_toupper(*character);
        return in_end;
    }
};

} // namespace

TEST(TagIndex, theTypeIsOneMoreTag)
{
    TagIndex index(Collect({{"mix;colour", "Compound"}, {"", "Compound"}, {"", ""}}));
    EXPECT_EQ(index.GetTags(0), (Tags{"Compound", "colour", "mix"}));
    EXPECT_EQ(index.GetTags(1), (Tags{"Compound"}));
    EXPECT_EQ(index.GetTags(2), Tags());
    EXPECT_EQ(index.GetItems("Compound"), (Indexes{0, 1}));
}

TEST(TagIndex, tagsAreSplitAtSemicolonsIntoASet)
{
    const std::pair<std::string, Tags> cases[] = {
        {"mix", {"mix"}},
        {"mix;colour", {"colour", "mix"}},
        {"a;b;a", {"a", "b"}},
        {" a; b", {" a", " b"}}, // blanks stay
        {"a,b", {"a,b"}},        // commas separate nothing
        {"A;a", {"A", "a"}},     // case stays
        {"", {}},
    };
    for (const auto& [joined, set] : cases)
    {
        TagIndex index(Collect({{"other", ""}, {joined, ""}, {"", ""}}));
        EXPECT_EQ(index.GetTags(1), set) << joined;
        // The same for tags that come later.
        index.SetTags(2, joined, "");
        EXPECT_EQ(index.GetTags(2), set) << joined;
        EXPECT_EQ(index.GetTags(0), (Tags{"other"})) << joined;
    }
}

TEST(TagIndex, emptyTagsBetweenSeparatorsReachNoItem)
{
    TagIndex index(Collect({{"a;;b", ""}}));
    EXPECT_EQ(index.GetTags(0), (Tags{"", "a", "b"}));
    EXPECT_TRUE(index.GetItems("").empty());
}

TEST(TagIndex, tagsLeadBackToTheirItems)
{
    TagIndex index(Collect({{"mix;colour", ""}, {"mix", ""}, {"", ""}}));
    EXPECT_EQ(index.GetItems("mix"), (Indexes{0, 1}));
    EXPECT_EQ(index.GetItems("colour"), (Indexes{0}));
    EXPECT_TRUE(index.GetItems("noise").empty());
    index.SetTags(2, "colour", "");
    index.SetTags(1, "colour", "");
    EXPECT_EQ(index.GetItems("colour"), (Indexes{0, 1, 2}));
    EXPECT_EQ(index.GetItems("mix"), (Indexes{0}));
}

TEST(TagIndex, aTagThatIsThereTwiceIsAddedOnce)
{
    TagIndex index(Collect({{"Solver;Solver", ""}}));
    EXPECT_EQ(index.GetItems("Solver"), (Indexes{0}));
    index.SetTags(0, "", "");
    EXPECT_TRUE(index.GetItems("Solver").empty());
}

TEST(TagIndex, noTagsForgetTheItem)
{
    TagIndex index(Collect({{"mix;;colour", ""}, {"mix", ""}}));
    index.SetTags(0, "", "");
    EXPECT_TRUE(index.GetTags(0).empty());
    EXPECT_TRUE(index.GetItems("colour").empty());
    EXPECT_EQ(index.GetItems("mix"), (Indexes{1}));
}

TEST(TagIndex, anIndexThatWasNotAddedHasNoTags)
{
    EXPECT_TRUE(TagIndex(Collect({})).GetTags(0).empty());
    EXPECT_TRUE(TagIndex(Collect({{"mix", ""}})).GetTags(1).empty());
}

TEST(TagIndex, aWordIsFoundInEachTagWhateverTheCase)
{
    TagIndex index(Collect({{"Mixing;remix", ""}, {"MIX", ""}, {"colour", ""}}));
    EXPECT_EQ(FindSet(index, "mIx"), (Items{0, 1}));
    EXPECT_EQ(FindSet(index, "colours"), Items());
}

TEST(TagIndex, newTagsAreFoundAfterASearch)
{
    TagIndex index(Collect({{"mix", ""}, {"mix", ""}}));
    EXPECT_TRUE(FindSet(index, "noise").empty());
    index.SetTags(1, "noise", "");
    EXPECT_EQ(FindSet(index, "noise"), (Items{1}));
}

TEST(TagIndex, theCaseIsThatOfTheProgramsLocale)
{
    TagIndex index(Collect({{"box", ""}}));
    EXPECT_TRUE(FindSet(index, "boq").empty());
    const std::locale before = std::locale::global(std::locale(std::locale(), new StrangeCase));
    const Items found = FindSet(index, "boq");
    std::locale::global(before);
    EXPECT_EQ(found, (Items{0}));
    EXPECT_TRUE(FindSet(index, "boq").empty());
}

/// Each change brings a tag string that nobody had before; what no item has any more is dropped on the way.
TEST(TagIndex, tagsThatChangeAgainAndAgainStayFound)
{
    TagIndex index(Collect({{"first", ""}, {"kept;Compound", ""}}));
    for (int change = 0; change < 5000; ++change)
        index.SetTags(0, "tag" + std::to_string(change) + ";Compound", "");
    EXPECT_EQ(index.GetTags(0), (Tags{"Compound", "tag4999"}));
    EXPECT_EQ(index.GetTags(1), (Tags{"Compound", "kept"}));
    EXPECT_EQ(index.GetItems("Compound"), (Indexes{0, 1}));
    EXPECT_TRUE(index.GetItems("tag4998").empty());
    EXPECT_EQ(FindSet(index, "tag"), (Items{0}));
    EXPECT_EQ(FindSet(index, "kept"), (Items{1}));
}

TEST(TagIndex, agreesWithASearchTagByTag)
{
    Random random(TestSeed(5));
    const char letters[] = "abABx\xE4\xC4\xB5";
    std::vector<std::set<std::string>> tags(20);
    TagIndex index(Collect(std::vector<Added>(tags.size(), {"", ""})));
    for (int change = 0; change < 3000; ++change)
    {
        const std::uint32_t item = static_cast<std::uint32_t>(random.Below(static_cast<int>(tags.size())));
        const std::string first = random.Text(letters, 1, 8);
        const std::string second = random.Text(letters, 1, 8);
        std::string joined = first;
        joined.append(";").append(second);
        index.SetTags(item, joined, "");
        tags[item] = {first, second};
        const std::string word = random.Text(letters, 1, 3);
        Items expected;
        for (std::uint32_t i = 0; i < tags.size(); ++i)
            for (const std::string& tag : tags[i])
                if (!boost::algorithm::ifind_first(tag, word).empty())
                    expected.insert(i);
        ASSERT_EQ(FindSet(index, word), expected);
        ASSERT_EQ(index.GetTags(item), tags[item]);
    }
}
