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

/// The lower case of each 8-bit character. The toolkit's lower case of a Latin-1 character is a Latin-1 character.
struct LowerCase
{
    LowerCase()
    {
        for (int code = 0; code < 256; ++code)
        {
            const char character = static_cast<char>(code);
            m_characters[code] = QString::fromLatin1(&character, 1).toLower().toLatin1().at(0);
        }
    }
    char m_characters[256];
};

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

SearchWords SplitSearchWords(const QString& in_lowerText)
{
    SearchWords words;
    if (in_lowerText.isEmpty())
        return words;
    const QByteArray latin1 = in_lowerText.toLatin1();
    const std::string text(latin1.constData(), static_cast<std::size_t>(latin1.size()));
    boost::split(words, text, boost::is_space(), boost::token_compress_on);
    return words;
}

char LowerCharacter(char in_character)
{
    static const LowerCase lower;
    return lower.m_characters[static_cast<unsigned char>(in_character)];
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
