// SPDX-License-Identifier: MIT
#include "nodebrowser/textblock.h"

#include <algorithm>
#include <cstring>
#include <iterator>

void TextBlock::Clear()
{
    m_texts.clear();
    m_ends.clear();
    std::fill(std::begin(m_counts), std::end(m_counts), std::size_t(0));
}

void TextBlock::Add(const std::string& in_text)
{
    for (const char character : in_text)
        ++m_counts[static_cast<unsigned char>(character)];
    m_texts += in_text;
    m_texts += '\n';
    m_ends.push_back(m_texts.size());
}

/// Which character of a word occurs least often in the texts.
std::size_t TextBlock::FindRarest(const std::string& in_word) const
{
    std::size_t rarest = 0;
    for (std::size_t i = 1; i < in_word.size(); ++i)
        if (m_counts[static_cast<unsigned char>(in_word[i])] < m_counts[static_cast<unsigned char>(in_word[rarest])])
            rarest = i;
    return rarest;
}

/// The first place of a word that does not lie before another place.
std::size_t TextBlock::FindFrom(std::size_t in_begin, const std::string& in_word, std::size_t in_rarest) const
{
    // An empty word starts every text, and there is none behind the last line feed.
    if (in_word.empty())
        return in_begin < m_texts.size() ? in_begin : std::string::npos;
    if (in_word.size() > m_texts.size())
        return std::string::npos;
    const char* const texts = m_texts.data();
    const std::size_t last = m_texts.size() - in_word.size();
    for (std::size_t place = in_begin; place <= last; ++place)
    {
        const void* const found = std::memchr(texts + place + in_rarest, in_word[in_rarest], last - place + 1);
        if (!found)
            break;
        place = static_cast<std::size_t>(static_cast<const char*>(found) - texts) - in_rarest;
        if (std::memcmp(texts + place, in_word.data(), in_word.size()) == 0)
            return place;
    }
    return std::string::npos;
}

/// The text that a place is in, looked for in growing strides from one that does not lie behind it: the next hit is
/// mostly near.
std::size_t TextBlock::NumberAt(std::size_t in_place, std::size_t in_first) const
{
    std::size_t first = in_first;
    std::size_t stride = 1;
    while (first + stride < m_ends.size() && m_ends[first + stride - 1] <= in_place)
    {
        first += stride;
        stride *= 2;
    }
    const auto begin = m_ends.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = m_ends.begin() + static_cast<std::ptrdiff_t>(std::min(first + stride, m_ends.size()));
    return static_cast<std::size_t>(std::upper_bound(begin, end, in_place) - m_ends.begin());
}
