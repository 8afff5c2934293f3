// SPDX-License-Identifier: MIT
#include "nodebrowser/searchscore.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using namespace nodebrowser;

namespace
{

const int gNoScore = -1;

using Tags = std::set<std::string>;

int Score(const std::string& in_text, const std::string& in_name, const Tags& in_tags = {})
{
    std::size_t score = 0;
    const bool passes = ScoreItem(SplitSearchWords(LowerName(in_text)), LowerName(in_name), in_tags, &score);
    return passes ? static_cast<int>(score) : gNoScore;
}

// The second version of the rule, plain and slow: bytes in loops, nothing of the first one used.

unsigned char LowerByte(unsigned char in_byte)
{
    const bool upper = (in_byte >= 'A' && in_byte <= 'Z') || (in_byte >= 0xC0 && in_byte <= 0xDE && in_byte != 0xD7);
    return static_cast<unsigned char>(upper ? in_byte + 32 : in_byte);
}

unsigned char LowerAsciiByte(unsigned char in_byte)
{
    return static_cast<unsigned char>(in_byte >= 'A' && in_byte <= 'Z' ? in_byte + 32 : in_byte);
}

bool IsWhiteByte(char in_byte)
{
    return in_byte == ' ' || (in_byte >= '\t' && in_byte <= '\r');
}

std::string LowerBytes(std::string in_text, unsigned char (*in_lower)(unsigned char))
{
    for (char& character : in_text)
        character = static_cast<char>(in_lower(static_cast<unsigned char>(character)));
    return in_text;
}

int PlaceOf(const std::string& in_word, const std::string& in_text)
{
    for (std::size_t place = 0; place + in_word.size() <= in_text.size(); ++place)
    {
        bool same = true;
        for (std::size_t i = 0; i < in_word.size(); ++i)
            same = same && in_text[place + i] == in_word[i];
        if (same)
            return static_cast<int>(place);
    }
    return -1;
}

std::vector<std::string> PlainWords(const std::string& in_text)
{
    std::vector<std::string> words;
    if (in_text.empty())
        return words;
    words.push_back(std::string());
    bool inSeparator = false;
    for (const char character : in_text)
    {
        if (!IsWhiteByte(character))
            words.back() += character;
        else if (!inSeparator)
            words.push_back(std::string());
        inSeparator = IsWhiteByte(character);
    }
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return words;
}

int PlainScore(const std::string& in_text, const std::string& in_name, const Tags& in_tags)
{
    const std::vector<std::string> words = PlainWords(LowerBytes(in_text, LowerByte));
    if (words.empty())
        return 0;
    const std::string name = LowerBytes(in_name, LowerByte);
    int score = 10000;
    for (int i = 0; i < static_cast<int>(words.size()); ++i)
    {
        const std::string& word = words[static_cast<std::size_t>(i)];
        const int place = PlaceOf(word, name);
        if (place == 0)
            return i;
        if (place > 0)
            score = static_cast<int>(words.size()) + i;
        else
            for (const std::string& tag : in_tags)
                if (PlaceOf(LowerBytes(word, LowerAsciiByte), LowerBytes(tag, LowerAsciiByte)) >= 0 && score == 10000)
                    score = 1000;
    }
    return score == 10000 ? gNoScore : score;
}

/// Short texts over few characters, so that random words are found often: white space, both cases, Latin-1 letters with
/// and without an upper case, and other bytes above 127, a no-break space among them.
std::string RandomText(Random& io_random, int in_longest)
{
    return io_random.Text("aabbAB   \t\n.1\xE4\xC4\xFF\xDF\xD7\xA0\xB5", 0, in_longest);
}

} // namespace

TEST(SearchScore, anEmptyTextPassesEverythingWithZero)
{
    EXPECT_EQ(Score("", "Blend"), 0);
}

TEST(SearchScore, whiteSpaceAtEitherEndPassesEverythingWithZero)
{
    EXPECT_EQ(Score("   ", "Blend"), 0);
    EXPECT_EQ(Score("abc ", "Blend"), 0);
    EXPECT_EQ(Score(" abc", "Blend"), 0);
    EXPECT_EQ(Score("abc ", ""), 0);
}

TEST(SearchScore, twoSpacesBetweenWordsGiveNoEmptyWord)
{
    EXPECT_EQ(Score("x  y", "Blend"), gNoScore);
}

TEST(SearchScore, theCaseOfTheTextDoesNotMatter)
{
    EXPECT_EQ(Score("Ab", "Abc"), 0);
}

TEST(SearchScore, aWordInsideTheNameScoresTheWordCountPlusItsPosition)
{
    EXPECT_EQ(Score("Ab", "Cab"), 1);
    EXPECT_EQ(Score("x y", "ax"), 2);
}

TEST(SearchScore, wordsAreTriedInByteOrder)
{
    EXPECT_EQ(Score("b a", "ab"), 0);
}

TEST(SearchScore, aLaterWordInsideTheNameReplacesTheScore)
{
    EXPECT_EQ(Score("x y", "axy"), 3);
}

TEST(SearchScore, aLaterWordThatStartsTheNameWins)
{
    EXPECT_EQ(Score("a x", "xa"), 1);
}

TEST(SearchScore, aTagAloneScores1000)
{
    EXPECT_EQ(Score("mix", "Blend", {"colour", "mixing"}), 1000);
    EXPECT_EQ(Score("mix", "Blend", {"MIXING"}), 1000);
}

TEST(SearchScore, theNameBeatsAnEarlierTag)
{
    EXPECT_EQ(Score("colour lend", "Blend", {"colour"}), 3);
}

TEST(SearchScore, aTagDoesNotReplaceAnEarlierNameMatch)
{
    EXPECT_EQ(Score("lend mix", "Blend", {"mix"}), 2);
}

TEST(SearchScore, repeatedWordsCountOnce)
{
    EXPECT_EQ(Score("b b b", "ab"), 1);
}

TEST(SearchScore, whatIsNotFoundHasNoScore)
{
    EXPECT_EQ(Score("zz", "Blend", {"colour"}), gNoScore);
}

TEST(SearchScore, latin1LettersLoseTheirCase)
{
    EXPECT_EQ(Score("\xC4rger", "\xE4RGER"), 0);
}

TEST(SearchScore, aNoBreakSpaceSeparatesNothing)
{
    EXPECT_EQ(Score("a\xA0", "xa"), gNoScore);
}

TEST(SearchScore, aTabSeparates)
{
    EXPECT_EQ(Score("x\ty", "y"), 1);
}

TEST(SearchScore, scoreStaysUntouchedWhenNothingIsFound)
{
    std::size_t score = 77;
    EXPECT_FALSE(ScoreItem(SplitSearchWords("zz"), "blend", Tags(), &score));
    EXPECT_EQ(score, 77u);
}

TEST(SearchScore, agreesWithASlowSecondVersionOnRandomPairs)
{
    Random random(TestSeed(20090423));
    int found = 0;
    const int pairs = 200000;
    for (int pair = 0; pair < pairs; ++pair)
    {
        const std::string text = RandomText(random, 9);
        const std::string name = RandomText(random, 8);
        Tags tags;
        for (int left = pair % 4; left > 0; --left)
            tags.insert(RandomText(random, 5));
        const int expected = PlainScore(text, name, tags);
        found += expected > 0;
        ASSERT_EQ(Score(text, name, tags), expected) << "text '" << text << "' name '" << name << "'";
    }
    // The texts must not be so strange that nothing but the trivial scores is compared.
    EXPECT_TRUE(found > pairs / 10);
}

TEST(SearchScore, modesShowTheirKinds)
{
    struct
    {
        int m_mode;
        std::vector<eItemKind> m_shown;
    } const cases[] = {
        {eFilterNodes, {eKindSolver, eKindCompound}},
        {eFilterTypes, {eKindType}},
        {eFilterAll, {eKindOther, eKindSolver, eKindCompound, eKindSignature, eKindConstant, eKindType}},
        {eFilterSignatures, {eKindSignature}},
        {eFilterConstants, {eKindConstant}},
        {-1, {}},
        {5, {}},
    };
    for (const auto& filter : cases)
    {
        std::vector<eItemKind> shown;
        for (int kind = 0; kind < gItemKinds; ++kind)
            if (PassesFilterMode(filter.m_mode, static_cast<eItemKind>(kind)))
                shown.push_back(static_cast<eItemKind>(kind));
        EXPECT_EQ(shown, filter.m_shown) << filter.m_mode;
    }
}
