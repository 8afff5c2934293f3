// SPDX-License-Identifier: MIT
#include "nodebrowser/textarena.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace nodebrowser;

namespace
{

/// Where a word is found, as "entry" or "entry^" for an entry that starts with it.
std::string Found(const std::vector<std::string>& in_texts, const std::string& in_word)
{
    TextArena arena;
    for (const std::string& text : in_texts)
        arena.Add(text);
    std::string found;
    arena.CountCharacters();
    arena.Find(in_word, [&found](std::size_t in_entry, bool in_atStart) {
        found += (found.empty() ? "" : " ") + std::to_string(in_entry) + (in_atStart ? "^" : "");
    });
    return found;
}

/// The same, text by text.
std::string PlainFound(const std::vector<std::string>& in_texts, const std::string& in_word)
{
    std::string found;
    for (std::size_t entry = 0; entry < in_texts.size(); ++entry)
    {
        const std::size_t offset = in_texts[entry].find(in_word);
        if (offset != std::string::npos)
            found += (found.empty() ? "" : " ") + std::to_string(entry) + (offset == 0 ? "^" : "");
    }
    return found;
}

} // namespace

TEST(TextArena, findsAWordInEachTextOnce)
{
    const std::vector<std::string> names = {"blend", "", "able", "b", "tab", "abba"};
    EXPECT_EQ(Found(names, "x"), "");
    EXPECT_EQ(Found(names, "b"), "0^ 2 3^ 4 5");
    EXPECT_EQ(Found(names, "ab"), "2^ 4 5^");
    EXPECT_EQ(Found(names, "blend"), "0^");
    EXPECT_EQ(Found(names, "blends"), "");
    EXPECT_EQ(Found(names, "bba"), "5");
}

TEST(TextArena, findsNothingAcrossTwoTexts)
{
    EXPECT_EQ(Found({"blend", "", "able", "b", "tab", "abba"}, "btab"), "");
}

TEST(TextArena, everyTextStartsWithTheEmptyWord)
{
    EXPECT_EQ(Found({"blend", "", "able", "b"}, ""), "0^ 1^ 2^ 3^");
}

TEST(TextArena, nothingIsFoundAmongNoTexts)
{
    EXPECT_EQ(Found({}, "a"), "");
    EXPECT_EQ(Found({}, ""), "");
}

TEST(TextArena, textsMayHoldLineFeedsAndZeroes)
{
    const std::vector<std::string> texts = {"a\nb", std::string("c\0d", 3), "\n", "b"};
    EXPECT_EQ(Found(texts, "b"), "0 3^");
    EXPECT_EQ(Found(texts, std::string("\0d", 2)), "1");
    EXPECT_EQ(Found(texts, "ab"), "");
}

TEST(TextArena, textsAreKeptAsTheyCame)
{
    TextArena arena;
    const std::vector<std::string> texts = {"ab", "", std::string("a\0\n", 3)};
    for (const std::string& text : texts)
        arena.Add(text);
    ASSERT_EQ(arena.GetSize(), texts.size());
    for (std::size_t entry = 0; entry < texts.size(); ++entry)
        EXPECT_EQ(std::string(arena.Begin(entry), arena.Length(entry)), texts[entry]);
}

TEST(TextArena, agreesWithASearchTextByText)
{
    Random random(TestSeed(7));
    for (int block = 0; block < 2000; ++block)
    {
        std::vector<std::string> texts;
        // Long runs of texts without the word between two hits, too.
        for (int left = block % 60; left > 0; --left)
            texts.push_back(left % 7 ? "x" : random.Text("abc", 0, 12));
        const std::string word = random.Text("abc", 0, 4);
        ASSERT_EQ(Found(texts, word), PlainFound(texts, word));
    }
}
