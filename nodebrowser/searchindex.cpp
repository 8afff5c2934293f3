// SPDX-License-Identifier: MIT
#include "nodebrowser/searchindex.h"

#include "nodebrowser/nameorder.h"
#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nodebrowser
{
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

SearchIndex::SearchIndex(const TextArena& in_names, const std::vector<eItemKind>& in_kinds)
{
    m_order = SortByName(in_names);
    m_ranks.resize(m_order.size());
    m_kinds.resize(m_order.size());
    m_lowerNames.Reserve(m_order.size(), in_names.GetBytes());
    std::string name;
    for (std::size_t rank = 0; rank < m_order.size(); ++rank)
    {
        const std::uint32_t index = m_order[rank];
        m_ranks[index] = static_cast<std::uint32_t>(rank);
        m_kinds[rank] = in_kinds[index];
        name.assign(in_names.Begin(index), in_names.Length(index));
        name = LowerName(std::move(name));
        m_lowerNames.Add(name);
    }
    m_lowerNames.CountCharacters();
}

void SearchIndex::Score(const SearchWords& in_words, TagIndex& io_tags)
{
    // The empty word, which is the first one when it is there, starts every name.
    if (in_words.empty() || in_words.begin()->empty())
    {
        m_scores.assign(m_order.size(), 0);
        return;
    }
    m_scores.assign(m_order.size(), gNone);
    const std::uint32_t wordCount = static_cast<std::uint32_t>(in_words.size());
    std::uint32_t wordIndex = 0;
    for (const std::string& word : in_words)
    {
        // The tags go first: what the word does in the name replaces what it did in the tags.
        io_tags.FindItems(word, [this](std::uint32_t in_index) {
            std::uint32_t& score = m_scores[m_ranks[in_index]];
            if (score == gNone)
                score = gTagsOnly;
        });
        m_lowerNames.Find(word, [&](std::size_t in_rank, bool in_atStart) {
            if (!(m_scores[in_rank] & gSettled))
                m_scores[in_rank] = in_atStart ? wordIndex | gSettled : wordCount + wordIndex;
        });
        ++wordIndex;
    }
    for (std::uint32_t& score : m_scores)
        score &= ~gSettled;
}

void SearchIndex::DropOtherKinds(int in_mode)
{
    const KindTable kinds = KindsOfMode(in_mode);
    for (std::size_t rank = 0; rank < m_scores.size(); ++rank)
        if (!kinds[m_kinds[rank]])
            m_scores[rank] = gNone;
}

void SearchIndex::Find(const SearchWords& in_words, int in_mode, TagIndex& io_tags,
                       std::vector<std::uint64_t>& out_ranks)
{
    Score(in_words, io_tags);
    if (in_mode != eFilterAll)
        DropOtherKinds(in_mode);
    // A counting sort: each score has its own run of rows, so nothing need be compared.
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
    out_ranks.resize(count);
    for (std::size_t rank = 0; rank < m_scores.size(); ++rank)
        if (m_scores[rank] != gNone)
            out_ranks[rows[m_scores[rank]]++] = rank;
}

} // namespace nodebrowser
