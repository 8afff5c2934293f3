// SPDX-License-Identifier: MIT
#include "nodebrowser/nameorder.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using namespace nodebrowser;

namespace
{

using Names = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

Numbers Order(const Names& in_names, const Numbers& in_start = {})
{
    TextArena names;
    for (const std::string& name : in_names)
        names.Add(name);
    return SortByName(names, in_start);
}

/// Names in their order.
Names Ordered(const Names& in_names)
{
    Names ordered;
    for (const std::uint32_t number : Order(in_names))
        ordered.push_back(in_names.at(number));
    return ordered;
}

} // namespace

TEST(NameOrder, caseDoesNotMatter)
{
    EXPECT_EQ(Ordered({"a"}), (Names{"a"}));
    EXPECT_EQ(Ordered({"b", "A", "C"}), (Names{"A", "b", "C"}));
}

TEST(NameOrder, beginningsComeFirst)
{
    EXPECT_EQ(Ordered({"Blend2", "Blend"}), (Names{"Blend", "Blend2"}));
}

TEST(NameOrder, namesThatAreEqualButForCaseKeepTheOrderGiven)
{
    EXPECT_EQ(Ordered({"ab", "AB", "aB"}), (Names{"ab", "AB", "aB"}));
}

TEST(NameOrder, anUnderscoreComesBeforeLettersAsLowerCaseIsCompared)
{
    EXPECT_EQ(Ordered({"Za", "_a", "aa"}), (Names{"_a", "aa", "Za"}));
}

TEST(NameOrder, lettersBeyondAsciiKeepTheirCaseAndComeLast)
{
    EXPECT_EQ(Ordered({"\xE4", "\xC4", "z"}), (Names{"z", "\xC4", "\xE4"}));
}

TEST(NameOrder, theCharactersAroundTheLettersKeepTheirPlaces)
{
    EXPECT_EQ(Ordered({"a{", "A[", "a@", "A`", "a_", "AZ", "az"}), (Names{"a@", "A[", "a_", "A`", "AZ", "az", "a{"}));
}

TEST(NameOrder, namesMayDifferOnlyAfterManyCharacters)
{
    EXPECT_EQ(Ordered({"NoiseTextureB", "noisetextureA", "NoiseTexture"}),
              (Names{"NoiseTexture", "noisetextureA", "NoiseTextureB"}));
    // As long as the part that is compared first.
    EXPECT_EQ(Ordered({"abcdefgh", "abcdefg", "abcdefghi"}), (Names{"abcdefg", "abcdefgh", "abcdefghi"}));
}

TEST(NameOrder, noNamesHaveAnOrderToo)
{
    EXPECT_TRUE(SortByName(TextArena(), {}).empty());
}

TEST(NameOrder, aZeroByteIsMoreThanTheEnd)
{
    const Names names = {std::string("a\0", 2), "a", std::string("a\0b", 3)};
    const Numbers order = {1, 0, 2};
    EXPECT_EQ(Order(names), order);
}

TEST(NameOrder, zeroBytesAtTheEndOfAPartAreToldFromTheEnd)
{
    const Names names = {std::string("abcdef\0\0", 8), std::string("abcdef\0\0x", 9), "abcdef",
                         std::string("abcdef\0", 7), std::string("abcdef\0\0\0", 9)};
    const Numbers order = {2, 3, 0, 4, 1};
    EXPECT_EQ(Order(names), order);
}

TEST(NameOrder, namesThatAreTheSameForVeryLongAreSortedToo)
{
    const std::string same(100000, 'a');
    const Names names = {same + "b", same, same + "A", same + "a", same + "Z", same + "B"};
    const Numbers order = {1, 2, 3, 0, 5, 4};
    EXPECT_EQ(Order(names), order);
}

TEST(NameOrder, startsFromAnOrderThatIsAboutRight)
{
    const Numbers expected = {4, 1, 3, 0, 2};
    const Numbers starts[] = {
        {},              // nothing
        {4, 1, 3, 0, 2}, // the right order
        {4, 3, 2},       // some of it
        {2, 4, 1, 3, 0}, // one too early
        {1, 3, 0, 2, 4}, // one too late
        {2, 0, 3, 1, 4}, // backwards
        {4, 3, 1, 0, 2}, // equal names backwards
        {0},             // one alone
    };
    for (const Numbers& start : starts)
        EXPECT_EQ(Order({"blend", "Add", "noise", "add", "absolute"}, start), expected)
            << testing::PrintToString(start);
}

TEST(NameOrder, manyNamesAreSortedLikeFew)
{
    // So many names are sorted digit by digit.
    Random random(TestSeed(12));
    std::vector<std::pair<std::string, std::uint32_t>> expected;
    Names names;
    for (std::uint32_t entry = 0; entry < 20000; ++entry)
    {
        names.push_back(random.Text(random.OneIn(2) ? "ab_\xC4" : "abcdefghijklmnopqrstuvwxyz", 0, 12));
        if (random.OneIn(50))
            names.back() += std::string(2, '\0');
        expected.emplace_back(names.back(), entry);
    }
    std::sort(expected.begin(), expected.end());
    const Numbers order = Order(names);
    ASSERT_EQ(order.size(), expected.size());
    for (std::size_t rank = 0; rank < order.size(); ++rank)
        ASSERT_EQ(order[rank], expected[rank].second);
}

TEST(NameOrder, agreesWithAStableSortOfFoldedNames)
{
    Random random(TestSeed(11));
    for (int round = 0; round < 300; ++round)
    {
        Names names;
        for (int left = round; left > 0; --left)
            names.push_back(random.Text("aaaAbB_\xC4", 0, 20));
        std::vector<std::pair<std::string, std::uint32_t>> folded;
        for (const std::string& name : names)
        {
            folded.emplace_back(name, static_cast<std::uint32_t>(folded.size()));
            std::replace(folded.back().first.begin(), folded.back().first.end(), 'A', 'a');
            std::replace(folded.back().first.begin(), folded.back().first.end(), 'B', 'b');
        }
        std::sort(folded.begin(), folded.end());
        Numbers expected;
        expected.reserve(folded.size());
        for (const auto& entry : folded)
            expected.push_back(entry.second);
        ASSERT_EQ(Order(names), expected);
        // A few changes later the order before is a start.
        for (int change = random.Below(4); change > 0 && !names.empty(); --change)
            names[static_cast<std::size_t>(random.Below(static_cast<int>(names.size())))] =
                random.Text("aaaAbB_\xC4", 0, 20);
        ASSERT_EQ(Order(names, expected), Order(names));
    }
}
