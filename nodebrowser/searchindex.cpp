#include "nodebrowser/searchindex.h"

#include "nodebrowser/tagindex.h"

#include <algorithm>

namespace
{

const std::uint32_t gNone = gNoMatch;
const std::uint32_t gTagsOnly = gTagScore;

/// Set in the score of an item whose name starts with a word: the words behind that one are not tried.
const std::uint32_t gSettled = 0x80000000u;

/// Which kinds a mode shows, by kind.
std::vector<bool> KindsOfMode(int in_mode)
{
    std::vector<bool> kinds;
    for (int kind = 0; kind < gItemKinds; ++kind)
        kinds.push_back(PassesFilterMode(in_mode, static_cast<eItemKind>(kind)));
    return kinds;
}

} // namespace

void SearchIndex::Clear()
{
    m_names.Clear();
    m_kinds.clear();
    m_order.clear();
}

void SearchIndex::Add(const std::string& in_lowerName, eItemKind in_kind)
{
    m_names.Add(in_lowerName);
    m_kinds.push_back(in_kind);
}

std::vector<std::uint32_t> SearchIndex::Score(const SearchWords& in_words, const TagIndex& in_tags) const
{
    // The empty word, which is the first one when it is there, starts every name.
    if (in_words.empty() || in_words.begin()->empty())
        return std::vector<std::uint32_t>(m_kinds.size(), 0);
    std::vector<std::uint32_t> scores(m_kinds.size(), gNone);
    const std::uint32_t wordCount = static_cast<std::uint32_t>(in_words.size());
    std::uint32_t index = 0;
    for (const std::string& word : in_words)
    {
        // The tags go first: what the word does in the name replaces what it did in the tags.
        for (const TagIndex::Numbers* const items : in_tags.FindItems(word))
            for (const std::uint32_t item : *items)
                if (scores[item] == gNone)
                    scores[item] = gTagsOnly;
        m_names.Find(word, [&](std::size_t in_item, bool in_atStart) {
            if (!(scores[in_item] & gSettled))
                scores[in_item] = in_atStart ? index | gSettled : wordCount + index;
        });
        ++index;
    }
    for (std::uint32_t& score : scores)
        score &= ~gSettled;
    return scores;
}

std::vector<std::uint64_t> SearchIndex::Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags) const
{
    const std::vector<bool> kinds = KindsOfMode(in_mode);
    std::vector<std::uint32_t> scores = Score(in_words, in_tags);
    // Every score has a place of its own, so that no comparison sorts them.
    std::vector<std::size_t> places(std::max<std::size_t>(gNone, 2 * in_words.size()) + 1, 0);
    for (std::size_t item = 0; item < scores.size(); ++item)
    {
        if (!kinds[m_kinds[item]])
            scores[item] = gNone;
        ++places[scores[item]];
    }
    places[gNone] = 0;
    std::size_t count = 0;
    for (std::size_t& place : places)
    {
        const std::size_t itemsOfScore = place;
        place = count;
        count += itemsOfScore;
    }
    std::vector<std::uint64_t> found(count);
    for (const std::uint32_t item : m_order)
        if (scores[item] != gNone)
            found[places[scores[item]]++] = item;
    return found;
}
