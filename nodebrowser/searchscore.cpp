// SPDX-License-Identifier: MIT
#include "nodebrowser/searchscore.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/find.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>

namespace nodebrowser
{
namespace
{

bool IsInAnyTag(const std::string& in_word, const std::set<std::string>& in_tags)
{
    return std::any_of(in_tags.begin(), in_tags.end(), [&in_word](const std::string& in_tag) {
        return !boost::algorithm::ifind_first(in_tag, in_word).empty();
    });
}

} // namespace

bool PassesFilterMode(int in_mode, eItemKind in_kind)
{
    switch (in_mode)
    {
    case eFilterNodes:
        return in_kind == eKindSolver || in_kind == eKindCompound;
    case eFilterTypes:
        return in_kind == eKindType;
    case eFilterAll:
        return true;
    case eFilterSignatures:
        return in_kind == eKindSignature;
    case eFilterConstants:
        return in_kind == eKindConstant;
    default:
        return false;
    }
}

SearchWords SplitSearchWords(const std::string& in_lowerText)
{
    SearchWords words;
    if (!in_lowerText.empty())
        boost::split(words, in_lowerText, boost::is_space(), boost::token_compress_on);
    return words;
}

char LowerCharacter(char in_character)
{
    // The letters with an upper case are two runs of codes, with the multiplication sign inside the second.
    const unsigned char code = static_cast<unsigned char>(in_character);
    const bool upper = (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
    return static_cast<char>(upper ? code + 0x20 : code);
}

std::string LowerName(std::string in_name)
{
    std::transform(in_name.begin(), in_name.end(), in_name.begin(), LowerCharacter);
    return in_name;
}

bool ScoreItem(const SearchWords& in_words, const std::string& in_lowerName, const std::set<std::string>& in_tags,
               std::size_t* out_score)
{
    std::size_t score = in_words.empty() ? 0 : gNoMatch;
    std::size_t index = 0;
    for (const std::string& word : in_words)
    {
        const std::size_t offset = in_lowerName.find(word);
        if (offset == 0)
        {
            score = index;
            break;
        }
        if (offset != std::string::npos)
            score = in_words.size() + index;
        else if (score == gNoMatch && IsInAnyTag(word, in_tags))
            score = gTagScore;
        ++index;
    }
    if (score == gNoMatch)
        return false;
    *out_score = score;
    return true;
}

} // namespace nodebrowser
