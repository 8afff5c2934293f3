#include "nodebrowser/searchindex.h"

#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <array>

namespace
{

const std::uint32_t gNone = gNoMatch;
const std::uint32_t gTagsOnly = gTagScore;

/// Set in the score of an item whose name starts with a word: the words behind that one are not tried.
const std::uint32_t gSettled = 0x80000000u;

using KindTable = std::array<bool, gItemKinds>;

KindTable KindsOfMode(int in_mode)
{
    KindTable kinds;
    for (int kind = 0; kind < gItemKinds; ++kind)
        kinds[static_cast<std::size_t>(kind)] = PassesFilterMode(in_mode, static_cast<eItemKind>(kind));
    return kinds;
}

} // namespace

void SearchIndex::Clear()
{
    m_names.Clear();
    m_kinds.clear();
    m_order.clear();
    m_places.clear();
}

void SearchIndex::Add(std::uint32_t in_number, const std::string& in_lowerName, eItemKind in_kind)
{
    if (in_number >= m_places.size())
        m_places.resize(in_number + std::size_t(1));
    m_places[in_number] = static_cast<std::uint32_t>(m_order.size());
    m_order.push_back(in_number);
    m_names.Add(in_lowerName);
    m_kinds.push_back(in_kind);
}

void SearchIndex::Score(const SearchWords& in_words, const TagIndex& in_tags)
{
    // The empty word, which is the first one when it is there, starts every name.
    if (in_words.empty() || in_words.begin()->empty())
    {
        m_scores.assign(m_kinds.size(), 0);
        return;
    }
    m_scores.assign(m_kinds.size(), gNone);
    const std::uint32_t wordCount = static_cast<std::uint32_t>(in_words.size());
    std::uint32_t index = 0;
    for (const std::string& word : in_words)
    {
        // The tags go first: what the word does in the name replaces what it did in the tags.
        for (const TagIndex::Numbers* const items : in_tags.FindItems(word))
            for (const std::uint32_t item : *items)
                if (m_scores[m_places[item]] == gNone)
                    m_scores[m_places[item]] = gTagsOnly;
        m_names.Find(word, [&](std::size_t in_place, bool in_atStart) {
            if (!(m_scores[in_place] & gSettled))
                m_scores[in_place] = in_atStart ? index | gSettled : wordCount + index;
        });
        ++index;
    }
    for (std::uint32_t& score : m_scores)
        score &= ~gSettled;
}

void SearchIndex::DropOtherKinds(int in_mode)
{
    const KindTable kinds = KindsOfMode(in_mode);
    for (std::size_t place = 0; place < m_scores.size(); ++place)
        if (!kinds[m_kinds[place]])
            m_scores[place] = gNone;
}

void SearchIndex::Find(const SearchWords& in_words, int in_mode, const TagIndex& in_tags,
                       std::vector<std::uint64_t>& out_numbers)
{
    Score(in_words, in_tags);
    if (in_mode != eFilterAll)
        DropOtherKinds(in_mode);
    // Every score has room of its own among the rows, so that nothing need be compared to sort them.
    std::vector<std::size_t> rows(std::max<std::size_t>(gTagsOnly, 2 * in_words.size()) + 1, 0);
    for (const std::uint32_t score : m_scores)
        if (score != gNone)
            ++rows[score];
    std::size_t count = 0;
    for (std::size_t& row : rows)
    {
        const std::size_t itemsOfScore = row;
        row = count;
        count += itemsOfScore;
    }
    out_numbers.resize(count);
    for (std::size_t place = 0; place < m_scores.size(); ++place)
        if (m_scores[place] != gNone)
            out_numbers[rows[m_scores[place]]++] = m_order[place];
}
