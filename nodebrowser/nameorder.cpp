#include "nodebrowser/nameorder.h"

#include <algorithm>

namespace
{

/// A name's first bytes as one number that compares as they do, so that most comparisons touch no name.
struct SortKey
{
    std::uint64_t m_start;
    std::uint32_t m_number;
};

const std::size_t gStartBytes = 8;

unsigned char FoldAsciiCase(char in_character)
{
    const unsigned char byte = static_cast<unsigned char>(in_character);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

std::uint64_t FoldStart(const std::string& in_name)
{
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < gStartBytes; ++i)
        start = start << 8 | (i < in_name.size() ? FoldAsciiCase(in_name[i]) : 0u);
    return start;
}

bool IsFoldedLess(const std::string& in_left, const std::string& in_right)
{
    return std::lexicographical_compare(in_left.begin(), in_left.end(), in_right.begin(), in_right.end(),
                                        [](char in_a, char in_b) { return FoldAsciiCase(in_a) < FoldAsciiCase(in_b); });
}

} // namespace

std::vector<std::uint32_t> SortByName(const std::vector<std::string>& in_names)
{
    std::vector<SortKey> keys;
    keys.reserve(in_names.size());
    for (const std::string& name : in_names)
        keys.push_back({FoldStart(name), static_cast<std::uint32_t>(keys.size())});
    std::sort(keys.begin(), keys.end(), [&in_names](const SortKey& in_left, const SortKey& in_right) {
        if (in_left.m_start != in_right.m_start)
            return in_left.m_start < in_right.m_start;
        const std::string& left = in_names[in_left.m_number];
        const std::string& right = in_names[in_right.m_number];
        if (IsFoldedLess(left, right))
            return true;
        return !IsFoldedLess(right, left) && in_left.m_number < in_right.m_number;
    });
    std::vector<std::uint32_t> order;
    order.reserve(keys.size());
    for (const SortKey& key : keys)
        order.push_back(key.m_number);
    return order;
}
