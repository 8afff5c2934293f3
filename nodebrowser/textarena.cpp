// SPDX-License-Identifier: MIT
#include "nodebrowser/textarena.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace nodebrowser
{
namespace
{

/// Offsets have 32 bits. The rest of their range is left for the line feeds of a thousand million entries.
const std::size_t gMostBytes = 0xC0000000u;

} // namespace

void TextArena::Reserve(std::size_t in_entries, std::size_t in_bytes)
{
    m_ends.reserve(in_entries);
    m_texts.reserve(in_bytes);
}

void TextArena::Add(const char* in_text, std::size_t in_length)
{
    // Beyond the limit an entry has no characters, but still its line feed.
    const std::size_t room = m_texts.size() < gMostBytes ? gMostBytes - m_texts.size() : 0;
    m_texts.append(in_text, std::min(in_length, room));
    m_texts += '\n';
    m_ends.push_back(static_cast<std::uint32_t>(m_texts.size()));
}

void TextArena::CountCharacters()
{
    // Neighbours are counted apart: the processor would wait for one count of a character before the next.
    std::uint32_t counts[2][256] = {};
    for (std::size_t i = 0; i < m_texts.size(); ++i)
        ++counts[i % 2][static_cast<unsigned char>(m_texts[i])];
    for (std::size_t character = 0; character < 256; ++character)
        m_counts[character] = counts[0][character] + counts[1][character];
}

TextArena::Rare TextArena::FindRare(const std::string& in_word) const
{
    const auto isRarer = [&](std::size_t in_left, std::size_t in_right) {
        return m_counts[static_cast<unsigned char>(in_word[in_left])] <
               m_counts[static_cast<unsigned char>(in_word[in_right])];
    };
    Rare rare = {0, 0};
    for (std::size_t i = 1; i < in_word.size(); ++i)
        if (isRarer(i, rare.m_first))
            rare = {i, rare.m_first};
        else if (rare.m_second == rare.m_first || isRarer(i, rare.m_second))
            rare.m_second = i;
    return rare;
}

/// The offset of the first occurrence of a word at in_begin or after it.
std::size_t TextArena::FindFrom(std::size_t in_begin, const std::string& in_word, const Rare& in_rare) const
{
    // An empty word starts every entry. There is no entry after the last line feed.
    if (in_word.empty())
        return in_begin < m_texts.size() ? in_begin : std::string::npos;
    if (in_word.size() > m_texts.size())
        return std::string::npos;
    const char* const texts = m_texts.data();
    const std::size_t last = m_texts.size() - in_word.size();
    const char first = in_word[in_rare.m_first];
    const char second = in_word[in_rare.m_second];
    for (std::size_t offset = in_begin; offset <= last; ++offset)
    {
        const void* const found = std::memchr(texts + offset + in_rare.m_first, first, last - offset + 1);
        if (!found)
            break;
        offset = static_cast<std::size_t>(static_cast<const char*>(found) - texts) - in_rare.m_first;
        // The second character decides for most words, without a call.
        if (texts[offset + in_rare.m_second] == second &&
            (in_word.size() <= 2 || std::memcmp(texts + offset, in_word.data(), in_word.size()) == 0))
            return offset;
    }
    return std::string::npos;
}

/// The entry that an offset is in. The search starts at in_first, which is that entry or one before it. Its strides
/// grow, because the next occurrence is mostly near.
std::size_t TextArena::FindEntry(std::size_t in_offset, std::size_t in_first) const
{
    std::size_t first = in_first;
    std::size_t stride = 1;
    while (first + stride < m_ends.size() && m_ends[first + stride - 1] <= in_offset)
    {
        first += stride;
        stride *= 2;
    }
    const auto begin = m_ends.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = m_ends.begin() + static_cast<std::ptrdiff_t>(std::min(first + stride, m_ends.size()));
    return static_cast<std::size_t>(std::upper_bound(begin, end, in_offset) - m_ends.begin());
}

} // namespace nodebrowser
