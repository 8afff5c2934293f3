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

SearchIndex::SearchIndex(const TextArena& in_names, const std::vector<eItemKind>& in_kinds,
                         const std::vector<std::uint32_t>& in_start)
{
    m_order = SortByName(in_names, in_start);
    m_ranks.resize(m_order.size());
    m_kinds.resize(m_order.size());
    m_lowerNames.Reserve(m_order.size(), in_names.GetBytes());
    for (std::size_t rank = 0; rank < m_order.size(); ++rank)
    {
        const std::uint32_t index = m_order[rank];
        m_ranks[index] = static_cast<std::uint32_t>(rank);
        m_kinds[rank] = in_kinds[index];
        m_lowerNames.Add(in_names.Begin(index), in_names.Length(index));
    }
    m_lowerNames.Transform(LowerCharacter);
    m_lowerNames.CountCharacters();
}

/// Scores every item. An item that was not found has in_none.
void SearchIndex::Score(const SearchWords& in_words, std::uint32_t in_none, TagIndex* io_tags)
{
    // The empty word, which is the first one when it is there, starts every name.
    if (in_words.empty() || in_words.begin()->empty())
    {
        m_scores.assign(m_order.size(), 0);
        return;
    }
    m_scores.assign(m_order.size(), in_none);
    const std::uint32_t wordCount = static_cast<std::uint32_t>(in_words.size());
    // A name can earn the score that means "not found". Its item counts as not found, too.
    const auto known = [in_none](std::uint32_t in_score) { return in_score == gNoMatch ? in_none : in_score; };
    std::uint32_t wordIndex = 0;
    for (const std::string& word : in_words)
    {
        // The tags go first: what the word does in the name replaces what it did in the tags.
        if (io_tags)
            io_tags->FindItems(word, [this, in_none](std::uint32_t in_index) {
                std::uint32_t& score = m_scores[m_ranks[in_index]];
                if (score == in_none)
                    score = gTagScore;
            });
        const std::uint32_t atStart = known(wordIndex) | gSettled;
        const std::uint32_t inside = known(wordCount + wordIndex);
        m_lowerNames.Find(word, [&](std::size_t in_rank, bool in_atStart) {
            if (!(m_scores[in_rank] & gSettled))
                m_scores[in_rank] = in_atStart ? atStart : inside;
        });
        ++wordIndex;
    }
}

void SearchIndex::Find(const SearchWords& in_words, int in_mode, TagIndex* io_tags,
                       std::vector<std::uint64_t>& out_ranks)
{
    const std::uint32_t none =
        std::max(static_cast<std::uint32_t>(gTagScore), static_cast<std::uint32_t>(2 * in_words.size())) + 1;
    Score(in_words, none, io_tags);
    CollectFound(in_mode, none);
    // A counting sort: each score has its own run of rows, so nothing need be compared.
    std::vector<std::uint32_t> rows(none, 0);
    for (const std::uint32_t rank : m_found)
        ++rows[m_scores[rank] & ~gSettled];
    std::uint32_t count = 0;
    for (std::uint32_t& row : rows)
    {
        const std::uint32_t itemsOfScore = row;
        row = count;
        count += itemsOfScore;
    }
    out_ranks.resize(count);
    for (const std::uint32_t rank : m_found)
        out_ranks[rows[m_scores[rank] & ~gSettled]++] = rank;
}

/// Lists the ranks that have a score and pass the mode. Each rank is written, and the next one overwrites it unless it
/// passed: nobody could predict a branch.
void SearchIndex::CollectFound(int in_mode, std::uint32_t in_none)
{
    const KindTable kinds = KindsOfMode(in_mode);
    m_found.resize(m_scores.size());
    std::size_t count = 0;
    for (std::size_t rank = 0; rank < m_scores.size(); ++rank)
    {
        m_found[count] = static_cast<std::uint32_t>(rank);
        count += kinds[m_kinds[rank]] & ((m_scores[rank] & ~gSettled) != in_none);
    }
    m_found.resize(count);
}

} // namespace nodebrowser
