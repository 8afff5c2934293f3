#include "nodebrowser/textblock.h"

#include <algorithm>
#include <cstring>

void TextBlock::Clear()
{
    m_texts.clear();
    m_ends.clear();
}

void TextBlock::Add(const std::string& in_text)
{
    m_texts += in_text;
    m_texts += '\n';
    m_ends.push_back(m_texts.size());
}

std::size_t TextBlock::FindFrom(std::size_t in_begin, const std::string& in_word) const
{
    // The line feed of the last text belongs to no text: an empty word is not found behind it.
    if (in_begin >= m_texts.size())
        return std::string::npos;
#if defined(__GLIBC__)
    const char* const begin = m_texts.data();
    const void* const found = memmem(begin + in_begin, m_texts.size() - in_begin, in_word.data(), in_word.size());
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - begin) : std::string::npos;
#else
    return m_texts.find(in_word, in_begin);
#endif
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
