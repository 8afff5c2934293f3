#include "nodebrowser/searchscore.h"

#include "datamodel/helpers.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/find.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>

using vireo::datamodel::Helpers;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

const std::size_t gTagScore = 1000;
const std::size_t gNoMatch = 10000;

bool IsInAnyTag(const std::string& in_word, const std::set<std::string>* in_tags)
{
    return in_tags && std::any_of(in_tags->begin(), in_tags->end(), [&in_word](const std::string& in_tag) {
               return !boost::algorithm::ifind_first(in_tag, in_word).empty();
           });
}

} // namespace

bool PassesFilterMode(int in_mode, ItemAccessor& in_item)
{
    const char* const type = in_item.GetItemID().GetType();
    const bool isCompound = type == VireoType::gCompound;
    switch (in_mode)
    {
    case eFilterNodes:
        return type == VireoType::gPolymorphicSolver || type == VireoType::gSolver ||
               (isCompound && !Helpers::IsAbstractFunction(in_item));
    case eFilterTypes:
        return type == LibType::gType;
    case eFilterAll:
        return true;
    case eFilterSignatures:
        return isCompound && Helpers::IsAbstractFunction(in_item);
    case eFilterConstants:
        return type == VireoType::gGlobalConstant;
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

std::string LowerName(const std::string& in_name)
{
    const QByteArray lowered =
        QString::fromLatin1(in_name.data(), static_cast<int>(in_name.size())).toLower().toLatin1();
    return std::string(lowered.constData(), static_cast<std::size_t>(lowered.size()));
}

bool ScoreItem(const SearchWords& in_words, const std::string& in_lowerName, const std::set<std::string>* in_tags,
               std::size_t* out_score)
{
    std::size_t score = in_words.empty() ? 0 : gNoMatch;
    std::size_t index = 0;
    for (const std::string& word : in_words)
    {
        const std::size_t place = in_lowerName.find(word);
        if (place == 0)
        {
            score = index;
            break;
        }
        if (place != std::string::npos)
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
