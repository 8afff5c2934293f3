// SPDX-License-Identifier: MIT
#include "nodebrowser/searchindex.h"

#include "nodebrowser/nameorder.h"
#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <array>
#include <utility>

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
    m_prepared = false;
}

void SearchIndex::Add(const std::string& in_name, eItemKind in_kind)
{
    m_names.Add(in_name);
    m_kinds.push_back(in_kind);
    m_prepared = false;
}

const std::vector<std::uint32_t>& SearchIndex::GetOrder()
{
    Prepare();
    return m_order;
}

void SearchIndex::Prepare()
{
    if (m_prepared)
        return;
    m_prepared = true;
    m_order = SortByName(m_names);
    m_places.resize(m_order.size());
    m_lowerNames.Clear();
    m_kindsInOrder.clear();
    std::string name;
    for (const std::uint32_t number : m_order)
    {
        m_places[number] = static_cast<std::uint32_t>(m_kindsInOrder.size());
        name.assign(m_names.Begin(number), m_names.Length(number));
        name = LowerName(std::move(name));
        m_lowerNames.Add(name);
        m_kindsInOrder.push_back(m_kinds[number]);
    }
}

void SearchIndex::Score(const SearchWords& in_words, TagIndex& in_tags)
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
        m_lowerNames.Find(word, [&](std::size_t in_place, bool in_atStart) {
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
        if (!kinds[m_kindsInOrder[place]])
            m_scores[place] = gNone;
}

void SearchIndex::Find(const SearchWords& in_words, int in_mode, TagIndex& in_tags,
                       std::vector<std::uint64_t>& out_places)
{
    Prepare();
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
    out_places.resize(count);
    for (std::size_t place = 0; place < m_scores.size(); ++place)
        if (m_scores[place] != gNone)
            out_places[rows[m_scores[place]]++] = place;
}
